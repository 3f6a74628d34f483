#include "probes/UnusedAppsProbe.h"

#include "support/builders.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;

class ScriptedQuery final : public SpotlightQuerying {
public:
    std::vector<ScannableItem> unusedApplications(std::int64_t olderThanDays) const override {
        asked.push_back(olderThanDays);
        return items;
    }
    std::vector<ScannableItem> items;
    mutable std::vector<std::int64_t> asked;
};

TEST(UnusedAppsProbe, PassesTheAgeLimitOnAndGroupsWhatIsFound) {
    const auto query = std::make_shared<ScriptedQuery>();
    query->items = {testing::item("/Applications/A.app", 300), testing::item("/Applications/B.app", 200)};
    const UnusedAppsProbe probe(testing::metadata("apps.unused", "uninstaller"), query, 90);
    const ProbeResult result = probe.run(ProbeContext());
    EXPECT_THAT(query->asked, ElementsAre(90));
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->id, "apps.unused");
    EXPECT_THAT(testing::paths(result.group->items),
                ElementsAre("/Applications/A.app", "/Applications/B.app"));
    EXPECT_TRUE(result.errors.empty());
}

TEST(UnusedAppsProbe, WithoutApplicationsThereIsNoGroupAndNoError) {
    const UnusedAppsProbe probe(testing::metadata("apps.unused"), std::make_shared<ScriptedQuery>(), 90);
    EXPECT_EQ(probe.run(ProbeContext()), ProbeResult());
}

} // namespace
} // namespace vesko
