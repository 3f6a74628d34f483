#include "background/FeedUpdater.h"

#include "support/ManualLoop.h"
#include "support/MemoryUserDefaults.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Suspends until the test goes on, whatever is cancelled meanwhile.
class Waiting {
public:
    explicit Waiting(std::function<void()>* goOn) : goOn_(goOn) {}
    bool await_ready() const noexcept { return false; }
    template <class Promise> void await_suspend(std::coroutine_handle<Promise> waiting) const {
        *goOn_ = [waiting] { waiting.resume(); };
    }
    void await_resume() const noexcept {}

private:
    std::function<void()>* goOn_;
};

/// Answers with what the test says, after the time that it says.
class ScriptedVersions final : public VersionSource {
public:
    std::optional<NewerVersion> published;
    Duration takes = 3s;
    bool noticesCancelling = true;
    std::function<void()> goOn;
    int asked = 0;

    Task<std::optional<NewerVersion>> newest() override {
        ++asked;
        if (!noticesCancelling) {
            const Waiting waiting(&goOn);
            co_await waiting;
            co_return published;
        }
        co_await sleepFor(takes);
        co_return published;
    }
};

class FeedUpdaterTest : public ::testing::Test {
protected:
    ~FeedUpdaterTest() override {
        updater_.reset();
        registry_.cancelAll();
        loop_.drain();
    }
    NewerVersion version(const std::string& number) {
        return {.version = number, .notes = "Faster.", .page = "https://example.org/" + number};
    }
    std::unique_ptr<FeedUpdater> make() {
        auto updater = std::make_unique<FeedUpdater>(
            FeedUpdaterParts{.tasks = context_,
                             .defaults = defaults_,
                             .source = source_,
                             .runningVersion = "1.9",
                             .openLink = [this](const std::string& link) { opened_.push_back(link); }});
        told_ = updater->changes.subscribe([this] { ++changes_; });
        return updater;
    }

    ManualLoop loop_;
    TaskRegistry registry_;
    TaskContext context_{&loop_, nullptr, &loop_, {}, &registry_};
    std::shared_ptr<testing::MemoryUserDefaults> defaults_ = std::make_shared<testing::MemoryUserDefaults>();
    std::shared_ptr<ScriptedVersions> source_ = std::make_shared<ScriptedVersions>();
    std::vector<std::string> opened_;
    int changes_ = 0;
    ChangeSource::Subscription told_;
    std::unique_ptr<FeedUpdater> updater_ = make();
};

TEST_F(FeedUpdaterTest, ChecksOnceItIsStartedAndThenOnceADay) {
    loop_.advance(48h);
    EXPECT_EQ(source_->asked, 0);
    updater_->start();
    updater_->start();
    loop_.drain();
    EXPECT_EQ(source_->asked, 1);
    loop_.advance(24h - 1s);
    EXPECT_EQ(source_->asked, 1);
    loop_.advance(1s);
    EXPECT_EQ(source_->asked, 2);
    loop_.advance(72h);
    EXPECT_EQ(source_->asked, 5);
}

TEST_F(FeedUpdaterTest, ChecksByItselfOnlyWhileThePersonWantsIt) {
    EXPECT_TRUE(updater_->automaticallyChecksForUpdates());
    updater_->setAutomaticallyChecksForUpdates(false);
    updater_->start();
    loop_.advance(100h);
    EXPECT_EQ(source_->asked, 0);
    updater_->setAutomaticallyChecksForUpdates(true);
    loop_.advance(1s);
    EXPECT_EQ(source_->asked, 1);
    loop_.advance(30h);
    EXPECT_EQ(source_->asked, 2);
    updater_->setAutomaticallyChecksForUpdates(false);
    loop_.advance(100h);
    EXPECT_EQ(source_->asked, 2);
}

