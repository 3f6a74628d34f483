#include "orchestration/RemovalRelay.h"

#include "execution/SystemCleanupExecutor.h"
#include "orchestration/CleanupFixture.h"
#include <atomic>
#include <thread>

namespace vesko::testing {
namespace {

using Clock = std::chrono::steady_clock;
using News = RemovalRelay::News;

RemovalRelay::Outcome failure(const std::string& path) {
    return std::unexpected(
        RemovalFailure{FileURL(path), RemovalFailureKind::busy, std::make_error_code(std::errc::io_error)});
}

TEST(RemovalRelay, OutcomesArriveOnceEachAndInTheirOrder) {
    ManualLoop loop;
    std::vector<RemovalRelay::Outcome> heard;
    const auto relay = std::make_shared<RemovalRelay>(
        loop, [&](const News& news) { heard.insert(heard.end(), news.settled.begin(), news.settled.end()); });
    constexpr int count = 20'000;
    std::atomic<bool> isDone = false;
    std::thread worker([&] {
        for (int index = 0; index < count; ++index) {
            relay->report(index);
            relay->settle(index % 10 == 3 ? failure("/" + std::to_string(index)) : RemovalRelay::Outcome());
        }
        isDone = true;
    });
    EXPECT_TRUE(loop.waitFor([&] { return isDone.load(); }));
    worker.join();
    relay->close();
    ASSERT_EQ(heard.size(), static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index)
        ASSERT_EQ(heard[index],
                  index % 10 == 3 ? failure("/" + std::to_string(index)) : RemovalRelay::Outcome());
}

TEST(RemovalRelay, BytesBelongToTheItemBehindTheSettledOnes) {
    ManualLoop loop;
    std::vector<News> heard;
    const auto relay = std::make_shared<RemovalRelay>(loop, [&](const News& news) { heard.push_back(news); });
    relay->report(500);
    loop.drain();
    relay->settle({});
    relay->report(7);
    relay->close();
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_EQ(heard[0].bytesInside, 500);
    EXPECT_TRUE(heard[0].settled.empty());
    EXPECT_EQ(heard[1].bytesInside, 7);
    EXPECT_EQ(heard[1].settled.size(), 1U);
}

TEST(RemovalRelay, OnlyOneMessageIsOnItsWay) {
    ManualLoop loop;
    int heard = 0;
    const auto relay = std::make_shared<RemovalRelay>(loop, [&](const News&) { ++heard; });
    const auto end = Clock::now() + std::chrono::milliseconds(300);
    while (Clock::now() < end) relay->report(1);
    EXPECT_EQ(loop.drain(), 1U);
    EXPECT_EQ(heard, 1);
}

TEST(RemovalRelay, NothingIsToldAfterItsEnd) {
    ManualLoop loop;
    int heard = 0;
    const auto relay = std::make_shared<RemovalRelay>(loop, [&](const News&) { ++heard; });
    relay->report(1);
    relay->close();
    EXPECT_EQ(heard, 1);
    loop.drain();
    EXPECT_EQ(heard, 1);
}

/// What the removal says inside one large item, ten times a second and now and then a little more often,
/// reaches the screen: the relay drops nothing that this pace needs.
TEST(RemovalRelay, WhatComesAtTheRemovalsPaceArrivesEachTime) {
    ManualLoop loop;
    std::vector<std::int64_t> heard;
    const auto relay =
        std::make_shared<RemovalRelay>(loop, [&](const News& news) { heard.push_back(news.bytesInside); });
    for (int index = 1; index <= 10; ++index) {
        std::this_thread::sleep_for(std::chrono::milliseconds(60));
        relay->report(index);
        loop.drain();
    }
    EXPECT_EQ(heard, (std::vector<std::int64_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

class DeletionPace : public CleanupTest {};

/// The whole road: a large item in the view model, its progress as a screen sees it.
TEST_F(DeletionPace, TheProgressMovesFiveTimesASecondInsideOneLargeItem) {
    make();
    constexpr int folders = 60;
    constexpr int files = 1'000;
    for (int folder = 0; folder < folders; ++folder) {
        const std::string path = tree.folder("large/" + std::to_string(folder)).path() + "/";
        for (int index = 0; index < files; ++index) std::ofstream(path + std::to_string(index)).put('x');
    }
    constexpr std::int64_t size = std::int64_t{folders} * files * 4096;
    model->groups = {group("cache.npm", {item(tree.path("large"), size)})};
    model->applyDefaultSelection();
    std::vector<std::int64_t> bytes;
    auto last = Clock::now();
    Clock::duration longest{};
    const auto watch = model->changes.subscribe([&] {
        const auto& progress = *model->deletionProgress;
        if (!progress || (!bytes.empty() && progress->bytesFreed == bytes.back())) return;
        const auto now = Clock::now();
        if (!bytes.empty()) longest = std::max(longest, now - last);
        last = now;
        bytes.push_back(progress->bytesFreed);
        EXPECT_EQ(progress->itemsDone, 0);
        EXPECT_EQ(progress->itemsInAll, 1);
    });
    const auto begun = Clock::now();
    const TaskHandle<void> deletion = beginDeletion();
    ASSERT_TRUE(loop.waitFor([&] { return deletion.done(); }, std::chrono::seconds(60)));
    const double seconds = std::chrono::duration<double>(Clock::now() - begun).count();
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    if (seconds < 0.4) GTEST_SKIP() << "this machine removes it in " << seconds << " s";
    EXPECT_TRUE(std::ranges::is_sorted(bytes));
    EXPECT_GE(static_cast<double>(bytes.size()), seconds * 5 - 1) << "in " << seconds << " s";
    EXPECT_GT(bytes.back(), 0);
    RecordProperty("longest_ms",
                   static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(longest).count()));
}

} // namespace
} // namespace vesko::testing
