#include "orchestration/CleanupFixture.h"

#include "base/ByteFormat.h"
#include <atomic>
#include <filesystem>

namespace vesko::testing {
namespace {

namespace fs = std::filesystem;

class CleanupDeletion : public CleanupTest {
protected:
    CleanupDeletion() { make(); }

    /// A file below the tree, as an item of that size.
    ScannableItem file(std::string_view relative, std::int64_t size = 1000) {
        return item(tree.file(relative).path(), size);
    }
    bool isThere(std::string_view relative) { return fs::exists(tree.path(relative)); }
    static std::string success(std::int64_t count, std::int64_t bytes) {
        return localized("cleanup.success %1$lld %2$@", count, formatBytes(bytes));
    }
};

TEST_F(CleanupDeletion, WithNothingSelectedThereIsNoErrorAndNothingIsKept) {
    model->groups = {group("trash", {file("a")}, Safety::revisar)};
    deleteSelected();
    EXPECT_EQ(*model->cleanupMessage, success(0, 0));
    EXPECT_FALSE(model->lastCleanupDate->has_value());
    EXPECT_FALSE(model->lastCleanupFreedBytes->has_value());
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_TRUE(isThere("a"));
    EXPECT_FALSE(saved());
}

TEST_F(CleanupDeletion, WhatIsSelectedGoesForGoodAndTheRestStays) {
    tree.file("folder/deep/inside");
    model->groups = {group("cache.npm", {item(tree.path("folder"), 500), file("b", 20)}),
                     group("trash", {file("t", 7)})};
    model->foundTotalBytes = 527;
    model->selectedItemIDs = urls({tree.path("folder"), tree.path("t")});
    model->userOverriddenIDs = urls({tree.path("t"), tree.path("b")});
    deleteSelected();
    EXPECT_FALSE(isThere("folder"));
    EXPECT_FALSE(isThere("t"));
    EXPECT_TRUE(isThere("b"));
    ASSERT_EQ(idsOf(*model->groups), std::vector<std::string>{"cache.npm"});
    EXPECT_EQ(pathsOf(model->groups->front()), std::vector<std::string>{tree.path("b")});
    EXPECT_TRUE(model->selectedItemIDs->empty());
    EXPECT_EQ(*model->userOverriddenIDs, urls({tree.path("b")}));
    EXPECT_EQ(*model->foundTotalBytes, 527);
    EXPECT_EQ(*model->lastCleanupDate, dates.now());
    EXPECT_EQ(*model->lastCleanupFreedBytes, 507);
    EXPECT_EQ(*model->cleanupMessage, success(2, 507));
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_FALSE(model->deletionProgress->has_value());
    const auto snapshot = saved();
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(idsOf(snapshot->groups), std::vector<std::string>{"cache.npm"});
    EXPECT_EQ(snapshot->lastCleanupDate, dates.now());
    EXPECT_EQ(snapshot->lastCleanupFreedBytes, 507);
}

TEST_F(CleanupDeletion, OnlyTheGivenItemsGo) {
    model->groups = {group("cache.npm", {file("a"), file("b"), file("c")})};
    model->selectedItemIDs = urls({tree.path("a"), tree.path("b")});
    deleteSelected(urls({tree.path("b"), tree.path("c")}));
    EXPECT_TRUE(isThere("a"));
    EXPECT_FALSE(isThere("b"));
    EXPECT_TRUE(isThere("c"));
    EXPECT_EQ(*model->selectedItemIDs, urls({tree.path("a")}));
}

TEST_F(CleanupDeletion, WhenAllFailTheListIsAsBefore) {
    const std::vector<CleanupGroup> before{
        group("cache.npm", {item(tree.path("gone1")), item(tree.path("gone2"))})};
    model->groups = before;
    model->applyDefaultSelection();
    deleteSelected();
    EXPECT_EQ(*model->groups, before);
    EXPECT_EQ(*model->cleanupMessage, localized("error.delete.failed"));
    EXPECT_EQ(model->phase->kind, CleanupPhase::Kind::error);
    EXPECT_TRUE(model->phase->message.starts_with("gone1: "));
    EXPECT_NE(model->phase->message.find("\ngone2: "), std::string::npos);
    EXPECT_EQ(*model->selectedItemIDs, urls({tree.path("gone1"), tree.path("gone2")}));
    EXPECT_FALSE(model->lastCleanupDate->has_value());
    EXPECT_FALSE(saved());
}

TEST_F(CleanupDeletion, OneFailureOfThreeKeepsTheLastCleanupAsItWas) {
    const Date earlier = dateFromUnixSeconds(5);
    model->lastCleanupDate = earlier;
    model->lastCleanupFreedBytes = 3;
    model->groups = {group("cache.npm", {file("a", 30), item(tree.path("gone"), 20), file("b", 10)})};
    model->applyDefaultSelection();
    deleteSelected();
    EXPECT_EQ(*model->cleanupMessage, localized("cleanup.partialFailure %1$lld %2$lld", 2, 1));
    EXPECT_EQ(model->phase->kind, CleanupPhase::Kind::error);
    EXPECT_FALSE(isThere("a"));
    EXPECT_FALSE(isThere("b"));
    EXPECT_EQ(pathsOf(model->groups->front()), std::vector<std::string>{tree.path("gone")});
    EXPECT_EQ(*model->selectedItemIDs, urls({tree.path("gone")}));
    EXPECT_EQ(*model->lastCleanupDate, earlier);
    EXPECT_EQ(*model->lastCleanupFreedBytes, 3);
    EXPECT_FALSE(saved());
}

TEST_F(CleanupDeletion, WhatFailedIsTriedAgainWithTheNextPress) {
    model->groups = {group("cache.npm", {item(tree.path("late"), 20)})};
    model->applyDefaultSelection();
    deleteSelected();
    ASSERT_EQ(model->phase->kind, CleanupPhase::Kind::error);
    tree.file("late");
    deleteSelected();
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_EQ(*model->cleanupMessage, success(1, 20));
    EXPECT_FALSE(isThere("late"));
}

TEST_F(CleanupDeletion, AFolderAndWhatLiesInItGoOnce) {
    tree.file("canary", "safe");
    tree.file("p/c/x");
    model->groups = {group("cache.npm", {item(tree.path("p"), 100)}),
                     group("trash", {item(tree.path("p/c"), 40)}),
                     group("cache.pip", {item(tree.path("p"), 100)})};
    model->applyDefaultSelection();
    deleteSelected();
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_EQ(*model->cleanupMessage, success(2, 100));
    EXPECT_TRUE(model->groups->empty());
    EXPECT_TRUE(model->selectedItemIDs->empty());
    EXPECT_EQ(bytesOf(tree.url("canary")), "safe");
}

TEST_F(CleanupDeletion, ALinkGoesAndItsTargetStays) {
    tree.file("target/precious", "kept");
    tree.link("link", tree.path("target"));
    model->groups = {group("cache.npm", {item(tree.path("link"))})};
    model->applyDefaultSelection();
    deleteSelected();
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_FALSE(fs::is_symlink(tree.path("link")));
    EXPECT_EQ(bytesOf(tree.url("target/precious")), "kept");
}

TEST_F(CleanupDeletion, WhatTheToolCannotDeleteIsRefusedAndStays) {
    ScannableItem stuck = file("stuck");
    stuck.enrichmentKey = EnrichmentKey::unsupportedDockerObject();
    model->groups = {group("docker.images", {stuck})};
    model->selectedItemIDs = urls({tree.path("stuck")}); // past every rule that keeps it out
    deleteSelected();
    EXPECT_EQ(model->phase->kind, CleanupPhase::Kind::error);
    EXPECT_TRUE(isThere("stuck"));
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"docker.images"});
}

