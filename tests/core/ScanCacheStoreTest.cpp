#include "core/ScanCacheStore.h"
#include "base/FileSystem.h"
#include "base/Json.h"
#include "core/ScanCacheFile.h"
#include "support/LanguageScope.h"
#include "support/ScanCacheSamples.h"
#include "support/TempTree.h"
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

namespace vesko {
namespace {

using testing::bytesOf;
using testing::LanguageScope;
using testing::largeSnapshot;
using testing::sampleItem;
using testing::sampleSnapshot;
using testing::TempTree;

class ScanCacheStoreTest : public ::testing::Test {
protected:
    const LanguageScope english{Language::english};
    const TempTree tree;
    const FileURL file = tree.url("Vesko/scan-cache.json");
    ScanCacheStore store{file};

    std::optional<ScanCacheSnapshot> savedAndLoaded(const ScanCacheSnapshot& snapshot) {
        store.save(snapshot);
        return ScanCacheStore(file).load();
    }
    /// The saved sample with one piece of text replaced.
    std::optional<ScanCacheSnapshot> loadedWith(std::string_view text, std::string_view replacement) {
        std::string bytes = ScanCacheFile::encode(sampleSnapshot(), "en");
        const std::size_t at = bytes.find(text);
        EXPECT_NE(at, std::string::npos) << text;
        bytes.replace(at, text.size(), replacement);
        tree.file("Vesko/scan-cache.json", bytes);
        return store.load();
    }
};

ScanCacheSnapshot snapshotOf(ScannableItem item) {
    ScanCacheSnapshot snapshot = sampleSnapshot();
    snapshot.groups.resize(1);
    snapshot.groups[0].items = {std::move(item)};
    return snapshot;
}

TEST_F(ScanCacheStoreTest, ASnapshotComesBackWhole) {
    EXPECT_EQ(savedAndLoaded(sampleSnapshot()), sampleSnapshot());
}

TEST_F(ScanCacheStoreTest, TheFileLiesInTheApplicationSupportFolder) {
    EXPECT_EQ(ScanCacheStore::defaultFileURL().lastPathComponent(), "scan-cache.json");
    EXPECT_EQ(ScanCacheStore::defaultFileURL().parent().lastPathComponent(), "Vesko");
}

TEST_F(ScanCacheStoreTest, TheDocumentIsAsAgreed) {
    ScanCacheSnapshot snapshot = snapshotOf(sampleItem("/a b/é", 7, false));
    EXPECT_EQ(
        ScanCacheFile::encode(snapshot, "pt-BR"),
        R"({"schemaVersion":1,"localeIdentifier":"pt-BR","scanDate":"2026-11-21T10:15:00Z",)"
        R"("foundTotalBytes":5000004097,"groups":[{"id":"cache.npm","title":"npm","icon":"shippingbox",)"
        R"("sectionID":"caches","sectionSortIndex":2,"providerID":"cache","relevancePolicy":"alwaysRelevant",)"
        R"("subtitle":"2 itens","baselineSafety":"seguro",)"
        R"("baselineReason":"Volta a ser baixado quando for preciso.",)"
        R"("items":[{"path":"/a b/é","size":7,"isDirectory":false,"enrichmentKey":"url:/a b/é"}]}],)"
        R"("lastCleanupDate":"2026-11-18T11:06:40Z","lastCleanupFreedBytes":123456789,)"
        R"("probeFingerprints":{"cache.npm":{"pathMtimes":{"/home/ana/.npm":"2023-11-14T22:13:20Z"}},)"
        R"("docker.volumes":{"pathMtimes":{}}}})");
}

TEST_F(ScanCacheStoreTest, PathsWithBlanksAndAccentsKeepTheirURL) {
    for (const char* path :
         {"/home/ana/a b", "/home/ana/ação", "/home/ana/日本 😀", "/a\"\\\n\t\x01/%20", "/e\u0301"}) {
        const auto loaded = savedAndLoaded(snapshotOf(sampleItem(path, 1)));
        ASSERT_TRUE(loaded) << path;
        EXPECT_EQ(loaded->groups[0].items[0].url, FileURL(path));
        EXPECT_EQ(loaded->groups[0].items[0].id(), FileURL(path));
        EXPECT_EQ(loaded->groups[0].items[0].name(), FileURL(path).lastPathComponent());
    }
}

TEST_F(ScanCacheStoreTest, ALabelIsNotKept) {
    ScannableItem item = sampleItem("/a", 1);
    item.displayLabel = "Label";
    const auto loaded = savedAndLoaded(snapshotOf(item));
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->groups[0].items[0].displayLabel, std::nullopt);
    EXPECT_FALSE(bytesOf(file).contains("Label"));
}

TEST_F(ScanCacheStoreTest, WithoutFingerprintsThereIsNoKeyForThem) {
    ScanCacheSnapshot snapshot = sampleSnapshot();
    snapshot.probeFingerprints.clear();
    const auto loaded = savedAndLoaded(snapshot);
    ASSERT_TRUE(loaded);
    EXPECT_TRUE(loaded->probeFingerprints.empty());
    EXPECT_FALSE(bytesOf(file).contains("probeFingerprints"));
}

TEST_F(ScanCacheStoreTest, WithoutACleanupThereAreNoKeysForIt) {
    ScanCacheSnapshot snapshot = sampleSnapshot();
    snapshot.lastCleanupDate.reset();
    snapshot.lastCleanupFreedBytes.reset();
    EXPECT_EQ(savedAndLoaded(snapshot), snapshot);
    EXPECT_FALSE(bytesOf(file).contains("lastCleanup"));
}

TEST_F(ScanCacheStoreTest, AFileOfTheOtherLanguageGivesNothingAndTheNextSaveReplacesIt) {
    store.save(sampleSnapshot());
    const LanguageScope portuguese(Language::portuguese);
    EXPECT_EQ(store.load(), std::nullopt);
    store.save(sampleSnapshot());
    EXPECT_EQ(store.load(), sampleSnapshot());
    EXPECT_TRUE(bytesOf(file).contains("\"localeIdentifier\":\"pt-BR\""));
}

TEST_F(ScanCacheStoreTest, DatesComeBackWithWholeSeconds) {
    ScanCacheSnapshot snapshot = sampleSnapshot();
    snapshot.scanDate = dateFromUnixSeconds(1'795'256'100, 999'000'000);
    snapshot.lastCleanupDate = dateFromUnixSeconds(1'795'000'000, 1'000);
    snapshot.probeFingerprints["cache.npm"].pathMtimes["/home/ana/.npm"] =
        dateFromUnixSeconds(1'700'000'000, 500'000'000);
    EXPECT_EQ(savedAndLoaded(snapshot), sampleSnapshot());
}

TEST_F(ScanCacheStoreTest, AnUnknownRelevancePolicyReadsAsTheStandardOne) {
    for (const char* word : {"\"other\"", "\"\"", "\"AlwaysRelevant\""}) {
        const auto loaded = loadedWith("\"alwaysRelevant\"", word);
        ASSERT_TRUE(loaded) << word;
        EXPECT_EQ(loaded->groups[0].relevancePolicy, RelevancePolicy::standard);
    }
    EXPECT_EQ(loadedWith("\"alwaysRelevant\"", "3"), std::nullopt);
}

TEST_F(ScanCacheStoreTest, AnUnknownSafetyWordCostsTheWholeFile) {
    EXPECT_EQ(loadedWith("\"baselineSafety\":\"risco\"", "\"baselineSafety\":\"unknown\""), std::nullopt);
    EXPECT_EQ(loadedWith("\"baselineSafety\":\"seguro\"", "\"baselineSafety\":\"Seguro\""), std::nullopt);
}

TEST_F(ScanCacheStoreTest, ASectionComesBackTitledByItsId) {
    ScanCacheSnapshot snapshot = sampleSnapshot();
    snapshot.groups[0].section = sections::downloads();
    const auto loaded = savedAndLoaded(snapshot);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->groups[0].section, (CleanupSection{"downloads", "downloads", 4}));
}

TEST_F(ScanCacheStoreTest, EveryKeyMustBeThere) {
    const std::string bytes = ScanCacheFile::encode(sampleSnapshot(), "en");
    for (const char* key : {"schemaVersion",  "localeIdentifier",
                            "scanDate",       "foundTotalBytes",
                            "groups",         "id",
                            "title",          "icon",
                            "sectionID",      "sectionSortIndex",
                            "providerID",     "relevancePolicy",
                            "subtitle",       "baselineSafety",
                            "baselineReason", "items",
                            "path",           "size",
                            "isDirectory",    "enrichmentKey",
                            "pathMtimes"}) {
        const std::string quoted = '"' + std::string(key) + "\":";
        EXPECT_EQ(loadedWith(quoted, "\"renamed\":"), std::nullopt) << key;
    }
}

TEST_F(ScanCacheStoreTest, OnlyCleanupAndFingerprintsMayBeMissing) {
    ScanCacheSnapshot expected = sampleSnapshot();
    expected.lastCleanupDate.reset();
    EXPECT_EQ(loadedWith("\"lastCleanupDate\":", "\"renamed\":"), expected);
    EXPECT_EQ(loadedWith("\"lastCleanupDate\":\"2026-11-18T11:06:40Z\"", "\"lastCleanupDate\":null"),
              expected);
    expected = sampleSnapshot();
    expected.lastCleanupFreedBytes.reset();
    EXPECT_EQ(loadedWith("\"lastCleanupFreedBytes\":", "\"renamed\":"), expected);
    expected = sampleSnapshot();
    expected.probeFingerprints.clear();
    EXPECT_EQ(loadedWith("\"probeFingerprints\":", "\"renamed\":"), expected);
}

TEST_F(ScanCacheStoreTest, AValueOfAnotherTypeCostsTheWholeFile) {
    const std::pair<const char*, const char*> changes[] = {
        {"\"scanDate\":\"2026-11-21T10:15:00Z\"", "\"scanDate\":816948900"},
        {"\"scanDate\":\"2026-11-21T10:15:00Z\"", "\"scanDate\":\"2026-11-21T10:15:00.5Z\""},
        {"\"foundTotalBytes\":5000004097", "\"foundTotalBytes\":\"5000004097\""},
        {"\"foundTotalBytes\":5000004097", "\"foundTotalBytes\":1.5"},
        {"\"sectionSortIndex\":2", "\"sectionSortIndex\":\"2\""},
        {"\"size\":4096", "\"size\":4096.25"},
        {"\"size\":4096", "\"size\":9223372036854775808"},
        {"\"isDirectory\":true", "\"isDirectory\":1"},
        {"\"isDirectory\":true", "\"isDirectory\":null"},
        {"\"lastCleanupDate\":\"2026-11-18T11:06:40Z\"", "\"lastCleanupDate\":5"},
        {"\"lastCleanupFreedBytes\":123456789", "\"lastCleanupFreedBytes\":true"},
        {"\"/home/ana/.npm\":\"2023-11-14T22:13:20Z\"", "\"/home/ana/.npm\":\"yesterday\""},
        {"\"pathMtimes\":{}", "\"pathMtimes\":[]"},
    };
    for (const auto& [text, replacement] : changes)
        EXPECT_EQ(loadedWith(text, replacement), std::nullopt) << replacement;
    EXPECT_TRUE(loadedWith("\"size\":4096", "\"size\":4096.0"));
    EXPECT_TRUE(loadedWith("\"title\":\"npm\"", "\"title\":\"npm\",\"more\":{\"x\":[1]}"));
}

TEST_F(ScanCacheStoreTest, SizesThatDoNotAddUpCostTheWholeFile) {
    // Everybody who shows the groups adds the sizes up and would stop the process.
    EXPECT_EQ(loadedWith("\"size\":4096", "\"size\":9223372036854775807"), std::nullopt);
    EXPECT_TRUE(loadedWith("\"size\":4096", "\"size\":9000000000000000000"));
}

TEST_F(ScanCacheStoreTest, APathThatIsNoUtf8CostsItsEntryAlone) {
    ScanCacheSnapshot snapshot = sampleSnapshot();
    std::vector<ScannableItem> items = snapshot.groups[0].items.values();
    items.insert(items.begin() + 1, sampleItem("/home/ana/caf\xE9", 3));
    snapshot.groups[0].items = ItemList(items);
    snapshot.probeFingerprints["cache.npm"].pathMtimes["/home/ana/caf\xE9"] = snapshot.scanDate;
    EXPECT_EQ(savedAndLoaded(snapshot), sampleSnapshot());
}

TEST_F(ScanCacheStoreTest, ATextThatIsNoUtf8IsKeptEscaped) {
    ScanCacheSnapshot snapshot = sampleSnapshot();
    snapshot.groups[0].title = "caf\xE9";
    const auto loaded = savedAndLoaded(snapshot);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->groups[0].title, "caf\\xE9");
}

TEST_F(ScanCacheStoreTest, ADateOfTheFarFutureDoesNotCostTheFile) {
    ScanCacheSnapshot snapshot = sampleSnapshot();
    snapshot.probeFingerprints["cache.npm"].pathMtimes["/home/ana/.npm"] = Date::max();
    EXPECT_TRUE(savedAndLoaded(snapshot));
}

TEST_F(ScanCacheStoreTest, AnEmptyListComesBackEmpty) {
    ScanCacheSnapshot snapshot;
    EXPECT_EQ(savedAndLoaded(snapshot), snapshot);
}

TEST_F(ScanCacheStoreTest, ALaterSaveReplacesTheWholeFile) {
    store.save(largeSnapshot(1'000));
    EXPECT_EQ(savedAndLoaded(sampleSnapshot()), sampleSnapshot());
    EXPECT_EQ(directChildren(file.parent(), Hidden::include)->size(), 1u);
}

TEST_F(ScanCacheStoreTest, WithoutAFolderASaveMakesItAndAFailureIsSilent) {
    EXPECT_FALSE(fileExists(file.parent()));
    store.save(sampleSnapshot());
    EXPECT_TRUE(store.load());
    tree.file("blocked", "kept");
    ScanCacheStore blocked(tree.url("blocked/scan-cache.json"));
    blocked.save(sampleSnapshot());
    EXPECT_EQ(blocked.load(), std::nullopt);
    EXPECT_EQ(bytesOf(tree.url("blocked")), "kept");
}

TEST_F(ScanCacheStoreTest, APrefetchedLoadGivesWhatTheFileHolds) {
    store.prefetch();
    EXPECT_EQ(store.load(), std::nullopt);
    store.save(sampleSnapshot());
    store.prefetch();
    store.prefetch();
    EXPECT_EQ(store.load(), sampleSnapshot());
    EXPECT_EQ(store.load(), sampleSnapshot());
}

TEST_F(ScanCacheStoreTest, ALoadAfterASaveSeesTheSaveWhateverWasPrefetched) {
    ScanCacheSnapshot snapshot = sampleSnapshot();
    for (std::int64_t count = 0; count < 50; ++count) {
        store.prefetch();
        snapshot.foundTotalBytes = count;
        store.save(snapshot);
        const auto loaded = store.load();
        ASSERT_TRUE(loaded);
        ASSERT_EQ(loaded->foundTotalBytes, count);
    }
}

TEST_F(ScanCacheStoreTest, ASaveDropsWhatWasPrefetchedAlsoWhenTheFilesDateIsTheSame) {
    const timespec dates[2] = {{1'000, 0}, {1'000, 0}};
    store.save(sampleSnapshot());
    ASSERT_EQ(::utimensat(AT_FDCWD, file.path().c_str(), dates, 0), 0);
    store.prefetch();
    store.save(largeSnapshot(10));
    ASSERT_EQ(::utimensat(AT_FDCWD, file.path().c_str(), dates, 0), 0);
    EXPECT_EQ(store.load(), largeSnapshot(10));
}

TEST_F(ScanCacheStoreTest, AFileReplacedBySomeoneElseIsReadAfresh) {
    store.save(sampleSnapshot());
    store.prefetch();
    std::this_thread::sleep_for(std::chrono::milliseconds(50)); // the file's date has to move on
    ScanCacheSnapshot other = sampleSnapshot();
    other.foundTotalBytes = 1;
    ScanCacheStore(file).save(other);
    EXPECT_EQ(store.load(), other);
    store.prefetch();
    EXPECT_FALSE(removeFile(file));
    EXPECT_EQ(store.load(), std::nullopt);
}

TEST_F(ScanCacheStoreTest, APrefetchInAnotherLanguageDoesNotCount) {
    store.save(sampleSnapshot());
    store.prefetch();
    const LanguageScope portuguese(Language::portuguese);
    EXPECT_EQ(store.load(), std::nullopt);
}

TEST_F(ScanCacheStoreTest, AStoreMayGoWhileItPrefetches) {
    store.save(largeSnapshot(1'000));
    for (int count = 0; count < 20; ++count) ScanCacheStore(file).prefetch();
    EXPECT_TRUE(store.load());
}

TEST_F(ScanCacheStoreTest, LoadsBesideSavesSeeWholeFiles) {
    store.save(sampleSnapshot());
    const ScanCacheSnapshot other = largeSnapshot(200);
    std::vector<std::thread> threads;
    for (int writer = 0; writer < 2; ++writer)
        threads.emplace_back([&, writer] {
            for (int count = 0; count < 50; ++count) store.save(writer == 0 ? sampleSnapshot() : other);
        });
    for (int reader = 0; reader < 2; ++reader)
        threads.emplace_back([&] {
            for (int count = 0; count < 50; ++count) {
                store.prefetch();
                const auto loaded = store.load();
                EXPECT_TRUE(loaded == sampleSnapshot() || loaded == other);
            }
        });
    for (std::thread& thread : threads) thread.join();
}

} // namespace
} // namespace vesko
