#include "base/Paths.h"
#include "support/ScopedEnvironment.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

using testing::ScopedEnvironment;

TEST(StandardFoldersOnMacos, StateLiesInTheLibraryOfTheHomeFolder) {
    const ScopedEnvironment home("HOME", "/Users/ana");
    // What other systems take from the environment counts for nothing here.
    const ScopedEnvironment data("XDG_DATA_HOME", "/data");
    const ScopedEnvironment config("XDG_CONFIG_HOME", "/config");
    EXPECT_EQ(applicationSupportFolder(), FileURL("/Users/ana/Library/Application Support/Vesko"));
    EXPECT_EQ(configurationFolder(), FileURL("/Users/ana/Library/Preferences/vesko"));
}

TEST(StandardFoldersOnMacos, WithoutAHomeFolderStateLiesBelowTheTemporaryFolder) {
    const ScopedEnvironment home("HOME", "/");
    const ScopedEnvironment temporary("TMPDIR", "/scratch");
    EXPECT_EQ(applicationSupportFolder(), FileURL("/scratch/Vesko"));
    EXPECT_EQ(configurationFolder(), FileURL("/scratch/vesko"));
}

} // namespace
} // namespace vesko
