#include "background/BackgroundRefresh.h"

#include "support/MemoryUserDefaults.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

using testing::MemoryUserDefaults;

TEST(BackgroundRefresh, IsOnWithoutAValue) { EXPECT_TRUE(isBackgroundRefreshEnabled(MemoryUserDefaults())); }

TEST(BackgroundRefresh, ATextSaysNothing) {
    MemoryUserDefaults defaults;
    defaults.setString("vesko.backgroundRefreshEnabled", "false");
    EXPECT_TRUE(isBackgroundRefreshEnabled(defaults));
}

TEST(BackgroundRefresh, ANumberSaysNothing) {
    MemoryUserDefaults defaults;
    defaults.setInteger("vesko.backgroundRefreshEnabled", 0);
    EXPECT_TRUE(isBackgroundRefreshEnabled(defaults));
}

TEST(BackgroundRefresh, ABooleanDecides) {
    MemoryUserDefaults defaults;
    defaults.setBoolean("vesko.backgroundRefreshEnabled", false);
    EXPECT_FALSE(isBackgroundRefreshEnabled(defaults));
    defaults.setBoolean("vesko.backgroundRefreshEnabled", true);
    EXPECT_TRUE(isBackgroundRefreshEnabled(defaults));
}

} // namespace
} // namespace vesko
