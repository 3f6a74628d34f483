#include "core/ProbeCatalog.h"

#include "core/CatalogRows.h"
#include "core/SignificanceEngine.h"
#include "probes/SimulatorProbes.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <set>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;

std::vector<std::string> catalogIDs() {
    std::vector<std::string> ids;
    for (const auto& probe : probeCatalog()) ids.push_back(probe->metadata().id);
    return ids;
}

TEST(ProbeCatalog, TheOrderHasFortyFourDifferentIds) {
    EXPECT_EQ(std::set<std::string_view>(catalogOrder.begin(), catalogOrder.end()).size(), 44U);
}

TEST(ProbeCatalog, TheOrderIsThatOfTheRows) {
    std::vector<std::string> rows;
    for (const FixedPathRow& each : fixedPathRows()) rows.push_back(each.metadata.id);
    for (const GroupMetadata& each : otherRowsMetadata()) rows.push_back(each.id);
    EXPECT_EQ(rows, std::vector<std::string>(catalogOrder.begin(), catalogOrder.end()));
}

TEST(ProbeCatalog, EveryRowHasItsProbeInTheFixedOrder) {
    EXPECT_THAT(catalogIDs(), ElementsAreArray(catalogOrder.begin(), catalogOrder.end()));
}

TEST(ProbeCatalog, OneRowOfSimulatorsLeavesTheAvailableOnesOut) {
    const ProbeList catalog = probeCatalog();
    const auto* unavailable = dynamic_cast<const SimulatorProbe*>(catalog[20].get());
    const auto* all = dynamic_cast<const SimulatorProbe*>(catalog[21].get());
    ASSERT_TRUE(unavailable && all);
    EXPECT_TRUE(unavailable->onlyUnavailable());
    EXPECT_FALSE(all->onlyUnavailable());
}

TEST(ProbeCatalog, TheFirstTwentyProbesAreTheFixedPaths) {
    const std::vector<std::string> ids = catalogIDs();
    ASSERT_GE(ids.size(), 20U);
    const auto probes = fixedPathProbes();
    ASSERT_THAT(probes, SizeIs(20));
    const ProbeList catalog = probeCatalog();
    for (std::size_t i = 0; i < probes.size(); ++i) {
        EXPECT_EQ(ids[i], probes[i].metadata().id);
        const auto* wrapped = dynamic_cast<const FixedPathProbe*>(catalog[i].get());
        ASSERT_TRUE(wrapped);
        EXPECT_EQ(wrapped->row(), probes[i].row());
    }
}

TEST(ProbeCatalog, ACatalogIsMadeAfresh) { EXPECT_NE(probeCatalog().front(), probeCatalog().front()); }

TEST(ProbeCatalog, TheMetadataOfAProbeIsTheOneKnownByItsId) {
    for (const auto& probe : probeCatalog()) {
        const auto found = probeMetadataByID().find(probe->metadata().id);
        ASSERT_NE(found, probeMetadataByID().end());
        EXPECT_EQ(found->second, probe->metadata());
    }
}

TEST(ProbeCatalog, MetadataIsKnownForEveryRowAndTheMergedGroupAndNothingElse) {
    std::set<std::string> expected(catalogOrder.begin(), catalogOrder.end());
    expected.insert("project.artifacts");
    std::set<std::string> known;
    for (const auto& [id, metadata] : probeMetadataByID()) {
        known.insert(id);
        EXPECT_EQ(metadata.id, id);
        EXPECT_EQ(metadata.subtitle, "");
    }
    EXPECT_EQ(known, expected);
    EXPECT_THAT(probeMetadataByID(), SizeIs(45));
    EXPECT_EQ(probeMetadataByID().find("project.artifacts")->second, projectArtifactsMetadata());
}

TEST(ProbeCatalogDeathTest, ARepeatedIdStopsTheProcess) {
    const GroupMetadata once = projectArtifactsMetadata();
    EXPECT_DEATH(metadataByID({once, once}), "the catalog repeats the id project.artifacts");
}

TEST(ProbeCatalog, FixedRowsAreCachesByTheirIdAndFixedOtherwise) {
    const auto rows = fixedPathRows();
    ASSERT_THAT(rows, SizeIs(20));
    for (std::size_t i = 0; i < rows.size(); ++i)
        EXPECT_EQ(rows[i].metadata.providerID.rawValue, i < 13 ? "cache" : "fixed") << rows[i].metadata.id;
}

TEST(ProbeCatalog, DeviceBackupsStandAmongTheAppsUnderTheFixedProvider) {
    const GroupMetadata& backups = probeMetadataByID().find("backup.ios")->second;
    EXPECT_EQ(catalogOrder[36], "backup.ios");
    EXPECT_EQ(backups.section, sections::apps());
    EXPECT_EQ(backups.providerID.rawValue, "fixed");
    const auto rows = fixedPathRows();
    EXPECT_TRUE(std::none_of(rows.begin(), rows.end(),
                             [](const auto& each) { return each.metadata.id == "backup.ios"; }));
}

TEST(ProbeCatalog, OnlyTheLastFourFixedRowsFollowNoLinks) {
    const auto rows = fixedPathRows();
    for (std::size_t i = 0; i < rows.size(); ++i)
        EXPECT_EQ(rows[i].preferDiskUsage, i < 16) << rows[i].metadata.id;
}

