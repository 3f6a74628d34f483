#pragma once
#include "core/FastDirectorySize.h"
#include "support/MountNamespace.h"
#include "support/TempTree.h"
#include <gtest/gtest.h>
#include <string>

namespace vesko::testing {

/// What the quick figure of a folder promises on every system, on a volume that keeps figures of folders.
/// `System` stands for one of them; it lasts as long as its test.
template <class System> class QuickSizeContract : public ::testing::Test {
protected:
    QuickSizeContract() {
        // For the tests as another user.
        std::filesystem::permissions(tree.root().path(), std::filesystem::perms(0755));
    }
    FileURL largeFolder(std::string_view path) {
        tree.file(std::string(path) + "/below/file", std::string(1'000'000, 'x'));
        return tree.url(path);
    }
    static bool hasFigure(const FileURL& place) {
        const bool isThere = fastDirectorySize(place, false).has_value();
        EXPECT_EQ(fastDirectorySize(place, true).has_value(), isThere) << place.path();
        return isThere;
    }

    System system;
    TempTree tree;
};
TYPED_TEST_SUITE_P(QuickSizeContract);

TYPED_TEST_P(QuickSizeContract, ALargeFolderHasAFigureAboveTheFloor) {
    const FileURL large = this->largeFolder("large");
    for (const bool followsLinks : {false, true})
        EXPECT_GT(fastDirectorySize(large, followsLinks).value_or(0), quickFigureFloor);
}

TYPED_TEST_P(QuickSizeContract, AMissingPathHasNone) {
    const FileURL file = this->tree.file("file");
    for (const FileURL& place :
         {this->tree.url("missing"), this->tree.url("missing/deeper"), file.appending("below"), FileURL()})
        EXPECT_FALSE(this->hasFigure(place)) << place.path();
}

TYPED_TEST_P(QuickSizeContract, WhatIsNoFolderHasNone) {
    EXPECT_FALSE(this->hasFigure(this->tree.file("large", std::string(1'000'000, 'x'))));
    EXPECT_FALSE(this->hasFigure(this->tree.file("empty", "")));
    EXPECT_FALSE(this->hasFigure(this->tree.pipe("pipe")));
}

TYPED_TEST_P(QuickSizeContract, AFigureIsAboveTheFloorOrThereIsNone) {
    EXPECT_FALSE(this->hasFigure(this->tree.folder("empty")));
    for (const std::size_t bytes : {1, 4'096, 4'097, 40'960}) {
        const std::string name = std::to_string(bytes);
        this->tree.file(name + "/file", std::string(bytes, 'x'));
        EXPECT_GT(fastDirectorySize(this->tree.url(name), false).value_or(quickFigureFloor + 1),
                  quickFigureFloor)
            << bytes;
    }
}

TYPED_TEST_P(QuickSizeContract, AFolderThatCanNotBeReachedHasNone) {
    this->largeFolder("open/large");
    this->largeFolder("closed/large");
    std::filesystem::permissions(this->tree.path("closed"), std::filesystem::perms::none);
    const std::string wrong = asOrdinaryUser([this]() -> std::string {
        if (!this->hasFigure(this->tree.url("open/large"))) return "none of what can be reached";
        return this->hasFigure(this->tree.url("closed/large")) ? "a figure" : "";
    });
    std::filesystem::permissions(this->tree.path("closed"), std::filesystem::perms::owner_all);
    EXPECT_EQ(wrong, "");
}

TYPED_TEST_P(QuickSizeContract, APathIsAskedWhole) {
    this->tree.folder("Caches");
    for (const char* path : {"Caches e restos", "Caches/\u00e7\u00e3o \u96ea", "Caches/\xe7",
                             "Caches\nof old", "Caches/100%25#?&"}) {
        EXPECT_FALSE(this->hasFigure(this->tree.url(path))) << path;
        this->largeFolder(path);
        EXPECT_TRUE(this->hasFigure(this->tree.url(path))) << path;
    }
}

TYPED_TEST_P(QuickSizeContract, ALinkAmongTheFoldersAboveIsFollowed) {
    this->largeFolder("real/large");
    this->tree.folder("real/empty");
    this->tree.link("way", "real");
    EXPECT_TRUE(this->hasFigure(this->tree.url("way/large")));
    EXPECT_FALSE(this->hasFigure(this->tree.url("way/empty")));
}

REGISTER_TYPED_TEST_SUITE_P(QuickSizeContract, ALargeFolderHasAFigureAboveTheFloor, AMissingPathHasNone,
                            WhatIsNoFolderHasNone, AFigureIsAboveTheFloorOrThereIsNone,
                            AFolderThatCanNotBeReachedHasNone, APathIsAskedWhole,
                            ALinkAmongTheFoldersAboveIsFollowed);

} // namespace vesko::testing
