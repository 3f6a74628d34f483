#include "VolumeName.h"

#include "core/DiskVolumeService.h"
#include "support/MountNamespace.h"
#include "support/TempTree.h"
#include <gtest/gtest.h>
#include <sys/mount.h>

namespace vesko {
namespace {

/// A mount table with one line, and a folder of labels, as proc(5) and udev(7) have them.
struct VolumeName : ::testing::Test {
    VolumeName() {
        tree.file("dev/sda2");
        tree.file("dev/sdb1");
        tree.folder("labels");
    }
    std::string tableOf(std::string_view point, const std::string& source) const {
        return "22 1 8:2 / " + std::string(point) + " rw,relatime shared:1 - ext4 " + source + " rw\n";
    }
    std::optional<std::string> nameOf(std::string_view point, const std::string& source) const {
        return volumeName("/home/ana", tableOf(point, source), tree.path("labels"));
    }
    testing::TempTree tree;
};

TEST_F(VolumeName, IsTheLabelOfTheDevice) {
    tree.link("labels/Other", "../dev/sdb1");
    tree.link("labels/Archive", "../dev/sda2");
    EXPECT_EQ(nameOf("/home", tree.path("dev/sda2")), "Archive");
    EXPECT_EQ(nameOf("/", tree.path("dev/sda2")), "Archive");
}

TEST_F(VolumeName, ALabelIsFoundForADeviceUnderAnotherName) {
    tree.link("labels/Archive", "../dev/sda2");
    tree.link("dev/mapper/home", "../sda2");
    EXPECT_EQ(nameOf("/home", tree.path("dev/mapper/home")), "Archive");
}

TEST_F(VolumeName, EscapedCharactersOfALabelAreRead) {
    tree.link(R"(labels/Ana\x27s\x20\xc3\x81lbum\x2f1)", "../dev/sda2");
    EXPECT_EQ(nameOf("/home", tree.path("dev/sda2")), "Ana's \u00c1lbum/1");
}

TEST_F(VolumeName, WhatOnlyLooksEscapedStays) {
    tree.link(R"(labels/a\x2)", "../dev/sda2");
    EXPECT_EQ(nameOf("/home", tree.path("dev/sda2")), R"(a\x2)");
}

TEST_F(VolumeName, ABrokenLinkAmongTheLabelsIsPassedOver) {
    tree.link("labels/Broken", "../dev/gone");
    tree.link("labels/Archive", "../dev/sda2");
    EXPECT_EQ(nameOf("/home", tree.path("dev/sda2")), "Archive");
    EXPECT_EQ(nameOf("/home", tree.path("dev/gone")), "home");
}

TEST_F(VolumeName, WithoutALabelItIsTheMountPointsLastName) {
    EXPECT_EQ(nameOf("/home", tree.path("dev/sda2")), "home");
    EXPECT_EQ(nameOf("/home/ana", tree.path("dev/sda2")), "ana");
    EXPECT_EQ(nameOf("/home", "tmpfs"), "home");
}

TEST_F(VolumeName, TheRootWithoutALabelHasNone) {
    EXPECT_EQ(nameOf("/", tree.path("dev/sda2")), std::nullopt);
    EXPECT_EQ(nameOf("/", "/dev/root-that-is-nowhere"), std::nullopt);
    EXPECT_EQ(volumeName("/home/ana", "", tree.path("labels")), std::nullopt);
    EXPECT_EQ(volumeName("/home/ana", tableOf("/srv", "tmpfs"), tree.path("labels")), std::nullopt);
}

TEST_F(VolumeName, AMissingFolderOfLabelsIsNone) {
    EXPECT_EQ(volumeName("/home/ana", tableOf("/home", tree.path("dev/sda2")), tree.path("nowhere")), "home");
}

TEST(VolumeFigures, OfAMountedVolumeAreItsOwnWithItsName) {
    const testing::TempTree tree;
    tree.folder("My Volume");
    tree.link("way", "My Volume");
    const auto wrong = testing::inMountNamespace([&]() -> std::string {
        constexpr const char* size = "size=8388608";
        if (::mount("none", tree.path("My Volume").c_str(), "tmpfs", 0, size) != 0) return "no tmpfs";
        for (const char* way : {"My Volume", "way"}) {
            const VolumeFigures figures = readVolumeFigures(tree.url(way));
            if (figures.localizedName != "My Volume") return "another name";
            if (figures.totalCapacity != 8388608) return "another capacity";
            if (figures.available.value_or(0) <= 0) return "nothing available";
        }
        return {};
    });
    if (!wrong) GTEST_SKIP() << "mount namespaces are refused here";
    EXPECT_EQ(*wrong, "");
}

TEST(VolumeFigures, AFullVolumeHasNothingAvailable) {
    const testing::TempTree tree;
    tree.folder("volume");
    const auto wrong = testing::inMountNamespace([&]() -> std::string {
        if (::mount("none", tree.path("volume").c_str(), "tmpfs", 0, "size=65536") != 0) return "no tmpfs";
        std::ofstream(tree.path("volume/file")) << std::string(100'000, 'x');
        const DiskVolumeInfo info = volumeInfo(readVolumeFigures(tree.url("volume")));
        if (info.totalBytes != 65536 || info.availableBytes != 0) return "other figures";
        if (info.availableSpaceMetric != AvailableSpaceMetric::standard) return "another measure";
        return {};
    });
    if (!wrong) GTEST_SKIP() << "mount namespaces are refused here";
    EXPECT_EQ(*wrong, "");
}

} // namespace
} // namespace vesko
