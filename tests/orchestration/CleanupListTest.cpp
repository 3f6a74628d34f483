#include "orchestration/CleanupFixture.h"

#include "orchestration/ConsultantCategory.h"

namespace vesko::testing {
namespace {

class CleanupList : public CleanupTest {
protected:
    CleanupList() { make(); }
};

CleanupGroup titled(std::string title, const std::string& id = "cache.npm") {
    CleanupGroup made = group(id, {item("/" + id)});
    made.title = std::move(title);
    return made;
}

TEST_F(CleanupList, BlanksAndLineEndsAreNoSearch) {
    model->groups = {titled("One"), titled("Two", "trash")};
    model->searchText = " \t\n ";
    EXPECT_EQ(model->filteredGroups(), *model->groups);
}

TEST_F(CleanupList, TheSearchIgnoresCaseAndKeepsAccentsApart) {
    model->groups = {titled("Ícones É"), titled("Icones E", "trash")};
    model->searchText = "  ícones é\n";
    EXPECT_EQ(idsOf(model->filteredGroups()), std::vector<std::string>{"cache.npm"});
    model->searchText = "ICONES";
    EXPECT_EQ(idsOf(model->filteredGroups()), std::vector<std::string>{"trash"});
}

TEST_F(CleanupList, TheSearchFindsTheBandsTitleInTheCurrentLanguage) {
    model->groups = {titled("x"), titled("y", "trash")};
    const std::string english = sectionTitle("caches");
    model->searchText = english;
    EXPECT_EQ(idsOf(model->filteredGroups()), std::vector<std::string>{"cache.npm"});
    setCurrentLanguage(Language::portuguese);
    const std::string portuguese = sectionTitle("system");
    ASSERT_NE(portuguese, catalogText("section.system", Language::english));
    model->searchText = portuguese;
    EXPECT_EQ(idsOf(model->filteredGroups()), std::vector<std::string>{"trash"});
    model->searchText = catalogText("section.system", Language::english);
    EXPECT_TRUE(model->filteredGroups().empty());
}

TEST_F(CleanupList, ItemsAreNotSearched) {
    model->groups = {titled("One")};
    model->searchText = "cache.npm";
    EXPECT_TRUE(model->filteredGroups().empty());
}

TEST_F(CleanupList, BandsStandInTheirOrderWithTheirGroupsInListOrder) {
    model->groups = {group("trash", {item("/t")}), group("cache.npm", {item("/n")}),
                     group("logs.stale", {item("/l")}), group("xcode.archives", {item("/x")})};
    const auto bands = model->cleanupSections();
    ASSERT_EQ(bands.size(), 3u);
    EXPECT_EQ(bands[0].section.id, "system");
    EXPECT_EQ(idsOf(bands[0].groups), (std::vector<std::string>{"trash", "logs.stale"}));
    EXPECT_EQ(bands[1].section.id, "caches");
    EXPECT_EQ(bands[2].section.id, "development");
}

TEST_F(CleanupList, AGroupWithoutBytesIsInNoBandButInItsItems) {
    model->groups = {group("cache.npm", {item("/n", 0)}), group("cache.pip", {item("/p", 1)}),
                     group("trash", {item("/t", 0)})};
    const auto bands = model->cleanupSections();
    ASSERT_EQ(bands.size(), 1u);
    EXPECT_EQ(idsOf(bands[0].groups), std::vector<std::string>{"cache.pip"});
    EXPECT_EQ(model->sectionItems(sections::caches()).size(), 2u);
    EXPECT_EQ(model->firstGroupIDOfSection("caches"), "cache.pip");
    EXPECT_EQ(model->firstGroupIDOfSection("system"), std::nullopt);
}

TEST_F(CleanupList, TheBarHasASegmentForEveryBand) {
    CleanupGroup odd = group("odd", {item("/o", 4)});
    odd.section = {"other", "Other", 9};
    model->groups = {group("cache.npm", {item("/n", 10)}),
                     group("cache.pip", {item("/p", 5)}),
                     group("trash", {item("/t", 3)}),
                     group("xcode.archives", {item("/x", 2)}),
                     group("apps.unused", {item("/a", 2)}),
                     group("downloads.stale", {item("/d", 2)}),
                     group("installers.forgotten", {item("/i", 2)}),
                     odd};
    const auto segments = model->sectionSegments();
    std::vector<std::pair<std::string, SegmentColor>> colors;
    for (const StorageSegment& segment : segments) {
        colors.emplace_back(segment.id, segment.color);
        EXPECT_EQ(segment.title, sectionTitle(segment.id));
        EXPECT_TRUE(segment.isInteractive);
    }
    EXPECT_EQ(colors, (std::vector<std::pair<std::string, SegmentColor>>{{"system", SegmentColor::purple},
                                                                         {"apps", SegmentColor::cyan},
                                                                         {"caches", SegmentColor::purple},
                                                                         {"development", SegmentColor::green},
                                                                         {"downloads", SegmentColor::pink},
                                                                         {"installers", SegmentColor::slate},
                                                                         {"other", SegmentColor::muted}}));
    EXPECT_EQ(segments[2].bytes, 15);
}

TEST_F(CleanupList, ASingleItemGivesItsGroupTheName) {
    EXPECT_EQ(model->displayTitle(group("discover.caches", {item("/h/com.example.tool")})), "Tool");
    const CleanupGroup two = group("discover.caches", {item("/h/com.example.tool"), item("/h/b")});
    EXPECT_EQ(model->displayTitle(two), probeTitle("discover.caches"));
}

TEST_F(CleanupList, SpecialFamiliesKeepTheCatalogsTitle) {
    for (const char* id : {"trash", "logs.stale", "cache.npm", "project.artifacts", "docker.images"})
        EXPECT_EQ(model->displayTitle(group(id, {item("/h/com.example.tool")})), probeTitle(id)) << id;
    CleanupGroup tool = group("xcode.archives", {item("/h/com.example.tool")});
    EXPECT_EQ(model->displayTitle(tool), "Tool");
    tool.providerID = {"docker"};
    EXPECT_EQ(model->displayTitle(tool), probeTitle("xcode.archives"));
}

TEST_F(CleanupList, TitlesFollowTheLanguageAndUnknownGroupsKeepTheirOwn) {
    CleanupGroup cached = group("trash", {item("/a"), item("/b")});
    cached.title = "in another language";
    setCurrentLanguage(Language::portuguese);
    EXPECT_EQ(model->displayTitle(cached), catalogText("probe.trash.title", Language::portuguese));
    cached.id = "not.in.the.catalog";
    EXPECT_EQ(model->displayTitle(cached), "in another language");
}

TEST_F(CleanupList, ItemsOfACacheAreNamedByTheirPlace) {
    const std::string title = probeTitle("cache.pnpm");
    const CleanupGroup both = group("cache.pnpm", {item("/h/Library/pnpm/store"), item("/h/elsewhere")});
    EXPECT_EQ(model->itemTitle(both.items[0], both), title + " · Library/pnpm");
    EXPECT_EQ(model->itemTitle(both.items[1], both), title);
    const CleanupGroup one = group("cache.pnpm", {item("/h/Library/pnpm/store")});
    EXPECT_EQ(model->itemTitle(one.items[0], one), title);
    const CleanupGroup other = group("trash", {item("/h/com.example.tool"), item("/b")});
    EXPECT_EQ(model->itemTitle(other.items[0], other), "Tool");
}

TEST_F(CleanupList, AGroupIsAsRiskyAsItsRiskiestItem) {
    const auto knows = [&](const std::string& key, Safety safety, EnrichmentSource source) {
        parts.enrichmentStore->apply(
            {{EnrichmentKey{key}, Enrichment{"n", safety, "of " + key, {}, source, "model-1", dates.now()}}});
    };
    const CleanupGroup all = group("trash", {item("/a"), item("/b"), item("/c")});
    ResolvedEnrichment resolved = model->resolveGroup(all);
    EXPECT_EQ(resolved, (ResolvedEnrichment{probeTitle("trash"), Safety::seguro, all.baselineReason, false,
                                            false, false}));
    knows("url:/a", Safety::revisar, EnrichmentSource::heuristic);
    knows("url:/b", Safety::revisar, EnrichmentSource::model);
    resolved = model->resolveGroup(all);
    EXPECT_EQ(resolved.safety, Safety::revisar);
    EXPECT_EQ(resolved.reason, "of url:/a");
    EXPECT_TRUE(resolved.isAIRefined);
    EXPECT_FALSE(resolved.isAnalyzing);
    model->analyzingKeys = std::unordered_set<EnrichmentKey>{{"url:/c"}};
    EXPECT_TRUE(model->resolveGroup(all).isAnalyzing);
    EXPECT_FALSE(model->resolveGroup(all).isAIDiscovered);
    model->aiDiscoveredURLs = urls({"/c"});
    EXPECT_TRUE(model->resolveGroup(all).isAIDiscovered);
    const CleanupGroup risky = group("trash", {item("/a")}, Safety::risco);
    EXPECT_EQ(model->resolveGroup(risky).safety, Safety::risco);
    EXPECT_EQ(model->resolveGroup(risky).reason, risky.baselineReason);
}

TEST_F(CleanupList, ACategoryLeadsToItsFirstGroupWithBytes) {
    model->groups = {group("trash", {item("/t", 0)}), group("logs.stale", {item("/l", 1)})};
    EXPECT_EQ(model->firstGroupIDOfCategory("system"), "logs.stale");
    EXPECT_EQ(model->firstGroupIDOfCategory("backups"), std::nullopt);
    EXPECT_EQ(model->firstGroupIDOfCategory("no such category"), std::nullopt);
}

TEST_F(CleanupList, ARequestToScrollIsNewEachTime) {
    model->requestScrollToCategory("caches");
    const auto first = *model->scrollToConsultantCategoryTrigger;
    EXPECT_EQ(*model->pendingConsultantCategoryID, "caches");
    EXPECT_TRUE(*model->scrollToConsultantCategoryPending);
    ASSERT_TRUE(first);
    model->requestScrollToCategory("caches");
    EXPECT_NE(*model->scrollToConsultantCategoryTrigger, first);
    EXPECT_EQ(first->size(), 36u);
}

TEST_F(CleanupList, NothingAsksForTheLargestGroup) {
    finds({group("cache.npm", {item("/n")})});
    scan();
    EXPECT_FALSE(model->scrollToLargestGroupTrigger->has_value());
    EXPECT_FALSE(*model->scrollToLargestGroupPending);
}

} // namespace
} // namespace vesko::testing
