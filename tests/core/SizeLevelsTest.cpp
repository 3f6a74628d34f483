#include "core/SizeLevels.h"

#include "concurrency/Cancelled.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;

/// Levels that write down what is asked of them.
class RecordedLevels {
public:
    bool exists = true;
    std::optional<std::int64_t> quick;
    std::int64_t du = 0;
    std::int64_t walk = 0;
    bool walkIsCancelled = false;
    std::vector<std::string> asked;

    std::int64_t size(bool followLinks) {
        const auto flag = [](bool follow) { return follow ? " following" : ""; };
        const SizeLevels levels{
            [this](const FileURL&) { return asked.push_back("exists"), exists; },
            [this, flag](const FileURL&, bool f) {
                return asked.push_back(std::string("quick") + flag(f)), quick;
            },
            [this, flag](const FileURL&, bool f) { return asked.push_back(std::string("du") + flag(f)), du; },
            [this](const FileURL&) {
                asked.push_back("walk");
                if (walkIsCancelled) throw Cancelled{};
                return walk;
            },
        };
        return sizeByLevels(FileURL("/x"), followLinks, levels);
    }
};

TEST(SizeLevels, WhatDoesNotExistIsZeroAndAsksNothingElse) {
    RecordedLevels levels;
    levels.exists = false;
    levels.quick = levels.du = levels.walk = 5000;
    EXPECT_EQ(levels.size(true), 0);
    EXPECT_THAT(levels.asked, ElementsAre("exists"));
}

TEST(SizeLevels, AQuickFigureIsTheSize) {
    RecordedLevels levels;
    levels.quick = 5000;
    levels.du = 7000;
    EXPECT_EQ(levels.size(false), 5000);
    EXPECT_THAT(levels.asked, ElementsAre("exists", "quick"));
}

TEST(SizeLevels, WithoutAQuickFigureDuAnswers) {
    RecordedLevels levels;
    levels.du = 7000;
    EXPECT_EQ(levels.size(false), 7000);
    EXPECT_THAT(levels.asked, ElementsAre("exists", "quick", "du"));
}

TEST(SizeLevels, TheFlagReachesBothLevelsThatFollowLinks) {
    RecordedLevels levels;
    levels.du = 7000;
    EXPECT_EQ(levels.size(true), 7000);
    EXPECT_THAT(levels.asked, ElementsAre("exists", "quick following", "du following"));
}

TEST(SizeLevels, ADuOfNothingFallsThroughToTheWalk) {
    for (const std::int64_t nothing : {std::int64_t{0}, std::int64_t{-1024}}) {
        RecordedLevels levels;
        levels.du = nothing;
        levels.walk = 9000;
        EXPECT_EQ(levels.size(false), 9000);
        EXPECT_THAT(levels.asked, ElementsAre("exists", "quick", "du", "walk"));
    }
}

TEST(SizeLevels, ACancelledWalkIsZero) {
    RecordedLevels levels;
    levels.walk = 9000;
    levels.walkIsCancelled = true;
    EXPECT_EQ(levels.size(false), 0);
}

} // namespace
} // namespace vesko
