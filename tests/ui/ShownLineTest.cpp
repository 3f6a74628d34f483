#include "ui/ShownLine.h"

#include <gtest/gtest.h>

namespace vesko {
namespace {

TEST(ShownLine, OrdinaryTextsStayAsTheyAre) {
    for (const char* text :
         {"", "Deleting it costs a download.", "O índice é refeito sozinho · 3 GB", "two  blanks",
          "<b>not bold</b> &amp; %1$@", "שלום \xe2\x80\x8f", "👩‍👩‍👧"})
        EXPECT_EQ(shownLine(text), QString::fromUtf8(text));
}

TEST(ShownLine, LineBreaksAndControlCharactersBecomeBlanks) {
    EXPECT_EQ(shownLine("a\nb\r\nc\td"), QStringLiteral("a b  c d"));
    EXPECT_EQ(shownLine(std::string_view("a\0b\x1b[2Jc\x7f", 9)), QStringLiteral("a b [2Jc "));
    EXPECT_EQ(shownLine("a\xc2\x85"
                        "b\xe2\x80\xa8"
                        "c\xe2\x80\xa9"
                        "d"),
              QStringLiteral("a b c d"));
}

TEST(ShownLine, NothingTurnsTheDirectionOfWritingAround) {
    for (const char* turn :
         {"\u202a", "\u202b", "\u202c", "\u202d", "\u202e", "\u2066", "\u2067", "\u2068", "\u2069"})
        EXPECT_EQ(shownLine(std::string("safe") + turn + "gpj.exe"), QStringLiteral("safegpj.exe"));
}

TEST(ShownLine, WhatIsTooLongEndsInAnEllipsisAndCutsNoCharacterApart) {
    EXPECT_EQ(shownLine(std::string(400, 'x')), QString(400, QLatin1Char('x')));
    const QString cut = shownLine(std::string(10'000, 'x'));
    EXPECT_EQ(cut.size(), 400);
    EXPECT_TRUE(cut.endsWith(QChar(0x2026)));
    std::string pairs = "x";
    for (int i = 0; i < 300; ++i) pairs += "\U0001f600";
    const QString whole = shownLine(pairs);
    EXPECT_LE(whole.size(), 400);
    EXPECT_TRUE(whole.isValidUtf16());
}

TEST(ShownLine, BytesThatAreNoTextAreMarked) { EXPECT_EQ(shownLine("a\xff"), QStringLiteral("a\uFFFD")); }

} // namespace
} // namespace vesko
