#include "InotifyEventStream.h"

#include "platform/WatchedTree.h"
#include "platform/posix/WalkCounts.h"
#include <atomic>
#include <gmock/gmock.h>

namespace vesko {
namespace {

using namespace std::chrono_literals;
using InotifyEndTest = testing::WatchedTree;
using testing::shortly;
using Clock = std::chrono::steady_clock;

/// How long ending takes.
Clock::duration ended(std::unique_ptr<InotifyEventStream>& stream) {
    const auto before = Clock::now();
    stream.reset();
    return Clock::now() - before;
}

TEST_F(InotifyEndTest, NoCallbackBeginsAfterIt) {
    for (int i = 0; i < 20; ++i) tree.folder(std::to_string(i));
    start(0.0);
    std::atomic<bool> isOver = false;
    std::thread writer([&] {
        for (int i = 0; !isOver; ++i) tree.file(std::to_string(i % 20) + "/file-" + std::to_string(i % 500));
    });
    for (int round = 0; round < 30; ++round) {
        EXPECT_TRUE(heard.waitForCalls(1));
        stream.reset();
        heard.forgetAll();
        std::this_thread::sleep_for(2ms);
        EXPECT_THAT(heard.calls(), ::testing::IsEmpty());
        stream = InotifyEventStream::make({root()}, 0.0, heard.receiver(), options());
    }
    isOver = true;
    writer.join();
}

TEST_F(InotifyEndTest, ItIsQuickWhileChangesAreHeldBack) {
    start(3600);
    tree.file("first");
    ASSERT_TRUE(heard.waitForCalls(1));
    tree.file("held-back");
    std::this_thread::sleep_for(60ms); // the thread waits for nothing but the latency
    EXPECT_LT(ended(stream), 900ms);
    EXPECT_EQ(heard.calls().size(), 1U);
}

TEST_F(InotifyEndTest, ItIsQuickInTheMiddleOfTheFirstLook) {
    for (int i = 0; i < 600; ++i) tree.folder(std::to_string(i / 50) + "/" + std::to_string(i));
    stream = InotifyEventStream::make({root()}, shortly, heard.receiver(), options());
    EXPECT_LT(ended(stream), 900ms);
}

TEST_F(InotifyEndTest, MakingOneLeavesTheLookingToItsThread) {
    for (int i = 0; i < 20; ++i) tree.folder(std::to_string(i));
    const WalkCounts before = callsOfThisThread;
    stream = InotifyEventStream::make({root()}, shortly, heard.receiver(), options());
    ASSERT_TRUE(becomes([](const auto& figures) { return figures.watched == 21; }));
    EXPECT_EQ(callsOfThisThread, before);
}

TEST_F(InotifyEndTest, ItWaitsForACallbackUnderWay) {
    start();
    std::atomic<bool> hasBegun = false;
    std::atomic<bool> hasReturned = false;
    heard.onCall([&] {
        hasBegun = true;
        std::this_thread::sleep_for(100ms);
        hasReturned = true;
    });
    tree.file("file");
    ASSERT_TRUE(becomes([&](const auto&) { return hasBegun.load(); }));
    stream.reset();
    EXPECT_TRUE(hasReturned);
}

TEST_F(InotifyEndTest, ItMayComeInACallback) {
    start();
    std::atomic<bool> hasEnded = false;
    Clock::duration taken{};
    heard.onCall([&] {
        taken = ended(stream);
        hasEnded = true;
    });
    tree.file("file");
    for (const auto end = Clock::now() + 20s; !hasEnded && Clock::now() < end;)
        std::this_thread::sleep_for(1ms);
    ASSERT_TRUE(hasEnded);
    EXPECT_LT(taken, 900ms);
    heard.forgetAll();
    tree.file("second");
    std::this_thread::sleep_for(100ms);
    EXPECT_THAT(heard.calls(), ::testing::IsEmpty());
}

TEST_F(InotifyEndTest, TheMakerOfThisSystemMakesOneThatTells) {
    const std::unique_ptr<FileEventStream> made = platformFileEvents()({root()}, shortly, heard.receiver());
    ASSERT_TRUE(made);
    tree.file("deep/inside/file");
    EXPECT_TRUE(heard.waitFor({path("deep/inside")}));
}

} // namespace
} // namespace vesko
