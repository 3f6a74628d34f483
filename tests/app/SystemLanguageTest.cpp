#include "app/SystemLanguage.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

TEST(SystemLanguage, TheFirstOneThatTheWindowHasCounts) {
    EXPECT_EQ(firstLanguageOf({"pt-BR", "en-US"}), Language::portuguese);
    EXPECT_EQ(firstLanguageOf({"en-US", "pt-BR"}), Language::english);
    EXPECT_EQ(firstLanguageOf({"de-DE", "pt-PT", "en"}), Language::portuguese);
    EXPECT_EQ(firstLanguageOf({"fr", "en_GB", "pt"}), Language::english);
}

TEST(SystemLanguage, WithoutOneOfThemItIsEnglish) {
    EXPECT_EQ(firstLanguageOf({}), Language::english);
    EXPECT_EQ(firstLanguageOf({"C", "", "de-DE", "no such language"}), Language::english);
}

} // namespace
} // namespace vesko
