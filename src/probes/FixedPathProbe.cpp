#include "probes/FixedPathProbe.h"

#include "base/FileSystem.h"
#include "base/Text.h"
#include "concurrency/CurrentTask.h"
#include "core/GroupBuilders.h"
#include "core/ParallelSizing.h"
#include <utility>

namespace vesko {

const FileDates& platformFileDates() noexcept {
    static constexpr FileDates dates{contentModificationDate, contentAccessDate};
    return dates;
}

FixedPathProbe::FixedPathProbe(FixedPathRow row, const FileDates& dates)
    : row_(std::move(row)), dates_(dates) {}

ProbeResult FixedPathProbe::run(const ProbeContext& context) const {
    std::vector<ParallelSizeInput> inputs;
    for (const std::string& relative : row_.relativePaths) {
        const FileURL base = context.home.appending(relative);
        if (!fileExists(base)) continue;
        for (const FileURL& candidate : candidates(base)) {
            if (currentTaskIsCancelled()) break;
            if (isExcluded(candidate) || !isOldEnough(candidate, context.now)) continue;
            inputs.push_back(input(candidate));
        }
    }
    return makeResult(row_.metadata, sizeInParallel(std::move(inputs), context));
}

std::vector<FileURL> FixedPathProbe::candidates(const FileURL& base) const {
    if (!row_.expandChildren) return {base};
    return directChildren(base, Hidden::skip).value_or(std::vector<FileURL>());
}

bool FixedPathProbe::isExcluded(const FileURL& candidate) const {
    if (!row_.expandChildren || row_.excludedExtensions.empty()) return false;
    const std::string extension = lowercased(candidate.pathExtension());
    return !extension.empty() && row_.excludedExtensions.contains(extension);
}

bool FixedPathProbe::isOldEnough(const FileURL& candidate, Date now) const {
    if (!row_.olderThanDays) return true;
    const std::optional<Date> date = ageDate(candidate);
    if (!date) return true; // what has no date can't be called young
    constexpr double secondsOfADay = 86400;
    return static_cast<double>(*row_.olderThanDays) * secondsOfADay <= secondsBetween(*date, now);
}

std::optional<Date> FixedPathProbe::ageDate(const FileURL& candidate) const {
    if (row_.ageMetric == AgeMetric::lastAccess)
        if (const std::optional<Date> accessed = dates_.lastAccess(candidate)) return accessed;
    return dates_.modification(candidate);
}

EnrichmentKey FixedPathProbe::key(const FileURL& candidate) const {
    // A cache keeps its meaning wherever it lies, so its name alone is the key.
    if (row_.metadata.providerID.rawValue == "cache")
        return EnrichmentKey::forBundle(candidate.lastPathComponent());
    return EnrichmentKey::forURL(candidate);
}

ParallelSizeInput FixedPathProbe::input(const FileURL& candidate) const {
    ParallelSizeInput made;
    made.url = candidate;
    made.isDirectory = isDirectory(candidate).value_or(true);
    made.enrichmentKey = key(candidate);
    made.preferDiskUsage = row_.preferDiskUsage;
    made.minBytes = row_.minBytes;
    return made;
}

} // namespace vesko
