#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace vesko {

/// Folders of exactly this name.
struct FolderNamed {
    std::string name;
    friend bool operator==(const FolderNamed&, const FolderNamed&) = default;
};

/// Entries of any kind of exactly this name.
struct EntryNamed {
    std::string name;
    friend bool operator==(const EntryNamed&, const EntryNamed&) = default;
};

/// Applications that were last used before a moment.
struct ApplicationsUnusedSince {
    std::int64_t referenceSeconds = 0; ///< since 2001-01-01T00:00:00Z
    friend bool operator==(const ApplicationsUnusedSince&, const ApplicationsUnusedSince&) = default;
};

using SearchQuery = std::variant<FolderNamed, EntryNamed, ApplicationsUnusedSince>;

/// Reads the three forms of the metadata query language (mdfind(1), NSPredicate-like) that are asked for
/// here, each to the letter, blanks included:
///
///     kMDItemFSName == 'NAME' && kMDItemContentType == 'public.folder'
///     kMDItemFSName == 'NAME'
///     kMDItemContentTypeTree == 'public.application' && kMDItemLastUsedDate < $time.iso(SECONDS)
///
/// NAME is a file name without the characters that mean something else in that language ("'", "\", "*");
/// SECONDS is a decimal number of 64 bits. Anything else gives nothing: a query that is half understood would
/// be answered wrongly.
std::optional<SearchQuery> searchQueryFromText(std::string_view text);

} // namespace vesko
