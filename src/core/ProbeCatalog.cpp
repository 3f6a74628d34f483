#include "core/ProbeCatalog.h"

#include "base/ProgrammingError.h"
#include "core/CatalogRows.h"
#include "core/SignificanceEngine.h"
#include "probes/DockerProbes.h"
#include "probes/IOSBackupProbe.h"
#include "probes/InstallerProbe.h"
#include "probes/ProjectArtifactProbe.h"
#include "probes/ShallowScanProbe.h"
#include "probes/SimulatorProbes.h"
#include "probes/ToolCacheProbes.h"
#include "probes/UninstallerSpotlightQuery.h"
#include "probes/UnusedAppsProbe.h"
#include <utility>

namespace vesko {

namespace {
/// Below that an application may just be out of season.
constexpr std::int64_t daysUntilUnused = 90;
} // namespace

std::vector<FixedPathProbe> fixedPathProbes() {
    std::vector<FixedPathProbe> probes;
    for (FixedPathRow& row : fixedPathRows()) probes.emplace_back(std::move(row));
    return probes;
}

ProbeList probeCatalog() {
    ProbeList probes;
    const auto add = [&]<class Probe>(Probe probe) {
        probes.push_back(std::make_shared<const Probe>(std::move(probe)));
    };
    for (FixedPathProbe& probe : fixedPathProbes()) add(std::move(probe));
    add(SimulatorProbe(rowMetadata("xcode.simulators.unavailable"), true));
    add(SimulatorProbe(rowMetadata("xcode.simulators.all"), false));
    for (ProjectArtifactRow& row : projectArtifactRows()) add(ProjectArtifactProbe(std::move(row)));
    for (ShallowScanRow& row : shallowScanRows()) add(ShallowScanProbe(std::move(row)));
    add(InstallerProbe(rowMetadata("installers.forgotten")));
    add(UnusedAppsProbe(rowMetadata("apps.unused"), std::make_shared<const UninstallerSpotlightQuery>(),
                        daysUntilUnused));
    add(SwiftPMCacheProbe(rowMetadata("cache.swiftpm")));
    add(HomebrewCacheProbe(rowMetadata("cache.homebrew")));
    add(IOSBackupProbe(rowMetadata("backup.ios")));
    add(DockerImagesProbe(rowMetadata("docker.images")));
    add(DockerVolumesProbe(rowMetadata("docker.volumes")));
    add(DockerBuildCacheProbe(rowMetadata("docker.buildcache")));
    add(MavenCacheProbe(rowMetadata("cache.maven")));
    add(JetBrainsCacheProbe(rowMetadata("cache.jetbrains")));
    add(XcodePreviewsProbe(rowMetadata("xcode.previews")));
    add(SimulatorRuntimeProbe(rowMetadata("xcode.simulator.runtime")));
    return probes;
}

const MetadataByID& probeMetadataByID() {
    static const MetadataByID byID = [] {
        std::vector<GroupMetadata> rows;
        for (const FixedPathRow& row : fixedPathRows()) rows.push_back(row.metadata);
        for (GroupMetadata& row : otherRowsMetadata()) rows.push_back(std::move(row));
        rows.push_back(projectArtifactsMetadata());
        return metadataByID(rows);
    }();
    return byID;
}

MetadataByID metadataByID(const std::vector<GroupMetadata>& rows) {
    MetadataByID byID;
    for (const GroupMetadata& row : rows)
        if (!byID.emplace(row.id, row).second) programmingError("the catalog repeats the id " + row.id);
    return byID;
}

} // namespace vesko
