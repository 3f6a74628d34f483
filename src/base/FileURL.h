#pragma once
#include <compare>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace vesko {

/// Where a file is: the bytes of its path, without a trailing "/" (the root keeps its one).
///
/// Bytes stay bytes: nothing is normalised, percent-encoded or resolved, and a path need not be UTF-8. Two
/// URLs are equal when their bytes are. Values are immutable and share their bytes, so that copying one and
/// looking it up in a set costs no copy of the path; the hash is worked out once. Safe to hand between
/// threads.
class FileURL {
public:
    /// The empty URL, equal to FileURL(""). It names no file.
    FileURL();
    explicit FileURL(std::string path);

    const std::string& path() const noexcept { return bytes_->path; }
    std::size_t hash() const noexcept { return bytes_->hash; }
    bool empty() const noexcept { return bytes_->path.empty(); }

    /// The part behind the last "/"; "/" for the root.
    std::string_view lastPathComponent() const noexcept;
    /// What follows the last dot of the last component, without the dot; empty for ".name", "name." and
    /// "name".
    std::string_view pathExtension() const noexcept;
    /// The folder above; the root is its own parent.
    FileURL parent() const;
    /// This path, "/" and `relative` (which may hold several components and must not begin with "/").
    FileURL appending(std::string_view relative) const;

    friend bool operator==(const FileURL& a, const FileURL& b) noexcept {
        return a.bytes_ == b.bytes_ || (a.bytes_->hash == b.bytes_->hash && a.bytes_->path == b.bytes_->path);
    }
    friend std::strong_ordering operator<=>(const FileURL& a, const FileURL& b) noexcept {
        return a.bytes_->path <=> b.bytes_->path;
    }

private:
    struct Bytes {
        std::string path;
        std::size_t hash;
    };
    std::shared_ptr<const Bytes> bytes_;
};

} // namespace vesko

template <> struct std::hash<vesko::FileURL> {
    std::size_t operator()(const vesko::FileURL& url) const noexcept { return url.hash(); }
};
