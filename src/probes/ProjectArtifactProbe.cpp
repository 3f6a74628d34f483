#include "probes/ProjectArtifactProbe.h"

#include "base/FileSystem.h"
#include "base/StringCatalog.h"
#include "base/Text.h"
#include "concurrency/CurrentTask.h"
#include "core/GroupBuilders.h"
#include "core/ParallelSizing.h"
#include "enrichment/DisplayName.h"
#include "probes/TextPieces.h"
#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace vesko {
namespace {

/// By length in characters; equal lengths keep their order.
std::vector<std::string> shortestFirst(std::vector<std::string> paths) {
    std::vector<std::pair<std::size_t, std::string>> measured;
    measured.reserve(paths.size());
    for (std::string& path : paths) measured.emplace_back(characterCount(path), std::move(path));
    std::ranges::stable_sort(measured, {}, [](const auto& each) { return each.first; });
    for (std::size_t i = 0; i < paths.size(); ++i) paths[i] = std::move(measured[i].second);
    return paths;
}

/// Whether one of the kept paths is a folder above.
bool liesBelowOneOf(const std::unordered_set<std::string>& kept, const std::string& path) {
    for (std::size_t at = path.find('/', 1); at != std::string::npos; at = path.find('/', at + 1))
        if (kept.contains(path.substr(0, at))) return true;
    return false;
}

/// `paths` come shortest first, so that an outer folder is met before what is in it.
std::vector<std::string> outermost(std::vector<std::string> paths) {
    std::unordered_set<std::string> kept;
    std::vector<std::string> list;
    for (std::string& path : paths) {
        if (liesBelowOneOf(kept, path)) continue;
        kept.insert(path);
        list.push_back(std::move(path));
    }
    return list;
}

/// The stores from which package managers link into projects; a row of their own tells of them.
bool liesInPackageStore(std::string_view path) {
    constexpr std::array<std::string_view, 3> stores{"/.pnpm/", "/Library/pnpm/store", "/.pnpm-store/"};
    return std::ranges::any_of(stores, [&](auto store) { return path.find(store) != path.npos; });
}

ParallelSizeInput sizeInput(FileURL folder) {
    ParallelSizeInput input;
    input.url = std::move(folder);
    input.isDirectory = true;
    input.useLinkAwareSize = true;
    return input;
}

} // namespace

ProjectArtifactProbe::ProjectArtifactProbe(ProjectArtifactRow row) : row_(std::move(row)) {}

ProbeResult ProjectArtifactProbe::run(const ProbeContext& context) const {
    FoundFolders found = spotlightFolders(context.home, *context.runner);
    if (!found) return {std::nullopt, {std::move(found.error())}};
    std::vector<ParallelSizeInput> inputs;
    for (std::string& path : outermost(shortestFirst(std::move(*found)))) {
        if (currentTaskIsCancelled()) break;
        FileURL folder(std::move(path));
        if (isArtifact(folder)) inputs.push_back(sizeInput(std::move(folder)));
    }
    return makeResult(row_.metadata, sizeInParallel(std::move(inputs), context));
}

ProjectArtifactProbe::FoundFolders
ProjectArtifactProbe::spotlightFolders(const FileURL& home, const CommandRunning& runner) const {
    const bool isHidden = row_.folderName.starts_with('.');
    const std::string marker = row_.requireSiblingFile.value_or("package.json");
    const std::string query =
        isHidden ? "kMDItemFSName == '" + marker + "'"
                 : "kMDItemFSName == '" + row_.folderName + "' && kMDItemContentType == 'public.folder'";
    const CommandResult answer = runner.run("/usr/bin/mdfind", {"-onlyin", home.path(), query});
    if (answer.exitCode != 0)
        return std::unexpected(localized("error.spotlight.unavailable %@", row_.folderName));
    std::vector<std::string> folders;
    std::string_view rest = answer.output;
    while (const auto line = takePiece(rest, "\n")) {
        if (!isHidden) {
            folders.emplace_back(*line);
            continue;
        }
        const FileURL folder = FileURL(std::string(*line)).parent().appending(row_.folderName);
        if (isDirectory(folder).value_or(false)) folders.push_back(folder.path());
    }
    return folders;
}

bool ProjectArtifactProbe::isArtifact(const FileURL& folder) const {
    if (liesInPackageStore(folder.path())) return false;
    const FileURL project = folder.parent();
    if (row_.folderName == "node_modules" && looksOpaque(project.lastPathComponent())) return false;
    if (row_.requireSiblingFile && !fileExists(project.appending(*row_.requireSiblingFile))) return false;
    return std::ranges::none_of(row_.excludeSiblingFiles,
                                [&](const auto& name) { return fileExists(project.appending(name)); });
}

} // namespace vesko
