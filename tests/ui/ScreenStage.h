#pragma once
#include "app/ProgramLife.h"
#include "orchestration/CleanupViewModel.h"
#include "storage/FakeEventStream.h"
#include "storage/HomeViewModel.h"
#include "storage/ScriptedFolderSizes.h"
#include "support/TempTree.h"
#include "ui/FakeUpdater.h"
#include "ui/MainWindow.h"
#include "ui/RecordingPermission.h"
#include <atomic>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace vesko::testing {

/// Remembers what was asked for.
class RecordingFiles final : public FileRevealing {
public:
    void reveal(const FileURL& url) override { revealed.push_back(url); }
    std::vector<FileURL> revealed;
};

/// A volume with fixed figures.
class FixedVolume final : public DiskVolumeReading {
public:
    DiskVolumeInfo readVolume() const override {
        ++readings;
        return volume;
    }
    mutable std::atomic<int> readings = 0;
    DiskVolumeInfo volume{500'000'000'000, 83'420'000'000, "Casa", AvailableSpaceMetric::standard};
};

/// Real view models in a home of their own, with the screens' models over them. No scan and no measurement
/// starts by itself; a test writes the view models' fields as those would.
class ScreenStage {
public:
    /// `adjust` may change what the Cleanup view model stands on.
    explicit ScreenStage(
        bool hasAccess = true,
        std::function<void(CleanupViewModelParts&)> adjust = [](CleanupViewModelParts&) {});
    /// Finishes what still runs, as the program does at its end.
    ~ScreenStage();

    /// Takes over what has changed and runs what is due.
    void settle();
    /// Shows the window and waits for its first frame.
    void show();
    /// The settings window, or null while there is none.
    QQuickWindow* settingsWindow() const;

    TempTree home;
    ProgramLife life;
    std::shared_ptr<RecordingFiles> files = std::make_shared<RecordingFiles>();
    std::shared_ptr<FixedVolume> volumes = std::make_shared<FixedVolume>();
    std::shared_ptr<ScriptedFolderSizes> sizes = std::make_shared<ScriptedFolderSizes>();
    FakeEventStreams streams;
    std::shared_ptr<CleanupViewModel> model;
    std::shared_ptr<HomeViewModel> homeModel;
    bool access;
    int settingsOpened = 0;
    int scansStarted = 0; ///< they find nothing
    WindowModel shell;
    CleanupScreen cleanup;
    HomeScreen homeScreen;
    std::shared_ptr<FakeUpdater> updater = std::make_shared<FakeUpdater>();
    std::shared_ptr<RecordingPermission> permission = std::make_shared<RecordingPermission>();
    NotificationPreferences storedPreferences;
    int preferencesSaved = 0;
    QList<QUrl> linksOpened;
    SettingsModel settings;
    MainWindow window;

private:
    std::shared_ptr<CleanupViewModel> makeModel(const std::function<void(CleanupViewModelParts&)>& adjust);
    std::shared_ptr<HomeViewModel> makeHomeModel();
    SettingsModelParts settingsParts();
    void settleWindow(QQuickWindow* shown);
};

/// An item at a path that need not exist.
ScannableItem item(const std::string& path, std::int64_t size, const std::string& key = {});
/// A group of a catalog row with these items.
CleanupGroup group(const std::string& id, std::vector<ScannableItem> items);
/// A list as a developer's computer gives it: five bands, every verdict, a container object that can't be
/// deleted, a name of 255 characters.
std::vector<CleanupGroup> sampleGroups();
/// The buckets of a disk in use, without the remainder.
std::vector<StorageCategoryBucket> sampleBuckets();
/// The dashboard as the last step of a measurement shows it: these buckets, those of them that are still
/// being measured, and what the cleanup list says.
void showDashboard(ScreenStage& stage, std::vector<StorageCategoryBucket> buckets,
                   const std::set<std::string>& pending = {});
/// The groups as the result of a finished scan, selected by default.
void showGroups(CleanupViewModel& model, std::vector<CleanupGroup> groups);

} // namespace vesko::testing
