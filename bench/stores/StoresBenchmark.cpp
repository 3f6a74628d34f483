#include "base/Json.h"
#include "core/ScanCacheFile.h"
#include "core/ScanCacheStore.h"
#include "enrichment/EnrichmentCacheFile.h"
#include "enrichment/EnrichmentStore.h"
#include "support/ManualLoop.h"
#include "support/ScanCacheSamples.h"
#include "support/TempTree.h"
#include <benchmark/benchmark.h>

/// What a start and a scan pay for the state files, by number of items.
namespace vesko {
namespace {

using testing::largeSnapshot;
using testing::TempTree;

EnrichmentStore storeAt(const FileURL& url, ManualLoop& loop) {
    return EnrichmentStore(url, "afm-2026-06-i18n", TaskContext{&loop, &loop, &loop, {}, nullptr});
}

std::vector<CleanupGroup> groupsOf(std::size_t count) { return largeSnapshot(count).groups; }

EnrichmentEntries entriesOf(std::size_t count) {
    ManualLoop loop;
    EnrichmentStore store = storeAt(FileURL("/nowhere/enrichment-cache.json"), loop);
    store.seedHeuristics(groupsOf(count));
    return store.entries();
}

void sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
}

void scanCacheLoad(benchmark::State& state) {
    const TempTree tree;
    ScanCacheStore store(tree.url("scan-cache.json"));
    store.save(largeSnapshot(static_cast<std::size_t>(state.range(0))));
    for (auto _ : state) benchmark::DoNotOptimize(store.load());
}
BENCHMARK(scanCacheLoad)->Apply(sizes);

void scanCacheParse(benchmark::State& state) {
    const std::string bytes =
        ScanCacheFile::encode(largeSnapshot(static_cast<std::size_t>(state.range(0))), "en");
    for (auto _ : state) benchmark::DoNotOptimize(JsonDocument::parse(bytes));
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes.size()) * state.iterations());
}
BENCHMARK(scanCacheParse)->Apply(sizes);

void scanCacheEncode(benchmark::State& state) {
    const ScanCacheSnapshot snapshot = largeSnapshot(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(ScanCacheFile::encode(snapshot, "en"));
}
BENCHMARK(scanCacheEncode)->Apply(sizes);

void enrichmentLoad(benchmark::State& state) {
    const TempTree tree;
    ManualLoop loop;
    const FileURL file =
        tree.file("enrichment-cache.json",
                  EnrichmentCacheFile::encode(entriesOf(static_cast<std::size_t>(state.range(0))), "en"));
    EnrichmentStore store = storeAt(file, loop);
    for (auto _ : state) store.load();
}
BENCHMARK(enrichmentLoad)->Apply(sizes);

/// The part of a persist that the main thread does.
void enrichmentEncode(benchmark::State& state) {
    const EnrichmentEntries entries = entriesOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(EnrichmentCacheFile::encode(entries, "en"));
}
BENCHMARK(enrichmentEncode)->Apply(sizes);

void enrichmentSeed(benchmark::State& state) {
    const std::vector<CleanupGroup> groups = groupsOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        ManualLoop loop;
        EnrichmentStore store = storeAt(FileURL("/nowhere/enrichment-cache.json"), loop);
        store.seedHeuristics(groups);
        state.PauseTiming();
        store.clear();
        state.ResumeTiming();
    }
}
BENCHMARK(enrichmentSeed)->Apply(sizes);

void enrichmentSeedAgain(benchmark::State& state) {
    const std::vector<CleanupGroup> groups = groupsOf(static_cast<std::size_t>(state.range(0)));
    ManualLoop loop;
    EnrichmentStore store = storeAt(FileURL("/nowhere/enrichment-cache.json"), loop);
    store.seedHeuristics(groups);
    for (auto _ : state) store.seedHeuristics(groups);
}
BENCHMARK(enrichmentSeedAgain)->Apply(sizes);

} // namespace
} // namespace vesko
