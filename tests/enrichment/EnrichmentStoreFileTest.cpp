#include "enrichment/EnrichmentStoreFixture.h"

namespace vesko::testing {
namespace {

TEST_F(EnrichmentStoreTest, TheFileLiesInTheApplicationSupportFolder) {
    EXPECT_EQ(EnrichmentStore::defaultFileURL().lastPathComponent(), "enrichment-cache.json");
    EXPECT_EQ(EnrichmentStore::defaultFileURL().parent().lastPathComponent(), "Vesko");
}

TEST_F(EnrichmentStoreTest, TheDocumentIsAsAgreed) {
    Enrichment entry = entryOf(EnrichmentSource::model, "Nome", pipeline);
    entry.kind = "cache";
    EXPECT_EQ(
        EnrichmentCacheFile::encode({{{"url:/a"}, entry}}, "pt-BR"),
        R"({"schemaVersion":2,"localeIdentifier":"pt-BR","entries":[{"key":"url:/a","enrichment":)"
        R"({"friendlyName":"Nome","safety":"revisar","reason":"Motivo","kind":"cache","source":"model",)"
        R"("modelVersion":"afm-2026-06-i18n","updatedAt":721692800.25}}]})");
    entry = entryOf(EnrichmentSource::heuristic, "Nome");
    entry.updatedAt = dateFromUnixSeconds(1'700'000'000);
    EXPECT_EQ(EnrichmentCacheFile::encode({{{"url:/a"}, entry}}, "en"),
              R"({"schemaVersion":2,"localeIdentifier":"en","entries":[{"key":"url:/a","enrichment":)"
              R"({"friendlyName":"Nome","safety":"revisar","reason":"Motivo","source":"heuristic",)"
              R"("updatedAt":721692800}}]})");
    EXPECT_EQ(EnrichmentCacheFile::encode({}, "en"),
              R"({"schemaVersion":2,"localeIdentifier":"en","entries":[]})");
}

TEST_F(EnrichmentStoreTest, AFileOfSchemaOneLoadsAsEmptyAndStays) {
    const std::string bytes = R"({"schemaVersion":1,"localeIdentifier":"en","entries":[]})";
    store.apply({{{"a"}, entryOf(EnrichmentSource::model, "A")}});
    loadText(bytes);
    EXPECT_TRUE(store.entries().empty());
    EXPECT_EQ(bytesOf(file), bytes);
    store.schedulePersist();
    pass(800ms);
    EXPECT_NE(bytesOf(file), bytes);
}

TEST_F(EnrichmentStoreTest, AFileWithoutALanguageLoadsAsEmptyAndStays) {
    for (const char* locale : {"", "\"localeIdentifier\":null,"}) {
        const std::string bytes =
            std::string("{\"schemaVersion\":2,") + locale +
            R"("entries":[{"key":"a","enrichment":{"friendlyName":"A","safety":"risco",)"
            R"("reason":"","source":"heuristic","updatedAt":1}}]})";
        store.apply({{{"b"}, entryOf(EnrichmentSource::model, "B")}});
        loadText(bytes);
        EXPECT_TRUE(store.entries().empty());
        EXPECT_EQ(bytesOf(file), bytes);
    }
}

TEST_F(EnrichmentStoreTest, AFileOfTheOtherLanguageLoadsAsEmptyHeuristicEntriesIncluded) {
    put({{{"h"}, entryOf(EnrichmentSource::heuristic, "H")},
         {{"m"}, entryOf(EnrichmentSource::model, "M", pipeline)}});
    store.load();
    EXPECT_EQ(store.entries().size(), 2u);
    const LanguageScope portuguese(Language::portuguese);
    store.load();
    EXPECT_TRUE(store.entries().empty());
}

TEST_F(EnrichmentStoreTest, OnlyTheModelsEntriesOfAnotherPipelineAreDropped) {
    const EnrichmentEntries kept{{{"h"}, entryOf(EnrichmentSource::heuristic, "H")},
                                 {{"h2"}, entryOf(EnrichmentSource::heuristic, "H2", "afm-2025")},
                                 {{"m"}, entryOf(EnrichmentSource::model, "M", pipeline)}};
    EnrichmentEntries all = kept;
    all[{"none"}] = entryOf(EnrichmentSource::model, "none");
    all[{"older"}] = entryOf(EnrichmentSource::model, "older", "afm-2025");
    all[{"empty"}] = entryOf(EnrichmentSource::model, "empty", "");
    put(all);
    store.load();
    EXPECT_EQ(store.entries(), kept);
}

TEST_F(EnrichmentStoreTest, OfSeveralEntriesWithOneKeyTheLastCounts) {
    const auto entry = [](const char* name) {
        return R"({"key":"a","enrichment":{"friendlyName":")" + std::string(name) +
               R"(","safety":"seguro","reason":"r","source":"heuristic","updatedAt":0}})";
    };
    loadText(R"({"schemaVersion":2,"localeIdentifier":"en","entries":[)" + entry("first") + "," +
             entry("last") + "]}");
    ASSERT_EQ(store.entries().size(), 1u);
    EXPECT_EQ(store.lookup({"a"})->friendlyName, "last");
}

