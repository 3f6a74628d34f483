#pragma once
#include "platform/HeardChanges.h"
#include "storage/FileEventStream.h"
#include "support/TempTree.h"
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>

namespace vesko::testing {

/// What the streams of every system promise. `Changes` makes something change in a folder that exists, by its
/// path without links, and sees to it that the system tells.
template <class Changes> class FileEventStreamContract : public ::testing::Test {
protected:
    void watch(const std::vector<std::string>& paths) {
        stream = platformFileEvents()(paths, 0.02, heard.receiver());
        ASSERT_TRUE(stream);
        changes.afterStart();
    }
    std::string folder(const std::string& name) { return tree.folder(name).path(); }

    TempTree tree;
    HeardChanges heard;
    Changes changes;
    std::unique_ptr<FileEventStream> stream;
};
TYPED_TEST_SUITE_P(FileEventStreamContract);

TYPED_TEST_P(FileEventStreamContract, AChangeIsToldByItsFolder) {
    const std::string inside = this->folder("root/inside");
    this->watch({this->tree.path("root")});
    this->changes.in(inside);
    EXPECT_TRUE(this->heard.waitFor({inside}));
}

TYPED_TEST_P(FileEventStreamContract, EachOfSeveralPathsIsWatched) {
    const std::string a = this->folder("a/inside");
    const std::string b = this->folder("b/inside");
    this->watch({this->tree.path("a"), this->tree.path("b")});
    this->changes.in(a);
    this->changes.in(b);
    EXPECT_TRUE(this->heard.waitFor({a, b}));
}

TYPED_TEST_P(FileEventStreamContract, ALinkIsWatchedWhereItLeadsToAndToldAsGiven) {
    const std::string inside = this->folder("real/inside");
    this->tree.link("link", this->tree.path("real"));
    this->watch({this->tree.path("link")});
    this->changes.in(inside);
    EXPECT_TRUE(this->heard.waitFor({this->tree.path("link/inside")}));
}

TYPED_TEST_P(FileEventStreamContract, NothingIsToldAfterItsEnd) {
    const std::string inside = this->folder("root/inside");
    this->watch({this->tree.path("root")});
    this->changes.in(inside);
    EXPECT_TRUE(this->heard.waitFor({inside}));
    this->stream.reset();
    this->heard.forgetAll();
    this->changes.in(inside);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    EXPECT_TRUE(this->heard.calls().empty());
}

TYPED_TEST_P(FileEventStreamContract, ItMayEndInACallback) {
    const std::string inside = this->folder("root/inside");
    this->watch({this->tree.path("root")});
    std::atomic<bool> hasEnded = false;
    this->heard.onCall([&] {
        this->stream.reset();
        hasEnded = true;
    });
    this->changes.in(inside);
    for (int i = 0; i < 2'000 && !hasEnded; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_TRUE(hasEnded);
}

REGISTER_TYPED_TEST_SUITE_P(FileEventStreamContract, AChangeIsToldByItsFolder, EachOfSeveralPathsIsWatched,
                            ALinkIsWatchedWhereItLeadsToAndToldAsGiven, NothingIsToldAfterItsEnd,
                            ItMayEndInACallback);

} // namespace vesko::testing
