#include "probes/TextPieces.h"

#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(TextPieces, EmptyPiecesDoNotCount) {
    EXPECT_THAT(piecesOf("\n\na\n\nb\n", "\n", 9), ElementsAre("a", "b"));
    EXPECT_THAT(piecesOf("a    b  ", "  ", 9), ElementsAre("a", "b"));
    EXPECT_THAT(piecesOf("a   b", "  ", 9), ElementsAre("a", " b"));
    for (const char* nothing : {"", "\n", "\n\n\n"}) EXPECT_THAT(piecesOf(nothing, "\n", 9), IsEmpty());
}

TEST(TextPieces, NoMorePiecesAreTakenThanAskedFor) {
    EXPECT_THAT(piecesOf("a b c", " ", 2), ElementsAre("a", "b"));
    EXPECT_THAT(piecesOf("a b c", " ", 0), IsEmpty());
    EXPECT_THAT(wordsOf(" a\t b\r\nc ", 2), ElementsAre("a", "b"));
    EXPECT_THAT(wordsOf(" a\t b\r\nc ", 9), ElementsAre("a", "b", "c"));
    EXPECT_THAT(wordsOf(" \t\n", 9), IsEmpty());
}

TEST(TextPieces, TheSecondFieldMayBeEmptyAndNeedsASeparator) {
    EXPECT_EQ(secondField("a\tb\tc", '\t'), "b");
    EXPECT_EQ(secondField("a\tb", '\t'), "b");
    EXPECT_EQ(secondField("\t\t", '\t'), "");
    EXPECT_EQ(secondField("a\t", '\t'), "");
    EXPECT_EQ(secondField("a b", '\t'), std::nullopt);
}

} // namespace
} // namespace vesko
