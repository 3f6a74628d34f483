// Every probe's kind and parameters, row by row.
#include "core/CatalogRows.h"
#include "core/InstalledApplications.h"
#include "core/ProbeCatalog.h"
#include "probes/DockerProbes.h"
#include "probes/IOSBackupProbe.h"
#include "probes/InstallerProbe.h"
#include "probes/ProjectArtifactProbe.h"
#include "probes/SimulatorProbes.h"
#include "probes/ToolCacheProbes.h"
#include "probes/UninstallerSpotlightQuery.h"
#include "probes/UnusedAppsProbe.h"

#include "support/FakeRunner.h"
#include "support/ProbeHome.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;

std::string told(const FixedPathRow& row) {
    std::string line = "fixed";
    for (const std::string& path : row.relativePaths) line += " <" + path + ">";
    if (row.expandChildren) line += " children";
    if (row.minBytes != 0) line += " min " + std::to_string(row.minBytes);
    if (row.olderThanDays) line += " older " + std::to_string(*row.olderThanDays);
    if (row.ageMetric == AgeMetric::lastAccess) line += " by access";
    if (row.preferDiskUsage) line += " prefer";
    for (const std::string& extension : row.excludedExtensions) line += " -" + extension;
    return line;
}

std::string told(const ShallowScanRow& row) {
    return "shallow <" + row.relativeRoot + "> min " + std::to_string(row.minBytes) +
           (row.onlyUninstalled ? " uninstalled" : "");
}

std::string told(const ProjectArtifactRow& row) {
    std::string line = "project <" + row.folderName + ">";
    if (row.requireSiblingFile) line += " beside " + *row.requireSiblingFile;
    for (const std::string& file : row.excludeSiblingFiles) line += " not " + file;
    return line;
}

std::string told(const UnusedAppsProbe& probe) {
    const auto* query = dynamic_cast<const UninstallerSpotlightQuery*>(&probe.query());
    return "unused " + std::to_string(probe.olderThanDays()) + " days" + (query ? "" : " by another search");
}

/// The kind of a probe and what tells it from others of its kind.
std::string told(const ScanProbe& probe) {
    const auto is = [&]<class Kind>(const Kind*) { return dynamic_cast<const Kind*>(&probe) != nullptr; };
    if (const auto* fixed = dynamic_cast<const FixedPathProbe*>(&probe)) return told(fixed->row());
    if (const auto* shallow = dynamic_cast<const ShallowScanProbe*>(&probe)) return told(shallow->row());
    if (const auto* project = dynamic_cast<const ProjectArtifactProbe*>(&probe)) return told(project->row());
    if (const auto* unused = dynamic_cast<const UnusedAppsProbe*>(&probe)) return told(*unused);
    if (const auto* simulators = dynamic_cast<const SimulatorProbe*>(&probe))
        return simulators->onlyUnavailable() ? "simulators, unavailable" : "simulators";
    if (is(static_cast<const InstallerProbe*>(nullptr))) return "installers";
    if (is(static_cast<const IOSBackupProbe*>(nullptr))) return "device backups";
    if (is(static_cast<const SwiftPMCacheProbe*>(nullptr))) return "swift packages";
    if (is(static_cast<const HomebrewCacheProbe*>(nullptr))) return "homebrew";
    if (is(static_cast<const MavenCacheProbe*>(nullptr))) return "maven";
    if (is(static_cast<const JetBrainsCacheProbe*>(nullptr))) return "jetbrains";
    if (is(static_cast<const XcodePreviewsProbe*>(nullptr))) return "previews";
    if (is(static_cast<const DockerImagesProbe*>(nullptr))) return "docker images";
    if (is(static_cast<const DockerVolumesProbe*>(nullptr))) return "docker volumes";
    if (is(static_cast<const DockerBuildCacheProbe*>(nullptr))) return "docker build cache";
    if (is(static_cast<const SimulatorRuntimeProbe*>(nullptr))) return "simulator runtimes";
    return "unknown";
}

