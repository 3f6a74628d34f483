#include "storage/FileSystemWatcher.h"
#include "storage/FakeEventStream.h"
#include "support/ManualLoop.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using testing::FakeEventStreams;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Paths = std::set<std::string>;

/// The test's loop serves as the workers, so that the watcher's queue moves when the test drains it.
class FileSystemWatcherTest : public ::testing::Test {
protected:
    std::shared_ptr<FileSystemWatcher> watcherOf(std::vector<std::string> paths) {
        return std::make_shared<FileSystemWatcher>(loop, std::move(paths), 3.0, streams.maker(),
                                                   [this](const Paths& changed) { told.push_back(changed); });
    }

    ManualLoop loop;
    FakeEventStreams streams;
    std::vector<Paths> told;
};

TEST_F(FileSystemWatcherTest, WithoutPathsThereIsNoStream) {
    const auto watcher = watcherOf({});
    watcher->start();
    loop.drain();
    EXPECT_THAT(streams.requests, IsEmpty());
}

TEST_F(FileSystemWatcherTest, StoppingWithoutAStreamDoesNothing) {
    const auto watcher = watcherOf({"/a"});
    watcher->stop();
    loop.drain();
    EXPECT_THAT(streams.requests, IsEmpty());
}

TEST_F(FileSystemWatcherTest, SeveralEventsOfOneCallAreToldAtOnceOnTheQueue) {
    const auto watcher = watcherOf({"/a", "/b"});
    watcher->start();
    loop.drain();
    ASSERT_THAT(streams.requests, SizeIs(1));
    EXPECT_THAT(streams.requests[0]->paths, ElementsAre("/a", "/b"));
    EXPECT_EQ(streams.requests[0]->latency, 3.0);
    streams.requests[0]->onEvents({"/b/y", "/a/x"});
    EXPECT_THAT(told, IsEmpty()) << "told on the stream's thread instead of the queue";
    loop.drain();
    EXPECT_THAT(told, ElementsAre(Paths{"/a/x", "/b/y"}));
}

TEST_F(FileSystemWatcherTest, APathThatIsReportedTwiceIsToldOnce) {
    const auto watcher = watcherOf({"/a"});
    watcher->start();
    loop.drain();
    streams.requests[0]->onEvents({"/a/x", "/a/y", "/a/x"});
    loop.drain();
    ASSERT_THAT(told, SizeIs(1));
    EXPECT_THAT(told[0], ElementsAre("/a/x", "/a/y"));
}

TEST_F(FileSystemWatcherTest, NoPathsAreNoChange) {
    const auto watcher = watcherOf({"/a"});
    watcher->start();
    loop.drain();
    streams.requests[0]->onEvents({});
    loop.drain();
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(FileSystemWatcherTest, StartingTwiceMakesOneStream) {
    const auto watcher = watcherOf({"/a"});
    watcher->start();
    watcher->start();
    loop.drain();
    EXPECT_THAT(streams.requests, SizeIs(1));
}

TEST_F(FileSystemWatcherTest, StartAndStopAreDoneInTheOrderOfAsking) {
    const auto watcher = watcherOf({"/a"});
    watcher->start();
    watcher->stop();
    loop.drain();
    ASSERT_THAT(streams.requests, SizeIs(1));
    EXPECT_TRUE(streams.requests[0]->isEnded);
    streams.requests[0]->onEvents({"/a"});
    loop.drain();
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(FileSystemWatcherTest, AStoppedWatcherCanBeStartedAgain) {
    const auto watcher = watcherOf({"/a"});
    watcher->start();
    watcher->stop();
    watcher->start();
    loop.drain();
    ASSERT_THAT(streams.requests, SizeIs(2));
    EXPECT_FALSE(streams.requests[1]->isEnded);
}

TEST_F(FileSystemWatcherTest, ARefusedStreamCanBeAskedForAgain) {
    const auto watcher = watcherOf({"/a"});
    streams.refuses = true;
    watcher->start();
    loop.drain();
    streams.refuses = false;
    watcher->start();
    loop.drain();
    EXPECT_THAT(streams.requests, SizeIs(2));
}

TEST_F(FileSystemWatcherTest, OneThatIsGoneBeforeItsTurnStartsNothing) {
    watcherOf({"/a"})->start();
    loop.drain();
    EXPECT_THAT(streams.requests, IsEmpty());
}

TEST_F(FileSystemWatcherTest, ItsEndEndsTheStream) {
    auto watcher = watcherOf({"/a"});
    watcher->start();
    loop.drain();
    watcher.reset();
    EXPECT_TRUE(streams.requests[0]->isEnded);
}

} // namespace
} // namespace vesko
