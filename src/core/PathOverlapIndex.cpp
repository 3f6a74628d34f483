#include "core/PathOverlapIndex.h"

#include <bit>
#include <utility>

namespace vesko {
namespace {

/// FNV-1a: grows with the path byte by byte, so that all beginnings of a path are hashed in one pass.
class GrowingHash {
public:
    void add(char byte) noexcept { value_ = (value_ ^ static_cast<unsigned char>(byte)) * 0x100000001b3U; }
    /// Its low bits, mixed well enough to be a place.
    std::uint64_t value() const noexcept { return value_ ^ (value_ >> 29); }

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

} // namespace

PathOverlapIndex::PathOverlapIndex(std::vector<std::string> paths)
    // Room for two beginnings a path from the start: most lie beside each other in few folders.
    : members_(std::move(paths)), places_(std::bit_ceil(members_.size() * 4 + 64)) {
    for (std::size_t member = 0; member < members_.size(); ++member)
        insert(static_cast<std::uint32_t>(member));
}

void PathOverlapIndex::insert(std::uint32_t member) {
    visitBeginnings(members_[member], [&](std::uint64_t hash, std::size_t length) {
        enter(hash, member, length);
        return true;
    });
}

void PathOverlapIndex::enter(std::uint64_t hash, std::uint32_t member, std::size_t length) {
    const std::string_view path = members_[member];
    Beginning& place = places_[placeOf(hash, path.substr(0, length))];
    if (length == path.size()) place.isMember = true;
    if (place.isTaken) return;
    place.hash = hash;
    place.member = member;
    place.length = static_cast<std::uint32_t>(length);
    place.isTaken = true;
    if (++taken_ * 2 > places_.size()) grow();
}

void PathOverlapIndex::grow() {
    std::vector<Beginning> old(places_.size() * 2);
    old.swap(places_);
    for (const Beginning& each : old)
        if (each.isTaken)
            places_[placeOf(each.hash, std::string_view(members_[each.member]).substr(0, each.length))] =
                each;
}

std::size_t PathOverlapIndex::placeOf(std::uint64_t hash, std::string_view text) const {
    const std::size_t mask = places_.size() - 1;
    for (std::size_t place = hash & mask;; place = (place + 1) & mask) {
        const Beginning& there = places_[place];
        if (!there.isTaken) return place;
        if (there.hash == hash && std::string_view(members_[there.member]).substr(0, there.length) == text)
            return place;
    }
}

const PathOverlapIndex::Beginning* PathOverlapIndex::find(std::uint64_t hash, std::string_view text) const {
    const Beginning& place = places_[placeOf(hash, text)];
    return place.isTaken ? &place : nullptr;
}

PathOverlapIndex::Relation PathOverlapIndex::relationOf(std::string_view path) const {
    Relation relation = Relation::none;
    visitBeginnings(path, [&](std::uint64_t hash, std::size_t length) {
        const Beginning* found = find(hash, path.substr(0, length));
        if (found && found->isMember) {
            relation = Relation::held;
        } else if (found && length == path.size()) {
            relation = Relation::contains;
        }
        return found && !found->isMember;
    });
    return relation;
}

} // namespace vesko
