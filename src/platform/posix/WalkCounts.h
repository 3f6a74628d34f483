#pragma once
#include <cstdint>

namespace vesko {

/// What walks have asked of the system. Calls that the system refuses are not counted.
struct WalkCounts {
    std::int64_t foldersRead = 0;   ///< each reading of a folder's entries from its beginning
    std::int64_t foldersOpened = 0; ///< handles; finding a folder again opens it again
    std::int64_t entriesRead = 0;   ///< without "." and ".."
    std::int64_t readingCalls = 0;
    std::int64_t statusCalls = 0;

    WalkCounts& operator+=(const WalkCounts& other) noexcept;
    friend WalkCounts operator-(const WalkCounts& later, const WalkCounts& earlier) noexcept;
    friend bool operator==(const WalkCounts&, const WalkCounts&) = default;
};

/// What a walk is for: one that asks no sizes is a search.
enum class WalkPurpose { measuring, searching };

/// Of all walks of this process that have ended. Any thread.
WalkCounts walkCounts(WalkPurpose purpose) noexcept;

/// Counted where the calls are made, without a lock or a shared cache line; only differences say anything.
inline constinit thread_local WalkCounts callsOfThisThread;

/// Adds what this thread counted while the object lived to the process's sum.
class CountedWalk {
public:
    explicit CountedWalk(WalkPurpose purpose) noexcept : purpose_(purpose), before_(callsOfThisThread) {}
    CountedWalk(const CountedWalk&) = delete;
    CountedWalk& operator=(const CountedWalk&) = delete;
    ~CountedWalk();

private:
    WalkPurpose purpose_;
    WalkCounts before_;
};

} // namespace vesko
