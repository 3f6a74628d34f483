#pragma once
#include "app/ProgramLife.h"
#include "orchestration/CleanupViewModel.h"
#include "support/TempTree.h"
#include "ui/MainWindow.h"
#include <memory>
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
    DiskVolumeInfo readVolume() const override { return volume; }
    DiskVolumeInfo volume{500'000'000'000, 83'420'000'000, "Casa", AvailableSpaceMetric::standard};
};

/// A real view model in a home of its own, with the screens' models over it. No scan starts by itself; a test
/// writes the view model's fields as a scan would.
class ScreenStage {
public:
    explicit ScreenStage(bool hasAccess = true);
    /// Finishes what still runs, as the program does at its end.
    ~ScreenStage();

    /// Takes over what has changed and runs what is due.
    void settle();
    /// Shows the window and waits for its first frame.
    void show();

    TempTree home;
    ProgramLife life;
    std::shared_ptr<RecordingFiles> files = std::make_shared<RecordingFiles>();
    std::shared_ptr<FixedVolume> volumes = std::make_shared<FixedVolume>();
    std::shared_ptr<CleanupViewModel> model;
    bool access;
    int settingsOpened = 0;
    WindowModel shell;
    CleanupScreen cleanup;
    HomeScreen homeScreen;
    MainWindow window;

private:
    std::shared_ptr<CleanupViewModel> makeModel();
};

/// An item at a path that need not exist.
ScannableItem item(const std::string& path, std::int64_t size, const std::string& key = {});
/// A group of a catalog row with these items.
CleanupGroup group(const std::string& id, std::vector<ScannableItem> items);
/// A list as a developer's computer gives it: five bands, every verdict, a container object that can't be
/// deleted, a name of 255 characters.
std::vector<CleanupGroup> sampleGroups();
/// The groups as the result of a finished scan, selected by default.
void showGroups(CleanupViewModel& model, std::vector<CleanupGroup> groups);

} // namespace vesko::testing
