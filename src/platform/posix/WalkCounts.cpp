#include "platform/posix/WalkCounts.h"

#include <array>
#include <mutex>

namespace vesko {

namespace {

struct Sums {
    std::mutex mutex;
    std::array<WalkCounts, 2> byPurpose;
};

Sums& sums() noexcept {
    static Sums kept;
    return kept;
}

} // namespace

WalkCounts& WalkCounts::operator+=(const WalkCounts& other) noexcept {
    foldersRead += other.foldersRead;
    foldersOpened += other.foldersOpened;
    entriesRead += other.entriesRead;
    readingCalls += other.readingCalls;
    statusCalls += other.statusCalls;
    return *this;
}

WalkCounts operator-(const WalkCounts& later, const WalkCounts& earlier) noexcept {
    return {later.foldersRead - earlier.foldersRead, later.foldersOpened - earlier.foldersOpened,
            later.entriesRead - earlier.entriesRead, later.readingCalls - earlier.readingCalls,
            later.statusCalls - earlier.statusCalls};
}

WalkCounts walkCounts(WalkPurpose purpose) noexcept {
    const std::lock_guard lock(sums().mutex);
    return sums().byPurpose[static_cast<std::size_t>(purpose)];
}

CountedWalk::~CountedWalk() {
    const WalkCounts counted = callsOfThisThread - before_;
    const std::lock_guard lock(sums().mutex);
    sums().byPurpose[static_cast<std::size_t>(purpose_)] += counted;
}

} // namespace vesko
