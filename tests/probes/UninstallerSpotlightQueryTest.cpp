#include "probes/UninstallerSpotlightQuery.h"

#include "base/FileSystem.h"
#include "base/Paths.h"
#include "concurrency/CurrentTask.h"
#include "search/SearchCommand.h"
#include "support/FileTimes.h"
#include "support/PortugueseLocale.h"
#include "support/ScopedEnvironment.h"
#include "support/TempTree.h"
#include "support/builders.h"
#include <filesystem>
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TempTree;

class FixedDate final : public DateSource {
public:
    explicit FixedDate(Date date) : date_(date) {}
    Date now() const override { return date_; }

private:
    Date date_;
};

/// 2026-11-21T10:15:00.75Z; 816,948,900.75 seconds after the beginning of 2001.
const FixedDate today(dateFromUnixSeconds(1'795'256'100, 750'000'000));

class UninstallerSpotlightQueryTest : public ::testing::Test {
protected:
    using Command = std::vector<std::string>;

    FileURL app(const std::string& relative, std::size_t bytes = 20'000, const std::string& identifier = "") {
        tree.file(relative + "/Contents/MacOS/run", std::string(bytes, 'x'));
        if (!identifier.empty())
            tree.file(
                relative + "/Contents/Info.plist",
                R"(<?xml version="1.0"?><plist version="1.0"><dict><key>CFBundleIdentifier</key><string>)" +
                    identifier + "</string></dict></plist>");
        return tree.url(relative);
    }
    /// With one answer for every root.
    std::vector<ScannableItem> found(const std::string& output, std::int32_t status = 0) {
        return UninstallerSpotlightQuery(
                   {tree.url("one"), tree.url("two")},
                   [&output, status, this](const std::string& executable,
                                           const std::vector<std::string>& arguments) {
                       commands.push_back({executable});
                       commands.back().insert(commands.back().end(), arguments.begin(), arguments.end());
                       return std::optional(ChildResult{status, output});
                   },
                   today)
            .unusedApplications(90);
    }
    /// With what a shell prints.
    std::vector<ScannableItem> foundByScript(const std::string& script) {
        return UninstallerSpotlightQuery({tree.url("one"), tree.url("two")},
                                         [=](const std::string&, const std::vector<std::string>& arguments) {
                                             return runChild("/bin/sh", {"-c", script, "sh", arguments[1]});
                                         })
            .unusedApplications(90);
    }
    static std::vector<std::string> keys(const std::vector<ScannableItem>& items) {
        std::vector<std::string> list;
        for (const ScannableItem& item : items) list.push_back(item.enrichmentKey.rawValue);
        return list;
    }

    TempTree tree;
    std::vector<Command> commands;
};

TEST_F(UninstallerSpotlightQueryTest, AsksForEveryRootByLastUseInSecondsSince2001) {
    found("");
    const std::string query = "kMDItemContentTypeTree == 'public.application' && kMDItemLastUsedDate < "
                              "$time.iso(809172900)"; // a fraction is cut off
    EXPECT_THAT(commands, ElementsAre(ElementsAre("/usr/bin/mdfind", "-onlyin", tree.path("one"), query),
                                      ElementsAre("/usr/bin/mdfind", "-onlyin", tree.path("two"), query)));
}

TEST_F(UninstallerSpotlightQueryTest, TheUsualRootsAreTheSystemsAndTheCurrentPersons) {
    const testing::ScopedEnvironment home("HOME", tree.root().path());
    EXPECT_THAT(UninstallerSpotlightQuery().applicationRoots(),
                ElementsAre(FileURL("/Applications"), tree.url("Applications")));
}

TEST_F(UninstallerSpotlightQueryTest, EachApplicationIsMeasuredAndKeyedByItsIdentifierLargestFirst) {
    const FileURL small = app("one/Small.app", 20'000, "com.example.small");
    const FileURL large = app("one/Large.app", 400'000, "org.example.large");
    const auto items = found(small.path() + "\n\n" + large.path() + "\n");
    ASSERT_THAT(items, SizeIs(2));
    EXPECT_EQ(items[0].url, large);
    EXPECT_EQ(items[0].name(), "Large.app");
    EXPECT_GE(items[0].size, 400'000);
    EXPECT_TRUE(items[0].isDirectory);
    EXPECT_EQ(items[0].displayLabel, std::nullopt);
    EXPECT_THAT(keys(items), ElementsAre("app:org.example.large", "app:com.example.small"));
}

TEST_F(UninstallerSpotlightQueryTest, APathThatComesTwiceIsMeasuredOnce) {
    const std::string path = app("one/Tool.app").path();
    EXPECT_THAT(found(path + "\n" + path + "\n"), SizeIs(1)) << "and both roots answer with it";
    EXPECT_THAT(commands, SizeIs(2));
}

TEST_F(UninstallerSpotlightQueryTest, ABundleNamedLikeTheSystemsOwnIsLeftOutAndAnIdentifierIsNot) {
    const std::string named = app("one/com.apple.Tool.app").path();
    const std::string shouted = app("one/COM.Apple.Other.app").path();
    const std::string inside = app("one/Mail.app", 20'000, "com.apple.mail").path();
    EXPECT_THAT(keys(found(named + "\n" + shouted + "\n" + inside)), ElementsAre("app:com.apple.mail"));
}

TEST_F(UninstallerSpotlightQueryTest, WithoutAnIdentifierTheNameWithoutExtensionIsTheKey) {
    const std::string plain = app("one/Old Tool.app", 60'000).path();
    const std::string damaged = app("one/Damaged.v2.app", 50'000).path();
    tree.file("one/Damaged.v2.app/Contents/Info.plist", "<plist");
    const FileURL bare = tree.file("one/README", std::string(40'000, 'x'));
    EXPECT_THAT(keys(found(plain + "\n" + damaged + "\n" + bare.path())),
                ElementsAre("app:Old Tool", "app:Damaged.v2", "app:README"));
}

TEST_F(UninstallerSpotlightQueryTest, EmptyAnswersForAllRootsAreAnEmptyList) {
    EXPECT_THAT(found(""), IsEmpty());
    EXPECT_THAT(found("\n\n"), IsEmpty());
}

TEST_F(UninstallerSpotlightQueryTest, AnApplicationThatIsGoneOrTakesNothingIsLeftOut) {
    tree.folder("one/Empty.app");
    const std::string there = app("one/There.app").path();
    const auto items = found(tree.path("one/Gone.app") + "\n" + there);
    EXPECT_THAT(keys(items), ElementsAre("app:There"));
}

TEST_F(UninstallerSpotlightQueryTest, AMissingToolIsAnEmptyList) {
    EXPECT_THAT(UninstallerSpotlightQuery(
                    {tree.url("one")}, [](const auto&, const auto&) { return std::optional<ChildResult>(); })
                    .unusedApplications(90),
                IsEmpty());
}

TEST_F(UninstallerSpotlightQueryTest, OneRootsFailureDoesNotStopTheOther) {
    app("one/A.app");
    app("two/B.app");
    const std::string listing = R"(ls -d "$1"/*.app; case "$1" in */one) )";
    const auto expected = ElementsAre("app:B");
    EXPECT_THAT(keys(foundByScript(listing + "exit 3;; esac")), expected);
    EXPECT_THAT(keys(foundByScript(listing + "kill -9 $$;; esac")), expected);
    EXPECT_THAT(keys(foundByScript(listing + "printf '\\377\\n';; esac")), expected);
}

TEST_F(UninstallerSpotlightQueryTest, GarbageAndHalfALineHarmNoOther) {
    const std::string path = app("one/Tool.app").path();
    EXPECT_THAT(keys(found("\x01garbage\n/no/such\n" + std::string(5000, 'y') + "\n" + path + "\n" +
                           path.substr(0, path.size() - 3))),
                ElementsAre("app:Tool"));
}

TEST_F(UninstallerSpotlightQueryTest, AHundredMegabytesOfAnswerAreReadToTheEnd) {
    const std::string path = app("one/Tool.app").path();
    EXPECT_THAT(keys(foundByScript("yes /no/such/path/at/all | head -c 100000000; echo; echo " + path)),
                ElementsAre("app:Tool"));
}

TEST_F(UninstallerSpotlightQueryTest, AnswersReadTheSameInEveryLocale) {
    const testing::PortugueseLocale locale;
    if (!locale.isThere()) GTEST_SKIP() << "no Brazilian locale to be had";
    const std::string path = app("one/Ferramenta maçã.app").path();
    EXPECT_THAT(keys(found(path)), ElementsAre("app:Ferramenta maçã"));
    EXPECT_THAT(commands[0][3], ::testing::HasSubstr("$time.iso(809172900)"));
    EXPECT_THAT(found("\xe9"), IsEmpty());
    EXPECT_THAT(found(path, 1), IsEmpty());
}

TEST_F(UninstallerSpotlightQueryTest, ACancelledRunOffersNothing) {
    const std::string path = app("one/Tool.app").path();
    StopSource source;
    source.requestStop();
    const CurrentTaskScope scope(source.token());
    EXPECT_THAT(found(path), IsEmpty());
}

TEST_F(UninstallerSpotlightQueryTest, AnAgeBeyondAllDatesIsAnAgeAllTheSame) {
    const auto ask = [this](std::int64_t days) {
        UninstallerSpotlightQuery(
            {tree.url("one")},
            [&](const std::string&, const std::vector<std::string>& arguments) {
                commands.push_back(arguments);
                return std::optional(ChildResult{0, ""});
            },
            today)
            .unusedApplications(days);
        return commands.back()[2];
    };
    EXPECT_THAT(ask(INT64_MAX), ::testing::HasSubstr("$time.iso(-9223372036854775808)"));
    EXPECT_THAT(ask(INT64_MIN), ::testing::HasSubstr("$time.iso(9223372036854775807)"));
    EXPECT_THAT(ask(0), ::testing::HasSubstr("$time.iso(816948900)"));
    EXPECT_TRUE(searchQueryFromText(ask(INT64_MAX)));
}

/// The query and the search that stands in for the system's understand one another.
TEST_F(UninstallerSpotlightQueryTest, TheSearchOfThisSystemFindsWhatIsUnused) {
    if (!contentAccessDate(tree.file("probe"))) GTEST_SKIP() << "this volume keeps no access dates";
    for (const char* name : {"one/Old.app", "one/New.app"}) {
        const FileURL executable = app(name).appending("Contents/MacOS/run");
        std::filesystem::permissions(executable.path(), std::filesystem::perms(0755));
        const auto age = std::chrono::hours(24) * (std::string(name) == "one/Old.app" ? 91 : 89);
        testing::setFileTimes(executable, today.now() - age, today.now() - age);
    }
    const UninstallerSpotlightQuery query(
        {tree.url("one"), tree.url("missing")},
        [](const std::string&, const std::vector<std::string>& arguments) {
            const SearchReply reply = replyToSearch(TreeSearch(), arguments);
            return std::optional(ChildResult{reply.status, reply.output});
        },
        today);
    EXPECT_THAT(keys(query.unusedApplications(90)), ElementsAre("app:Old"));
}

} // namespace
} // namespace vesko
