#include "core/DiskVolumeService.h"
#include "platform/macos/FakeCoreFoundation.h"
#include <gtest/gtest.h>
#include <sys/statvfs.h>

namespace vesko {
namespace {

using testing::fakeVolume;
using enum AvailableSpaceMetric;

class VolumeFiguresOnMacos : public ::testing::Test {
protected:
    VolumeFiguresOnMacos() : objectsBefore_(testing::liveObjects()) { fakeVolume() = {}; }
    ~VolumeFiguresOnMacos() override { EXPECT_EQ(testing::liveObjects(), objectsBefore_) << "a leak"; }

    static void sayEverything() {
        fakeVolume().numbers = {{kCFURLVolumeTotalCapacityKey, 1000},
                                {kCFURLVolumeAvailableCapacityKey, 300},
                                {kCFURLVolumeAvailableCapacityForImportantUsageKey, 400},
                                {kCFURLVolumeAvailableCapacityForOpportunisticUsageKey, 200}};
        fakeVolume().texts = {{kCFURLVolumeLocalizedNameKey, "Disco de Ana \xC3\xA7"}};
    }

private:
    std::size_t objectsBefore_;
};

TEST_F(VolumeFiguresOnMacos, EachFigureComesFromItsKey) {
    sayEverything();
    const VolumeFigures figures = readVolumeFigures(FileURL("/tmp"));
    EXPECT_EQ(fakeVolume().askedPath, "/tmp");
    EXPECT_EQ(figures.totalCapacity, 1000);
    EXPECT_EQ(figures.available, 300);
    EXPECT_EQ(figures.availableForImportantUsage, 400);
    EXPECT_EQ(figures.availableForOpportunisticUsage, 200);
    EXPECT_EQ(figures.localizedName, "Disco de Ana \xC3\xA7");
    EXPECT_EQ(volumeInfo(figures).availableSpaceMetric, importantUsage);
}

TEST_F(VolumeFiguresOnMacos, TheFreeSpaceOfTheFileSystemIsAskedInEveryCase) {
    struct statvfs volume{};
    ASSERT_EQ(::statvfs("/tmp", &volume), 0);
    const auto free = static_cast<double>(volume.f_bavail) * static_cast<double>(volume.f_frsize);
    for (const bool isToldMore : {false, true}) {
        if (isToldMore) sayEverything();
        const VolumeFigures figures = readVolumeFigures(FileURL("/tmp"));
        ASSERT_TRUE(figures.fileSystemFree);
        EXPECT_NEAR(static_cast<double>(*figures.fileSystemFree), free, 0.2 * free);
    }
}

TEST_F(VolumeFiguresOnMacos, WhatFailsOrIsNotThereIsAbsent) {
    fakeVolume().absent = {{kCFURLVolumeTotalCapacityKey, true}, {kCFURLVolumeLocalizedNameKey, true}};
    const VolumeFigures figures = readVolumeFigures(FileURL("/tmp"));
    EXPECT_FALSE(figures.totalCapacity);
    EXPECT_FALSE(figures.available);
    EXPECT_FALSE(figures.availableForImportantUsage);
    EXPECT_FALSE(figures.availableForOpportunisticUsage);
    EXPECT_FALSE(figures.localizedName);
    EXPECT_EQ(volumeInfo(figures).availableSpaceMetric, fileSystemFree);
}

TEST_F(VolumeFiguresOnMacos, ZeroAndNegativeFiguresAreHandedOnAndPassedOver) {
    sayEverything();
    fakeVolume().numbers[kCFURLVolumeAvailableCapacityForImportantUsageKey] = 0;
    fakeVolume().numbers[kCFURLVolumeAvailableCapacityKey] = -5;
    const VolumeFigures figures = readVolumeFigures(FileURL("/tmp"));
    EXPECT_EQ(figures.available, -5);
    EXPECT_EQ(volumeInfo(figures).availableBytes, 200);
    EXPECT_EQ(volumeInfo(figures).availableSpaceMetric, opportunisticUsage);
}

TEST_F(VolumeFiguresOnMacos, AnEmptyNameIsAName) {
    fakeVolume().texts = {{kCFURLVolumeLocalizedNameKey, ""}};
    EXPECT_EQ(readVolumeFigures(FileURL("/tmp")).localizedName, "");
}

TEST_F(VolumeFiguresOnMacos, NothingIsKnownOfAMissingPath) {
    const VolumeFigures figures = readVolumeFigures(FileURL("/nowhere/at/all"));
    EXPECT_FALSE(figures.fileSystemFree);
    EXPECT_EQ(volumeInfo(figures).totalBytes, 0);
}

} // namespace
} // namespace vesko
