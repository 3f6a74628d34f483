#pragma once
#include "platform/posix/TreeWalker.h"
#include <array>
#include <cstdint>

namespace vesko {

/// A sum that each of a walk's threads adds to in a place of its own. A figure beyond 63 bits stops the
/// process with a message: no disk holds so much, so everything that would be said from there on would be
/// wrong.
class AllocationSum {
public:
    void add(unsigned worker, std::int64_t bytes) {
        std::int64_t& place = places_[worker].bytes;
        if (__builtin_add_overflow(place, bytes, &place)) stopOnOverflow();
    }
    std::int64_t total() const {
        std::int64_t sum = 0;
        for (const Place& place : places_)
            if (__builtin_add_overflow(sum, place.bytes, &sum)) stopOnOverflow();
        return sum;
    }

    [[noreturn]] static void stopOnOverflow();

private:
    struct alignas(64) Place {
        std::int64_t bytes = 0;
    };
    std::array<Place, TreeWalkOptions::mostThreads> places_{};
};

/// As `du -k` rounds; stops the process like a sum when the result has no room.
std::int64_t roundedUpToKiB(std::int64_t bytes);

} // namespace vesko
