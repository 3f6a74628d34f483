#include "WatchedFolders.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <map>
#include <random>

namespace vesko {
namespace {

using Folder = WatchedFolders::Folder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

TEST(WatchedFolders, AFolderIsFoundByItsParentAndName) {
    WatchedFolders folders;
    const Folder root = folders.addRoot("/home/ana");
    const Folder music = folders.add(root, "Music");
    const Folder inner = folders.add(music, "Music");
    EXPECT_EQ(folders.child(root, "Music"), music);
    EXPECT_EQ(folders.child(music, "Music"), inner);
    EXPECT_EQ(folders.child(inner, "Music"), WatchedFolders::none);
    EXPECT_EQ(folders.child(root, "Musi"), WatchedFolders::none);
    EXPECT_EQ(folders.path(inner), "/home/ana/Music/Music");
    EXPECT_EQ(folders.pathBelowRoot(inner), "Music/Music");
    EXPECT_EQ(folders.path(root), "/home/ana");
    EXPECT_EQ(folders.pathBelowRoot(root), "");
    EXPECT_EQ(folders.rootOf(inner), root);
}

TEST(WatchedFolders, TheTopOfAllIsARootAsWell) {
    WatchedFolders folders;
    EXPECT_EQ(folders.path(folders.add(folders.addRoot("/"), "srv")), "/srv");
}

TEST(WatchedFolders, ARemovedBranchGivesItsWatchesBack) {
    WatchedFolders folders;
    const Folder root = folders.addRoot("/r");
    const Folder branch = folders.add(root, "branch");
    const Folder leaf = folders.add(branch, "leaf");
    const Folder other = folders.add(root, "other");
    std::vector<int> released;
    folders.setWatch(root, 1, released);
    folders.setWatch(branch, 2, released);
    folders.setWatch(leaf, 3, released);
    folders.setWatch(other, 4, released);
    EXPECT_EQ(folders.watchCount(), 4U);
    folders.remove(branch, released);
    EXPECT_THAT(released, UnorderedElementsAre(2, 3));
    EXPECT_EQ(folders.count(), 2U);
    EXPECT_EQ(folders.watchCount(), 2U);
    EXPECT_EQ(folders.child(root, "branch"), WatchedFolders::none);
    EXPECT_EQ(folders.child(root, "other"), other);
    EXPECT_THAT(folders.holdersOf(3), IsEmpty());
}

TEST(WatchedFolders, AWatchGoesWithItsLastHolder) {
    WatchedFolders folders;
    const Folder root = folders.addRoot("/r");
    const Folder one = folders.add(root, "one");
    const Folder two = folders.add(root, "two");
    std::vector<int> released;
    folders.setWatch(one, 7, released);
    folders.setWatch(two, 7, released);
    EXPECT_EQ(folders.watchCount(), 1U);
    EXPECT_THAT(folders.holdersOf(7), UnorderedElementsAre(one, two));
    folders.remove(one, released);
    EXPECT_THAT(released, IsEmpty());
    folders.setWatch(two, 8, released);
    EXPECT_THAT(released, ElementsAre(7));
    EXPECT_EQ(folders.watchCount(), 1U);
}

TEST(WatchedFolders, ADeepBranchIsRemovedWithoutRunningOutOfStack) {
    WatchedFolders folders;
    Folder deepest = folders.addRoot("/r");
    const Folder top = folders.add(deepest, "d");
    deepest = top;
    for (int i = 0; i < 200'000; ++i) deepest = folders.add(deepest, "d");
    std::vector<int> released;
    folders.remove(top, released);
    EXPECT_EQ(folders.count(), 1U);
}

TEST(WatchedFolders, AgreeWithAMapThroughAnyChanges) {
    std::mt19937 random(20261121);
    WatchedFolders folders;
    const Folder root = folders.addRoot("/r");
    std::map<std::string, Folder> known{{"/r", root}};
    const auto any = [&] { return std::next(known.begin(), static_cast<long>(random() % known.size())); };
    for (int step = 0; step < 4000; ++step) {
        const auto [path, folder] = *any();
        if (random() % 15 != 0 || folder == root) {
            const std::string name = std::string(random() % 20, 'n') + std::to_string(random() % 3);
            const std::string below = path + "/" + name;
            const Folder found = folders.child(folder, name);
            ASSERT_EQ(found != WatchedFolders::none, known.contains(below)) << below;
            if (found == WatchedFolders::none) known.emplace(below, folders.add(folder, name));
        } else {
            std::vector<int> released;
            folders.remove(folder, released);
            std::erase_if(known, [&](const auto& entry) {
                return entry.first == path || entry.first.starts_with(path + "/");
            });
        }
        ASSERT_EQ(folders.count(), known.size());
    }
    ASSERT_GT(known.size(), 100U);
    for (const auto& [path, folder] : known) {
        EXPECT_EQ(folders.path(folder), path);
        if (folder == root) continue;
        const std::size_t slash = path.rfind('/');
        EXPECT_EQ(folders.child(known.at(path.substr(0, slash)), path.substr(slash + 1)), folder) << path;
    }
}

} // namespace
} // namespace vesko
