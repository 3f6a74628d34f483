#include "platform/macos/FakeCoreFoundation.h"
#include "platform/macos/FakeFileEvents.h"
#include "storage/FileEventStream.h"
#include "support/TempTree.h"
#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>
#include <thread>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using testing::fakeFileEvents;
using ::testing::IsEmpty;
using testing::TempTree;

class FSEventsStream : public ::testing::Test {
protected:
    FSEventsStream() : objectsBefore_(testing::liveObjects()) { testing::resetFakeFileEvents(); }
    /// Whatever a test does, nothing of the system's is left over.
    ~FSEventsStream() override {
        stream.reset();
        fakeFileEvents().runQueue();
        EXPECT_EQ(fakeFileEvents().liveStreams, 0);
        EXPECT_EQ(fakeFileEvents().liveQueues, 0);
        EXPECT_EQ(testing::liveObjects(), objectsBefore_);
        EXPECT_TRUE(receiver.expired()) << "the callback is still held";
    }

    void make(const std::vector<std::string>& paths, double latency = 3.0) {
        auto alive = std::make_shared<int>();
        receiver = alive;
        stream = platformFileEvents()(paths, latency, [this, alive](const std::vector<std::string>& changed) {
            told.push_back(changed);
            if (onCall) onCall();
        });
    }

    std::unique_ptr<FileEventStream> stream;
    std::weak_ptr<int> receiver;
    std::vector<std::vector<std::string>> told;
    std::function<void()> onCall;

private:
    std::size_t objectsBefore_;
};

TEST_F(FSEventsStream, IsAskedForWithTheTwoFlagsFromNowOnOnASerialQueueOfItsOwn) {
    make({"/nowhere/a", "/nowhere/b"}, 3.0);
    ASSERT_TRUE(stream);
    const auto& fake = fakeFileEvents();
    EXPECT_EQ(fake.flags, 3U);
    EXPECT_EQ(fake.since, 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(fake.latency, 3.0);
    EXPECT_THAT(fake.paths, ElementsAre("/nowhere/a", "/nowhere/b"));
    EXPECT_EQ(fake.queueLabel, "com.vesko.fswatcher");
    EXPECT_EQ(fake.queueClass, 0x11U);
    EXPECT_THAT(fake.calls, ElementsAre("create", "set queue", "start"));
}

TEST_F(FSEventsStream, IsStoppedInvalidatedAndReleasedInThisOrder) {
    make({"/nowhere"});
    fakeFileEvents().calls.clear();
    stream.reset();
    EXPECT_THAT(fakeFileEvents().calls, ElementsAre("stop", "invalidate", "release"));
}

TEST_F(FSEventsStream, ThePathsOfOneCallAreToldTogetherWhateverTheirFlagsSay) {
    make({"/nowhere"});
    fakeFileEvents().deliver({"/nowhere/a", "/nowhere/b", "/nowhere/a"});
    EXPECT_THAT(told, IsEmpty()) << "only the queue tells";
    fakeFileEvents().runQueue();
    EXPECT_THAT(told, ElementsAre(ElementsAre("/nowhere/a", "/nowhere/b", "/nowhere/a")));
}

TEST_F(FSEventsStream, NoPathsAreNoChange) {
    make({"/nowhere"});
    fakeFileEvents().deliver(std::vector<std::string>());
    fakeFileEvents().runQueue();
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(FSEventsStream, WhatIsNoListOfTextsIsNoChange) {
    make({"/nowhere"});
    fakeFileEvents().deliverObject(testing::makeNumber(5));
    fakeFileEvents().deliverObject(testing::makeText("/nowhere"));
    fakeFileEvents().runQueue();
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(FSEventsStream, ALinkIsWatchedWhereItLeadsToAndToldAsGiven) {
    const TempTree tree;
    tree.folder("real/inside");
    tree.link("link", tree.path("real"));
    const std::string real = std::filesystem::canonical(tree.path("real"));
    make({tree.path("link")});
    EXPECT_THAT(fakeFileEvents().paths, ElementsAre(real));
    fakeFileEvents().deliver({real, real + "/", real + "/inside/", real + "-beside", "/elsewhere"});
    fakeFileEvents().runQueue();
    const std::string link = tree.path("link");
    EXPECT_THAT(told, ElementsAre(ElementsAre(link, link, link + "/inside", real + "-beside", "/elsewhere")));
}

TEST_F(FSEventsStream, APathThatIsNoTextIsLeftOut) {
    make({"/nowhere/\xFF\xFE", "/nowhere/ok"});
    ASSERT_TRUE(stream);
    EXPECT_THAT(fakeFileEvents().paths, ElementsAre("/nowhere/ok"));
}

TEST_F(FSEventsStream, WithoutAPathThatCanBeWatchedThereIsNone) {
    make({"/nowhere/\xFF\xFE"});
    EXPECT_FALSE(stream);
    EXPECT_THAT(fakeFileEvents().calls, IsEmpty());
}

TEST_F(FSEventsStream, ARefusalToMakeOneIsNone) {
    fakeFileEvents().refusesToMake = true;
    make({"/nowhere"});
    EXPECT_FALSE(stream);
}

TEST_F(FSEventsStream, ARefusalToStartIsNoneAndIsCleanedUp) {
    fakeFileEvents().refusesToStart = true;
    make({"/nowhere"});
    EXPECT_FALSE(stream);
    EXPECT_THAT(fakeFileEvents().calls, ElementsAre("create", "set queue", "start", "invalidate", "release"));
}

TEST_F(FSEventsStream, NothingIsToldAfterItsEnd) {
    make({"/nowhere"});
    fakeFileEvents().deliver({"/nowhere/held-back"});
    stream.reset();
    fakeFileEvents().runQueue();
    EXPECT_THAT(told, IsEmpty());
}

/// The system has looked at the stream and is about to call when another thread ends it.
TEST_F(FSEventsStream, ACallbackThatHadBegunWhenItEndedTellsNothing) {
    make({"/nowhere"});
    fakeFileEvents().beforeCallback = [&] { stream.reset(); };
    fakeFileEvents().deliver({"/nowhere/a"});
    fakeFileEvents().runQueue();
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(FSEventsStream, ItMayEndInACallback) {
    make({"/nowhere"});
    onCall = [&] { stream.reset(); };
    fakeFileEvents().deliver({"/nowhere/a"});
    fakeFileEvents().deliver({"/nowhere/b"});
    fakeFileEvents().runQueue();
    EXPECT_THAT(told, ElementsAre(ElementsAre("/nowhere/a")));
}

TEST_F(FSEventsStream, ItsEndWaitsForACallbackUnderWay) {
    make({"/nowhere"});
    std::atomic<bool> hasBegun = false;
    std::atomic<bool> hasReturned = false;
    onCall = [&] {
        hasBegun = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        hasReturned = true;
    };
    fakeFileEvents().deliver({"/nowhere/a"});
    std::thread queue([] { fakeFileEvents().runQueue(); });
    while (!hasBegun) std::this_thread::yield();
    stream.reset();
    EXPECT_TRUE(hasReturned);
    queue.join();
}

TEST_F(FSEventsStream, OneAfterTheOtherTellsItsOwnChanges) {
    for (int round = 0; round < 3; ++round) {
        make({"/nowhere"});
        fakeFileEvents().deliver({"/nowhere/" + std::to_string(round)});
        fakeFileEvents().runQueue();
        stream.reset();
    }
    EXPECT_THAT(told,
                ElementsAre(ElementsAre("/nowhere/0"), ElementsAre("/nowhere/1"), ElementsAre("/nowhere/2")));
}

} // namespace
} // namespace vesko
