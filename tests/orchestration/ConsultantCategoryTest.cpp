#include "orchestration/ConsultantCategory.h"

#include "base/StringCatalog.h"
#include "core/ProbeCatalog.h"
#include <gtest/gtest.h>
#include <set>

namespace vesko {
namespace {

TEST(ConsultantCategory, TheTableStandsInItsOrder) {
    std::vector<std::string> ids;
    for (const ConsultantCategory& category : consultantCategories()) ids.push_back(category.id);
    EXPECT_EQ(ids, (std::vector<std::string>{"xcode-builds", "simulators", "nodejs", "swift-apple",
                                             "containers-vms", "caches", "system", "apps", "backups",
                                             "downloads"}));
}

TEST(ConsultantCategory, EveryProbeOfTheTableIsInTheCatalog) {
    // "cache.cocoapods" stands in the table for the day that it has a probe.
    for (const ConsultantCategory& category : consultantCategories())
        for (const std::string& id : category.probeIDs)
            EXPECT_TRUE(probeMetadataByID().contains(id) || id == "cache.cocoapods") << id;
}

TEST(ConsultantCategory, IsFoundByItsId) {
    ASSERT_NE(consultantCategory("backups"), nullptr);
    EXPECT_EQ(consultantCategory("backups")->probeIDs, std::vector<std::string>{"backup.ios"});
    EXPECT_EQ(consultantCategory("package-managers"), nullptr);
}

TEST(ConsultantCategory, KeysAreTheIdsOwnWordsOrMadeOfThem) {
    EXPECT_EQ(consultantKey("some-new-id"), "someNewId");
    EXPECT_EQ(consultantKey("xcode-builds"), "xcodeBuilds");
    EXPECT_EQ(consultantKey("simulators"), "simulators");
    EXPECT_EQ(consultantKey("nodejs"), "nodejs");
    EXPECT_EQ(consultantKey("swift-apple"), "swiftApple");
    EXPECT_EQ(consultantKey("containers-vms"), "containersVMs");
    EXPECT_EQ(consultantKey("package-managers"), "packageManagers");
    EXPECT_EQ(consultantKey("caches"), "packageManagers");
    EXPECT_EQ(consultantKey("system"), "system");
    EXPECT_EQ(consultantKey("apps"), "apps");
    EXPECT_EQ(consultantKey("downloads"), "downloads");
    EXPECT_EQ(consultantKey("backups"), "backups");
}

TEST(ConsultantCategory, EveryCategoryHasItsTextsInBothLanguages) {
    for (const ConsultantCategory& category : consultantCategories()) {
        for (const char* what : {".title", ".explanation"}) {
            const std::string key = "consultant.category." + consultantKey(category.id) + what;
            EXPECT_NE(catalogText(key, Language::english), "") << key;
            EXPECT_NE(catalogText(key, Language::portuguese), "") << key;
        }
        EXPECT_EQ(consultantCategoryTitle(category.id),
                  localized("consultant.category." + consultantKey(category.id) + ".title"));
        EXPECT_EQ(consultantCategoryExplanation(category.id),
                  localized("consultant.category." + consultantKey(category.id) + ".explanation"));
    }
}

} // namespace
} // namespace vesko
