#include "core/ScanCacheStore.h"
#include "support/ScanCacheSamples.h"

/// save-scan-cache FILE: saves a snapshot of 2,000 items, then says by its exit status what a load gives: 0
/// for that snapshot, 1 for the small sample, 2 for anything else. Writes nothing but the file.
int main(int count, char** arguments) {
    if (count != 2) return 3;
    vesko::ScanCacheStore store{vesko::FileURL(arguments[1])};
    const vesko::ScanCacheSnapshot large = vesko::testing::largeSnapshot(2'000);
    store.save(large);
    const auto loaded = store.load();
    return loaded == large ? 0 : loaded == vesko::testing::sampleSnapshot() ? 1 : 2;
}
