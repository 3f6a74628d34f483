#include "PassSamples.h"
#include "base/StringCatalog.h"
#include "core/CatalogRows.h"
#include "core/GroupBuilders.h"
#include "core/ProbeCatalog.h"
#include "enrichment/CleanupReviewService.h"
#include "support/LanguageScope.h"
#include "support/builders.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace vesko::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

std::vector<ReviewPatch> patchesFor(const Record& answer, std::optional<std::string> currentGroupID) {
    const FileURL url("/u/x");
    const std::vector<PendingReviewItem> batch{{"4", url, 5, "x", true, "/u/x", std::move(currentGroupID)}};
    return CleanupReviewService::patches(answerOf({answer}), batch);
}

class CleanupReviewAnswer : public ::testing::Test {
protected:
    const LanguageScope english{Language::english};
};

TEST_F(CleanupReviewAnswer, AReclassificationWithinItsGroupIsAPromotion) {
    EXPECT_THAT(patchesFor(reviewed("4", "reclassify", "trash"), "trash"),
                ElementsAre(ReviewPatch::promote(item("/u/x", 5), catalog("trash"))));
}

TEST_F(CleanupReviewAnswer, AReclassificationFromNoGroupIsAPromotion) {
    EXPECT_THAT(patchesFor(reviewed("4", "reclassify", "trash"), std::nullopt),
                ElementsAre(ReviewPatch::promote(item("/u/x", 5), catalog("trash"))));
}

TEST_F(CleanupReviewAnswer, AReclassificationFromAnotherGroupIsOne) {
    EXPECT_THAT(patchesFor(reviewed("4", "reclassify", "trash"), "discover.caches"),
                ElementsAre(ReviewPatch::reclassify(item("/u/x", 5), "discover.caches", catalog("trash"))));
}

TEST_F(CleanupReviewAnswer, APromotionStaysOneWhateverTheGroup) {
    EXPECT_THAT(patchesFor(reviewed("4", "promote", "trash"), "discover.caches"),
                ElementsAre(ReviewPatch::promote(item("/u/x", 5), catalog("trash"))));
}

TEST_F(CleanupReviewAnswer, AnyGroupOfTheCatalogMayBeTheTarget) {
    for (const std::string_view id : {"discover.appSupport", "project.artifacts", "docker.volumes"})
        EXPECT_THAT(patchesFor(reviewed("4", "promote", std::string(id)), std::nullopt),
                    ElementsAre(ReviewPatch::promote(item("/u/x", 5), catalog(id))));
}

TEST_F(CleanupReviewAnswer, AnInventedGroupIsDropped) {
    for (const std::string_view id :
         {"cache.invented", "", "Trash", "trash ", "trash\n", "../trash", "/", "none"})
        EXPECT_THAT(patchesFor(reviewed("4", "promote", std::string(id)), "discover.caches"), IsEmpty())
            << id;
}

TEST_F(CleanupReviewAnswer, AnAnswerWithoutAGroupIsDropped) {
    Record missing = reviewed("4", "promote", "trash");
    missing.erase(missing.begin() + 2);
    EXPECT_THAT(patchesFor(missing, std::nullopt), IsEmpty());
    EXPECT_THAT(patchesFor(reviewed("4", "promote", std::nullopt), std::nullopt), IsEmpty());
}

TEST_F(CleanupReviewAnswer, ADemotionIsDropped) {
    EXPECT_THAT(patchesFor(reviewed("4", "demote", "trash"), "discover.caches"), IsEmpty());
    EXPECT_THAT(patchesFor(reviewed("4", "demote", std::nullopt), std::nullopt), IsEmpty());
}

TEST_F(CleanupReviewAnswer, AnInventedIdIsDropped) {
    for (const std::string_view id : {"5", "", "04", "/u/x", "x"})
        EXPECT_THAT(patchesFor(reviewed(std::string(id), "promote", "trash"), std::nullopt), IsEmpty()) << id;
}

