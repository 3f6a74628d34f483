#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <utility>
#include <vector>

namespace vesko {

/// The things that a walk has met, by device and inode; shared by its threads. Eight bytes an entry, plus
/// what a hash table leaves empty.
class InodeSet {
public:
    /// True for the first that comes with these numbers.
    bool insert(std::uint64_t device, std::uint64_t inode);
    bool contains(std::uint64_t device, std::uint64_t inode);

private:
    /// The inodes of one device, by open addressing; 0 marks a free place and is kept apart.
    class Table {
    public:
        bool insert(std::uint64_t inode, std::uint64_t hash);
        bool contains(std::uint64_t inode, std::uint64_t hash) const;

    private:
        void grow();
        std::vector<std::uint64_t> places_;
        std::size_t used_ = 0;
        bool hasZero_ = false;
    };
    struct alignas(64) Shard {
        std::mutex mutex;
        std::vector<std::pair<std::uint64_t, Table>> byDevice;
    };
    std::array<Shard, 16> shards_;
};

} // namespace vesko
