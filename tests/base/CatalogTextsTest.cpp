#include "base/StringCatalog.h"

#include "base/LanguageGuard.h"
#include "base/RequiredTexts.h"
#include "base/Text.h"
#include <algorithm>
#include <cctype>
#include <gmock/gmock.h>
#include <regex>
#include <set>

namespace vesko {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr std::array languages{Language::english, Language::portuguese};

const char* nameOf(Language language) { return language == Language::english ? "English" : "Portuguese"; }

std::vector<std::string> allRequiredKeys() {
    std::vector<std::string> keys(requiredTexts.begin(), requiredTexts.end());
    for (const std::string_view id : probesWithTexts) {
        keys.push_back("probe." + std::string(id) + ".title");
        keys.push_back("probe." + std::string(id) + ".reason");
    }
    return keys;
}

/// "1@", "2lld": which argument is shown as what; those without a number are counted in their order.
std::set<std::string> placeholders(const std::string& text) {
    static const std::regex pattern(R"(%(?:(\d+)\$)?(@|lld))");
    std::set<std::string> found;
    int next = 1;
    for (std::sregex_iterator at(text.begin(), text.end(), pattern), end; at != end; ++at)
        found.insert(((*at)[1].matched ? (*at)[1].str() : std::to_string(next++)) + (*at)[2].str());
    return found;
}

/// Arguments of the right kinds for every placeholder of a text, each number `number`.
std::vector<TextArgument> argumentsFor(const std::string& text, std::int64_t number) {
    std::vector<TextArgument> arguments;
    for (const std::string& placeholder : placeholders(text)) {
        if (placeholder.ends_with("lld"))
            arguments.emplace_back(number);
        else
            arguments.emplace_back(std::string("X"));
    }
    return arguments;
}

std::string filled(const std::string& key, const std::string& text, std::int64_t number) {
    const std::vector<TextArgument> arguments = argumentsFor(text, number);
    return localized(key, std::span<const TextArgument>(arguments));
}

template <class Check> void forEveryText(Check check) {
    for (const std::string& key : catalogKeys())
        for (const Language language : languages) {
            SCOPED_TRACE(key + ", " + nameOf(language));
            check(key, catalogText(key, language), language);
        }
}

TEST(CatalogTexts, EveryTextThatIsNeededIsThereInBothLanguages) {
    for (const std::string& key : allRequiredKeys())
        for (const Language language : languages)
            EXPECT_NE(catalogText(key, language), "") << key << ", " << nameOf(language);
}

TEST(CatalogTexts, NoTextIsThereThatNothingNeeds) {
    const std::vector<std::string> required = allRequiredKeys();
    for (const std::string& key : catalogKeys())
        EXPECT_NE(std::ranges::find(required, key), required.end()) << key;
}

TEST(CatalogTexts, ThereAreFortyFiveTitlesAndReasons) {
    int titles = 0;
    int reasons = 0;
    for (const std::string& key : catalogKeys()) {
        if (key.starts_with("probe.") && key.ends_with(".title")) ++titles;
        if (key.starts_with("probe.") && key.ends_with(".reason")) ++reasons;
    }
    EXPECT_EQ(titles, 45);
    EXPECT_EQ(reasons, 45);
    EXPECT_EQ(std::set<std::string_view>(probesWithTexts.begin(), probesWithTexts.end()).size(), 45U);
}

TEST(CatalogTexts, BothLanguagesShowTheSameArguments) {
    for (const std::string& key : catalogKeys()) {
        const auto english = placeholders(catalogText(key, Language::english));
        EXPECT_EQ(placeholders(catalogText(key, Language::portuguese)), english) << key;
        if (!placeholders(key).empty()) {
            EXPECT_EQ(placeholders(key), english) << key;
        }
    }
}

TEST(CatalogTexts, NoPlaceholderIsLeftWhenTheArgumentsAreGiven) {
    for (const std::int64_t number : {0, 1, 2}) {
        forEveryText([number](const std::string& key, const std::string& text, Language language) {
            LanguageGuard guard(language);
            EXPECT_THAT(filled(key, text, number), Not(HasSubstr("%")));
        });
    }
}

TEST(CatalogTexts, WhatIsCountedHasASingularAndAPlural) {
    // Thresholds and exit codes are figures, not counts; progress shows bare figures.
    const std::set<std::string> figures{
        "action.deleting.progress %1$lld %2$lld %3$@", "alert.preferences.lowSpace.threshold %lld",
        "alert.preferences.opportunity.threshold %lld", "error.docker.deleteFailed %1$@ %2$lld",
        "error.simulator.deleteFailed %lld"};
    int counted = 0;
    forEveryText([&](const std::string& key, const std::string& text, Language language) {
        if (text.find("lld") == std::string::npos || figures.contains(key)) return;
        ++counted;
        LanguageGuard guard(language);
        const auto withoutFigures = [&](std::int64_t number) {
            return std::regex_replace(filled(key, text, number), std::regex("[0-9]"), "#");
        };
        EXPECT_NE(withoutFigures(1), withoutFigures(2));
        EXPECT_EQ(withoutFigures(2), withoutFigures(7));
        EXPECT_EQ(withoutFigures(0), withoutFigures(language == Language::portuguese ? 1 : 2));
    });
    EXPECT_GE(counted, 22);
}

TEST(CatalogTexts, EachNumberOfATextChoosesItsOwnForm) {
    LanguageGuard language(Language::english);
    const char* key = "cleanup.partialFailure %1$lld %2$lld";
    EXPECT_EQ(localized(key, 1, 2), "1 item deleted, 2 could not be deleted and stay selected.");
    EXPECT_EQ(localized(key, 2, 1), "2 items deleted, 1 could not be deleted and stays selected.");
    setCurrentLanguage(Language::portuguese);
    EXPECT_EQ(localized(key, 1, 2), "1 item apagado, 2 não puderam ser apagados e continuam selecionados.");
    EXPECT_EQ(localized(key, 2000, 1),
              "2.000 itens apagados, 1 não pôde ser apagado e continua selecionado.");
}

TEST(CatalogTexts, TextsWithAmountsAndNumbersReadAsWritten) {
    LanguageGuard language(Language::english);
    EXPECT_EQ(localized("cleanup.success %1$lld %2$@", 1, "3.1 GB"), "1 item deleted, 3.1 GB freed.");
    EXPECT_EQ(localized("banner.scanProgress %1$lld %2$@ %3$lld", 1, "2 MB", 1234),
              "1 place checked · 2 MB · 1,234 items found");
    EXPECT_EQ(localized("action.selectedSummary %1$@ %2$lld", "3.1 GB", 1), "3.1 GB selected in 1 group");
    EXPECT_EQ(localized("action.deleting.progress %1$lld %2$lld %3$@", 12, 40, "3.1 GB"),
              "12 of 40 · 3.1 GB");
    setCurrentLanguage(Language::portuguese);
    EXPECT_EQ(localized("action.selectedSummary %1$@ %2$lld", "0 KB", 0), "0 KB selecionados em 0 grupo");
    EXPECT_EQ(localized("home.volumeSummary %@ %@", "500 GB", "Disco"), "de 500 GB em Disco");
}

TEST(CatalogTexts, TheConfirmWordsCanBeTypedOnEveryKeyboard) {
    EXPECT_EQ(catalogText("delete.confirm.word", Language::english), "DELETE");
    EXPECT_EQ(catalogText("delete.confirm.word", Language::portuguese), "APAGAR");
    for (const Language language : languages)
        for (const char character : catalogText("delete.confirm.word", language))
            EXPECT_TRUE(character >= 'A' && character <= 'Z') << character;
}

TEST(CatalogTexts, NoTextShoutsNorIsAKeyNorIsPaddedWithBlanks) {
    forEveryText([](const std::string& key, const std::string& text, Language) {
        EXPECT_THAT(text, Not(HasSubstr("!")));
        EXPECT_NE(text, key);
        EXPECT_NE(text.substr(0, 1), " ");
        EXPECT_NE(text.back(), ' ');
        EXPECT_THAT(text, Not(HasSubstr("  ")));
    });
}

TEST(CatalogTexts, NoTextLooksLikeAKey) {
    const std::regex dotted(R"(\b[a-z]+(\.[a-zA-Z]+)+\b)");
    forEveryText([&](const std::string&, const std::string& text, Language) {
        if (text == "Next.js builds" || text.find(".js") != std::string::npos) return;
        EXPECT_FALSE(std::regex_search(text, dotted)) << text;
    });
}

TEST(CatalogTexts, NoTextNamesTheFileManagerOfOneSystem) {
    forEveryText([](const std::string&, const std::string& text, Language) {
        EXPECT_THAT(text, Not(HasSubstr("Finder")));
    });
}

TEST(CatalogTexts, ReasonsAreSentencesAndTitlesAreNot) {
    for (const std::string_view id : probesWithTexts)
        for (const Language language : languages) {
            const std::string title = catalogText("probe." + std::string(id) + ".title", language);
            const std::string reason = catalogText("probe." + std::string(id) + ".reason", language);
            EXPECT_NE(title.back(), '.') << title;
            EXPECT_EQ(reason.back(), '.') << reason;
            EXPECT_NE(reason.find(' '), std::string::npos) << reason;
        }
}

TEST(CatalogTexts, ReasonsFitOnTheirOneLine) {
    for (const std::string_view id : probesWithTexts)
        for (const Language language : languages) {
            const std::string reason = catalogText("probe." + std::string(id) + ".reason", language);
            EXPECT_LE(characterCount(reason), 95U) << reason;
        }
}

TEST(CatalogTexts, WhatIsFoundHasATitleOfItsOwnInEachLanguage) {
    for (const Language language : languages) {
        std::set<std::string> titles;
        for (const std::string_view id : probesWithTexts)
            EXPECT_TRUE(titles.insert(catalogText("probe." + std::string(id) + ".title", language)).second)
                << id;
    }
}

TEST(CatalogTexts, EveryReasonIsWrittenInBothLanguages) {
    for (const std::string_view id : probesWithTexts) {
        const std::string key = "probe." + std::string(id) + ".reason";
        EXPECT_NE(catalogText(key, Language::english), catalogText(key, Language::portuguese)) << key;
    }
}

} // namespace
} // namespace vesko
