#include "probes/ToolTable.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

TEST(ToolStandInsOnMacos, EveryToolIsWhereTheCatalogSays) { EXPECT_TRUE(toolStandIns().empty()); }

} // namespace
} // namespace vesko
