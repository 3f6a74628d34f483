// A whole scan of a home as large as a developer's.
#include "base/ChildProcess.h"
#include "core/DiskUsage.h"
#include "support/TempTree.h"
#include "walk/SampleTree.h"
#include <cstdlib>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace vesko {
namespace {

/// Making the tree takes far longer than scanning it, so the everyday run has a smaller one;
/// VESKO_LARGE_HOME=600000 makes it as large as a developer's home.
std::size_t entries() {
    const char* wanted = std::getenv("VESKO_LARGE_HOME");
    return wanted ? std::stoul(wanted) : 30'000;
}

TEST(LargeHome, AScanFinishesWithTheFigureOfTheProgram) {
    const testing::TempTree tree;
    const FileURL cache = tree.folder("home/.npm/_cacache");
    bench::sampleTree(cache.path(), entries());
    // A folder of very many candidates beside it.
    for (int i = 0; i < 2'000; ++i) tree.file("home/.Trash/" + std::to_string(i), "thrown away");

    const auto scan = runChild(VESKO_SCAN, {"--home", tree.path("home")});

    ASSERT_TRUE(scan);
    EXPECT_EQ(scan->status, 0);
    const std::string& output = scan->standardOutput;
    const std::size_t last = output.rfind('\n', output.size() - 2) + 1;
    const nlohmann::json report = nlohmann::json::parse(output.substr(last))["report"];
    ASSERT_EQ(report["groups"].size(), 2U);
    EXPECT_EQ(report["groups"][0]["id"], "cache.npm");
    EXPECT_EQ(report["groups"][0]["items"][0]["size"], duProgramSize(cache, true, runChild));
    EXPECT_EQ(report["groups"][1]["items"].size(), 2'000U);
}

} // namespace
} // namespace vesko
