#pragma once
#include "base/Paths.h"
#include "support/ScopedEnvironment.h"
#include <gtest/gtest.h>
#include <string>

namespace vesko::testing {

/// What the program's own folders promise on every system; the parameter is a home folder.
class StandardFoldersContract : public ::testing::TestWithParam<std::string> {
protected:
    static bool liesBelow(const FileURL& folder, const FileURL& above) {
        return folder.path().size() > above.path().size() + 1 &&
               folder.path().starts_with(above.path() + "/");
    }

    // Where a person may say otherwise, nobody does.
    ScopedEnvironment data_{"XDG_DATA_HOME", std::nullopt};
    ScopedEnvironment settings_{"XDG_CONFIG_HOME", std::nullopt};
    ScopedEnvironment home_{"HOME", GetParam()};
    ScopedEnvironment temporary_{"TMPDIR", "/scratch of all/"};
};

TEST_P(StandardFoldersContract, LieBelowTheHomeFolder) {
    ASSERT_EQ(homeFolder(), FileURL(GetParam()));
    EXPECT_TRUE(liesBelow(applicationSupportFolder(), homeFolder())) << applicationSupportFolder().path();
    EXPECT_TRUE(liesBelow(configurationFolder(), homeFolder())) << configurationFolder().path();
}

TEST_P(StandardFoldersContract, NeitherIsTheOtherOrLiesBelowIt) {
    EXPECT_NE(applicationSupportFolder(), configurationFolder());
    EXPECT_FALSE(liesBelow(applicationSupportFolder(), configurationFolder()));
    EXPECT_FALSE(liesBelow(configurationFolder(), applicationSupportFolder()));
}

TEST_P(StandardFoldersContract, AreAbsoluteWhateverTheEnvironmentSays) {
    for (const std::optional<std::string>& home :
         {std::optional<std::string>(), std::optional<std::string>(""),
          std::optional<std::string>("home/ana")}) {
        const ScopedEnvironment odd("HOME", home);
        const ScopedEnvironment scratch("TMPDIR", home);
        EXPECT_TRUE(applicationSupportFolder().path().starts_with('/')) << home.value_or("none");
        EXPECT_TRUE(configurationFolder().path().starts_with('/')) << home.value_or("none");
    }
}

TEST_P(StandardFoldersContract, LieBelowTheTemporaryFolderWhereThereIsNoHomeFolder) {
    const ScopedEnvironment none("HOME", "/");
    EXPECT_EQ(applicationSupportFolder().parent(), FileURL("/scratch of all"));
    EXPECT_EQ(configurationFolder().parent(), FileURL("/scratch of all"));
    EXPECT_NE(applicationSupportFolder(), configurationFolder());
}

TEST_P(StandardFoldersContract, TheStateLiesUnderTheProgramsName) {
    EXPECT_EQ(applicationSupportFolder().lastPathComponent(), "Vesko");
}

inline const auto homeFolders =
    ::testing::Values("/home/ana", "/Users/Ana Concei\u00e7\u00e3o", "/a", "/caf\xe9");

} // namespace vesko::testing