TEST_F(CleanupDeletion, TheExecutorOfThePartsIsLeftAlone) {
    class Never final : public CleanupExecuting {
    public:
        std::expected<void, CleanupError> deleteItem(const ScannableItem&, const CommandRunning&,
                                                     const RemovalProgress&) const override {
            ++calls;
            return {};
        }
        mutable std::atomic<int> calls = 0;
    };
    const auto never = std::make_shared<Never>();
    parts.executor = never;
    make();
    model->groups = {group("cache.npm", {file("a")})};
    model->applyDefaultSelection();
    deleteSelected();
    EXPECT_FALSE(isThere("a"));
    EXPECT_EQ(never->calls, 0);
}

TEST_F(CleanupDeletion, APressWhileAScanRunsStopsThePassesAndDeletesNothing) {
    model->groups = {group("cache.npm", {file("a")})};
    model->applyDefaultSelection();
    model->phase = CleanupPhase::scanning();
    model->isEnriching = true;
    model->isReviewing = true;
    model->analyzingKeys = std::unordered_set<EnrichmentKey>{{"url:/x"}};
    deleteSelected();
    EXPECT_FALSE(model->isAIBusy());
    EXPECT_TRUE(isThere("a"));
    EXPECT_EQ(*model->phase, CleanupPhase::scanning());
    EXPECT_FALSE(model->cleanupMessage->has_value());
}

