#include "probes/ToolTable.h"

#include "probes/RunTool.h"
#include "support/TempTree.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

using testing::TempTree;

class ToolTable : public ::testing::Test {
protected:
    TempTree tree;
    const std::string tool = tree.path("usr/bin/tool");
    const std::vector<ToolStandIn> table{{tool, {tree.path("first"), tree.path("second")}}};
};

TEST_F(ToolTable, AToolAtItsOwnPlaceIsNeverReplaced) {
    tree.file("usr/bin/tool");
    tree.file("first");
    EXPECT_EQ(executableBehind(tool, table), tool);
    EXPECT_FALSE(isStoodInFor(tool, table));
}

TEST_F(ToolTable, TheFirstStandInThatExistsTakesThePlace) {
    tree.file("second");
    EXPECT_EQ(executableBehind(tool, table), tree.path("second"));
    tree.file("first");
    EXPECT_EQ(executableBehind(tool, table), tree.path("first"));
    EXPECT_TRUE(isStoodInFor(tool, table));
}

TEST_F(ToolTable, WithoutAnyStandInThePathStays) {
    EXPECT_EQ(executableBehind(tool, table), tool);
    EXPECT_TRUE(isStoodInFor(tool, table));
}

TEST_F(ToolTable, ALinkToNothingIsNoTool) {
    tree.link("usr/bin/tool", "nowhere");
    tree.file("first");
    EXPECT_EQ(executableBehind(tool, table), tree.path("first"));
}

TEST_F(ToolTable, APathWithoutARowStays) {
    EXPECT_EQ(executableBehind("/no/such/tool", table), "/no/such/tool");
    EXPECT_FALSE(isStoodInFor("/no/such/tool", table));
}

TEST_F(ToolTable, WithoutRowsNothingChanges) {
    for (const char* path : {"/usr/bin/mdfind", "/usr/local/bin/docker", "/usr/bin/du"}) {
        EXPECT_EQ(executableBehind(path, {}), path);
        EXPECT_FALSE(isStoodInFor(path, {}));
    }
}

TEST_F(ToolTable, AToolWithoutARowIsStartedAtItsPath) {
    const auto child = runTool("/bin/echo", {"a", "b c"});
    ASSERT_TRUE(child);
    EXPECT_EQ(child->standardOutput, "a b c\n");
    EXPECT_FALSE(runTool("/no/such/tool", {}));
}

} // namespace
} // namespace vesko
