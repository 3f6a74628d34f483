#include "core/DiskVolume.h"

#include "base/FileSystem.h"
#include "base/Paths.h"
#include "base/StringCatalog.h"
#include "core/DiskVolumeService.h"
#include <array>
#include <gtest/gtest.h>
#include <sys/statvfs.h>

namespace vesko {
namespace {

using enum AvailableSpaceMetric;

VolumeFigures everything() { return {1000, 400, 300, 200, 100, "Disk of the test"}; }

TEST(DiskVolume, NothingKnownIsZeroWithTheDefaultName) {
    const DiskVolumeInfo expected{0, 0, localized("volume.defaultName"), standard};
    EXPECT_EQ(volumeInfo({}), expected);
}

TEST(DiskVolume, TheFirstFigureOfTheOrderIsTaken) {
    VolumeFigures figures = everything();
    EXPECT_EQ(volumeInfo(figures), (DiskVolumeInfo{1000, 400, "Disk of the test", importantUsage}));
    figures.availableForImportantUsage.reset();
    EXPECT_EQ(volumeInfo(figures), (DiskVolumeInfo{1000, 300, "Disk of the test", standard}));
    figures.available.reset();
    EXPECT_EQ(volumeInfo(figures), (DiskVolumeInfo{1000, 200, "Disk of the test", opportunisticUsage}));
    figures.availableForOpportunisticUsage.reset();
    EXPECT_EQ(volumeInfo(figures), (DiskVolumeInfo{1000, 100, "Disk of the test", fileSystemFree}));
    figures.fileSystemFree.reset();
    EXPECT_EQ(volumeInfo(figures), (DiskVolumeInfo{1000, 0, "Disk of the test", standard}));
}

TEST(DiskVolume, AZeroForImportantUsageLeavesItToTheAvailableCapacity) {
    VolumeFigures figures;
    figures.availableForImportantUsage = 0;
    figures.available = 5;
    EXPECT_EQ(volumeInfo(figures).availableBytes, 5);
    EXPECT_EQ(volumeInfo(figures).availableSpaceMetric, standard);
}

TEST(DiskVolume, TheFreeSpaceOfTheFileSystemServesAlone) {
    VolumeFigures figures;
    figures.fileSystemFree = 7;
    EXPECT_EQ(volumeInfo(figures), (DiskVolumeInfo{0, 7, localized("volume.defaultName"), fileSystemFree}));
}

TEST(DiskVolume, ANegativeFigureIsPassedOver) {
    for (const std::int64_t useless : {std::int64_t{-1}, std::int64_t{0}, INT64_MIN}) {
        VolumeFigures figures = everything();
        figures.availableForImportantUsage = useless;
        EXPECT_EQ(volumeInfo(figures).availableSpaceMetric, standard);
        figures.available = useless;
        EXPECT_EQ(volumeInfo(figures).availableSpaceMetric, opportunisticUsage);
        figures.availableForOpportunisticUsage = useless;
        EXPECT_EQ(volumeInfo(figures).availableSpaceMetric, fileSystemFree);
        figures.fileSystemFree = useless;
        EXPECT_EQ(volumeInfo(figures), (DiskVolumeInfo{1000, 0, "Disk of the test", standard}));
    }
}

TEST(DiskVolume, OfAnyFiguresTheFirstUsableOneIsTaken) {
    constexpr std::array<std::optional<std::int64_t>, 4> values{std::nullopt, 0, -5, 5};
    constexpr std::array<AvailableSpaceMetric, 4> order{importantUsage, standard, opportunisticUsage,
                                                        fileSystemFree};
    for (unsigned choice = 0; choice < 256; ++choice) {
        std::array<std::optional<std::int64_t>, 4> measures;
        for (unsigned i = 0; i < 4; ++i)
            if (const auto value = values[(choice >> (2 * i)) % 4]) measures[i] = *value * (i + 1);
        DiskVolumeInfo expected{1000, 0, "Disk of the test", standard};
        for (unsigned i = 4; i-- > 0;)
            if (measures[i] && *measures[i] > 0)
                expected = {1000, *measures[i], "Disk of the test", order[i]};
        EXPECT_EQ(volumeInfo({1000, measures[0], measures[1], measures[2], measures[3], "Disk of the test"}),
                  expected)
            << "choice " << choice;
    }
}

TEST(DiskVolume, ANegativeCapacityIsUnknown) {
    VolumeFigures figures = everything();
    figures.totalCapacity = -1;
    EXPECT_EQ(volumeInfo(figures).totalBytes, 0);
}

TEST(DiskVolume, AnEmptyNameIsAName) {
    VolumeFigures figures;
    figures.localizedName = "";
    EXPECT_EQ(volumeInfo(figures).volumeName, "");
}

TEST(DiskVolume, EachMeasureHasItsWord) {
    EXPECT_EQ(availableSpaceMetricWord(importantUsage), "importantUsage");
    EXPECT_EQ(availableSpaceMetricWord(standard), "standard");
    EXPECT_EQ(availableSpaceMetricWord(opportunisticUsage), "opportunisticUsage");
    EXPECT_EQ(availableSpaceMetricWord(fileSystemFree), "fileSystemFree");
}

TEST(DiskVolumeService, ReadsTheVolumeOfTheHomeFolder) {
    const DiskVolumeInfo info = DiskVolumeService().readVolume();
    struct statvfs volume{};
    ASSERT_EQ(::statvfs(homeFolder().path().c_str(), &volume), 0);
    EXPECT_EQ(info.totalBytes, static_cast<std::int64_t>(volume.f_blocks * volume.f_frsize));
    EXPECT_GT(info.availableBytes, 0);
    EXPECT_LE(info.availableBytes, info.totalBytes);
    EXPECT_FALSE(info.volumeName.empty());
}

} // namespace
} // namespace vesko
