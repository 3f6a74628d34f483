#pragma once
#include "background/Updater.h"

namespace vesko::testing {

/// Is what a test makes it, and remembers what was asked.
class FakeUpdater final : public Updater {
public:
    bool automaticallyChecksForUpdates() const override { return automatic; }
    void setAutomaticallyChecksForUpdates(bool automatically) override { automatic = automatically; }
    bool canCheckForUpdates() const override { return canCheck; }
    void checkForUpdates() override {
        ++checks;
        canCheck = false;
        changes.notify();
    }
    const std::optional<NewerVersion>& newerVersion() const override { return newer; }
    void openPage() override { ++pagesOpened; }

    void set(bool can, std::optional<NewerVersion> version) {
        canCheck = can;
        newer = std::move(version);
        changes.notify();
    }

    bool automatic = true;
    bool canCheck = true;
    std::optional<NewerVersion> newer;
    int checks = 0;
    int pagesOpened = 0;
};

} // namespace vesko::testing
