#include "platform/UpdaterContract.h"

#include "background/FeedUpdater.h"
#include "background/UnavailableUpdater.h"
#include "support/ManualLoop.h"
#include "support/MemoryUserDefaults.h"

namespace vesko::testing {
namespace {

using namespace std::chrono_literals;

constexpr Duration longCheck = 10s;

/// A source that takes its time, and has nothing new.
class SlowVersions final : public VersionSource {
public:
    int asked = 0;

    Task<std::optional<NewerVersion>> newest() override {
        ++asked;
        co_await sleepFor(longCheck);
        co_return std::nullopt;
    }
};

/// The feed of versions; without an address, nobody to ask.
class Feed {
public:
    Feed() = default;
    Feed(const Feed&) = delete;
    Feed& operator=(const Feed&) = delete;
    ~Feed() {
        registry_.cancelAll();
        loop_.drain();
    }
    std::shared_ptr<Updater> make() {
        return std::make_shared<FeedUpdater>(
            FeedUpdaterParts{.tasks = {&loop_, nullptr, &loop_, {}, &registry_},
                             .defaults = defaults_,
                             .source = source_,
                             .runningVersion = "1.9",
                             .openLink = {}});
    }
    std::shared_ptr<Updater> makeWithNobody() { return std::make_shared<UnavailableUpdater>(); }
    void endCheck() { loop_.advance(longCheck); }
    int checks() {
        loop_.drain();
        return source_->asked;
    }

private:
    ManualLoop loop_;
    TaskRegistry registry_;
    std::shared_ptr<MemoryUserDefaults> defaults_ = std::make_shared<MemoryUserDefaults>();
    std::shared_ptr<SlowVersions> source_ = std::make_shared<SlowVersions>();
};
INSTANTIATE_TYPED_TEST_SUITE_P(OverAFeed, UpdaterContract, Feed);

} // namespace
} // namespace vesko::testing
