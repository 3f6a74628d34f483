#include "platform/posix/FolderFinder.h"

#include "platform/OddTree.h"
#include <cstdio>
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::Eq;
using ::testing::Ne;

/// "root/p/a/b/c" with handles on all, as a walk that stands in "c" has them.
class FolderFinder : public ::testing::Test {
protected:
    FolderFinder() {
        tree.folder("root/p/a/b/c");
        tree.folder("outside/q");
        root = open(FolderNodeRef::root(tree.path("root")), "root");
        p = open(FolderNodeRef::below(root.node, "p"), "root/p");
        a = open(FolderNodeRef::below(p.node, "a"), "root/p/a");
        b = open(FolderNodeRef::below(a.node, "b"), "root/p/a/b");
        c = open(FolderNodeRef::below(b.node, "c"), "root/p/a/b/c");
    }
    OpenFolder open(FolderNodeRef node, const std::string& relative) const {
        OpenedFolder handle = openFolder(tree.path(relative));
        if (!handle) throw std::system_error(handle.error(), relative);
        return {std::move(node), std::make_shared<const FolderHandle>(std::move(*handle)), {}};
    }
    void move(const std::string& from, const std::string& to) const {
        if (std::rename(tree.path(from).c_str(), tree.path(to).c_str()) != 0) throw std::runtime_error(from);
    }
    static std::uint64_t inodeOf(const OpenFolder& folder) {
        return folderStatus(*folder.handle).value().identity.inode;
    }

    const OddTree tree;
    OpenFolder root, p, a, b, c;
};

TEST_F(FolderFinder, FindsAFolderFromBelowAndFromTheRoot) {
    const std::uint64_t expected = tree.inode("root/p");
    p.closeHandle();
    ASSERT_FALSE(p.isOpen());
    EXPECT_THAT(reopen(p, c, root.handle), Eq(std::error_code()));
    EXPECT_EQ(inodeOf(p), expected);
    p.closeHandle();
    EXPECT_THAT(reopen(p, {}, root.handle), Eq(std::error_code()));
    EXPECT_EQ(inodeOf(p), expected);
}

TEST_F(FolderFinder, NeverTakesTheFolderThatASubfolderWasMovedTo) {
    const std::uint64_t expected = tree.inode("root/p");
    p.closeHandle();
    move("root/p/a", "outside/q/a");
    EXPECT_THAT(reopen(p, a, root.handle), Eq(std::error_code()));
    EXPECT_EQ(inodeOf(p), expected);
}

TEST_F(FolderFinder, DoesNotFindAFolderThatWasMovedAway) {
    p.closeHandle();
    move("root/p", "outside/p");
    EXPECT_THAT(reopen(p, {}, root.handle), Ne(std::error_code()));
    EXPECT_FALSE(p.isOpen());
}

TEST_F(FolderFinder, DoesNotTakeAnotherFolderOfTheSameName) {
    p.closeHandle();
    move("root/p", "outside/p");
    tree.folder("root/p");
    EXPECT_THAT(reopen(p, {}, root.handle), Ne(std::error_code()));
    EXPECT_FALSE(p.isOpen());
}

TEST_F(FolderFinder, GoesThroughNoLinkThatWasPutInTheWay) {
    b.closeHandle();
    move("root/p", "outside/p");
    tree.link("root/p", tree.path("outside/p"));
    EXPECT_THAT(reopen(b, {}, root.handle), Ne(std::error_code()));
    EXPECT_FALSE(b.isOpen());
}

TEST_F(FolderFinder, GoesThroughTheLinksThatTheWalkFollowed) {
    tree.folder("elsewhere/deep");
    tree.link("root/link", tree.path("elsewhere"));
    const OpenFolder linked = open(FolderNodeRef::below(root.node, "link", true), "elsewhere");
    OpenFolder deep = open(FolderNodeRef::below(linked.node, "deep"), "elsewhere/deep");
    const std::uint64_t expected = tree.inode("elsewhere/deep");
    deep.closeHandle();
    EXPECT_THAT(reopen(deep, {}, root.handle), Eq(std::error_code()));
    EXPECT_EQ(inodeOf(deep), expected);
}

} // namespace
} // namespace vesko