TEST_F(CleanupDeletion, NothingElseChangesTheListMeanwhile) {
    for (int index = 0; index < 200; ++index) tree.file("many/" + std::to_string(index));
    model->groups = {group("cache.npm", {item(tree.path("many"), 100)}),
                     group("trash", {file("t")}, Safety::revisar)};
    model->applyDefaultSelection();
    bool hasTried = false;
    const auto watch = model->changes.subscribe([&] {
        if (hasTried || !model->deletionProgress->has_value()) return;
        hasTried = true;
        model->setSelected(true, item(tree.path("t")));
        model->toggleGroup(model->groups->front());
        model->toggleSection(sections::system());
    });
    const TaskHandle<void> deletion = beginDeletion();
    ASSERT_TRUE(loop.waitFor([&] { return model->phase->kind == CleanupPhase::Kind::cleaning; }));
    const TaskHandle<void> second = beginDeletion();
    finish(second);
    finish(deletion);
    EXPECT_TRUE(hasTried);
    EXPECT_TRUE(isThere("t"));
    EXPECT_FALSE(isThere("many"));
    EXPECT_EQ(*model->cleanupMessage, success(1, 100));
    EXPECT_TRUE(model->selectedItemIDs->empty());
}

TEST_F(CleanupDeletion, TheProgressShowsEachItemAndStandsOnlyMeanwhile) {
    model->groups = {group("cache.npm", {file("a", 50), file("b", 30)}),
                     group("trash", {file("com.example.tool", 20)})};
    model->applyDefaultSelection();
    std::vector<DeletionProgress> seen;
    bool isOutOfPlace = false;
    const auto watch = model->changes.subscribe([&] {
        if (!model->deletionProgress->has_value()) return;
        isOutOfPlace = isOutOfPlace || model->phase->kind != CleanupPhase::Kind::cleaning;
        if (seen.empty() || seen.back().itemsDone != (*model->deletionProgress)->itemsDone)
            seen.push_back(**model->deletionProgress);
    });
    deleteSelected();
    EXPECT_FALSE(isOutOfPlace);
    ASSERT_EQ(seen.size(), 3u);
    const std::string npm = probeTitle("cache.npm");
    EXPECT_EQ(seen[0], (DeletionProgress{0, 3, 0, 100, npm}));
    EXPECT_EQ(seen[1], (DeletionProgress{1, 3, 50, 100, npm}));
    EXPECT_EQ(seen[2], (DeletionProgress{2, 3, 80, 100, "Tool"}));
    EXPECT_FALSE(model->deletionProgress->has_value());
}

TEST_F(CleanupDeletion, ThePassesAreNotStartedAgain) {
    int asked = 0;
    parts.isEnrichmentAvailable = [&] {
        ++asked;
        return false;
    };
    parts.isReviewAvailable = parts.isEnrichmentAvailable;
    make();
    model->groups = {group("cache.npm", {file("a")})};
    model->applyDefaultSelection();
    deleteSelected();
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_EQ(asked, 0);
}

