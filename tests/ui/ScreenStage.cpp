#include "ui/ScreenStage.h"
#include "base/Paths.h"
#include "core/GroupBuilders.h"
#include "core/ProbeCatalog.h"
#include "execution/SystemCleanupExecutor.h"
#include "support/StoredParts.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QThread>

namespace vesko::testing {

ScreenStage::ScreenStage(bool hasAccess, std::function<void(CleanupViewModelParts&)> adjust)
    : model(makeModel(adjust)), homeModel(makeHomeModel()), access(hasAccess),
      shell({.accessTest = [this] { return access; }, .openAccessSettings = [this] { ++settingsOpened; }}),
      cleanup(model, files), homeScreen(homeModel, model, shell), settings(settingsParts()),
      window(shell, cleanup, homeScreen, settings) {
    homeModel->volume = volumes->volume;
    settle();
}

ScreenStage::~ScreenStage() { life.end(); }

std::shared_ptr<CleanupViewModel>
ScreenStage::makeModel(const std::function<void(CleanupViewModelParts&)>& adjust) {
    CleanupViewModelParts parts = storedParts(life.tasks(), home.url("state"), "afm-2026-06-i18n");
    parts.volumeReader = volumes;
    parts.executor = std::make_shared<SystemCleanupExecutor>();
    parts.scanEngineFactory = [this](ScanMode) {
        ++scansStarted;
        return ScanEngine();
    };
    adjust(parts);
    return std::make_shared<CleanupViewModel>(std::move(parts));
}

std::shared_ptr<HomeViewModel> ScreenStage::makeHomeModel() {
    HomeViewModelParts parts;
    parts.tasks = life.tasks();
    parts.inventorySizer = sizes;
    parts.store = std::make_shared<StorageInventoryStore>(home.url("state/storage-inventory.json"));
    parts.volumeReader = volumes;
    parts.makeStream = streams.maker();
    parts.home = home.root();
    return std::make_shared<HomeViewModel>(std::move(parts));
}

SettingsModelParts ScreenStage::settingsParts() {
    SettingsModelParts parts;
    parts.alerts.tasks = life.tasks();
    parts.alerts.notificationService = permission;
    parts.alerts.load = [this] { return storedPreferences; };
    parts.alerts.save = [this](const NotificationPreferences& preferences) {
        storedPreferences = preferences;
        ++preferencesSaved;
    };
    parts.updater = updater;
    parts.about = {QStringLiteral("0.1.0"), QStringLiteral("hello@example.org"),
                   [this](const QUrl& link) { linksOpened.append(link); }};
    return parts;
}

QQuickWindow* ScreenStage::settingsWindow() const {
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow* each : windows) {
        if (each->transientParent() == window.window() && each->isVisible())
            return qobject_cast<QQuickWindow*>(each);
    }
    return nullptr;
}

void ScreenStage::settle() {
    for (int turn = 0; turn < 3; ++turn) QCoreApplication::processEvents();
    settleWindow(window.window());
    settleWindow(settingsWindow());
}

void ScreenStage::settleWindow(QQuickWindow* shown) {
    if (!shown || !shown->isExposed()) return;
    // What is laid out is laid out before a frame.
    bool framed = false;
    const auto connection =
        QObject::connect(shown, &QQuickWindow::frameSwapped, &shell, [&framed] { framed = true; });
    shown->update();
    QElapsedTimer waited;
    waited.start();
    while (!framed && waited.elapsed() < 2000) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QObject::disconnect(connection);
    for (int turn = 0; turn < 3; ++turn) QCoreApplication::processEvents();
}

void ScreenStage::show() {
    if (!window.show()) throw std::runtime_error("the window could not be loaded");
    QElapsedTimer waited;
    waited.start();
    while (!shell.hasFrame() && waited.elapsed() < 10'000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(1);
    }
    settle();
}

