#include "base/UUID.h"
#include <gtest/gtest.h>
#include <regex>

namespace vesko {
namespace {

TEST(UUID, IsARandomOneInUpperCaseAndNewAtEachCall) {
    const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    const std::string first = newUUID();
    EXPECT_TRUE(std::regex_match(first, form)) << first;
    EXPECT_NE(newUUID(), first);
}

} // namespace
} // namespace vesko
