#pragma once
#include "background/Updater.h"

namespace vesko {

/// Stands where there is nobody to ask for newer versions. It can't check; the switch is off and stays so.
class UnavailableUpdater final : public Updater {
public:
    bool automaticallyChecksForUpdates() const override { return false; }
    void setAutomaticallyChecksForUpdates(bool) override {}
    bool canCheckForUpdates() const override { return false; }
    void checkForUpdates() override {}
    const std::optional<NewerVersion>& newerVersion() const override { return none_; }
    void openPage() override {}

private:
    std::optional<NewerVersion> none_;
};

} // namespace vesko
