#include "search/SearchCommand.h"

#include "base/Paths.h"
#include <utility>

namespace vesko {
namespace {

SearchReply notUnderstood(const std::string& why) {
    return {SearchReply::notUnderstood, "",
            escapedForDisplay(why) + "\nUsage: vesko-mdfind -onlyin FOLDER QUERY"};
}

std::string lines(const FoundPaths& paths) {
    std::size_t length = 0;
    for (const std::string& path : paths) length += path.size() + 1;
    std::string text;
    text.reserve(length);
    for (const std::string& path : paths) {
        text += path;
        text += '\n';
    }
    return text;
}

} // namespace

SearchReply replyToSearch(const TreeSearch& search, const std::vector<std::string>& arguments) {
    if (arguments.size() != 3 || arguments[0] != "-onlyin")
        return notUnderstood("needs -onlyin, a folder and a query");
    const std::string& folder = arguments[1];
    if (!folder.starts_with('/')) return notUnderstood("the folder must be an absolute path: " + folder);
    const auto query = searchQueryFromText(arguments[2]);
    if (!query) return notUnderstood("can't understand the query: " + arguments[2]);

    const auto found = search.search(FileURL(folder), *query);
    if (found) return {SearchReply::answered, lines(*found), ""};
    switch (found.error()) {
    case SearchFailure::stopped: return {};
    case SearchFailure::incomplete:
        return {SearchReply::unsearchable, "",
                "too few open files or too little memory to search " + escapedForDisplay(folder)};
    case SearchFailure::noFolder: break;
    }
    return {SearchReply::unsearchable, "", "can't search " + escapedForDisplay(folder)};
}

} // namespace vesko
