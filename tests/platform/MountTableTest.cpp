#include "MountTable.h"

#include "core/DiskVolumeService.h"
#include "support/TempTree.h"
#include <gtest/gtest.h>
#include <sys/statvfs.h>

namespace vesko {
namespace {

// Written by hand in the form that proc(5) documents.
constexpr std::string_view table =
    "22 1 8:2 / / rw,relatime shared:1 - ext4 /dev/sda2 rw,errors=remount-ro\n"
    "36 22 8:3 / /home rw,relatime shared:2 master:7 - ext4 /dev/sda3 rw\n"
    "40 36 0:44 / /home/ana/My\\040Disk rw - fuse.sshfs host:/over\\134there rw\n"
    "41 22 0:45 / /homestead rw - tmpfs tmpfs rw\n"
    "42 22 8:4 /sub /srv rw - btrfs /dev/sdb1 rw,subvol=/sub\n"
    "43 22 8:5 / /srv rw - ext4 /dev/sdc1 rw\n"
    "not a line of the table\n"
    "50 22 8:6 / /cut rw -\n";

TEST(MountTable, TheDeepestMountAboveThePathIsTaken) {
    EXPECT_EQ(mountOf("/usr/share", table), (Mount{"/", "/dev/sda2"}));
    EXPECT_EQ(mountOf("/home", table), (Mount{"/home", "/dev/sda3"}));
    EXPECT_EQ(mountOf("/home/ana", table), (Mount{"/home", "/dev/sda3"}));
}

TEST(MountTable, EscapedCharactersAreRead) {
    EXPECT_EQ(mountOf("/home/ana/My Disk/x", table), (Mount{"/home/ana/My Disk", "host:/over\\there"}));
}

TEST(MountTable, TheSameLettersAreNoMount) {
    EXPECT_EQ(mountOf("/homes/x", table), (Mount{"/", "/dev/sda2"}));
    EXPECT_EQ(mountOf("/homestead/x", table), (Mount{"/homestead", "tmpfs"}));
}

TEST(MountTable, OfTwoAtOnePointTheLastHidesTheOther) {
    EXPECT_EQ(mountOf("/srv/x", table), (Mount{"/srv", "/dev/sdc1"}));
}

TEST(MountTable, LinesInAnotherFormArePassedOver) {
    EXPECT_EQ(mountOf("/cut/x", table), (Mount{"/", "/dev/sda2"}));
    EXPECT_FALSE(mountOf("/x", ""));
    EXPECT_FALSE(mountOf("relative", table));
}

TEST(VolumeFigures, AreTheFileSystemsOwn) {
    const testing::TempTree tree;
    const VolumeFigures figures = readVolumeFigures(tree.root());
    struct statvfs volume{};
    ASSERT_EQ(::statvfs(tree.root().path().c_str(), &volume), 0);
    EXPECT_EQ(figures.totalCapacity, static_cast<std::int64_t>(volume.f_blocks * volume.f_frsize));
    ASSERT_TRUE(figures.available);
    EXPECT_LE(*figures.available, *figures.totalCapacity);
    EXPECT_FALSE(figures.availableForImportantUsage);
    EXPECT_FALSE(figures.availableForOpportunisticUsage);
    EXPECT_FALSE(figures.fileSystemFree);
}

TEST(VolumeFigures, OfAMissingPathAreAbsent) {
    const VolumeFigures figures = readVolumeFigures(FileURL("/no/such/place"));
    EXPECT_FALSE(figures.totalCapacity);
    EXPECT_FALSE(figures.available);
}

} // namespace
} // namespace vesko
