// Which tools Linux stands in for, and with what.
#include "probes/ToolTable.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace vesko {
namespace {

TEST(ToolStandIns, AreThoseOfTheSearchAndTheContainerClient) {
    const std::vector<ToolStandIn> rows = toolStandIns();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].path, "/usr/bin/mdfind");
    for (const std::string& each : rows[0].executables) EXPECT_TRUE(each.ends_with("/vesko-mdfind")) << each;
    EXPECT_EQ(rows[1], (ToolStandIn{"/usr/local/bin/docker", {"/usr/bin/docker"}}));
}

TEST(ToolStandIns, TheSearchProgramIsLookedForBesideTheRunningProgramFirst) {
    const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const std::vector<std::string> places = toolStandIns()[0].executables;
    ASSERT_EQ(places.size(), 3U);
    EXPECT_EQ(places[0], folder.string() + "/vesko-mdfind");
    EXPECT_EQ(places[1], folder.parent_path().string() + "/libexec/vesko/vesko-mdfind");
    EXPECT_TRUE(places[2].starts_with('/') && places[2].ends_with("/libexec/vesko/vesko-mdfind"))
        << places[2];
}

} // namespace
} // namespace vesko
