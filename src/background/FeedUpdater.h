#pragma once
#include "background/Updater.h"
#include "background/VersionSource.h"
#include "base/UserDefaults.h"
#include "concurrency/Concurrency.h"
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace vesko {

/// A boolean; without it, or with anything else under this key, checks run by themselves.
inline constexpr std::string_view automaticUpdateChecksKey = "vesko.automaticallyChecksForUpdates";

struct FeedUpdaterParts {
    TaskContext tasks;
    std::shared_ptr<UserDefaults> defaults;
    std::shared_ptr<VersionSource> source;
    std::string runningVersion;
    std::function<void(const std::string& link)> openLink;
};

/// Asks a source for the newest version: when it starts and once a day while the person wants that, and
/// whenever the person asks. It tells of a newer version and opens its page; it installs nothing.
class FeedUpdater final : public Updater {
public:
    explicit FeedUpdater(FeedUpdaterParts parts);

    bool automaticallyChecksForUpdates() const override;
    /// Kept at once. Switching it on begins with a check.
    void setAutomaticallyChecksForUpdates(bool automatically) override;
    bool canCheckForUpdates() const override { return !isChecking_; }
    void checkForUpdates() override;
    const std::optional<NewerVersion>& newerVersion() const override { return newer_; }
    void openPage() override;
    void start() override;

private:
    Task<void> checkEveryDay();
    Task<void> check();
    void take(std::optional<NewerVersion> newest);

    FeedUpdaterParts parts_;
    bool started_ = false;
    bool isChecking_ = false;
    std::optional<NewerVersion> newer_;
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
    CancelOnDrop<void> everyDay_;
    CancelOnDrop<void> running_;
};

} // namespace vesko