ScannableItem item(const std::string& path, std::int64_t size, const std::string& key) {
    const FileURL url(path);
    return {url, size, true, key.empty() ? EnrichmentKey::forURL(url) : EnrichmentKey{key}, std::nullopt};
}

CleanupGroup group(const std::string& id, std::vector<ScannableItem> items) {
    return makeGroup(probeMetadataByID().at(id), std::move(items));
}

std::vector<CleanupGroup> sampleGroups() {
    const std::string home = homeFolder().path();
    const std::string derived = home + "/Library/Developer/Xcode/DerivedData/";
    const std::string longName(251, 'n');
    return {
        group("xcode.derivedData", {item(derived + "Aurora-bqkdvzrjxwlmpa", 18'400'000'000),
                                    item(derived + "Cartographer-hfhgbvxnqsl", 7'250'000'000),
                                    item(derived + "ModuleCache.noindex", 4'100'000'000),
                                    item(derived + longName + ".tmp", 1'300'000'000)}),
        group("cache.gradle", {item(home + "/.gradle/caches", 12'600'000'000)}),
        group("cache.npm", {item(home + "/.npm/_cacache", 9'850'000'000)}),
        group("downloads.stale", {item(home + "/Downloads/conference-recordings.zip", 6'400'000'000),
                                  item(home + "/Downloads/ubuntu-image.iso", 4'900'000'000),
                                  item(home + "/Downloads/old-photos-export.tar", 2'300'000'000)}),
        group("cache.cargo", {item(home + "/.cargo/registry/cache", 3'900'000'000),
                              item(home + "/.cargo/git/db", 640'000'000)}),
        group("xcode.archives", {item(home + "/Library/Developer/Xcode/Archives/2025-11-02", 2'700'000'000)}),
        group("trash", {item(home + "/.Trash/Holiday draft.mov", 1'900'000'000),
                        item(home + "/.Trash/notes", 12'000'000)}),
        group("cache.pip", {item(home + "/Library/Caches/pip", 1'450'000'000)}),
        group(
            "xcode.deviceSupport",
            {item(home + "/Library/Developer/Xcode/iOS DeviceSupport/iPhone15,2 17.5 (21F79)", 5'600'000'000),
             item(home + "/Library/Developer/Xcode/iOS DeviceSupport/iPad13,8 17.2", 600'000'000,
                  "docker:unsupported")}),
        group("logs.stale", {item(home + "/Library/Logs/install.log", 84'000'000)}),
    };
}

std::vector<StorageCategoryBucket> sampleBuckets() {
    std::vector<StorageCategoryBucket> buckets =
        StorageInventoryService::emptyMeasurableBuckets(FileURL(homeFolder().path()));
    const std::int64_t bytes[] = {41'600'000'000, 128'350'000'000, 96'200'000'000, 87'430'000'000};
    for (std::size_t i = 0; i < buckets.size(); ++i) buckets[i].bytes = bytes[i];
    return buckets;
}

void showDashboard(ScreenStage& stage, std::vector<StorageCategoryBucket> buckets,
                   const std::set<std::string>& pending) {
    const std::int64_t used = stage.homeModel->usedBytes();
    StorageDashboard dashboard{buckets, used, makeConsultantBreakdown(*stage.model->groups, used)};
    if (auto system = StorageInventoryService::systemBucket(used, buckets))
        dashboard.buckets.push_back(std::move(*system));
    stage.homeModel->pendingBucketIDs = pending;
    stage.homeModel->dashboard = std::optional(std::move(dashboard));
}

void showGroups(CleanupViewModel& model, std::vector<CleanupGroup> groups) {
    ScanReport report = SignificanceEngine().evaluate(std::move(groups), {});
    model.groups = report.groups;
    model.foundTotalBytes = report.foundTotalBytes;
    model.indexedBytes = report.foundTotalBytes;
    model.lastScanDate = std::optional(report.date);
    model.enrichmentStore().seedHeuristics(*model.groups);
    model.applyDefaultSelection();
}

} // namespace vesko::testing
