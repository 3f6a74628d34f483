#include "orchestration/CleanupFixture.h"

namespace vesko::testing {
namespace {

class CleanupSelection : public CleanupTest {
protected:
    CleanupSelection() { make(); }

    void knows(const std::string& key, Safety safety) {
        parts.enrichmentStore->apply(
            {{EnrichmentKey{key}, Enrichment{"A name", safety, "A reason", {}, {}, {}, dates.now()}}});
    }
};

TEST_F(CleanupSelection, AGroupWithOneRiskyItemIsHalfSelectedAndRisky) {
    knows("url:/risky", Safety::risco);
    finds({group("cache.npm", {item("/safe", 10), item("/risky", 5)})});
    scan();
    EXPECT_EQ(*model->selectedItemIDs, urls({"/safe"}));
    EXPECT_EQ(model->selectionState(listed("cache.npm").items), TriState::mixed);
    EXPECT_EQ(model->resolveGroup(listed("cache.npm")).safety, Safety::risco);
    EXPECT_EQ(model->resolveGroup(listed("cache.npm")).reason, "A reason");
}

TEST_F(CleanupSelection, NothingButWhatIsSafeIsSelectedByDefault) {
    knows("url:/e", Safety::seguro);
    model->groups = {group("a", {item("/a")}, Safety::seguro), group("b", {item("/b")}, Safety::revisar),
                     group("c", {item("/c")}, Safety::risco), group("d", {item("/e")}, Safety::risco)};
    model->applyDefaultSelection();
    EXPECT_EQ(*model->selectedItemIDs, urls({"/a", "/e"}));
}

TEST_F(CleanupSelection, TheStateOfAListTellsNoneSomeAndAll) {
    const std::vector<ScannableItem> items{item("/a"), item("/b")};
    EXPECT_EQ(model->selectionState(std::vector<ScannableItem>{}), TriState::off);
    EXPECT_EQ(model->selectionState(items), TriState::off);
    model->setSelected(true, items[0]);
    EXPECT_EQ(model->selectionState(items), TriState::mixed);
    model->setSelected(true, items[1]);
    EXPECT_EQ(model->selectionState(items), TriState::on);
    model->setSelected(false, items[0]);
    EXPECT_EQ(model->selectionState(items), TriState::mixed);
    EXPECT_EQ(*model->userOverriddenIDs, urls({"/a", "/b"}));
}

TEST_F(CleanupSelection, TogglingAHalfSelectedGroupSelectsAllOfIt) {
    model->groups = {group("cache.npm", {item("/a"), item("/b")})};
    model->selectedItemIDs = urls({"/a"});
    model->toggleGroup(model->groups->front());
    EXPECT_EQ(*model->selectedItemIDs, urls({"/a", "/b"}));
    EXPECT_EQ(*model->userOverriddenIDs, urls({"/a", "/b"}));
    model->toggleGroup(model->groups->front());
    EXPECT_TRUE(model->selectedItemIDs->empty());
    model->toggleGroup(model->groups->front());
    EXPECT_EQ(*model->selectedItemIDs, urls({"/a", "/b"}));
}

TEST_F(CleanupSelection, TogglingABandReachesWhatTheSearchHides) {
    CleanupGroup hidden = group("cache.npm", {item("/a")});
    CleanupGroup shown = group("cache.pip", {item("/b")});
    hidden.title = "One";
    shown.title = "Two";
    model->groups = {hidden, shown, group("trash", {item("/t")})};
    model->searchText = "two";
    ASSERT_EQ(idsOf(model->filteredGroups()), std::vector<std::string>{"cache.pip"});
    model->toggleSection(sections::caches());
    EXPECT_EQ(*model->selectedItemIDs, urls({"/a", "/b"}));
}

TEST_F(CleanupSelection, ABandIsTheSameOnlyInAllThreeFields) {
    CleanupGroup other = group("cache.npm", {item("/a")});
    other.section.title = "caches";
    model->groups = {other, group("cache.pip", {item("/b"), item("/c")})};
    EXPECT_EQ(model->sectionItems(sections::caches()), (std::vector<ScannableItem>{item("/b"), item("/c")}));
}

TEST_F(CleanupSelection, ALoweredVerdictLeavesAChoiceOfThePersonAndTakesADefaultAway) {
    model->groups = {group("discover.caches", {item("/chosen"), item("/default")})};
    model->applyDefaultSelection();
    model->setSelected(true, item("/chosen"));
    knows("url:/chosen", Safety::revisar);
    knows("url:/default", Safety::revisar);
    model->reapplySelection({{"url:/chosen"}, {"url:/default"}});
    EXPECT_EQ(*model->selectedItemIDs, urls({"/chosen"}));
}

TEST_F(CleanupSelection, ARaisedVerdictSelectsWhatNobodyTouched) {
    model->groups = {group("discover.caches", {item("/a"), item("/b"), item("/c")}, Safety::revisar)};
    model->applyDefaultSelection();
    model->setSelected(false, item("/b"));
    for (const char* key : {"url:/a", "url:/b", "url:/c"}) knows(key, Safety::seguro);
    model->reapplySelection({});
    EXPECT_TRUE(model->selectedItemIDs->empty());
    model->reapplySelection({{"url:/a"}, {"url:/b"}});
    EXPECT_EQ(*model->selectedItemIDs, urls({"/a"}));
}

TEST_F(CleanupSelection, WhatCannotBeDeletedIsNeverSelected) {
    const ScannableItem stuck = item("/stuck", 10, "docker:unsupported");
    model->groups = {group("docker.images", {stuck, item("/a", 5)}),
                     group("docker.volumes", {item("/v", 5, "docker:unsupported")})};
    model->applyDefaultSelection();
    EXPECT_EQ(*model->selectedItemIDs, urls({"/a"}));
    EXPECT_EQ(model->selectionState(listed("docker.images").items), TriState::on);
    model->toggleGroup(listed("docker.images"));
    EXPECT_TRUE(model->selectedItemIDs->empty());
    model->toggleGroup(listed("docker.images"));
    EXPECT_EQ(*model->selectedItemIDs, urls({"/a"}));
    model->setSelected(true, stuck);
    model->reapplySelection({EnrichmentKey::unsupportedDockerObject()});
    model->toggleGroup(listed("docker.volumes"));
    model->toggleSection(listed("docker.images").section);
    model->toggleSection(listed("docker.images").section);
    EXPECT_EQ(*model->selectedItemIDs, urls({"/a"}));
    EXPECT_EQ(*model->userOverriddenIDs, urls({"/a"}));
    EXPECT_TRUE(model->groupFigures(listed("docker.images")).isSelectable);
    EXPECT_FALSE(model->groupFigures(listed("docker.volumes")).isSelectable);
    EXPECT_EQ(model->groupFigures(listed("docker.volumes")).selection, TriState::off);
    model->applyDefaultSelectionToNewGroups();
    EXPECT_EQ(*model->selectedItemIDs, urls({"/a"}));
}

TEST_F(CleanupSelection, BoxesDoNothingWhileSomethingIsDeleted) {
    model->groups = {group("cache.npm", {item("/a")})};
    model->phase = CleanupPhase::cleaning();
    model->setSelected(true, item("/a"));
    model->toggleGroup(model->groups->front());
    model->toggleSection(sections::caches());
    EXPECT_TRUE(model->selectedItemIDs->empty());
    EXPECT_TRUE(model->userOverriddenIDs->empty());
    model->phase = CleanupPhase::idle();
    model->setSelected(true, item("/a"));
    EXPECT_EQ(*model->selectedItemIDs, urls({"/a"}));
}

TEST_F(CleanupSelection, TheSelectedGroupsAreCutDownToWhatIsSelected) {
    model->groups = {group("cache.npm", {item("/a", 3), item("/b", 2)}), group("trash", {item("/t", 9)}),
                     group("cache.pip", {item("/c", 1)})};
    model->selectedItemIDs = urls({"/b", "/c", "/elsewhere"});
    EXPECT_EQ(model->selectedBytes(), 3);
    EXPECT_EQ(model->selectedCount(), 2);
    EXPECT_EQ(model->selectedGroupCount(), 2);
    const std::vector<CleanupGroup> selected = model->selectedGroups();
    ASSERT_EQ(idsOf(selected), (std::vector<std::string>{"cache.npm", "cache.pip"}));
    EXPECT_EQ(pathsOf(selected[0]), std::vector<std::string>{"/b"});
    EXPECT_EQ(selected[0].subtitle, (*model->groups)[0].subtitle);
}

TEST_F(CleanupSelection, EveryChangeOfTheSelectionIsTold) {
    model->groups = {group("cache.npm", {item("/a")})};
    int told = 0;
    const auto watch = model->changes.subscribe([&] { ++told; });
    const std::uint64_t before = model->selectionRevision();
    model->toggleGroup(model->groups->front());
    EXPECT_GT(told, 0);
    EXPECT_GT(model->selectionRevision(), before);
    const std::uint64_t verdicts = model->verdictRevision();
    told = 0;
    knows("url:/a", Safety::risco);
    EXPECT_GT(told, 0);
    EXPECT_GT(model->verdictRevision(), verdicts);
}

class CleanupSelectionDeathTest : public CleanupSelection {
protected:
    // The fixture has threads.
    CleanupSelectionDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(CleanupSelectionDeathTest, SumsBeyond63BitsStopTheProcess) {
    const std::string message = "a sum of bytes does not fit 63 bits";
    model->groups = {group("cache.npm", {item("/a", INT64_MAX)}), group("cache.pip", {item("/b", 1)})};
    model->applyDefaultSelection();
    EXPECT_DEATH(model->recoverableBytes(), message);
    EXPECT_DEATH(model->selectedBytes(), message);
    EXPECT_DEATH(model->sectionSegments(), message);
    EXPECT_DEATH(deleteSelected(), message);
    model->groups = {group("cache.npm", {item("/a", INT64_MAX), item("/b", 1)})};
    EXPECT_DEATH(model->groupFigures(model->groups->front()), message);
    finds({group("cache.npm", {item("/a", INT64_MAX)}), group("cache.pip", {item("/b", 1)})});
    EXPECT_DEATH(scan(), message);
}

TEST_F(CleanupSelection, SumsOfAll63BitsAreShown) {
    model->groups = {group("cache.npm", {item("/a", INT64_MAX - 1)}), group("cache.pip", {item("/b", 1)})};
    model->applyDefaultSelection();
    EXPECT_EQ(model->recoverableBytes(), INT64_MAX);
    EXPECT_EQ(model->selectedBytes(), INT64_MAX);
}

} // namespace
} // namespace vesko::testing