TEST(ProbeCatalog, OnlyBuildProductsAreAlwaysRelevant) {
    for (const auto& [id, metadata] : probeMetadataByID())
        EXPECT_EQ(metadata.relevancePolicy == RelevancePolicy::alwaysRelevant, id == "xcode.derivedData")
            << id;
}

TEST(ProbeCatalog, OnlyRowsWithAnAgeRuleOrASmallestSizeHaveOne) {
    for (const FixedPathRow& each : fixedPathRows()) {
        const std::string& id = each.metadata.id;
        EXPECT_EQ(each.olderThanDays.has_value(),
                  id == "downloads.stale" || id == "downloads.unopened" || id == "logs.stale");
        EXPECT_EQ(each.minBytes, id == "downloads.stale" ? 52'428'800 : 0);
        EXPECT_EQ(each.ageMetric == AgeMetric::lastAccess, id == "downloads.unopened");
        EXPECT_EQ(each.excludedExtensions.empty(), !id.starts_with("downloads."));
    }
}

TEST(ProbeCatalog, TheRowsLookInTheirPlaces) {
    std::string drawn;
    for (const FixedPathRow& each : fixedPathRows()) {
        drawn += each.metadata.id + (each.expandChildren ? " */" : " ");
        for (const std::string& path : each.relativePaths) drawn += "<" + path + ">";
        drawn += " " + each.metadata.icon + " " + each.metadata.section.id + " " +
                 std::string(safetyWord(each.metadata.baselineSafety)) + "\n";
    }
    EXPECT_EQ(drawn,
              "cache.npm <.npm/_cacache> shippingbox caches seguro\n"
              "cache.pnpm <Library/pnpm/store><.pnpm-store> shippingbox caches seguro\n"
              "cache.yarn <Library/Caches/Yarn> shippingbox caches seguro\n"
              "cache.cargo */<.cargo/registry><.cargo/git> shippingbox caches seguro\n"
              "cache.go <Library/Caches/go-build><go/pkg/mod> shippingbox caches revisar\n"
              "cache.gradle <.gradle/caches> shippingbox caches seguro\n"
              "cache.pip <Library/Caches/pip> shippingbox caches seguro\n"
              "cache.poetry <.cache/pypoetry><Library/Caches/pypoetry> shippingbox caches seguro\n"
              "cache.uv <.cache/uv><.local/share/uv/cache> shippingbox caches seguro\n"
              "cache.bun <.bun/install/cache> shippingbox caches seguro\n"
              "cache.nuget */<.nuget/packages> shippingbox caches seguro\n"
              "cache.rbenv <.rbenv/src> shippingbox caches revisar\n"
              "cache.cocoapods <Library/Caches/CocoaPods> shippingbox caches seguro\n"
              "xcode.derivedData */<Library/Developer/Xcode/DerivedData> hammer development seguro\n"
              "xcode.archives */<Library/Developer/Xcode/Archives> archivebox development revisar\n"
              "xcode.deviceSupport */<Library/Developer/Xcode/iOS DeviceSupport> iphone development revisar\n"
              "downloads.stale */<Downloads> arrow.down.circle downloads revisar\n"
              "downloads.unopened */<Downloads> arrow.down.circle downloads revisar\n"
              "logs.stale */<Library/Logs> doc.text system seguro\n"
              "trash */<.Trash> trash system revisar\n");
}

TEST(ProbeCatalog, TheRowsOfOtherKindsSayWhatTheyAre) {
    std::string drawn;
    for (const GroupMetadata& each : otherRowsMetadata())
        drawn += each.id + " " + each.icon + " " + each.section.id + " " + each.providerID.rawValue + " " +
                 std::string(safetyWord(each.baselineSafety)) + "\n";
    EXPECT_EQ(drawn, "xcode.simulators.unavailable iphone.slash development simulator seguro\n"
                     "xcode.simulators.all iphone development simulator revisar\n"
                     "project.nodeModules shippingbox development project revisar\n"
                     "project.pods shippingbox development project revisar\n"
                     "project.cargoTarget shippingbox development project revisar\n"
                     "project.gradleBuild shippingbox development project revisar\n"
                     "project.next shippingbox development project revisar\n"
                     "project.nodeDist shippingbox development project revisar\n"
                     "project.nodeOut shippingbox development project revisar\n"
                     "project.nodeBuild shippingbox development project revisar\n"
                     "discover.caches questionmark.folder.fill caches discover revisar\n"
                     "discover.appSupport app.dashed apps discover revisar\n"
                     "installers.forgotten opticaldiscdrive installers installer revisar\n"
                     "apps.unused app.badge.minus apps uninstaller revisar\n"
                     "cache.swiftpm swift caches cache seguro\n"
                     "cache.homebrew mug caches cache seguro\n"
                     "backup.ios iphone.and.arrow.forward apps fixed revisar\n"
                     "docker.images shippingbox.fill development docker revisar\n"
                     "docker.volumes externaldrive development docker revisar\n"
                     "docker.buildcache hammer.fill development docker revisar\n"
                     "cache.maven shippingbox caches cache seguro\n"
                     "cache.jetbrains laptopcomputer caches cache seguro\n"
                     "xcode.previews eye development xcode seguro\n"
                     "xcode.simulator.runtime iphone.circle development simulator revisar\n");
}

} // namespace
} // namespace vesko
