#include "InotifyEventStream.h"

#include "platform/WatchedTree.h"
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <random>
#include <stdio.h>

namespace vesko {
namespace {

using namespace std::chrono_literals;

/// Folders that come, go, move and change places as fast as they can, while the stream follows.
class InotifyRandomTest : public testing::WatchedTree {
protected:
    std::vector<std::string> folders() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root()))
            if (entry.is_directory()) found.push_back(entry.path().string());
        return found;
    }

    void changeSomething(std::mt19937& random) const {
        std::vector<std::string> all = folders();
        all.push_back(root());
        const auto any = [&]() -> const std::string& { return all[random() % all.size()]; };
        const std::string name = "/n" + std::to_string(random() % 6);
        std::error_code refused; // a move into itself, a name that is taken
        switch (random() % 6) {
        case 0:
        case 1: std::filesystem::create_directories(any() + name + "/sub", refused); break;
        case 2: std::filesystem::rename(any(), any() + name, refused); break;
        case 3: ::renameat2(AT_FDCWD, any().c_str(), AT_FDCWD, any().c_str(), RENAME_EXCHANGE); break;
        case 4:
            if (const std::string& victim = any(); victim != root() && all.size() > 20)
                std::filesystem::remove_all(victim, refused);
            break;
        default: std::ofstream(any() + "/file") << "x"; break;
        }
    }

    void expectEveryFolderIsWatched(unsigned seed) {
        const std::vector<std::string> all = folders();
        ASSERT_TRUE(becomes([&](const auto& figures) {
            return figures.isSettled && figures.folders == all.size() + 1;
        })) << "seed "
            << seed << ": " << stream->figures().folders << " known, " << all.size() + 1 << " there";
        testing::HeardChanges::Paths expected;
        heard.forgetAll();
        for (const std::string& folder : all) {
            std::ofstream(folder + "/proof") << seed;
            expected.insert(folder);
        }
        EXPECT_TRUE(heard.waitFor(expected)) << "seed " << seed;
    }
};

TEST_F(InotifyRandomTest, AfterAnyChangesEveryFolderIsWatchedUnderItsName) {
    tree.folder("start/inner");
    start();
    for (unsigned seed = 1; seed <= 12; ++seed) {
        std::mt19937 random(seed);
        for (int step = 0; step < 60; ++step) changeSomething(random);
        settle();
        expectEveryFolderIsWatched(seed);
        if (HasFailure()) return;
    }
    EXPECT_EQ(stream->figures().watched, stream->figures().folders);
}

TEST_F(InotifyRandomTest, SoItIsWithFewWatches) {
    tree.folder("start/inner");
    letTheClockTick();
    start({root()}, options(10, 50ms));
    for (unsigned seed = 101; seed <= 112; ++seed) {
        std::mt19937 random(seed);
        for (int step = 0; step < 60; ++step) changeSomething(random);
        settle();
        expectEveryFolderIsWatched(seed);
        if (HasFailure()) return;
    }
    EXPECT_LE(stream->figures().watched, 10U);
}

} // namespace
} // namespace vesko
