#include "search/SearchCommand.h"

#include "concurrency/CurrentTask.h"
#include "support/TempTree.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::TempTree;

const std::string folders = "kMDItemFSName == 'build' && kMDItemContentType == 'public.folder'";

class SearchCommand : public ::testing::Test {
protected:
    SearchReply reply(const std::vector<std::string>& arguments) { return replyToSearch(search, arguments); }
    TempTree tree;
    TreeSearch search;
};

TEST_F(SearchCommand, AnswersOneAbsolutePathALine) {
    tree.folder("b/build");
    tree.folder("a/build");
    const SearchReply answer = reply({"-onlyin", tree.root().path(), folders});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output, tree.path("a/build") + "\n" + tree.path("b/build") + "\n");
    EXPECT_THAT(answer.message, IsEmpty());
}

TEST_F(SearchCommand, AnEmptyAnswerIsASuccess) {
    const SearchReply answer = reply({"-onlyin", tree.root().path(), folders});
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, IsEmpty());
    EXPECT_THAT(answer.message, IsEmpty());
}

TEST_F(SearchCommand, ASlashBehindTheFolderMakesNoDifference) {
    tree.folder("a/build");
    EXPECT_EQ(reply({"-onlyin", tree.root().path() + "/", folders}).output, tree.path("a/build") + "\n");
}

TEST_F(SearchCommand, AFolderThatCannotBeSearchedIsAFailure) {
    const SearchReply answer = reply({"-onlyin", tree.path("missing"), folders});
    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output, IsEmpty());
    EXPECT_THAT(answer.message, HasSubstr(tree.path("missing")));
}

TEST_F(SearchCommand, AnythingElseIsNotUnderstood) {
    const std::string root = tree.root().path();
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                      {folders},
                                                      {"-onlyin", root},
                                                      {"-onlyin", root, folders, "more"},
                                                      {"-live", root, folders},
                                                      {"-onlyin", "relative", folders},
                                                      {"-onlyin", "", folders},
                                                      {"-onlyin", root, "kMDItemFSName == 'it's'"},
                                                      {"-onlyin", root, ""}}) {
        const SearchReply answer = reply(arguments);
        EXPECT_EQ(answer.status, 2);
        EXPECT_THAT(answer.output, IsEmpty());
        EXPECT_FALSE(answer.message.empty());
    }
}

TEST_F(SearchCommand, AMessageIsFitForATerminal) {
    EXPECT_THAT(reply({"-onlyin", tree.root().path(), "\x1b[31m\xff"}).message, HasSubstr("\\x1B[31m\\xFF"));
}

TEST_F(SearchCommand, ACancelledSearchIsEmptyAndNoFailure) {
    tree.folder("a/build");
    StopSource source;
    source.requestStop();
    const CurrentTaskScope scope(source.token());
    const SearchReply answer = reply({"-onlyin", tree.root().path(), folders});
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, IsEmpty());
}

} // namespace
} // namespace vesko
