#include "app/PreferredLanguage.h"
#include "app/ScanDeltaJson.h"
#include "app/ScanSummary.h"
#include "support/LanguageScope.h"
#include "support/ScopedEnvironment.h"
#include "support/builders.h"
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace vesko {
namespace {

using testing::item;
using testing::ScopedEnvironment;

TEST(ScanDeltaJson, AStartIsItsIdAndTitle) {
    EXPECT_EQ(jsonLine(ProbeStarted{"cache.npm", "npm \"cache\""}),
              R"({"event":"probeStarted","id":"cache.npm","title":"npm \"cache\""})");
}

TEST(ScanDeltaJson, AnEndWithoutAGroupHasNull) {
    EXPECT_EQ(jsonLine(ProbeFinished{std::nullopt, {"", 3, 40, 5, 0.25}}),
              R"({"event":"probeFinished","group":null,"progress":{"currentPath":"","directoriesVisited":3,)"
              R"("bytesIndexed":40,"candidatesFound":5,"estimatedFraction":0.25}})");
}

TEST(ScanDeltaJson, AGroupHasTheFieldsOfItsRecord) {
    CleanupGroup group = testing::group("x.y", {item("/a/b", 7, false)});
    group.relevancePolicy = RelevancePolicy::alwaysRelevant;
    group.baselineSafety = Safety::risco;
    ScannableItem labelled = item("/c", 5);
    labelled.displayLabel = "the label";
    group.items = ItemList{group.items[0], labelled};
    const auto line = nlohmann::ordered_json::parse(jsonLine(ProbeFinished{group, {}}));
    EXPECT_EQ(
        line["group"].dump(),
        R"({"id":"x.y","title":"title of x.y","icon":"shippingbox",)"
        R"("section":{"id":"caches","title":"Caches","sortIndex":2},"providerID":"fixed",)"
        R"("relevancePolicy":"alwaysRelevant","subtitle":"subtitle of x.y","items":[)"
        R"({"path":"/a/b","name":"b","size":7,"isDirectory":false,"enrichmentKey":"url:/a/b","displayLabel":null},)"
        R"({"path":"/c","name":"c","size":5,"isDirectory":true,"enrichmentKey":"url:/c","displayLabel":"the label"}],)"
        R"("baselineSafety":"risco","baselineReason":"reason of x.y"})");
}

TEST(ScanDeltaJson, TheReportClosesTheScan) {
    const ScanReport report{{}, 12, {"went wrong"}, dateFromUnixSeconds(1'000'000'000)};
    EXPECT_EQ(jsonLine(Finalize{report}),
              R"({"event":"finalize","report":{"groups":[],"foundTotalBytes":12,"errors":["went wrong"],)"
              R"("date":"2001-09-09T01:46:40Z"}})");
}

TEST(ScanDeltaJson, BytesThatAreNoUtf8AreEscapedAndALineStaysALine) {
    const CleanupGroup group =
        testing::group("x", {item("/caf\xe9", 7), item("/two\nlines", 5), item("/caf\xc3\xa9", 3)});
    const std::string text = jsonLine(ProbeFinished{group, {}});
    EXPECT_EQ(text.find('\n'), std::string::npos);
    const auto items = nlohmann::json::parse(text)["group"]["items"];
    EXPECT_EQ(items[0]["path"], "/caf\\xE9");
    EXPECT_EQ(items[0]["name"], "caf\\xE9");
    EXPECT_EQ(items[0]["enrichmentKey"], "url:/caf\\xE9");
    EXPECT_EQ(items[1]["name"], "two\nlines");
    EXPECT_EQ(items[2]["name"], "caf\xc3\xa9");
}

ScanReport sample() {
    CleanupGroup logs = testing::group("logs.stale", {item("/l", 2'000'000)});
    logs.section = sections::system();
    logs.title = "Logs";
    logs.subtitle = "1 item";
    logs.baselineSafety = Safety::seguro;
    CleanupGroup images = testing::group("docker.images", {item("/i", 1'500'000'000)});
    images.section = sections::development();
    images.title = "Images";
    images.subtitle = "12 items";
    images.baselineSafety = Safety::revisar;
    CleanupGroup trash = testing::group("trash", {item("/t", 1'000)});
    trash.section = sections::system();
    trash.title = "Lixo d'\xc3\xa1gua";
    trash.subtitle = "3 items";
    trash.baselineSafety = Safety::risco;
    return {{images, logs, trash}, 1'502'001'000, {}, {}};
}

TEST(ScanSummary, IsATableByBandsWithTheTotal) {
    const testing::LanguageScope english(Language::english);
    EXPECT_EQ(scanSummary(sample()), "System\n"
                                     "    2 MB  Safe    Logs         1 item\n"
                                     "    1 KB  Risky   Lixo d'\xc3\xa1gua  3 items\n"
                                     "Development\n"
                                     "  1.5 GB  Review  Images       12 items\n"
                                     "1.5 GB can be freed\n");
}

TEST(ScanSummary, SpeaksThePersonsLanguage) {
    const testing::LanguageScope portuguese(Language::portuguese);
    const std::string table = scanSummary(sample());
    EXPECT_TRUE(table.starts_with("Sistema\n")) << table;
    EXPECT_NE(table.find("1,5 GB  Revisar"), std::string::npos) << table;
}

TEST(ScanSummary, SaysThatNothingWasFound) {
    const testing::LanguageScope english(Language::english);
    EXPECT_EQ(scanSummary({}), localized("empty.noResults.title") + "\n");
}

/// The four variables that decide.
struct Environment {
    ScopedEnvironment all, messages, lang, list;
    Environment(std::optional<std::string> a, std::optional<std::string> m, std::optional<std::string> l,
                std::optional<std::string> g)
        : all("LC_ALL", std::move(a)), messages("LC_MESSAGES", std::move(m)), lang("LANG", std::move(l)),
          list("LANGUAGE", std::move(g)) {}
};

TEST(PreferredLanguage, FollowsTheFirstLocaleThatIsSet) {
    const auto none = std::nullopt;
    EXPECT_EQ((Environment(none, none, none, none), preferredLanguage()), Language::english);
    {
        const Environment set(none, none, "pt_BR.UTF-8", none);
        EXPECT_EQ(preferredLanguage(), Language::portuguese);
    }
    {
        const Environment set("en_US.UTF-8", "pt_BR.UTF-8", "pt_BR.UTF-8", none);
        EXPECT_EQ(preferredLanguage(), Language::english);
    }
    {
        const Environment set("", "pt_PT", "en_US", none);
        EXPECT_EQ(preferredLanguage(), Language::portuguese);
    }
}

TEST(PreferredLanguage, TheListCountsBesideARealLocaleOnly) {
    {
        const Environment set(std::nullopt, std::nullopt, "de_DE.UTF-8", "de:pt_BR:en");
        EXPECT_EQ(preferredLanguage(), Language::portuguese);
    }
    {
        const Environment set(std::nullopt, std::nullopt, "de_DE.UTF-8", "de::en");
        EXPECT_EQ(preferredLanguage(), Language::english);
    }
    {
        const Environment set(std::nullopt, std::nullopt, "pt_BR.UTF-8", "de:en_GB:pt_BR");
        EXPECT_EQ(preferredLanguage(), Language::english);
    }
    for (const char* neutral : {"C", "POSIX", "C.UTF-8"}) {
        const Environment set(std::nullopt, std::nullopt, neutral, "pt_BR");
        EXPECT_EQ(preferredLanguage(), Language::english);
    }
}

} // namespace
} // namespace vesko
