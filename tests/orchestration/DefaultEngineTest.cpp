#include "orchestration/CleanupFixture.h"

#include "base/ByteFormat.h"
#include "core/ProbeCatalog.h"
#include "support/LanguageScope.h"
#include "support/PortugueseLocale.h"
#include <algorithm>
#include <filesystem>

namespace vesko::testing {
namespace {

namespace fs = std::filesystem;

/// Scans as the program does, with the engine that the view model makes by itself, over a home of the test's.
class DefaultEngine : public CleanupTest {
protected:
    DefaultEngine() {
        parts.scanEngineFactory = nullptr;
        make();
    }
    /// A cache of npm of so many bytes.
    void npm(std::size_t bytes) { tree.file("home/.npm/_cacache/content", std::string(bytes, 'x')); }
    const CleanupGroup* find(const std::string& id) const {
        const auto found = std::ranges::find(*model->groups, id, &CleanupGroup::id);
        return found == model->groups->end() ? nullptr : &*found;
    }

    ScopedEnvironment home{"HOME", tree.path("home")};
    ScopedEnvironment data{"XDG_DATA_HOME", std::nullopt};
    // The containers of whoever runs the tests are none of theirs.
    ScopedEnvironment docker{"DOCKER_HOST", "unix://" + tree.path("no-daemon")};
};

TEST_F(DefaultEngine, AScanRunsTheWholeCatalogOverTheHomeAndMeasures) {
    npm(3'000'000);
    std::int64_t finished = 0;
    const auto watch = model->changes.subscribe([&] {
        if (model->scanProgress->has_value())
            finished = std::max(finished, (*model->scanProgress)->directoriesVisited);
    });
    scan();
    EXPECT_EQ(finished, static_cast<std::int64_t>(probeCatalog().size()));
    ASSERT_TRUE(find("cache.npm"));
    ASSERT_EQ(find("cache.npm")->items.size(), 1U);
    const ScannableItem& found = find("cache.npm")->items.front();
    EXPECT_EQ(found.url, tree.url("home/.npm/_cacache"));
    EXPECT_GE(found.size, 3'000'000);
    EXPECT_LT(found.size, 3'100'000);
    EXPECT_FALSE(*model->scanWasPartial);
}

TEST_F(DefaultEngine, TheFingerprintsOfTheWholeCatalogAreKeptWithTheList) {
    npm(3'000'000);
    scan();
    const auto snapshot = saved();
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->probeFingerprints, currentFingerprints(probeCatalog(), tree.url("home")));
    EXPECT_EQ(snapshot->probeFingerprints.size(), probeCatalog().size());
}

TEST_F(DefaultEngine, AnEngineOfTheTestsKeepsNoFingerprints) {
    parts.scanEngineFactory = [this](ScanMode mode) { return engine(mode); };
    make();
    finds({group("cache.npm", {item(tree.file("a").path())})});
    scan();
    ASSERT_TRUE(saved());
    EXPECT_TRUE(saved()->probeFingerprints.empty());
}

/// No probe says what it depends on, so a validation looks at every place again, after a start too.
TEST_F(DefaultEngine, AValidationRunsEveryProbeWhoseFingerprintTellsNothing) {
    npm(3'000'000);
    scan();
    ASSERT_TRUE(saved());
    make();
    ASSERT_TRUE(*model->didHydrateFromScanCache);
    ASSERT_TRUE(find("cache.npm"));
    npm(5'000'000);
    tree.file("home/Library/Caches/pip/wheel", std::string(2'000'000, 'x'));
    scan(ScanMode::validation);
    ASSERT_TRUE(find("cache.npm"));
    EXPECT_GE(find("cache.npm")->items.front().size, 5'000'000);
    EXPECT_TRUE(find("cache.pip"));
}

class CleanupInPortuguese : public DefaultEngine {
protected:
    CleanupInPortuguese() { make(); }
    PortugueseLocale locale;
    LanguageScope portuguese{Language::portuguese};
};

TEST_F(CleanupInPortuguese, AScanAndADeletionSpeakPortugueseAndCountRight) {
    if (!locale.isThere()) GTEST_SKIP() << "this machine can't make the pt_BR locale";
    npm(1'234'944);
    for (const char* wheel : {"a", "b", "c"})
        tree.file(std::string("home/Library/Caches/pip/") + wheel, std::string(1'048'576, 'x'));
    tree.file("home/Documents/canary", "vivo");
    scan();
    ASSERT_TRUE(find("cache.npm"));
    EXPECT_EQ(find("cache.npm")->title, "Cache do npm");
    EXPECT_EQ(find("cache.npm")->subtitle, "1 item");
    EXPECT_EQ(find("cache.npm")->baselineReason,
              "O npm baixa os pacotes de novo quando um projeto precisar deles.");
    // Folders themselves take some KiB, which does not show in these figures.
    EXPECT_EQ(*model->foundTotalBytes, model->selectedBytes());
    EXPECT_EQ(formatBytes(*model->foundTotalBytes), "4,4 MB");
    EXPECT_EQ(model->selectedCount(), 2);
    ASSERT_TRUE(saved());
    deleteSelected();
    EXPECT_EQ(*model->cleanupMessage, "2 itens apagados, 4,4 MB liberados.");
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_TRUE(model->groups->empty());
    EXPECT_FALSE(fs::exists(tree.path("home/.npm/_cacache")));
    EXPECT_EQ(bytesOf(tree.url("home/Documents/canary")), "vivo");
    // The file is written in the same way in every locale.
    ASSERT_TRUE(saved());
    EXPECT_TRUE(saved()->groups.empty());
    EXPECT_EQ(saved()->lastCleanupFreedBytes, *model->lastCleanupFreedBytes);
    EXPECT_EQ(saved()->lastCleanupDate, *model->lastCleanupDate);
}

TEST_F(CleanupInPortuguese, WhatFailedIsSaidInPortuguese) {
    if (!locale.isThere()) GTEST_SKIP() << "this machine can't make the pt_BR locale";
    npm(1'234'944);
    tree.file("home/Library/Caches/pip/a", std::string(1'048'576, 'x'));
    scan();
    fs::remove_all(tree.path("home/Library/Caches/pip"));
    deleteSelected();
    EXPECT_EQ(*model->cleanupMessage, "1 item apagado, 1 não pôde ser apagado e continua selecionado.");
    EXPECT_EQ(model->phase->message, "pip: “" + tree.path("home/Library/Caches/pip") + "” não está mais lá.");
    ASSERT_TRUE(find("cache.pip"));
    EXPECT_EQ(*model->selectedItemIDs, urls({tree.path("home/Library/Caches/pip")}));
}

} // namespace
} // namespace vesko::testing
