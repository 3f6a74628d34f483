#include "platform/posix/TreeRecord.h"

#include "platform/posix/AllocationSum.h"
#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace vesko {

namespace {

constexpr std::uint32_t nowhere = std::numeric_limits<std::uint32_t>::max();

void addTo(std::int64_t& sum, std::int64_t bytes) {
    if (__builtin_add_overflow(sum, bytes, &sum)) AllocationSum::stopOnOverflow();
}

/// Where each folder stands by its number, so that everything below a folder follows it directly. The folders
/// are in the order of their numbers, so a holder comes before what it holds.
std::vector<std::uint32_t> placesOf(const std::vector<TreeRecord::Folder>& folders,
                                    const std::vector<std::uint32_t>& rankOf,
                                    std::vector<std::uint32_t>& sizes) {
    sizes.assign(folders.size(), 1);
    for (std::size_t rank = folders.size(); rank-- > 1;) sizes[rankOf[folders[rank].holder]] += sizes[rank];
    std::vector<std::uint32_t> places(folders.size(), 0);
    std::vector<std::uint32_t> nextBelow(folders.size(), 1);
    for (std::size_t rank = 1; rank < folders.size(); ++rank) {
        const std::uint32_t holder = rankOf[folders[rank].holder];
        places[rank] = std::exchange(nextBelow[holder], nextBelow[holder] + sizes[rank]);
        nextBelow[rank] = places[rank] + 1;
    }
    return places;
}

} // namespace

std::uint32_t TreeRecord::shortBirth(const FolderIdentity& identity) noexcept {
    const auto birth = static_cast<std::uint64_t>(identity.birth);
    return static_cast<std::uint32_t>(birth ^ (birth >> 32));
}

TreeRecord::TreeRecord(Parts parts, bool followedLinks) : followedLinks_(followedLinks) {
    std::vector<Folder>& folders = parts.folders;
    std::ranges::sort(folders, {}, &Folder::number);
    std::vector<std::uint32_t> placeOf(std::size_t{folders.back().number} + 1, nowhere);
    for (std::size_t rank = 0; rank < folders.size(); ++rank)
        placeOf[folders[rank].number] = static_cast<std::uint32_t>(rank);
    for (const Content& content : parts.contents) {
        Folder& folder = folders[placeOf[content.number]];
        addTo(folder.bytes, content.bytes);
        folder.hasLinks = folder.hasLinks || content.hasLinks;
    }
    parts.contents = {};
    for (std::size_t rank = folders.size(); rank-- > 1;) {
        Folder& holder = folders[placeOf[folders[rank].holder]];
        addTo(holder.bytes, folders[rank].bytes);
        holder.hasLinks = holder.hasLinks || folders[rank].hasLinks;
    }

    std::vector<std::uint32_t> sizes;
    const std::vector<std::uint32_t> places = placesOf(folders, placeOf, sizes);
    const std::size_t count = folders.size();
    inodes_.resize(count);
    bytes_.resize(count);
    ends_.resize(count);
    births_.resize(count);
    hasLinks_.resize(count);
    for (std::size_t rank = 0; rank < count; ++rank) {
        const std::uint32_t place = places[rank];
        inodes_[place] = folders[rank].inode;
        bytes_[place] = folders[rank].bytes;
        ends_[place] = place + sizes[rank];
        births_[place] = folders[rank].birth;
        hasLinks_[place] = folders[rank].hasLinks;
        placeOf[folders[rank].number] = place;
    }
    byInode_.resize(count);
    std::iota(byInode_.begin(), byInode_.end(), 0U);
    std::ranges::sort(byInode_, {}, [this](std::uint32_t place) { return inodes_[place]; });
    takeSightings(std::move(parts.sightings), placeOf);
}

void TreeRecord::takeSightings(std::vector<Sighting> sightings, const std::vector<std::uint32_t>& placeOf) {
    for (Sighting& sighting : sightings) sighting.folder = placeOf[sighting.folder];
    std::ranges::sort(sightings, {}, &Sighting::folder);
    sightings_ = std::move(sightings);
    sightings_.shrink_to_fit();
}

std::optional<std::uint32_t> TreeRecord::find(const FolderIdentity& identity) const {
    const auto inodeAt = [this](std::uint32_t place) { return inodes_[place]; };
    const auto found = std::ranges::lower_bound(byInode_, identity.inode, {}, inodeAt);
    if (found == byInode_.end() || inodes_[*found] != identity.inode) return std::nullopt;
    if (births_[*found] != shortBirth(identity)) return std::nullopt;
    return *found;
}

bool TreeRecord::holdsFor(std::uint32_t place, bool followLinks) const {
    if (!hasLinks_[place]) return true;
    // A walk that followed links did not count the links themselves.
    return !followLinks && !followedLinks_;
}

std::int64_t TreeRecord::bytes(std::uint32_t place) const {
    const auto first = std::ranges::lower_bound(sightings_, place, {}, &Sighting::folder);
    const auto last = std::ranges::lower_bound(sightings_, ends_[place], {}, &Sighting::folder);
    std::vector<Sighting> inside(first, last);
    std::ranges::sort(inside, {}, &Sighting::inode);
    std::int64_t sum = bytes_[place];
    for (std::size_t i = 0; i < inside.size(); ++i)
        if (i == 0 || inside[i].inode != inside[i - 1].inode) addTo(sum, inside[i].bytes);
    return sum;
}

} // namespace vesko
