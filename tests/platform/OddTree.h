#pragma once
#include "base/FileURL.h"
#include <cstdint>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace vesko {

/// A tree with everything that a file system can hold, in a fresh folder below the temporary folder, taken
/// away again with all in it by the system's `rm`. Paths are relative to it; every operation throws where the
/// system refuses, so that no test goes on without its tree.
class OddTree {
public:
    enum class Place {
        disk,
        memory, ///< a file system in memory where there is one: for trees that take a disk minutes
    };
    explicit OddTree(Place place = Place::disk);
    ~OddTree();
    OddTree(const OddTree&) = delete;
    OddTree& operator=(const OddTree&) = delete;

    const std::string& path() const noexcept { return path_; }
    std::string path(std::string_view relative) const;
    FileURL url(std::string_view relative = {}) const { return FileURL(path(relative)); }

    /// Creates it with everything above.
    std::string folder(std::string_view relative) const;
    /// A file of so many bytes, none of them zero, with the folders above it.
    std::string file(std::string_view relative, std::size_t bytes = 1) const;
    std::string text(std::string_view relative, std::string_view content) const;
    void link(std::string_view relative, std::string_view target) const;
    void hardLink(std::string_view relative, std::string_view existing) const;
    /// A file that is all hole, or that has blocks and no content.
    void sparse(std::string_view relative, std::int64_t bytes) const;
    void preallocated(std::string_view relative, std::int64_t bytes) const;
    void pipe(std::string_view relative) const;
    void socket(std::string_view relative) const;
    void mode(std::string_view relative, mode_t mode) const;
    /// A chain of so many folders, each named `name` and lying in the one before, made by handles since its
    /// path is too long for the system; a file of `bytes` in the deepest and in every `every`th.
    void chain(std::string_view relative, const std::string& name, std::size_t depth, std::size_t bytes,
               std::size_t every = 1'000'000) const;
    /// Gives everything to the ordinary user that tests take the place of, where this is root.
    void giveAway() const;

    /// Whether anything stands there, a dangling link too.
    bool has(std::string_view relative) const;
    std::string read(std::string_view relative) const;
    std::uint64_t inode(std::string_view relative) const;

private:
    std::string path_;
};

} // namespace vesko
