#pragma once
#include "core/DiskVolumeService.h"
#include "support/TempTree.h"
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

namespace vesko::testing {

/// What the figures of a volume promise on every system. `System` stands for one whose temporary folder lies
/// on a volume that it can say everything of:
///     std::optional<std::string> onAVolumeOf(const std::string& name,
///                                            const std::function<std::string(const FileURL&)>& check);
/// runs `check` with a folder on a volume of that name and gives what it said, nothing where the system does
/// not let a test name one.
template <class System> class VolumeFiguresContract : public ::testing::Test {
protected:
    static VolumeFigures of(const FileURL& place) { return readVolumeFigures(place); }
    static std::vector<std::int64_t> freeIn(const VolumeFigures& figures) {
        std::vector<std::int64_t> free;
        for (const auto& figure : {figures.available, figures.availableForImportantUsage,
                                   figures.availableForOpportunisticUsage, figures.fileSystemFree})
            if (figure) free.push_back(*figure);
        return free;
    }

    System system;
    TempTree tree;
};
TYPED_TEST_SUITE_P(VolumeFiguresContract);

TYPED_TEST_P(VolumeFiguresContract, APlaceHasACapacityAndRoomThatIsLeft) {
    const VolumeFigures figures = this->of(this->tree.root());
    EXPECT_GT(figures.totalCapacity.value_or(0), 0);
    const DiskVolumeInfo info = volumeInfo(figures);
    EXPECT_EQ(info.totalBytes, figures.totalCapacity);
    EXPECT_GT(info.availableBytes, 0);
}

TYPED_TEST_P(VolumeFiguresContract, NoFigureIsNegativeOrAboveTheCapacity) {
    const VolumeFigures figures = this->of(this->tree.root());
    ASSERT_TRUE(figures.totalCapacity);
    ASSERT_FALSE(this->freeIn(figures).empty());
    for (const std::int64_t free : this->freeIn(figures)) {
        EXPECT_GE(free, 0);
        EXPECT_LE(free, *figures.totalCapacity);
    }
}

TYPED_TEST_P(VolumeFiguresContract, AMissingPlaceHasNoFigureAndNoName) {
    const FileURL file = this->tree.file("file");
    for (const FileURL& place : {this->tree.url("missing"), this->tree.url("missing/deeper"),
                                 file.appending("below"), FileURL("/nowhere/at/all"), FileURL()}) {
        const VolumeFigures figures = this->of(place);
        EXPECT_FALSE(figures.totalCapacity) << place.path();
        EXPECT_TRUE(this->freeIn(figures).empty()) << place.path();
        EXPECT_FALSE(figures.localizedName) << place.path();
    }
}

TYPED_TEST_P(VolumeFiguresContract, EveryWayIntoAVolumeGivesItsCapacity) {
    this->tree.folder("a/b");
    this->tree.link("link", "a");
    const auto capacity = this->of(this->tree.root()).totalCapacity;
    ASSERT_TRUE(capacity);
    EXPECT_EQ(this->of(this->tree.root()).totalCapacity, capacity) << "asked again";
    for (const char* way : {"a", "a/b", "link", "link/b"})
        EXPECT_EQ(this->of(this->tree.url(way)).totalCapacity, capacity) << way;
}

TYPED_TEST_P(VolumeFiguresContract, APathIsAskedWhole) {
    for (const char* name : {"Fotos de S\u00e3o Jo\u00e3o", "100%25#?&", "\u96ea \U0001F600", "two\nlines"}) {
        EXPECT_FALSE(this->of(this->tree.url(name)).totalCapacity) << name;
        this->tree.folder(name);
        EXPECT_TRUE(this->of(this->tree.url(name)).totalCapacity) << name;
    }
}

TYPED_TEST_P(VolumeFiguresContract, TheNameOfAVolumeArrivesWhole) {
    for (const std::string name :
         {"Data", "Disco de Ana \u00e7", "\u96ea\u0416 \U0001F600", R"(back\slash #040%20)"}) {
        const auto told = this->system.onAVolumeOf(name, [](const FileURL& place) {
            return readVolumeFigures(place).localizedName.value_or("no name");
        });
        if (!told) GTEST_SKIP() << "this system does not let a test name a volume";
        EXPECT_EQ(*told, name);
    }
}

REGISTER_TYPED_TEST_SUITE_P(VolumeFiguresContract, APlaceHasACapacityAndRoomThatIsLeft,
                            NoFigureIsNegativeOrAboveTheCapacity, AMissingPlaceHasNoFigureAndNoName,
                            EveryWayIntoAVolumeGivesItsCapacity, APathIsAskedWhole,
                            TheNameOfAVolumeArrivesWhole);

} // namespace vesko::testing
