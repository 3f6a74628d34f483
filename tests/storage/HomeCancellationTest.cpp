#include "storage/HomeFixture.h"
#include <gmock/gmock.h>

// What is cut short, at whatever moment.
namespace vesko::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::IsEmpty;

constexpr int places = 9; ///< that a whole measurement asks for

class HomeCancellationTest : public HomeTest {
protected:
    /// Does it once, while the so-and-so-manieth place is being measured.
    void atCall(int number, std::function<void()> act) {
        sizes->onCall = [this, number, act = std::move(act), count = 0](const std::string&) mutable {
            if (++count == number) act();
        };
    }
    void expectAtRest() const {
        EXPECT_FALSE(*screen->isLoadingInventory);
        EXPECT_THAT(*screen->pendingBucketIDs, IsEmpty());
    }
    std::string savedBytes() const { return bytesOf(store->fileURL()); }
};

TEST_F(HomeCancellationTest, ALoadThatIsBegunAgainAtAnyMomentEndsInTheSameFigures) {
    makeScreen();
    refresh();
    const BucketBytes expected = shown();
    for (int call = 1; call <= places; ++call) {
        std::filesystem::remove(store->fileURL().path());
        makeScreen();
        atCall(call, [this] { screen->refresh(model); });
        refresh();
        EXPECT_EQ(shown(), expected) << call;
        expectAtRest();
        EXPECT_TRUE(store->load()) << call;
    }
}

TEST_F(HomeCancellationTest, ALoadThatIsCutShortKeepsNothing) {
    for (int call = 1; call <= places; ++call) {
        makeScreen();
        sizes->forgetCalls();
        atCall(call, [this] { registry.cancelAll(); });
        refresh();
        EXPECT_TRUE(registry.empty()) << call;
        EXPECT_FALSE(store->load()) << call;
        // Places that were on their way are still answered, one for each bucket at most.
        EXPECT_LE(sizes->calls().size(), static_cast<std::size_t>(call) + 3) << call;
        sizes->onCall = nullptr;
        refresh();
        EXPECT_EQ(figure("library"), 100) << call;
        expectAtRest();
        std::filesystem::remove(store->fileURL().path());
    }
}

TEST_F(HomeCancellationTest, AReMeasurementThatIsCutShortShowsWholeFiguresLeavesNothingBusyAndKeepsNothing) {
    for (int call = 1; call <= places; ++call) {
        setSize("Documents", 20);
        setSize("Library", 100);
        sizes->onCall = nullptr;
        std::filesystem::remove(store->fileURL().path());
        makeScreen();
        streams.requests.clear();
        watch();
        refresh();
        const std::string before = savedBytes();
        setSize("Documents", 2000);
        setSize("Library", 10'000);
        streams.requests.at(0)->onEvents(
            {tree.path("Documents"), tree.path("Library"), tree.path("Movies"), tree.path("Applications")});
        atCall(call, [this] { registry.cancelAll(); });
        loop.advance(6s);
        expectAtRest();
        EXPECT_THAT(figure("documents"), ::testing::AnyOf(25, 2005)) << call;
        EXPECT_THAT(figure("library"), ::testing::AnyOf(100, 10'000)) << call;
        EXPECT_EQ(figure("media"), 40) << call;
        EXPECT_EQ(savedBytes(), before) << call;
    }
}

TEST_F(HomeCancellationTest, AChangeWhileTheVolumeIsReadBeginsTheReMeasurementAnew) {
    makeScreen();
    watch();
    refresh();
    change("Movies/new");
    setSize("Movies", 90);
    volumes->onReading = [this, first = true]() mutable {
        if (std::exchange(first, false)) screen->noteChangedPaths({tree.path("Movies")});
    };
    sizes->forgetCalls();
    loop.advance(5500ms);
    EXPECT_THAT(sizes->calls(), IsEmpty());
    expectAtRest();
    loop.advance(5s);
    EXPECT_EQ(figure("media"), 90);
    expectAtRest();
}

TEST_F(HomeCancellationTest, AChangeInTheQuietSecondBeforeAFullMeasurementTakesItsPlace) {
    cache(11min);
    makeScreen();
    refresh();
    screen->startWatching();
    tree.folder("Movies");
    loop.drain();
    loop.advance(500ms);
    screen->noteChangedPaths({tree.path("Movies/new")});
    loop.advance(4900ms);
    EXPECT_THAT(sizes->calls(), IsEmpty());
    loop.advance(200ms);
    EXPECT_EQ(figure("media"), 40);
    EXPECT_EQ(figure("documents"), 1);
    expectAtRest();
}

TEST_F(HomeCancellationTest, TheScreensEndInTheMiddleOfAnyStepIsQuiet) {
    for (int call = 1; call <= places; ++call) {
        makeScreen();
        atCall(call, [this] { screen.reset(); });
        refresh();
        EXPECT_TRUE(registry.empty()) << call;
    }
    makeScreen();
    screen->refresh(model);
    screen.reset();
    loop.drain();
    EXPECT_TRUE(registry.empty());
}

TEST_F(HomeCancellationTest, AScreenThatIsGoneMeasuresNoChangeAnyMore) {
    makeScreen();
    watch();
    refresh();
    change("Movies/new");
    sizes->forgetCalls();
    screen.reset();
    loop.advance(60s);
    EXPECT_THAT(sizes->calls(), IsEmpty());
    EXPECT_TRUE(registry.empty());
}

/// The disk goes on only when the test says so.
TEST_F(HomeCancellationTest, AChangeDuringTheFirstMeasurementIsMeasuredAfterIt) {
    ManualLoop disk;
    home.tasks.workers = &disk;
    makeScreen();
    screen->startWatching();
    screen->refresh(model);
    const auto step = [&] {
        loop.drain();
        disk.drain();
    };
    while (sizes->calls().size() < 4) step();
    setSize("Documents", 2000);
    screen->noteChangedPaths({tree.path("Documents/new")});
    loop.advance(40s);
    EXPECT_FALSE(store->load());
    while (!registry.empty()) step();
    EXPECT_EQ(figure("documents"), 2005);
    EXPECT_EQ(figure("library"), 100);
    EXPECT_EQ(std::ranges::count(sizes->calls(), tree.path("Documents")), 2);
    EXPECT_EQ(std::ranges::count(sizes->calls(), tree.path("Library")), 1);
    EXPECT_EQ(store->load()->buckets[1].bytes, 2005);
    expectAtRest();
    screen.reset();
    step();
}

} // namespace
} // namespace vesko::testing
