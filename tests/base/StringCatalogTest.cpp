#include "base/StringCatalog.h"

#include "base/LanguageGuard.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <thread>

namespace vesko {
namespace {

TEST(StringCatalog, AKeyIsLookedUpInTheLanguageInForce) {
    LanguageGuard language(Language::english);
    EXPECT_EQ(localized("probe.subtitle.item", 2), "2 items");
    setCurrentLanguage(Language::portuguese);
    EXPECT_EQ(localized("probe.subtitle.item", 2), "2 itens");
}

TEST(StringCatalog, AMissingKeyIsItsOwnText) {
    EXPECT_EQ(localized("probe.no.such.title"), "probe.no.such.title");
    EXPECT_EQ(localized("no.such %@", "text"), "no.such %@");
    EXPECT_EQ(catalogText("probe.no.such.title", Language::english), "");
}

TEST(StringCatalog, EnglishHasTheSingularForOneAlone) {
    LanguageGuard language(Language::english);
    EXPECT_EQ(localized("probe.subtitle.item", 0), "0 items");
    EXPECT_EQ(localized("probe.subtitle.item", 1), "1 item");
    EXPECT_EQ(localized("probe.subtitle.item", 2), "2 items");
}

TEST(StringCatalog, PortugueseHasTheSingularForZeroAndOne) {
    LanguageGuard language(Language::portuguese);
    EXPECT_EQ(localized("probe.subtitle.item", 0), "0 item");
    EXPECT_EQ(localized("probe.subtitle.item", 1), "1 item");
    EXPECT_EQ(localized("probe.subtitle.item", 2), "2 itens");
}

TEST(StringCatalog, NumbersAreGroupedByTheLanguage) {
    LanguageGuard language(Language::english);
    EXPECT_EQ(localized("probe.subtitle.item", 999), "999 items");
    EXPECT_EQ(localized("probe.subtitle.item", 1000), "1,000 items");
    EXPECT_EQ(localized("probe.subtitle.item", -1234567), "-1,234,567 items");
    setCurrentLanguage(Language::portuguese);
    EXPECT_EQ(localized("probe.subtitle.item", 1234567), "1.234.567 itens");
    EXPECT_EQ(localized("probe.subtitle.item", -123), "-123 itens");
}

TEST(StringCatalog, APlaceholderWithoutAnArgumentStaysVisible) {
    LanguageGuard language(Language::english);
    EXPECT_EQ(localized("probe.subtitle.item"), "%lld items");
}

TEST(StringCatalog, TheKeysAreSortedAndDifferent) {
    const std::vector<std::string> keys = catalogKeys();
    EXPECT_FALSE(keys.empty());
    EXPECT_TRUE(std::ranges::is_sorted(keys));
    EXPECT_EQ(std::ranges::adjacent_find(keys), keys.end());
}

TEST(StringCatalog, AnyPortugueseIsPortugueseAndEverythingElseEnglish) {
    for (const char* identifier : {"pt", "pt-BR", "pt_BR.UTF-8", "pt-PT", "PT_br", "pt@latin"})
        EXPECT_EQ(languageFromIdentifier(identifier), Language::portuguese) << identifier;
    for (const char* identifier : {"", "C", "en", "en_US.UTF-8", "es-419", "ptx", "p", "POSIX"})
        EXPECT_EQ(languageFromIdentifier(identifier), Language::english) << identifier;
}

TEST(StringCatalog, TheLocaleIdentifierIsTheOneThatFilesRecord) {
    LanguageGuard language(Language::english);
    EXPECT_EQ(currentLocaleIdentifier(), "en");
    setCurrentLanguage(Language::portuguese);
    EXPECT_EQ(currentLocaleIdentifier(), "pt-BR");
}

TEST(StringCatalog, SeveralThreadsLookTextsUp) {
    LanguageGuard language(Language::english);
    std::vector<std::thread> threads;
    std::atomic<int> wrong = 0;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&wrong, number] {
            for (int round = 0; round < 500; ++round) {
                if (number == 0) setCurrentLanguage(round % 2 ? Language::english : Language::portuguese);
                const std::string text = localized("probe.subtitle.item", 7);
                if (text != "7 items" && text != "7 itens") ++wrong;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace vesko
