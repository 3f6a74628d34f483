#include "platform/posix/InodeSet.h"

namespace vesko {

namespace {

/// Inodes come in rows of neighbours; this spreads them over all bits.
std::uint64_t spread(std::uint64_t value) noexcept {
    value ^= value >> 32;
    value *= 0x9E3779B97F4A7C15ULL;
    value ^= value >> 29;
    return value;
}

} // namespace

bool InodeSet::insert(std::uint64_t device, std::uint64_t inode) {
    const std::uint64_t hash = spread(inode);
    Shard& shard = shards_[hash >> 60];
    const std::lock_guard lock(shard.mutex);
    for (auto& [known, table] : shard.byDevice)
        if (known == device) return table.insert(inode, hash);
    return shard.byDevice.emplace_back(device, Table()).second.insert(inode, hash);
}

bool InodeSet::contains(std::uint64_t device, std::uint64_t inode) {
    const std::uint64_t hash = spread(inode);
    Shard& shard = shards_[hash >> 60];
    const std::lock_guard lock(shard.mutex);
    for (const auto& [known, table] : shard.byDevice)
        if (known == device) return table.contains(inode, hash);
    return false;
}

bool InodeSet::Table::contains(std::uint64_t inode, std::uint64_t hash) const {
    if (inode == 0) return hasZero_;
    if (places_.empty()) return false;
    const std::size_t mask = places_.size() - 1;
    for (std::size_t place = hash & mask; places_[place] != 0; place = (place + 1) & mask)
        if (places_[place] == inode) return true;
    return false;
}

bool InodeSet::Table::insert(std::uint64_t inode, std::uint64_t hash) {
    if (inode == 0) return !std::exchange(hasZero_, true);
    if (used_ * 4 >= places_.size() * 3) grow();
    const std::size_t mask = places_.size() - 1;
    for (std::size_t place = hash & mask;; place = (place + 1) & mask) {
        if (places_[place] == inode) return false;
        if (places_[place] == 0) {
            places_[place] = inode;
            ++used_;
            return true;
        }
    }
}

void InodeSet::Table::grow() {
    std::vector<std::uint64_t> old(places_.empty() ? 16 : places_.size() * 2, 0);
    old.swap(places_);
    const std::size_t mask = places_.size() - 1;
    for (const std::uint64_t inode : old) {
        if (inode == 0) continue;
        std::size_t place = spread(inode) & mask;
        while (places_[place] != 0) place = (place + 1) & mask;
        places_[place] = inode;
    }
}

} // namespace vesko
