#include "base/Paths.h"
#include "support/ScopedEnvironment.h"
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

namespace vesko {
namespace {

using testing::ScopedEnvironment;

TEST(StandardFolders, StateLiesInTheFolderThatTheEnvironmentNames) {
    const ScopedEnvironment data("XDG_DATA_HOME", "/data");
    const ScopedEnvironment config("XDG_CONFIG_HOME", "/config/");
    EXPECT_EQ(applicationSupportFolder(), FileURL("/data/Vesko"));
    EXPECT_EQ(configurationFolder(), FileURL("/config/vesko"));
}

TEST(StandardFolders, WithoutAnAbsoluteFolderStateLiesBelowTheHomeFolder) {
    const ScopedEnvironment home("HOME", "/home/ana");
    for (const auto& value :
         {std::optional<std::string>(), std::optional<std::string>(""), std::optional<std::string>("data")}) {
        const ScopedEnvironment data("XDG_DATA_HOME", value);
        const ScopedEnvironment config("XDG_CONFIG_HOME", value);
        EXPECT_EQ(applicationSupportFolder(), FileURL("/home/ana/.local/share/Vesko"));
        EXPECT_EQ(configurationFolder(), FileURL("/home/ana/.config/vesko"));
    }
}

TEST(StandardFolders, WithoutAHomeFolderStateLiesBelowTheTemporaryFolder) {
    const ScopedEnvironment home("HOME", "/");
    const ScopedEnvironment temporary("TMPDIR", "/scratch");
    const ScopedEnvironment data("XDG_DATA_HOME", std::nullopt);
    const ScopedEnvironment config("XDG_CONFIG_HOME", std::nullopt);
    EXPECT_EQ(applicationSupportFolder(), FileURL("/scratch/Vesko"));
    EXPECT_EQ(configurationFolder(), FileURL("/scratch/vesko"));
}

} // namespace
} // namespace vesko
