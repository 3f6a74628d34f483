#include "core/PathOverlapIndex.h"

#include "base/ProgrammingError.h"
#include <array>
#include <bit>
#include <utility>

namespace vesko {
namespace {

/// FNV-1a: grows with the path byte by byte, so that all beginnings of a path are hashed in one pass.
class GrowingHash {
public:
    void add(char byte) noexcept { value_ = (value_ ^ static_cast<unsigned char>(byte)) * 0x100000001b3U; }
    std::uint32_t value() const noexcept { return static_cast<std::uint32_t>(value_ ^ (value_ >> 32)); }

private:
    std::uint64_t value_ = 0xcbf29ce484222325U;
};

constexpr std::size_t longestPath = (1U << 30) - 1;
/// So many paths are under way between being called for and being looked at: enough to hide how long memory
/// takes, few enough that none is pushed out of the nearest cache meanwhile.
constexpr std::size_t pathsAhead = 16;
constexpr std::size_t usualParts = 16;

} // namespace

/// Two beginnings a path: most lie beside each other in few folders.
PathOverlapIndex::PathOverlapIndex(std::size_t expectedPaths)
    : places_(std::bit_ceil(expectedPaths * 2 + 64)) {}

template <class Use>
void PathOverlapIndex::lookAhead(const std::vector<std::string_view>& paths, Use use) const {
    std::array<Hashes, pathsAhead> underWay;
    for (Hashes& hashes : underWay) hashes.reserve(usualParts);
    for (std::size_t index = 0; index < paths.size() + pathsAhead; ++index) {
        Hashes& hashes = underWay[index % pathsAhead];
        if (index >= pathsAhead && index - pathsAhead < paths.size()) use(paths[index - pathsAhead], hashes);
        if (index < paths.size()) hashAndFetch(paths[index], hashes);
    }
}

/// One pass along the path gives the hashes of all its beginnings.
void PathOverlapIndex::hashAndFetch(std::string_view path, Hashes& hashes) const {
    hashes.clear();
    GrowingHash hash;
    const auto end = [&](std::size_t length) {
        __builtin_prefetch(&places_[hash.value() & (places_.size() - 1)]);
        hashes.push_back({hash.value(), static_cast<std::uint32_t>(length)});
    };
    for (std::size_t length = 0; length < path.size(); ++length) {
        if (path[length] == '/') end(length);
        hash.add(path[length]);
    }
    end(path.size());
}

void PathOverlapIndex::insert(const std::vector<std::string_view>& paths) {
    for (const std::string_view path : paths)
        if (path.size() > longestPath) programmingError("a path of a gigabyte");
    lookAhead(paths, [&](std::string_view path, const Hashes& hashes) { insertHashed(path, hashes); });
}

void PathOverlapIndex::insertHashed(std::string_view path, const Hashes& hashes) {
    isEmpty_ = false;
    for (const auto [hash, length] : hashes) {
        Beginning& place = places_[placeOf(hash, path.substr(0, length))];
        if (length == path.size()) place.isMember = 1;
        if (place.isTaken) continue;
        place.text = path.data();
        place.hash = hash;
        place.length = length & longestPath;
        place.isTaken = 1;
        if (++taken_ * 4 > places_.size() * 3) grow();
    }
}

void PathOverlapIndex::grow() {
    std::vector<Beginning> old(places_.size() * 2);
    old.swap(places_);
    for (const Beginning& each : old)
        if (each.isTaken) places_[placeOf(each.hash, textOf(each))] = each;
}

/// Where the text is, or the free place where it would be.
std::size_t PathOverlapIndex::placeOf(std::uint32_t hash, std::string_view text) const {
    const std::size_t mask = places_.size() - 1;
    for (std::size_t place = hash & mask;; place = (place + 1) & mask) {
        const Beginning& there = places_[place];
        if (!there.isTaken || (there.hash == hash && textOf(there) == text)) return place;
    }
}

PathOverlapIndex::Relation PathOverlapIndex::relationOf(std::string_view path) const {
    Hashes hashes;
    hashAndFetch(path, hashes);
    return relationOf(path, hashes);
}

PathOverlapIndex::Relation PathOverlapIndex::relationOf(std::string_view path, const Hashes& hashes) const {
    for (const auto [hash, length] : hashes) {
        const Beginning& found = places_[placeOf(hash, path.substr(0, length))];
        if (found.isMember) return Relation::held;
        if (!found.isTaken) return Relation::none;
    }
    return Relation::contains;
}

std::vector<bool> PathOverlapIndex::overlaps(const std::vector<std::string_view>& paths) const {
    std::vector<bool> answers;
    answers.reserve(paths.size());
    lookAhead(paths, [&](std::string_view path, const Hashes& hashes) {
        answers.push_back(relationOf(path, hashes) != Relation::none);
    });
    return answers;
}

} // namespace vesko
