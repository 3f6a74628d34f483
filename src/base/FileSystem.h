#pragma once
#include "base/Date.h"
#include "base/FileURL.h"
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

/// Blocking questions to the file system; each may be asked on any thread and fails by giving nothing. The
/// platform layer implements them.
namespace vesko {

/// Whether something stands at the path. A link counts by its target: a dangling one does not exist.
bool fileExists(const FileURL& url) noexcept;
/// Whether this process may read what stands at the path.
bool isReadable(const FileURL& url) noexcept;
/// Whether it is a folder; a link counts as itself, hence never. Nothing when it can't be told.
std::optional<bool> isDirectory(const FileURL& url) noexcept;
/// When the content last changed; of a link, the link's own.
std::optional<Date> contentModificationDate(const FileURL& url) noexcept;
/// When the content was last read; nothing on a volume that keeps no such dates.
std::optional<Date> contentAccessDate(const FileURL& url) noexcept;

enum class Hidden { skip, include };
/// The direct children in the file system's order; nothing when the folder can't be listed. Hidden means a
/// name with a leading dot. Listing a folder does not touch its access date where the system allows that.
std::optional<std::vector<FileURL>> directChildren(const FileURL& folder, Hidden hidden);

/// The file's bytes; nothing when it can't be read, is no regular file, or is longer than `limit` bytes.
std::optional<std::string> readFile(const FileURL& url, std::uint64_t limit);

/// Creates the folder with everything above it, for this user alone; an existing one is success.
std::error_code createFolders(const FileURL& folder);
/// Replaces the file in one step: a temporary file in the same folder, its length checked, flushed, renamed,
/// the folder flushed. On failure the old file is as it was and nothing is left over. The new file is
/// readable by this user alone; a link at the path is replaced, not followed.
std::error_code replaceFile(const FileURL& url, std::string_view bytes);
/// Takes away temporary files that a replaceFile of an earlier process left beside `url` when it was killed.
void removeReplacementLitter(const FileURL& url);
/// Removes one file; a missing one is an error like any other.
std::error_code removeFile(const FileURL& url);

} // namespace vesko
