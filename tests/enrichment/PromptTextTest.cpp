#include "enrichment/PromptText.h"

#include <gtest/gtest.h>

namespace vesko {
namespace {

TEST(PromptText, OnlyTheBytesThatAreNoTextAreEscaped) {
    EXPECT_EQ(promptText("0 | caf\xc3\xa9 | /a\n1 | b"), "0 | caf\xc3\xa9 | /a\n1 | b");
    EXPECT_EQ(promptText("0 | caf\xe9 \xc3\xa9 | /a\n1 | \xed\xa0\x80"),
              "0 | caf\\xE9 \xc3\xa9 | /a\n1 | \\xED\\xA0\\x80");
    EXPECT_EQ(promptText(""), "");
    EXPECT_EQ(promptText("\xff\n"), "\\xFF\n");
}

} // namespace
} // namespace vesko
