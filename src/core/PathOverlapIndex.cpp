#include "core/PathOverlapIndex.h"

#include "base/ProgrammingError.h"
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

/// Calls `visit(hash, length)` for each beginning before a "/" and for the whole, until it answers false.
template <class Visit> void visitBeginnings(std::string_view path, Visit visit) {
    GrowingHash hash;
    for (std::size_t length = 0; length < path.size(); ++length) {
        if (path[length] == '/' && !visit(hash.value(), length)) return;
        hash.add(path[length]);
    }
    visit(hash.value(), path.size());
}

constexpr std::size_t longestPath = (1U << 30) - 1;

} // namespace

/// Two beginnings a path: most lie beside each other in few folders.
PathOverlapIndex::PathOverlapIndex(std::size_t expectedPaths)
    : places_(std::bit_ceil(expectedPaths * 4 + 64)) {}

void PathOverlapIndex::insert(std::string_view path) {
    if (path.size() > longestPath) programmingError("a path of a gigabyte");
    isEmpty_ = false;
    const std::size_t offset = texts_.size();
    texts_ += path;
    visitBeginnings(path, [&](std::uint32_t hash, std::size_t length) {
        Beginning& place = places_[placeOf(hash, path.substr(0, length))];
        if (length == path.size()) place.isMember = 1;
        if (place.isTaken) return true;
        place.offset = offset;
        place.hash = hash;
        place.length = static_cast<std::uint32_t>(length) & longestPath;
        place.isTaken = 1;
        if (++taken_ * 2 > places_.size()) grow();
        return true;
    });
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
    Relation relation = Relation::none;
    visitBeginnings(path, [&](std::uint32_t hash, std::size_t length) {
        const Beginning& found = places_[placeOf(hash, path.substr(0, length))];
        if (found.isMember) {
            relation = Relation::held;
        } else if (found.isTaken && length == path.size()) {
            relation = Relation::contains;
        }
        return found.isTaken && !found.isMember;
    });
    return relation;
}

} // namespace vesko
