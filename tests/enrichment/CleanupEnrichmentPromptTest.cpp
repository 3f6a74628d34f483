#include "PassSamples.h"
#include "base/StringCatalog.h"
#include "enrichment/CleanupEnrichmentService.h"
#include "enrichment/EnrichmentBatch.h"
#include "support/LanguageScope.h"
#include "support/builders.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace vesko::testing;
using ::testing::HasSubstr;
using ::testing::SizeIs;

class CleanupEnrichmentPrompt : public ::testing::Test {
protected:
    const LanguageScope english{Language::english};
};

TEST_F(CleanupEnrichmentPrompt, TheNameOfAnItemTellsGenericFoldersApart) {
    const auto pending = CleanupEnrichmentService::pendingItems(
        {discovered("discover.caches", {item("/w/shop/node_modules", 1)})});
    ASSERT_THAT(pending, SizeIs(1));
    EXPECT_EQ(pending[0].id, "0");
    EXPECT_THAT(pending[0].name, HasSubstr("shop"));
    EXPECT_EQ(pending[0].path, "/w/shop/node_modules");
}

TEST_F(CleanupEnrichmentPrompt, ThePersonsLanguageIsAskedFor) {
    const std::string inEnglish = CleanupEnrichmentService::instructions();
    const LanguageScope portuguese(Language::portuguese);
    const std::string inPortuguese = CleanupEnrichmentService::instructions();
    EXPECT_THAT(inEnglish, HasSubstr("in English"));
    EXPECT_THAT(inPortuguese, HasSubstr("em português do Brasil"));
    for (const std::string& text : {inEnglish, inPortuguese}) {
        EXPECT_THAT(text, HasSubstr("\nThe reason field must explain"));
        for (const SchemaProperty& property : EnrichmentBatch::schema().properties)
            EXPECT_THAT(text, HasSubstr(std::string(property.name) + ":"));
        for (const std::string_view word : draftSafetyWords) EXPECT_THAT(text, HasSubstr(word));
    }
}

TEST_F(CleanupEnrichmentPrompt, AHostileNameAddsNoLineToABatch) {
    std::vector<ScannableItem> hostile;
    for (const std::string& name : hostileNames()) hostile.push_back(item("/t/" + name, 1));
    for (const Language language : {Language::english, Language::portuguese}) {
        const LanguageScope scope(language);
        const auto pending = CleanupEnrichmentService::pendingItems({discovered("discover.caches", hostile)});
        ASSERT_THAT(pending, SizeIs(hostile.size()));
        const std::string prompt = CleanupEnrichmentService::prompt(pending);
        const auto lines = linesBehind(prompt, language == Language::english ? "Judge" : "Avalie");
        ASSERT_THAT(lines, SizeIs(hostile.size()));
        for (std::size_t at = 0; at < lines.size(); ++at) {
            EXPECT_TRUE(lines[at].starts_with(std::to_string(at) + " | ")) << lines[at];
            EXPECT_TRUE(isOneLine(lines[at])) << lines[at];
        }
    }
}

TEST_F(CleanupEnrichmentPrompt, PlaceholdersAndOddBytesInANameStay) {
    const std::vector<CleanupEnrichmentService::PendingItem> batch{
        {"0", EnrichmentKey{"url:/a"}, "%@ %1$@ %lld", "/a \\n \xe9\xff"}};
    std::string expected = catalogText("ai.batchPrompt %@", Language::english);
    expected.replace(expected.find("%@"), 2, "0 | %@ %1$@ %lld | /a \\n \xe9\xff");
    EXPECT_EQ(CleanupEnrichmentService::prompt(batch), expected);
}

} // namespace
} // namespace vesko
