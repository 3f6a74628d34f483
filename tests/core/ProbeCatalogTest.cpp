#include "core/ProbeCatalog.h"

#include "core/CatalogRows.h"
#include "core/SignificanceEngine.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <set>

namespace vesko {
namespace {

using ::testing::SizeIs;

std::vector<std::string> catalogIDs() {
    std::vector<std::string> ids;
    for (const auto& probe : probeCatalog()) ids.push_back(probe->metadata().id);
    return ids;
}

/// One line: id, icon, section, provider, safety.
std::string told(const GroupMetadata& row) {
    return row.id + " " + row.icon + " " + row.section.id + " " + row.providerID.rawValue + " " +
           std::string(safetyWord(row.baselineSafety)) + "\n";
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

TEST(ProbeCatalog, HasEveryProbeOnceInTheFixedOrder) {
    EXPECT_THAT(catalogIDs(), SizeIs(44));
    EXPECT_EQ(catalogIDs(), std::vector<std::string>(catalogOrder.begin(), catalogOrder.end()));
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

TEST(ProbeCatalog, TheFixedRowsSayWhatTheyAre) {
    std::string drawn;
    for (const FixedPathRow& each : fixedPathRows()) drawn += told(each.metadata);
    EXPECT_EQ(drawn, "cache.npm shippingbox caches cache seguro\n"
                     "cache.pnpm shippingbox caches cache seguro\n"
                     "cache.yarn shippingbox caches cache seguro\n"
                     "cache.cargo shippingbox caches cache seguro\n"
                     "cache.go shippingbox caches cache revisar\n"
                     "cache.gradle shippingbox caches cache seguro\n"
                     "cache.pip shippingbox caches cache seguro\n"
                     "cache.poetry shippingbox caches cache seguro\n"
                     "cache.uv shippingbox caches cache seguro\n"
                     "cache.bun shippingbox caches cache seguro\n"
                     "cache.nuget shippingbox caches cache seguro\n"
                     "cache.rbenv shippingbox caches cache revisar\n"
                     "cache.cocoapods shippingbox caches cache seguro\n"
                     "xcode.derivedData hammer development fixed seguro\n"
                     "xcode.archives archivebox development fixed revisar\n"
                     "xcode.deviceSupport iphone development fixed revisar\n"
                     "downloads.stale arrow.down.circle downloads fixed revisar\n"
                     "downloads.unopened arrow.down.circle downloads fixed revisar\n"
                     "logs.stale doc.text system fixed seguro\n"
                     "trash trash system fixed revisar\n");
}

TEST(ProbeCatalog, TheRowsOfOtherKindsSayWhatTheyAre) {
    std::string drawn;
    for (const GroupMetadata& each : otherRowsMetadata()) drawn += told(each);
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