TEST_F(FeedUpdaterTest, TheSwitchIsKeptAndToldAtOnce) {
    updater_->setAutomaticallyChecksForUpdates(false);
    EXPECT_EQ(defaults_->boolean("vesko.automaticallyChecksForUpdates"), false);
    EXPECT_EQ(changes_, 1);
    updater_->setAutomaticallyChecksForUpdates(false);
    EXPECT_EQ(changes_, 1);
    EXPECT_FALSE(make()->automaticallyChecksForUpdates());
    defaults_->setString(automaticUpdateChecksKey, "no");
    EXPECT_TRUE(make()->automaticallyChecksForUpdates());
}

TEST_F(FeedUpdaterTest, CannotCheckWhileACheckIsRunning) {
    EXPECT_TRUE(updater_->canCheckForUpdates());
    updater_->checkForUpdates();
    EXPECT_FALSE(updater_->canCheckForUpdates());
    EXPECT_EQ(changes_, 1);
    updater_->checkForUpdates();
    loop_.advance(2s);
    EXPECT_FALSE(updater_->canCheckForUpdates());
    loop_.advance(1s);
    EXPECT_TRUE(updater_->canCheckForUpdates());
    EXPECT_EQ(changes_, 2);
    EXPECT_EQ(source_->asked, 1);
}

TEST_F(FeedUpdaterTest, TellsOfANewerVersionAndOpensItsPage) {
    source_->published = version("1.10");
    updater_->openPage();
    updater_->checkForUpdates();
    loop_.advance(3s);
    EXPECT_EQ(updater_->newerVersion(), version("1.10"));
    EXPECT_THAT(opened_, IsEmpty());
    updater_->openPage();
    EXPECT_THAT(opened_, ElementsAre("https://example.org/1.10"));
}

TEST_F(FeedUpdaterTest, TheSameAnOlderOrAnOddVersionSaysNothing) {
    for (const char* number : {"1.9", "1.9.0", "1.8", "1.10-", "newer", ""}) {
        source_->published = version(number);
        updater_->checkForUpdates();
        loop_.advance(3s);
        EXPECT_EQ(updater_->newerVersion(), std::nullopt) << number;
        EXPECT_TRUE(updater_->canCheckForUpdates());
    }
    EXPECT_EQ(source_->asked, 6);
}

TEST_F(FeedUpdaterTest, ACheckThatFailsLeavesWhatIsKnownAndOneThatTakesItBackDoesNot) {
    source_->published = version("2.0");
    updater_->checkForUpdates();
    loop_.advance(3s);
    source_->published.reset();
    updater_->checkForUpdates();
    loop_.advance(3s);
    EXPECT_EQ(updater_->newerVersion(), version("2.0"));
    EXPECT_TRUE(updater_->canCheckForUpdates());
    source_->published = version("1.9");
    updater_->checkForUpdates();
    loop_.advance(3s);
    EXPECT_EQ(updater_->newerVersion(), std::nullopt);
}

TEST_F(FeedUpdaterTest, OnlyPagesThatAreReadSafelyAreOpened) {
    source_->published = version("2.0");
    for (const char* page : {"http://example.org", "file:///etc/passwd", "", "javascript:alert(1)"}) {
        source_->published->page = page;
        updater_->checkForUpdates();
        loop_.advance(3s);
        ASSERT_TRUE(updater_->newerVersion());
        updater_->openPage();
    }
    EXPECT_THAT(opened_, IsEmpty());
}

TEST_F(FeedUpdaterTest, ACheckThatIsRunningEndsWithIt) {
    updater_->start();
    loop_.advance(1s);
    EXPECT_EQ(source_->asked, 1);
    updater_.reset();
    loop_.advance(100h);
    EXPECT_EQ(changes_, 1);
    EXPECT_EQ(registry_.size(), 0U);
}

TEST_F(FeedUpdaterTest, AnAnswerThatComesWhenItHasGoneIsDropped) {
    source_->noticesCancelling = false;
    source_->published = version("2.0");
    updater_->checkForUpdates();
    loop_.drain();
    ASSERT_TRUE(source_->goOn);
    updater_.reset();
    source_->goOn();
    loop_.drain();
    EXPECT_EQ(changes_, 1);
    EXPECT_EQ(registry_.size(), 0U);
}

} // namespace
} // namespace vesko