TEST_F(CleanupReviewAnswer, ThePromptListsTheRulesTheGroupsAndTheItems) {
    const std::vector<PendingReviewItem> batch{
        {"3", FileURL("/Users/a/Library/Caches/Homebrew"), 1'048'576, "Homebrew", true,
         "/Users/a/Library/Caches/Homebrew", std::nullopt},
        {"4", FileURL("/u/x"), 7, "x", false, "/u/x", "discover.caches"}};
    const std::string prompt = CleanupReviewService::prompt(batch);
    EXPECT_THAT(
        prompt,
        StartsWith(
            "Revise candidatos de limpeza do Vesko. Para cada entrada devolva ReviewEntry com o MESMO id.\n"
            "promote = adicionar candidato perdido a um grupo existente (targetGroupID obrigatorio).\n"
            "reclassify = mover para outro grupo (targetGroupID obrigatorio).\n"
            "Use SOMENTE targetGroupID da lista abaixo. Nunca invente IDs.\n"
            "Preferir grupos dedicados (cache.*, logs.stale, trash) em vez de discover.* quando o caminho "
            "combinar.\n"
            "Na duvida, mantenha o item e use revisar para safety.\n"
            "\n"
            "Grupos validos:\n"
            "- apps.unused: "));
    EXPECT_TRUE(
        prompt.ends_with("\n\n3 | Homebrew | /Users/a/Library/Caches/Homebrew | group:none | 1048576 bytes\n"
                         "4 | x | /u/x | group:discover.caches | 7 bytes"));
    std::vector<std::string> groups = linesBehind(prompt, groupsAnnounced);
    groups.erase(std::ranges::find(groups, std::string()), groups.end());
    EXPECT_THAT(groups, SizeIs(catalogOrder.size()));
    EXPECT_TRUE(std::ranges::is_sorted(groups));
    for (const std::string_view id : catalogOrder)
        EXPECT_THAT(groups, ::testing::Contains("- " + std::string(id) + ": " + probeTitle(id)));
}

TEST_F(CleanupReviewAnswer, TheGroupsStayInTheLanguageTheyWereFirstAskedForIn) {
    const std::string first = CleanupReviewService::prompt({});
    const LanguageScope portuguese(Language::portuguese);
    EXPECT_NE(probeTitle("trash"), catalogText("probe.trash.title", Language::english));
    EXPECT_EQ(CleanupReviewService::prompt({}), first);
}

TEST_F(CleanupReviewAnswer, AHostileNameAddsNoLineToABatch) {
    std::vector<ScanReviewCandidate> offered;
    for (const std::string& name : hostileNames()) {
        offered.push_back(candidate("/t/" + name));
        offered.back().name = name;
    }
    const auto items =
        collect({discovered("discover\n99 | x", {item("/t/a\nb", hundredMebibytes)})}, offered);
    const std::vector<std::string> lines = reviewedLines(CleanupReviewService::prompt(items));
    ASSERT_THAT(lines, SizeIs(hostileNames().size() + 1));
    for (std::size_t at = 0; at < lines.size(); ++at) {
        EXPECT_THAT(lines[at], StartsWith(std::to_string(at) + " | "));
        EXPECT_TRUE(lines[at].ends_with(" bytes")) << lines[at];
        EXPECT_TRUE(isOneLine(lines[at])) << lines[at];
    }
}

TEST_F(CleanupReviewAnswer, NothingOfTheModelsWordsReachesAPatch) {
    Record talkative = reviewed("4", "promote", "trash");
    talkative[3].second = "Totally safe";
    talkative[4].second = "seguro";
    talkative[5].second = "rm -rf /";
    EXPECT_THAT(patchesFor(talkative, std::nullopt),
                ElementsAre(ReviewPatch::promote(item("/u/x", 5), catalog("trash"))));
}

} // namespace
} // namespace vesko
