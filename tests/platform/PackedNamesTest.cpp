#include "platform/posix/PackedNames.h"

#include <gmock/gmock.h>
#include <vector>

namespace vesko {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> emptied(PackedNames& names) {
    std::vector<std::string> all;
    for (std::string name; !names.empty();) {
        const char mark = names.pop(name);
        all.push_back(mark + name);
    }
    return all;
}

TEST(PackedNames, GivesTheNewestFirstWithItsMark) {
    PackedNames names;
    names.push("one", 'a');
    names.push("", 'b');
    names.push("three\n", 'c');
    EXPECT_EQ(names.count(), 3U);
    EXPECT_THAT(emptied(names), ElementsAre("cthree\n", "b", "aone"));
    EXPECT_TRUE(names.empty());
}

TEST(PackedNames, HandsTheOlderHalfOver) {
    PackedNames names;
    for (const char* name : {"1", "22", "333", "4444", "55555"}) names.push(name, 'x');
    PackedNames older = names.takeHalf();
    EXPECT_THAT(emptied(older), ElementsAre("x22", "x1"));
    EXPECT_THAT(emptied(names), ElementsAre("x55555", "x4444", "x333"));
}

TEST(PackedNames, KeepsASingleName) {
    PackedNames names;
    names.push("one", 'x');
    EXPECT_TRUE(names.takeHalf().empty());
    EXPECT_EQ(names.count(), 1U);
}

} // namespace
} // namespace vesko
