#include "app/Background.h"
#include "app/DesktopSettings.h"
#include "app/ModelPasses.h"
#include "app/ProgramLife.h"
#include "app/SystemLanguage.h"
#include "background/BackgroundRefresh.h"
#include "background/NotificationService.h"
#include "background/PlatformUpdater.h"
#include "base/Environment.h"
#include "base/QuietReading.h"
#include "core/DiskVolumeService.h"
#include "core/MeasuringRuns.h"
#include "core/SharedStoragePathSizer.h"
#include "enrichment/PlatformLanguageModel.h"
#include "execution/SystemCleanupExecutor.h"
#include "orchestration/CleanupViewModel.h"
#include "platform/posix/DiskAccess.h"
#include "platform/posix/PlatformUserDefaults.h"
#include "platform/qt/DiskAccessSettings.h"
#include "platform/qt/FileManager.h"
#include "platform/qt/SingleInstance.h"
#include "platform/qt/SystemAppearance.h"
#include "storage/HomeViewModel.h"
#include "ui/MainWindow.h"
#include <QGuiApplication>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace vesko {
namespace {

/// Tools inherit the standard input; an empty one keeps them from waiting for an answer.
void emptyStandardInput() {
    const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (nothing < 0) return;
    ::dup2(nothing, STDIN_FILENO);
    if (nothing != STDIN_FILENO) ::close(nothing);
}

/// The stores; their files are read on threads while the toolkit starts.
struct Stores {
    std::shared_ptr<ScanCacheStore> scans =
        std::make_shared<ScanCacheStore>(ScanCacheStore::defaultFileURL());
    std::shared_ptr<DemotedPathsStore> demotedPaths =
        std::make_shared<DemotedPathsStore>(DemotedPathsStore::defaultFileURL());
};

using Runs = std::shared_ptr<const MeasuringRuns>;

std::shared_ptr<CleanupViewModel>
makeViewModel(const Stores& stores, std::shared_ptr<EnrichmentStore> enrichment,
              std::shared_ptr<UserDefaults> defaults, std::shared_ptr<NotificationDelivering> notifications,
              Runs runs, const ModelPasses& passes, const TaskContext& tasks) {
    CleanupViewModelParts parts;
    parts.tasks = tasks;
    parts.scanCacheStore = stores.scans;
    parts.enrichmentStore = std::move(enrichment);
    parts.demotedPathsStore = stores.demotedPaths;
    parts.volumeReader = std::make_shared<DiskVolumeService>();
    parts.defaults = std::move(defaults);
    parts.notificationService = std::move(notifications);
    passes.joinTo(parts);
    parts.executor = std::make_shared<SystemCleanupExecutor>();
    parts.measuringRuns = std::move(runs);
    return std::make_shared<CleanupViewModel>(std::move(parts));
}

std::shared_ptr<HomeViewModel> makeHomeModel(Runs runs, const std::shared_ptr<UserDefaults>& defaults,
                                             const TaskContext& tasks) {
    HomeViewModelParts parts;
    parts.tasks = tasks;
    parts.isBackgroundRefreshEnabled = [defaults] { return isBackgroundRefreshEnabled(*defaults); };
    parts.inventorySizer = std::make_shared<SharedStoragePathSizer>(std::move(runs));
    parts.store = std::make_shared<StorageInventoryStore>(StorageInventoryStore::defaultFileURL());
    parts.volumeReader = std::make_shared<DiskVolumeService>();
    parts.makeStream = platformFileEvents();
    return std::make_shared<HomeViewModel>(std::move(parts));
}

/// The scan that begins by itself: over the cached list where there is one, else from nothing.
void scanAtStart(const std::shared_ptr<CleanupViewModel>& model) {
    if (isDevelopmentHost()) return;
    const ScanMode mode = *model->didHydrateFromScanCache ? ScanMode::validation : ScanMode::full;
    spawn(model->tasks(), [model, mode] { return model->startScan(mode); });
}

int run(int argc, char** argv) {
    emptyStandardInput();
    readQuietly();
    setCurrentLanguage(systemLanguage());
    Stores stores;
    if (!isDevelopmentHost()) stores.scans->prefetch();

    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("vesko"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Vesko"));
    QGuiApplication::setDesktopFileName(QStringLiteral("vesko"));

    SingleInstance instance;
    if (!instance.claim()) return 0;

    ProgramLife life;
    const std::shared_ptr<UserDefaults> defaults = platformUserDefaults(life.tasks());
    const auto enrichment = std::make_shared<EnrichmentStore>(EnrichmentStore::defaultFileURL(),
                                                              "afm-2026-06-i18n", life.tasks());
    if (!isDevelopmentHost()) enrichment->prefetch();
    WindowModel shell({.accessTest = hasFullDiskAccess, .openAccessSettings = openDiskAccessSettings});
    const auto runs = std::make_shared<const MeasuringRuns>();
    ModelPasses passes(platformLanguageModel(), life.tasks());
    const auto notifications = std::make_shared<NotificationService>(
        platformNotificationCenter([&shell] { Q_EMIT shell.raiseRequested(); }));
    const auto model = makeViewModel(stores, enrichment, defaults, notifications, runs, passes, life.tasks());
    passes.follow(model);
    CleanupScreen cleanup(model, std::make_shared<FileManager>());
    const std::shared_ptr<HomeViewModel> homeModel = makeHomeModel(runs, defaults, life.tasks());
    HomeScreen home(homeModel, model, shell);
    Background background(defaults, life.tasks());
    const std::shared_ptr<Updater> updater = platformUpdater(life.tasks(), defaults);
    SystemAppearance appearance;
    DesktopSettings desktop(*defaults, shell, {notifications, updater}, life.tasks());
    MainWindow window(shell, cleanup, home, desktop.settings());

    const auto follow = [&] {
        window.theme().setDark(appearance.isDark());
        window.theme().setReducedMotion(appearance.prefersReducedMotion());
        window.theme().setHighContrast(appearance.prefersHighContrast());
    };
    follow();
    QObject::connect(&appearance, &SystemAppearance::changed, &window.theme(), follow);
    QObject::connect(&instance, &SingleInstance::raiseRequested, &shell, &WindowModel::raiseRequested);
    QObject::connect(&shell, &WindowModel::accessGranted, &cleanup, [&] {
        home.start();
        scanAtStart(model);
    });
    // What the person does not see at once waits for the first frame.
    QObject::connect(&shell, &WindowModel::framed, &cleanup, [&] {
        appearance.askPortal();
        background.attach(model);
        if (!isDevelopmentHost()) updater->start();
        if (!shell.hasFullDiskAccess()) return;
        home.start();
        scanAtStart(model);
    });
    // Figures that were kept are there in the first frame; a first measurement waits for it.
    if (shell.hasFullDiskAccess() && homeModel->hasCachedFigures()) home.start();
    if (!desktop.show(window)) return EXIT_FAILURE;

    const int status = QGuiApplication::exec();
    if (!life.end()) std::_Exit(status);
    return status;
}

} // namespace
} // namespace vesko

int main(int argc, char** argv) { return vesko::run(argc, argv); }
