#include "search/SearchQuery.h"

#include <gtest/gtest.h>

namespace vesko {
namespace {

const std::string isFolder = " && kMDItemContentType == 'public.folder'";
const std::string unused =
    "kMDItemContentTypeTree == 'public.application' && kMDItemLastUsedDate < $time.iso(";

TEST(SearchQuery, AFolderByName) {
    EXPECT_EQ(searchQueryFromText("kMDItemFSName == 'node_modules'" + isFolder),
              SearchQuery(FolderNamed{"node_modules"}));
}

TEST(SearchQuery, AnEntryByName) {
    EXPECT_EQ(searchQueryFromText("kMDItemFSName == 'package.json'"),
              SearchQuery(EntryNamed{"package.json"}));
}

TEST(SearchQuery, ApplicationsByLastUse) {
    EXPECT_EQ(searchQueryFromText(unused + "776000000)"), SearchQuery(ApplicationsUnusedSince{776'000'000}));
    EXPECT_EQ(searchQueryFromText(unused + "-5)"), SearchQuery(ApplicationsUnusedSince{-5}));
    EXPECT_EQ(searchQueryFromText(unused + "0)"), SearchQuery(ApplicationsUnusedSince{0}));
}

TEST(SearchQuery, ANameMayHoldWhatMeansNothingInAQuery) {
    for (const std::string name : {"two words", "a\"b", "$HOME", "ação", "a&&b", "(x)", "-name", "a==b"}) {
        EXPECT_EQ(searchQueryFromText("kMDItemFSName == '" + name + "'"), SearchQuery(EntryNamed{name}));
        EXPECT_EQ(searchQueryFromText("kMDItemFSName == '" + name + "'" + isFolder),
                  SearchQuery(FolderNamed{name}));
    }
}

TEST(SearchQuery, ANameWithASignOfTheQueryLanguageIsRefused) {
    for (const std::string name : {"it's", "a\\b", "*.app", "a/b", "a\nb", "", ".", "..", "caf\xe9"}) {
        EXPECT_FALSE(searchQueryFromText("kMDItemFSName == '" + name + "'")) << name;
        EXPECT_FALSE(searchQueryFromText("kMDItemFSName == '" + name + "'" + isFolder)) << name;
    }
    EXPECT_FALSE(searchQueryFromText(std::string("kMDItemFSName == 'a\0b'", 22)));
}

TEST(SearchQuery, EveryOtherFormIsRefused) {
    for (const std::string& text :
         {std::string(), std::string("'"), std::string("kMDItemFSName == '"),
          std::string("kMDItemFSName == \"a\""), std::string("kMDItemFSName == 'a"),
          std::string("kMDItemFSName == 'a'c"), std::string("kMDItemFSName == 'a' "),
          std::string(" kMDItemFSName == 'a'"), std::string("kMDItemFSName=='a'"),
          std::string("kMDItemFSName == 'a' && kMDItemContentType == 'public.data'"),
          std::string("kMDItemFSName == 'a' || kMDItemFSName == 'b'"),
          std::string("kMDItemDisplayName == 'a'"), std::string("node_modules"),
          std::string("kMDItemFSName == 'a'") + isFolder + isFolder}) {
        EXPECT_FALSE(searchQueryFromText(text)) << text;
    }
}

TEST(SearchQuery, ALimitThatIsNoWholeNumberIsRefused) {
    for (const std::string limit : {"", " 5", "5 ", "+5", "5.0", "0x5", "5)", "2026-11-21T10:00:00Z",
                                    "9223372036854775808", "-9223372036854775809"})
        EXPECT_FALSE(searchQueryFromText(unused + limit + ")")) << limit;
    EXPECT_TRUE(searchQueryFromText(unused + "9223372036854775807)"));
    EXPECT_FALSE(searchQueryFromText(unused + "5"));
}

/// Every beginning of a query and every query with one byte changed must be refused or be another name or
/// number, and never bring the parser down.
TEST(SearchQuery, DamagedQueriesAreReadSafely) {
    for (const std::string& whole :
         {std::string("kMDItemFSName == 'build'") + isFolder, unused + "776000000)"}) {
        for (std::size_t length = 0; length < whole.size(); ++length) {
            const auto query = searchQueryFromText(std::string_view(whole).substr(0, length));
            EXPECT_TRUE(!query || *query == SearchQuery(EntryNamed{"build"})) << whole.substr(0, length);
        }
        for (std::size_t at = 0; at < whole.size(); ++at)
            for (int byte = 0; byte < 256; ++byte) {
                std::string changed = whole;
                changed[at] = static_cast<char>(byte);
                const auto query = searchQueryFromText(changed);
                if (const auto* folder = query ? std::get_if<FolderNamed>(&*query) : nullptr) {
                    EXPECT_EQ(folder->name.size(), 5U);
                }
            }
    }
}

} // namespace
} // namespace vesko