TEST(CatalogParameters, AreThoseOfEachRow) {
    std::string drawn;
    for (const auto& probe : probeCatalog()) drawn += probe->metadata().id + ": " + told(*probe) + "\n";
    EXPECT_EQ(drawn,
              "cache.npm: fixed <.npm/_cacache> prefer\n"
              "cache.pnpm: fixed <Library/pnpm/store> <.pnpm-store> prefer\n"
              "cache.yarn: fixed <Library/Caches/Yarn> prefer\n"
              "cache.cargo: fixed <.cargo/registry> <.cargo/git> children prefer\n"
              "cache.go: fixed <Library/Caches/go-build> <go/pkg/mod> prefer\n"
              "cache.gradle: fixed <.gradle/caches> prefer\n"
              "cache.pip: fixed <Library/Caches/pip> prefer\n"
              "cache.poetry: fixed <.cache/pypoetry> <Library/Caches/pypoetry> prefer\n"
              "cache.uv: fixed <.cache/uv> <.local/share/uv/cache> prefer\n"
              "cache.bun: fixed <.bun/install/cache> prefer\n"
              "cache.nuget: fixed <.nuget/packages> children prefer\n"
              "cache.rbenv: fixed <.rbenv/src> prefer\n"
              "cache.cocoapods: fixed <Library/Caches/CocoaPods> prefer\n"
              "xcode.derivedData: fixed <Library/Developer/Xcode/DerivedData> children prefer\n"
              "xcode.archives: fixed <Library/Developer/Xcode/Archives> children prefer\n"
              "xcode.deviceSupport: fixed <Library/Developer/Xcode/iOS DeviceSupport> children prefer\n"
              "downloads.stale: fixed <Downloads> children min 52428800 older 90 -dmg -pkg -xip\n"
              "downloads.unopened: fixed <Downloads> children older 90 by access -dmg -pkg -xip\n"
              "logs.stale: fixed <Library/Logs> children older 30\n"
              "trash: fixed <.Trash> children\n"
              "xcode.simulators.unavailable: simulators, unavailable\n"
              "xcode.simulators.all: simulators\n"
              "project.nodeModules: project <node_modules>\n"
              "project.pods: project <Pods>\n"
              "project.cargoTarget: project <target> beside Cargo.toml\n"
              "project.gradleBuild: project <build> beside build.gradle\n"
              "project.next: project <.next> beside package.json\n"
              "project.nodeDist: project <dist> beside package.json\n"
              "project.nodeOut: project <out> beside package.json\n"
              "project.nodeBuild: project <build> beside package.json not build.gradle not build.gradle.kts\n"
              "discover.caches: shallow <Library/Caches> min 10485760\n"
              "discover.appSupport: shallow <Library/Application Support> min 10485760 uninstalled\n"
              "installers.forgotten: installers\n"
              "apps.unused: unused 90 days\n"
              "cache.swiftpm: swift packages\n"
              "cache.homebrew: homebrew\n"
              "backup.ios: device backups\n"
              "docker.images: docker images\n"
              "docker.volumes: docker volumes\n"
              "docker.buildcache: docker build cache\n"
              "cache.maven: maven\n"
              "cache.jetbrains: jetbrains\n"
              "xcode.previews: previews\n"
              "xcode.simulator.runtime: simulator runtimes\n");
}

TEST(CatalogParameters, DockerIsLookedForInItsTwoPlaces) {
    int asked = 0;
    for (const auto& probe : probeCatalog()) {
        if (!probe->metadata().id.starts_with("docker.")) continue;
        const testing::ProbeHome home;
        probe->run(home.context);
        using Command = testing::FakeRunner::Command;
        EXPECT_THAT(home.runner->commands(), ElementsAre(Command{"/usr/local/bin/docker", "info"},
                                                         Command{"/opt/homebrew/bin/docker", "info"}))
            << probe->metadata().id;
        ++asked;
    }
    EXPECT_EQ(asked, 3);
}

TEST(CatalogParameters, UnusedApplicationsAreLookedForWhereTheyAreInstalled) {
    int asked = 0;
    for (const auto& probe : probeCatalog()) {
        const auto* unused = dynamic_cast<const UnusedAppsProbe*>(probe.get());
        if (!unused) continue;
        const auto* query = dynamic_cast<const UninstallerSpotlightQuery*>(&unused->query());
        ASSERT_TRUE(query);
        EXPECT_EQ(query->applicationRoots(), applicationRoots());
        ++asked;
    }
    EXPECT_EQ(asked, 1);
}

} // namespace
} // namespace vesko
