#pragma once
#include "base/Observation.h"
#include <optional>
#include <string>

namespace vesko {

/// A version that is newer than the running one.
struct NewerVersion {
    std::string version; ///< as its publisher writes it, one line
    std::string notes;   ///< plain text, maybe of many lines, maybe empty
    std::string page;    ///< a link that begins with "https://", or empty: there is no page to open
    bool operator==(const NewerVersion&) const = default;
};

/// Looks for newer versions of the program. Nothing is downloaded or installed by itself where a system has
/// no framework for it: the person is told, and shown the page. Main thread; nothing here blocks.
class Updater {
public:
    Updater() = default;
    Updater(const Updater&) = delete;
    Updater& operator=(const Updater&) = delete;
    virtual ~Updater() = default;

    /// Whether it checks by itself from time to time; kept from one start to the next.
    virtual bool automaticallyChecksForUpdates() const = 0;
    virtual void setAutomaticallyChecksForUpdates(bool automatically) = 0;

    /// False while a check is running, and always where there is nobody to ask.
    virtual bool canCheckForUpdates() const = 0;
    /// Begins a check; does nothing while it can't check. A check that fails says nothing.
    virtual void checkForUpdates() = 0;

    /// What the checks have found so far; nothing where the framework of the system shows it by itself.
    virtual const std::optional<NewerVersion>& newerVersion() const = 0;
    /// Opens the page of the newer version; does nothing where there is none.
    virtual void openPage() = 0;

    /// Begins the checks that run by themselves; called once the window stands. Further calls do nothing.
    virtual void start() {}

    /// Told whenever an answer of the questions above may have changed.
    ChangeSource changes;
};

} // namespace vesko
