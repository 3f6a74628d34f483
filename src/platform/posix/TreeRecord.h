#pragma once
#include "platform/posix/EntryStatus.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace vesko {

/// What every folder of one walked tree takes on disk, in little memory. Never changes once built.
class TreeRecord {
public:
    /// A folder as the walk met it.
    struct Folder {
        std::uint32_t number = 0; ///< that of its TreeEntry; 0 is the root
        std::uint32_t holder = 0;
        std::uint64_t inode = 0;
        std::int64_t bytes = 0; ///< its own, or of a whole tree that was measured before
        std::uint32_t birth = 0;
        bool hasLinks = false;
    };
    /// What lies in a folder itself, without folders and without files of several links. A folder may have
    /// several such lines.
    struct Content {
        std::uint32_t number = 0;
        bool hasLinks = false;
        std::int64_t bytes = 0;
    };
    /// One name of a file that has several.
    struct Sighting {
        std::uint32_t folder = 0; ///< its number; in a built record, its place
        std::uint64_t inode = 0;
        std::int64_t bytes = 0;
    };
    struct Parts {
        std::vector<Folder> folders;
        std::vector<Content> contents;
        std::vector<Sighting> sightings;
    };
    /// The root is among the folders, and everything's holder too.
    TreeRecord(Parts parts, bool followedLinks);

    /// Births are kept in part; enough to tell a folder from an earlier owner of its number.
    static std::uint32_t shortBirth(const FolderIdentity& identity) noexcept;

    /// The folder's place in the record, for the operations below.
    std::optional<std::uint32_t> find(const FolderIdentity& identity) const;
    /// Whether what the record holds of the folder is what a walk of it alone would find.
    bool holdsFor(std::uint32_t place, bool followLinks) const;
    bool hasLinks(std::uint32_t place) const { return hasLinks_[place]; }
    /// All below the folder and itself, a file with several names once.
    std::int64_t bytes(std::uint32_t place) const;
    /// The same without files of several names.
    std::int64_t plainBytes(std::uint32_t place) const { return bytes_[place]; }
    /// Of the whole tree.
    const std::vector<Sighting>& sightings() const noexcept { return sightings_; }

    std::size_t folders() const noexcept { return inodes_.size(); }

private:
    void takeSightings(std::vector<Sighting> sightings, const std::vector<std::uint32_t>& placeOf);

    bool followedLinks_;
    // A folder's place is its rank in an order where everything below a folder follows it directly.
    std::vector<std::uint64_t> inodes_;
    std::vector<std::int64_t> bytes_;
    std::vector<std::uint32_t> ends_; ///< the place after the last one below
    std::vector<std::uint32_t> births_;
    std::vector<bool> hasLinks_;
    std::vector<std::uint32_t> byInode_;
    std::vector<Sighting> sightings_; ///< by place
};

} // namespace vesko