TEST_F(CleanupDeletion, TheProgramsEndStopsBetweenTwoItems) {
    constexpr int count = 3'000;
    std::vector<ScannableItem> items;
    for (int index = 0; index < count; ++index)
        items.push_back(file("f" + std::to_string(index), 10'000 - index));
    model->groups = {group("cache.npm", items)};
    model->applyDefaultSelection();
    bool hasEnded = false;
    const auto watch = model->changes.subscribe([&] {
        if (hasEnded || !model->deletionProgress->has_value() || (*model->deletionProgress)->itemsDone < 3)
            return;
        hasEnded = true;
        registry.cancelAll();
    });
    deleteSelected();
    ASSERT_TRUE(hasEnded);
    EXPECT_FALSE(isThere("f2"));
    EXPECT_TRUE(isThere("f" + std::to_string(count - 1)));
    EXPECT_FALSE(model->phase->isBusy());
    // What the list says has gone is what has gone, in the told order, and no item was left half way.
    const std::vector<std::string> left = pathsOf(model->groups->front());
    for (int index = 0; index < count; ++index)
        ASSERT_EQ(isThere("f" + std::to_string(index)), index >= count - static_cast<int>(left.size()));
    EXPECT_EQ(left.front(), tree.path("f" + std::to_string(count - static_cast<int>(left.size()))));
    EXPECT_EQ(model->selectedItemIDs->size(), left.size());
    EXPECT_EQ(*model->cleanupMessage,
              success(count - static_cast<std::int64_t>(left.size()), model->lastCleanupFreedBytes->value()));
}

TEST_F(CleanupDeletion, ManySmallItemsGoInTheirOrderEachWithItsOwnOutcome) {
    constexpr int count = 2'500;
    std::vector<ScannableItem> items;
    for (int index = 0; index < count; ++index) {
        const std::string name = "many/f" + std::to_string(index);
        items.push_back(index % 100 == 7 ? item(tree.path(name), 10'000 - index)
                                         : file(name, 10'000 - index));
    }
    model->groups = {group("cache.npm", items), group("trash", {file("last", 5)})};
    model->applyDefaultSelection();
    std::vector<std::int64_t> done;
    std::vector<std::int64_t> bytes;
    const auto watch = model->changes.subscribe([&] {
        if (!model->deletionProgress->has_value()) return;
        const DeletionProgress& progress = **model->deletionProgress;
        if (!done.empty() && done.back() == progress.itemsDone) return;
        done.push_back(progress.itemsDone);
        bytes.push_back(progress.bytesFreed);
    });
    deleteSelected();
    // Each item stood in the progress once, none was left out.
    ASSERT_EQ(done.size(), static_cast<std::size_t>(count + 1));
    std::int64_t freed = 0;
    for (int index = 0; index <= count; ++index) {
        ASSERT_EQ(done[index], index);
        ASSERT_EQ(bytes[index], freed);
        if (index % 100 != 7) freed += 10'000 - index;
    }
    EXPECT_EQ(*model->cleanupMessage,
              localized("cleanup.partialFailure %1$lld %2$lld", count + 1 - count / 100, count / 100));
    EXPECT_TRUE(model->phase->message.starts_with("f7: "));
    const std::size_t second = model->phase->message.find("\nf107: ");
    ASSERT_NE(second, std::string::npos);
    EXPECT_LT(second, model->phase->message.find("\nf207: "));
    ASSERT_EQ(idsOf(*model->groups), std::vector<std::string>{"cache.npm"});
    ASSERT_EQ(model->groups->front().items.size(), static_cast<std::size_t>(count / 100));
    EXPECT_EQ(model->groups->front().items[1].url, tree.url("many/f107"));
    EXPECT_EQ(model->selectedItemIDs->size(), static_cast<std::size_t>(count / 100));
    EXPECT_FALSE(isThere("last"));
}

/// A worker that was asked for many items comes back between them, so that nothing waits for all of them.
TEST_F(CleanupDeletion, TheLoopHasItsTurnsWhileManySmallItemsGo) {
    constexpr int count = 3'000;
    std::vector<ScannableItem> items;
    for (int index = 0; index < count; ++index) items.push_back(file("f" + std::to_string(index)));
    model->groups = {group("cache.npm", items)};
    model->applyDefaultSelection();
    int turnsMeanwhile = 0;
    std::int64_t lastDone = 0;
    const TaskHandle<void> deletion = beginDeletion();
    ASSERT_TRUE(loop.waitFor(
        [&] {
            const auto& progress = *model->deletionProgress;
            if (progress && progress->itemsDone > lastDone && progress->itemsDone < count) {
                lastDone = progress->itemsDone;
                ++turnsMeanwhile;
            }
            return deletion.done();
        },
        std::chrono::seconds(60)));
    EXPECT_GE(turnsMeanwhile, 2);
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
}

} // namespace
} // namespace vesko::testing
