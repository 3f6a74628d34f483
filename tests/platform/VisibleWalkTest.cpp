#include "concurrency/CurrentTask.h"
#include "core/FastDirectorySize.h"
#include "platform/OddTree.h"
#include "platform/TreeToolRun.h"
#include <gmock/gmock.h>
#include <unistd.h>

namespace vesko {
namespace {

using ::testing::VariantWith;

VisibleAllocation bytes(std::int64_t value) { return value; }

TEST(VisibleWalk, CountsFilesAndNotFolders) {
    const OddTree tree;
    tree.preallocated("t/a/one", 8192);
    tree.preallocated("t/two", 4096);
    EXPECT_EQ(visibleAllocatedSize(tree.url("t")), bytes(12'288));
}

TEST(VisibleWalk, SkipsHiddenNamesAndTheInsideOfPackages) {
    const OddTree tree;
    tree.preallocated("t/seen", 4096);
    tree.preallocated("t/.hidden", 4096);
    tree.preallocated("t/.folder/inside", 4096);
    for (const char* package :
         {"a.app", "a.bundle", "a.plugin", "a.kext", "a.xpc", "a.appex", "a.prefPane", "a.photoslibrary"})
        tree.preallocated(std::string("t/") + package + "/inside", 4096);
    tree.preallocated("t/a.framework/inside", 4096);
    tree.preallocated("t/file.app", 4096);
    EXPECT_EQ(visibleAllocatedSize(tree.url("t")), bytes(3 * 4096));
}

TEST(VisibleWalk, LooksIntoARootThatIsHiddenOrAPackage) {
    const OddTree tree;
    tree.preallocated(".cache/inside", 4096);
    tree.preallocated("Some.app/Contents/inside", 8192);
    EXPECT_EQ(visibleAllocatedSize(tree.url(".cache")), bytes(4096));
    EXPECT_EQ(visibleAllocatedSize(tree.url("Some.app")), bytes(8192));
}

TEST(VisibleWalk, CountsAHardLinkOnceForEachOfItsNames) {
    const OddTree tree;
    tree.preallocated("t/one", 4096);
    tree.hardLink("t/two", "t/one");
    EXPECT_EQ(visibleAllocatedSize(tree.url("t")), bytes(8192));
}

TEST(VisibleWalk, DoesNotFollowLinks) {
    const OddTree tree;
    tree.preallocated("elsewhere/large", 1 << 20);
    tree.preallocated("t/one", 4096);
    tree.link("t/link", "../elsewhere");
    tree.link("t/file", "../elsewhere/large");
    EXPECT_EQ(visibleAllocatedSize(tree.url("t")), bytes(4096));
}

TEST(VisibleWalk, OfAFileItIsTheFilesOwn) {
    const OddTree tree;
    tree.preallocated("file", 8192);
    EXPECT_EQ(visibleAllocatedSize(tree.url("file")), bytes(8192));
}

TEST(VisibleWalk, SaysThatAPathCannotBeRead) {
    const OddTree tree;
    EXPECT_THAT(visibleAllocatedSize(tree.url("missing")), VariantWith<WalkUnreadable>(WalkUnreadable{}));
    tree.folder("closed");
    tree.mode("closed", 0);
    tree.giveAway();
    EXPECT_EQ(runTreeTool(Rights::ordinaryUser, {"visible", tree.path("closed")}).output, "unreadable\n");
}

TEST(VisibleWalk, SaysThatItWasCancelled) {
    const OddTree tree;
    tree.preallocated("t/one", 4096);
    StopSource stop;
    const CurrentTaskScope scope(stop.token());
    ASSERT_EQ(visibleAllocatedSize(tree.url("t")), bytes(4096));
    stop.requestStop();
    EXPECT_THAT(visibleAllocatedSize(tree.url("t")), VariantWith<WalkCancelled>(WalkCancelled{}));
}

} // namespace
} // namespace vesko
