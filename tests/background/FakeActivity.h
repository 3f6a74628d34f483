#pragma once
#include "background/PeriodicActivity.h"
#include <vector>

namespace vesko::testing {

/// The platform's side of a periodic activity, in the hands of the test.
struct FakePlatform {
    /// Makes activities that the test fires.
    PeriodicActivityMaker maker() {
        return [this](const PeriodicActivitySettings& settings) {
            made.push_back(settings);
            return std::make_unique<Activity>(*this);
        };
    }
    /// A turn comes.
    void fire() {
        block([this] { ++finished; });
    }

    std::vector<PeriodicActivitySettings> made;
    int scheduled = 0;
    int finished = 0; ///< how often the platform was told so
    int ended = 0;
    PeriodicActivity::Block block;

private:
    struct Activity final : PeriodicActivity {
        explicit Activity(FakePlatform& platform) : platform_(platform) {}
        Activity(const Activity&) = delete;
        Activity& operator=(const Activity&) = delete;
        ~Activity() override { ++platform_.ended; }
        void schedule(Block given) override {
            ++platform_.scheduled;
            platform_.block = std::move(given);
        }
        FakePlatform& platform_;
    };
};

} // namespace vesko::testing