TEST_F(EnrichmentStoreTest, LoadingReplacesTheEntriesAsOneChange) {
    put({{{"a"}, entryOf(EnrichmentSource::heuristic, "A")},
         {{"b"}, entryOf(EnrichmentSource::heuristic, "B")}});
    store.apply({{{"c"}, entryOf(EnrichmentSource::model, "C")}});
    changes = 0;
    store.load();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(store.entries(), inFile());
    EXPECT_FALSE(store.lookup({"c"}));
    ASSERT_FALSE(removeFile(file));
    store.load();
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(store.entries().empty());
}

TEST_F(EnrichmentStoreTest, EveryRequiredKeyMustBeThereWithItsType) {
    Enrichment full = entryOf(EnrichmentSource::model, "A", pipeline);
    full.kind = "cache";
    const std::string valid = EnrichmentCacheFile::encode({{{"a"}, full}}, "en");
    loadText(valid);
    ASSERT_EQ(store.entries(), (EnrichmentEntries{{{"a"}, full}}));
    const std::pair<const char*, const char*> changesOf[] = {
        {"\"schemaVersion\":", "\"x\":"}, {"\"entries\":", "\"x\":"},
        {"\"key\":", "\"x\":"},           {"\"enrichment\":", "\"x\":"},
        {"\"friendlyName\":", "\"x\":"},  {"\"safety\":", "\"x\":"},
        {"\"reason\":", "\"x\":"},        {"\"source\":", "\"x\":"},
        {"\"updatedAt\":", "\"x\":"},     {"\"revisar\"", "\"unknown\""},
        {"\"model\"", "\"human\""},       {"\"cache\"", "5"},
        {"\"afm-2026-06-i18n\"", "5"},    {"721692800.25", "\"721692800.25\""},
        {"721692800.25", "1e300"},        {"\"localeIdentifier\":\"en\"", "\"localeIdentifier\":5"},
    };
    for (const auto& [text, replacement] : changesOf) {
        std::string bytes = valid;
        ASSERT_TRUE(bytes.contains(text)) << text;
        bytes.replace(bytes.find(text), std::string(text).size(), replacement);
        loadText(bytes);
        EXPECT_TRUE(store.entries().empty()) << text << " -> " << replacement;
    }
    std::string withoutKind = valid;
    withoutKind.replace(withoutKind.find("\"cache\""), 7, "null");
    loadText(withoutKind);
    full.kind.reset();
    EXPECT_EQ(store.entries(), (EnrichmentEntries{{{"a"}, full}}));
}

TEST_F(EnrichmentStoreTest, AnEntryThatIsNoUtf8IsLeftOutAlone) {
    const Enrichment fine = entryOf(EnrichmentSource::heuristic, "fine");
    EXPECT_EQ(EnrichmentCacheFile::decode(
                  EnrichmentCacheFile::encode({{{"url:/caf\xE9"}, fine},
                                               {{"fine"}, fine},
                                               {{"name"}, entryOf(EnrichmentSource::heuristic, "caf\xE9")}},
                                              "en"),
                  "en", pipeline),
              (EnrichmentEntries{{{"fine"}, fine}}));
}

TEST_F(EnrichmentStoreTest, APrefetchedLoadGivesWhatTheFileHolds) {
    put({{{"a"}, entryOf(EnrichmentSource::heuristic, "A")}});
    store.prefetch();
    store.load();
    EXPECT_EQ(store.entries(), inFile());
    store.prefetch();
    ASSERT_FALSE(removeFile(file));
    store.load();
    EXPECT_TRUE(store.entries().empty());
}

TEST_F(EnrichmentStoreTest, AReadingStartedBeforeTheStoreIsTakenOver) {
    put({{{"a"}, entryOf(EnrichmentSource::model, "A", pipeline)}});
    const auto started = EnrichmentStore::startReading(file, pipeline);
    store.adopt(started);
    store.load();
    EXPECT_EQ(store.entries(), inFile());
    EXPECT_FALSE(started->take());
    store.adopt(EnrichmentStore::startReading(file, "another pipeline"));
    store.load();
    EXPECT_EQ(store.entries(), inFile());
}

} // namespace
} // namespace vesko::testing
