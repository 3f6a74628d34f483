// Answers the searches that this system builds, where there is no index that could.
#include "search/SearchCommand.h"
#include <cstdio>

int main(int count, char** words) {
    using namespace vesko;
    const TreeSearch search;
    const SearchReply reply =
        replyToSearch(search, std::vector<std::string>(words + (count > 0 ? 1 : 0), words + count));
    if (!reply.message.empty()) std::fprintf(stderr, "vesko-mdfind: %s\n", reply.message.c_str());
    std::fwrite(reply.output.data(), 1, reply.output.size(), stdout);
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return reply.status;
    std::perror("vesko-mdfind");
    return SearchReply::unsearchable;
}
