#include "core/ScanCacheFile.h"
#include "core/ScanCacheStore.h"
#include "support/ScanCacheSamples.h"
#include "support/StateFileContract.h"

namespace vesko::testing {
namespace {

StateFileSubject scanCache() {
    StateFileSubject subject;
    subject.name = "ScanCache";
    subject.valid = ScanCacheFile::encode(sampleSnapshot(), "en");
    subject.schemaVersion = "1";
    subject.load = [](const FileURL& url) {
        const auto snapshot = ScanCacheStore(url).load();
        return snapshot ? ScanCacheFile::encode(*snapshot, "en") : "none";
    };
    subject.empty = "none";
    return subject;
}

INSTANTIATE_TEST_SUITE_P(Store, StateFileContract, ::testing::Values(scanCache()), subjectName);

} // namespace
} // namespace vesko::testing
