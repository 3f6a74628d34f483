#include "enrichment/EnrichmentStoreFixture.h"

namespace vesko::testing {
namespace {

TEST_F(EnrichmentStoreTest, AnItemIsSeededFromItsGroup) {
    store.seedHeuristics({groupOf("project.node", {sampleItem("/home/ana/shop/node_modules", 1)})});
    Enrichment expected;
    expected.friendlyName = "node_modules — shop";
    expected.safety = Safety::seguro;
    expected.reason = "Group's reason";
    expected.source = EnrichmentSource::heuristic;
    expected.updatedAt = dates.date;
    EXPECT_EQ(store.entries(), (EnrichmentEntries{{{"url:/home/ana/shop/node_modules"}, expected}}));
    EXPECT_EQ(changes, 1);
}

TEST_F(EnrichmentStoreTest, SeedingAgainChangesNothing) {
    const CleanupGroup group = groupOf("project.node", {sampleItem("/a", 1), sampleItem("/b", 1)});
    store.seedHeuristics({group});
    const EnrichmentEntries first = store.entries();
    dates.date += 1h;
    store.seedHeuristics({group});
    EXPECT_EQ(store.entries(), first);
    EXPECT_EQ(changes, 1);
}

TEST_F(EnrichmentStoreTest, SeedingLeavesEntriesOfEitherSource) {
    const EnrichmentEntries before{{{"url:/a"}, entryOf(EnrichmentSource::model, "A", pipeline)},
                                   {{"url:/b"}, entryOf(EnrichmentSource::heuristic, "B")}};
    store.apply(before);
    store.seedHeuristics({groupOf("x", {sampleItem("/a", 1), sampleItem("/b", 1)})});
    EXPECT_EQ(store.entries(), before);
}

TEST_F(EnrichmentStoreTest, OfTwoItemsWithOneKeyTheFirstIsSeeded) {
    CleanupGroup later = groupOf("y", {sampleItem("/a", 1)});
    later.baselineSafety = Safety::risco;
    store.seedHeuristics({groupOf("x", {sampleItem("/a", 1)}), later});
    EXPECT_EQ(store.lookup({"url:/a"})->safety, Safety::seguro);
}

TEST_F(EnrichmentStoreTest, TheOnlyItemOfACacheGroupIsNamedByTheGroup) {
    EXPECT_EQ(nameSeededFor(groupOf("cache.npm", {sampleItem("/home/ana/.npm/_cacache", 1)})),
              "Group's title");
}

TEST_F(EnrichmentStoreTest, AnItemOfSeveralInACacheGroupIsNamedByItsPlace) {
    EXPECT_EQ(
        nameSeededFor(groupOf("cache.npm", {sampleItem("/home/ana/.npm/_cacache", 1), sampleItem("/x", 1)})),
        "Group's title · ~/.npm");
    EXPECT_EQ(store.lookup({"url:/x"})->friendlyName, "Group's title");
}

TEST_F(EnrichmentStoreTest, AGroupThatIsNoCacheNamesByTheRules) {
    EXPECT_EQ(nameSeededFor(groupOf("cachet.x", {sampleItem("/a/com.example.tool", 1)})), "Tool");
}

TEST_F(EnrichmentStoreTest, TheModelKeepsTheSafetyThatWasSeeded) {
    store.seedHeuristics({groupOf("x", {sampleItem("/a", 1)})});
    changes = 0;
    Enrichment incoming = entryOf(EnrichmentSource::heuristic, "Better", pipeline);
    incoming.safety = Safety::revisar;
    incoming.kind = "cache";
    store.apply({{{"url:/a"}, incoming}});
    Enrichment expected = incoming;
    expected.safety = Safety::seguro;
    expected.source = EnrichmentSource::model;
    EXPECT_EQ(store.lookup({"url:/a"}), expected);
    EXPECT_EQ(changes, 1);
}

TEST_F(EnrichmentStoreTest, AnUnknownKeyTakesTheAnswerWhole) {
    Enrichment incoming = entryOf(EnrichmentSource::heuristic, "New");
    incoming.safety = Safety::risco;
    store.apply({{{"url:/new"}, incoming}});
    EXPECT_EQ(store.lookup({"url:/new"}), incoming);
}

TEST_F(EnrichmentStoreTest, ApplyingNothingIsNoChange) {
    store.apply({});
    EXPECT_EQ(changes, 0);
}

TEST_F(EnrichmentStoreTest, AKeyNeedsTheModelUntilTheModelAnswered) {
    store.apply(
        {{{"h"}, entryOf(EnrichmentSource::heuristic, "H")}, {{"m"}, entryOf(EnrichmentSource::model, "M")}});
    EXPECT_TRUE(store.needsModelEnrichment({"absent"}));
    EXPECT_TRUE(store.needsModelEnrichment({"h"}));
    EXPECT_FALSE(store.needsModelEnrichment({"m"}));
}

TEST_F(EnrichmentStoreTest, WithoutAGroupOrAnEntryOneShouldLookFirst) {
    ResolvedEnrichment expected;
    expected.friendlyName = "Tool";
    expected.safety = Safety::revisar;
    EXPECT_EQ(store.resolve(sampleItem("/a/com.example.tool", 1), nullptr, {}, {}), expected);
}

TEST_F(EnrichmentStoreTest, WithoutAnEntryTheGroupsBaselineHolds) {
    const CleanupGroup group = groupOf("x", {sampleItem("/a/shop/build", 1)});
    ResolvedEnrichment expected;
    expected.friendlyName = "build — shop";
    expected.safety = Safety::seguro;
    expected.reason = "Group's reason";
    EXPECT_EQ(store.resolve(group.items[0], &group, {}, {}), expected);
}

TEST_F(EnrichmentStoreTest, AnEntryReplacesTheBaseline) {
    const CleanupGroup group = groupOf("x", {sampleItem("/a", 1)});
    Enrichment entry = entryOf(EnrichmentSource::model, "Model's name");
    entry.safety = Safety::risco;
    entry.reason = "";
    store.apply({{{"url:/a"}, entry}});
    ResolvedEnrichment expected;
    expected.friendlyName = "Model's name";
    expected.safety = Safety::risco;
    expected.reason = "";
    expected.isAIRefined = true;
    EXPECT_EQ(store.resolve(group.items[0], &group, {{"url:/b"}}, {FileURL("/b")}), expected);
    expected.isAnalyzing = true;
    expected.isAIDiscovered = true;
    EXPECT_EQ(store.resolve(group.items[0], &group, {{"url:/a"}}, {FileURL("/a")}), expected);
    store.clear();
    store.apply({{{"url:/a"}, entryOf(EnrichmentSource::heuristic, "Seeded")}});
    EXPECT_FALSE(store.resolve(group.items[0], &group, {}, {}).isAIRefined);
}

} // namespace
} // namespace vesko::testing
