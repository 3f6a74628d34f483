#include "execution/Remover.h"

#include "base/Paths.h"
#include "base/QuietReading.h"
#include "platform/posix/FolderHandle.h"
#include "platform/posix/Removal.h"
#include "platform/posix/RemovalFailureKind.h"
#include <string>
#include <string_view>

namespace vesko {

namespace {

/// The path without doubled "/" and "." parts; empty when it can't name an item: relative, or with a ".."
/// part, which by the time of the removal may lead anywhere.
std::string plainPath(std::string_view path) {
    if (!path.starts_with('/')) return {};
    std::string plain;
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view part = path.substr(0, slash);
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
        if (part.empty() || part == ".") continue;
        if (part == "..") return {};
        plain += '/';
        plain += part;
    }
    return plain.empty() ? "/" : plain;
}

bool liesBelow(std::string_view path, std::string_view folder) {
    if (folder == "/") return path.size() > 1;
    return path.size() > folder.size() + 1 && path.starts_with(folder) && path[folder.size()] == '/';
}

/// A relative path in two: its last part and the folder that it is in, empty for the root itself.
struct Place {
    std::string_view folder;
    std::string name;
};

Place placeOf(std::string_view relative) {
    const std::size_t slash = relative.rfind('/');
    if (slash == std::string_view::npos) return {{}, std::string(relative)};
    return {relative.substr(0, slash), std::string(relative.substr(slash + 1))};
}

RemovalFailure failureAt(const FileURL& url, std::error_code code) {
    return {url, removalFailureKind(code, {}, {}), code};
}

/// Why the folder `way` below `root` did not open. A link says the same as a file there, "not a directory",
/// but means that something was put in the place of a folder.
RemovalFailure failureOnTheWay(const FileURL& url, const FolderHandle& root, std::string_view way,
                               std::error_code code) {
    for (std::size_t end = way.find('/');; end = way.find('/', end + 1)) {
        const Place place = placeOf(way.substr(0, end));
        const OpenedFolder folder = openFolderBelow(root, place.folder, Mounts::cross);
        if (!folder) break;
        const AskedStatus status = entryStatus(*folder, place.name.c_str());
        if (status && status->kind == EntryKind::link)
            return {url, RemovalFailureKind::changed,
                    std::make_error_code(std::errc::too_many_symbolic_link_levels)};
        if (end == std::string_view::npos) break;
    }
    return failureAt(url, code);
}

} // namespace

std::optional<RemovalFailure> removeForGood(const FileURL& url, const RemovalProgress& progress,
                                            const StopToken& stop) {
    const std::string path = plainPath(url.path());
    if (path.empty())
        return RemovalFailure{url, RemovalFailureKind::other,
                              std::make_error_code(std::errc::invalid_argument)};

    const PlaceholderFetching fetching;
    // The home folder may be reached through links, and its last part may be one: "/." stands for its target.
    const std::string home = plainPath(homeFolder().path());
    OpenedFolder openHome = openFolder(home + "/.");
    std::optional<FolderIdentity> homeIdentity;
    if (openHome)
        if (const AskedStatus status = folderStatus(*openHome)) homeIdentity = status->identity;
    if (path == "/" || path == home || liesBelow(home, path))
        return RemovalFailure{url, RemovalFailureKind::busy,
                              std::make_error_code(std::errc::device_or_resource_busy)};

    const bool isBelowHome = openHome && home != "/" && liesBelow(path, home);
    OpenedFolder root = isBelowHome ? std::move(openHome) : openFolder("/");
    if (!root) return failureAt(url, root.error());
    const Place place = placeOf(std::string_view(path).substr(isBelowHome ? home.size() + 1 : 1));
    OpenedFolder parent = openFolderBelow(*root, place.folder, Mounts::cross);
    if (!parent) return failureOnTheWay(url, *root, place.folder, parent.error());
    return Removal(path, progress, stop, homeIdentity).run(std::move(*parent), place.name);
}

} // namespace vesko
