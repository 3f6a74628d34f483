#include "base/Text.h"

#include "base/LanguageGuard.h"
#include <gtest/gtest.h>
#include <thread>

namespace vesko {
namespace {

TEST(Text, AnEmptyNeedleOccursInEveryText) {
    EXPECT_TRUE(containsIgnoringCase("", ""));
    EXPECT_TRUE(containsIgnoringCase("anything", ""));
    EXPECT_FALSE(containsIgnoringCase("", "a"));
}

TEST(Text, CaseIsIgnoredInEveryScript) {
    for (const Language language : {Language::english, Language::portuguese}) {
        LanguageGuard guard(language);
        EXPECT_TRUE(containsIgnoringCase("Library/Caches/CocoaPods", "cocoapods"));
        EXPECT_TRUE(containsIgnoringCase("npm", "NPM"));
        EXPECT_TRUE(containsIgnoringCase("CONFIGURAÇÃO", "configuração"));
        EXPECT_TRUE(containsIgnoringCase("Ψηφιακά", "ψΗΦ"));
        EXPECT_TRUE(containsIgnoringCase("Кэш", "кЭШ"));
        EXPECT_FALSE(containsIgnoringCase("npm", "npn"));
    }
}

TEST(Text, AccentsAreKeptApart) {
    EXPECT_FALSE(containsIgnoringCase("configuração", "configuracao"));
    EXPECT_FALSE(containsIgnoringCase("configuracao", "configuração"));
    EXPECT_FALSE(containsIgnoringCase("Vídeos", "video"));
    EXPECT_FALSE(containsIgnoringCase("ano", "año"));
}

TEST(Text, OneCharacterWrittenInTwoWaysIsTheSame) {
    EXPECT_TRUE(containsIgnoringCase("Vi\u0301deos", "V\u00EDDEOS"));
    EXPECT_TRUE(containsIgnoringCase("V\u00EDdeos", "i\u0301d"));
    EXPECT_FALSE(containsIgnoringCase("Vi\u0301deos", "vi"));
    EXPECT_TRUE(containsIgnoringCase("q\u0307\u0323", "Q\u0323\u0307")) << "marks in another order";
}

TEST(Text, TheAnswerIsTheSameWhetherTheTextIsAsciiOrNot) {
    for (const char* needle : {"a b", "A-B", "c/D", ".X_", "~y", "[z]"}) {
        const std::string text = "a B c-D a-b C/d .x_ ~Y [Z]";
        EXPECT_TRUE(containsIgnoringCase(text, needle)) << needle;
        EXPECT_TRUE(containsIgnoringCase(text + " ã", needle)) << needle;
    }
}

TEST(Text, BytesThatAreNoTextAreSearchedAsTheyAreShown) {
    EXPECT_TRUE(containsIgnoringCase("caf\xE9.txt", "\\XE9"));
    EXPECT_TRUE(containsIgnoringCase("caf\xE9.txt", "\xE9"));
    EXPECT_TRUE(containsIgnoringCase("caf\xE9.txt", "CAF"));
    EXPECT_FALSE(containsIgnoringCase("caf\xE9.txt", "café"));
}

TEST(Text, LettersThatAreMoreThanALetterAndAnAccentKeepTheirCase) {
    EXPECT_TRUE(containsIgnoringCase("L'Haÿ", "HA\u0178"));
    EXPECT_FALSE(containsIgnoringCase("ÿ", "ß"));
    EXPECT_TRUE(containsIgnoringCase("SMØRGÅS", "smørgås"));
    EXPECT_TRUE(containsIgnoringCase("ÆGIR", "ægir"));
    EXPECT_FALSE(containsIgnoringCase("3×4", "3÷4"));
}

TEST(Text, ANeedleChangesFromCallToCall) {
    EXPECT_TRUE(containsIgnoringCase("ação", "ÇÃ"));
    EXPECT_FALSE(containsIgnoringCase("ação", "ÇO"));
    EXPECT_TRUE(containsIgnoringCase("ação", "ÇÃ"));
    EXPECT_FALSE(containsIgnoringCase("acao", "ÇÃ"));
}

TEST(Text, SeveralThreadsSearchAtOnce) {
    std::vector<std::thread> threads;
    std::atomic<int> wrong = 0;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&wrong] {
            for (int round = 0; round < 500; ++round) {
                if (!containsIgnoringCase("Configuração do sistema", "AÇÃO DO")) ++wrong;
                if (containsIgnoringCase("Configuração do sistema", "acao")) ++wrong;
                if (lowercased("AÇÃO") != "ação") ++wrong;
                if (characterCount("ação") != 4) ++wrong;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST(Text, BlanksAndTabsAreTrimmedAndLineEndsStay) {
    EXPECT_EQ(trimmedBlanks(" \t a b\t "), "a b");
    EXPECT_EQ(trimmedBlanks("\n a \n"), "\n a \n");
    EXPECT_EQ(trimmedBlanks(" \t "), "");
    EXPECT_EQ(trimmedBlanks(""), "");
}

TEST(Text, WhiteSpaceOfEveryKindIsTrimmed) {
    EXPECT_EQ(trimmedWhiteSpace("\r\n\t a b \v\f\n"), "a b");
    EXPECT_EQ(trimmedWhiteSpace("\u00A0\u2003a\u3000\u2028"), "a");
    EXPECT_EQ(trimmedWhiteSpace("\u00A0\u2003"), "");
    EXPECT_EQ(trimmedWhiteSpace(""), "");
    EXPECT_EQ(trimmedWhiteSpace(" \xFF "), "\xFF");
    EXPECT_EQ(trimmedWhiteSpace("\u200Ba"), "\u200Ba") << "a zero-width space is no white space";
}

TEST(Text, LowerCaseFollowsTheRootLocale) {
    EXPECT_EQ(lowercased("Library/CACHES.I"), "library/caches.i");
    EXPECT_EQ(lowercased("ÇÃÉ Ω Я"), "çãé ω я");
    EXPECT_EQ(lowercased("İ"), "i\u0307");
    EXPECT_EQ(lowercased(""), "");
}

TEST(Text, BytesThatAreNoTextSurviveAChangeOfCase) {
    EXPECT_EQ(lowercased("A\xE9\xC3Ç"), "a\xE9\xC3ç");
    EXPECT_EQ(withFirstCharacterUppercased("\xE9xa"), "\xE9xa");
}

TEST(Text, OnlyTheFirstCharacterIsUppercased) {
    EXPECT_EQ(withFirstCharacterUppercased("chrome updater"), "Chrome updater");
    EXPECT_EQ(withFirstCharacterUppercased("árvore É"), "Árvore É");
    EXPECT_EQ(withFirstCharacterUppercased("e\u0301tude"), "E\u0301tude");
    EXPECT_EQ(withFirstCharacterUppercased("ßa"), "SSa");
    EXPECT_EQ(withFirstCharacterUppercased("1a"), "1a");
    EXPECT_EQ(withFirstCharacterUppercased(""), "");
}

TEST(Text, CharactersAreCountedAsAPersonSeesThem) {
    EXPECT_EQ(characterCount(""), 0U);
    EXPECT_EQ(characterCount("abc"), 3U);
    EXPECT_EQ(characterCount("a\r\nb"), 3U);
    EXPECT_EQ(characterCount("ação"), 4U);
    EXPECT_EQ(characterCount("ac\u0327a\u0303o"), 4U);
    EXPECT_EQ(characterCount("\U0001F468\u200D\U0001F469\u200D\U0001F467"), 1U);
    EXPECT_EQ(characterCount("\U0001F1E7\U0001F1F7\U0001F1F5\U0001F1F9"), 2U);
}

TEST(Text, NumberCharactersAreThoseOfUnicode) {
    for (const char32_t number : {U'0', U'9', U'\u0663', U'\u2167', U'\u00BD', U'\u00B2', U'\u3007'})
        EXPECT_TRUE(isNumberCharacter(number)) << static_cast<std::uint32_t>(number);
    for (const char32_t other : {U'a', U'-', U' ', U'\u4E00', U'\uFFFD', char32_t(0x110000)})
        EXPECT_FALSE(isNumberCharacter(other)) << static_cast<std::uint32_t>(other);
}

TEST(Text, CodePointsAreReadAndStrayBytesMarked) {
    EXPECT_EQ(codePoints("aç\U0001F600"), U"aç\U0001F600");
    EXPECT_EQ(codePoints("a\xE9z"), U"a\uFFFDz");
    EXPECT_EQ(codePoints("\xF0\x9F\x98"), U"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(codePoints(""), U"");
}

} // namespace
} // namespace vesko
