#include "enrichment/DemotedPathsStore.h"
#include "enrichment/EnrichmentCacheFile.h"
#include "enrichment/EnrichmentStore.h"
#include "support/ManualLoop.h"
#include "support/StateFileContract.h"
#include <set>

namespace vesko::testing {
namespace {

StateFileSubject enrichmentCache() {
    Enrichment guess;
    guess.friendlyName = "node_modules — shop";
    guess.safety = Safety::seguro;
    guess.reason = "Volta com a próxima instalação.";
    guess.updatedAt = dateFromUnixSeconds(1'700'000'000, 250'000'000);
    Enrichment answer = guess;
    answer.source = EnrichmentSource::model;
    answer.kind = "cache";
    answer.modelVersion = "v";
    StateFileSubject subject;
    subject.name = "EnrichmentCache";
    subject.valid =
        EnrichmentCacheFile::encode({{{"url:/a"}, guess}, {{"bundle:com.example"}, answer}}, "en");
    subject.schemaVersion = "2";
    subject.load = [](const FileURL& url) {
        ManualLoop loop;
        EnrichmentStore store(url, "v", TaskContext{&loop, &loop, &loop, {}, nullptr});
        store.load();
        return store.entries().empty() ? "none" : EnrichmentCacheFile::encode(store.entries(), "en");
    };
    subject.empty = "none";
    return subject;
}

StateFileSubject demotedPaths() {
    StateFileSubject subject;
    subject.name = "DemotedPaths";
    subject.valid = R"({"schemaVersion":1,"paths":["/home/ana/a b","/home/ana/ação/../x"]})";
    subject.schemaVersion = "1";
    subject.hasLanguage = false;
    subject.load = [](const FileURL& url) {
        std::string words;
        const auto paths = DemotedPathsStore(url).load();
        for (const std::string& path : std::set<std::string>(paths.begin(), paths.end()))
            words += path + "\n";
        return words;
    };
    return subject;
}

INSTANTIATE_TEST_SUITE_P(Stores, StateFileContract, ::testing::Values(enrichmentCache(), demotedPaths()),
                         subjectName);

} // namespace
} // namespace vesko::testing
