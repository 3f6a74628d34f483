#include "probes/ToolCacheProbes.h"

#include "base/FileSystem.h"
#include "core/GroupBuilders.h"
#include "core/ParallelSizing.h"
#include "probes/HomebrewCacheAnswer.h"
#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace vesko {
namespace {

/// The folder as one item, measured at once; nothing where nothing is or it weighs nothing.
std::optional<ScannableItem> measuredFolder(const FileURL& folder, const ProbeContext& context) {
    if (!fileExists(folder)) return std::nullopt;
    ScannableItem item;
    item.url = folder;
    item.size = context.size->size(folder, true);
    item.isDirectory = true;
    item.enrichmentKey = EnrichmentKey::forURL(folder);
    if (item.size < 1) return std::nullopt;
    return item;
}

ProbeResult measuredFolders(const GroupMetadata& metadata, std::span<const std::string_view> places,
                            const ProbeContext& context) {
    std::vector<ScannableItem> items;
    for (const std::string_view place : places)
        if (auto item = measuredFolder(context.home.appending(place), context))
            items.push_back(std::move(*item));
    return makeResult(metadata, std::move(items));
}

std::vector<FileURL> allChildren(const FileURL& folder) {
    return directChildren(folder, Hidden::include).value_or(std::vector<FileURL>());
}

/// The folders that the installed brews name, in the order of the executables.
std::vector<FileURL> namedByBrew(const CommandRunning& runner) {
    if (runner.run("/usr/bin/which", {"brew"}).exitCode != 0) return {};
    std::vector<FileURL> folders;
    for (const char* brew : {"/opt/homebrew/bin/brew", "/usr/local/bin/brew"}) {
        const CommandResult answer = runner.run(brew, {"--cache"});
        if (answer.exitCode != 0) continue;
        if (auto folder = parseHomebrewCache(answer.output)) folders.push_back(std::move(*folder));
    }
    return folders;
}

} // namespace

HomebrewCacheProbe::HomebrewCacheProbe(GroupMetadata metadata) : metadata_(std::move(metadata)) {}

ProbeResult HomebrewCacheProbe::run(const ProbeContext& context) const {
    std::vector<ScannableItem> items;
    const auto add = [&](const FileURL& folder) {
        if (std::ranges::find(items, folder, &ScannableItem::url) != items.end()) return;
        if (auto item = measuredFolder(folder, context)) items.push_back(std::move(*item));
    };
    add(context.home.appending("Library/Caches/Homebrew"));
    for (const FileURL& folder : namedByBrew(*context.runner)) add(folder);
    return makeResult(metadata_, std::move(items));
}

MavenCacheProbe::MavenCacheProbe(GroupMetadata metadata) : metadata_(std::move(metadata)) {}

ProbeResult MavenCacheProbe::run(const ProbeContext& context) const {
    constexpr std::array<std::string_view, 1> places{".m2/repository"};
    return measuredFolders(metadata_, places, context);
}

SwiftPMCacheProbe::SwiftPMCacheProbe(GroupMetadata metadata) : metadata_(std::move(metadata)) {}

ProbeResult SwiftPMCacheProbe::run(const ProbeContext& context) const {
    constexpr std::array<std::string_view, 1> places{"Library/Caches/org.swift.swiftpm"};
    return measuredFolders(metadata_, places, context);
}

JetBrainsCacheProbe::JetBrainsCacheProbe(GroupMetadata metadata) : metadata_(std::move(metadata)) {}

ProbeResult JetBrainsCacheProbe::run(const ProbeContext& context) const {
    std::vector<ParallelSizeInput> inputs;
    for (FileURL& child : allChildren(context.home.appending("Library/Caches/JetBrains")))
        inputs.push_back(folderInput(std::move(child)));
    return makeResult(metadata_, sizeInParallel(std::move(inputs), context));
}

XcodePreviewsProbe::XcodePreviewsProbe(GroupMetadata metadata) : metadata_(std::move(metadata)) {}

ProbeResult XcodePreviewsProbe::run(const ProbeContext& context) const {
    std::vector<ParallelSizeInput> inputs;
    for (const FileURL& child : allChildren(context.home.appending("Library/Developer/Xcode/DerivedData")))
        if (FileURL previews = child.appending("Previews"); fileExists(previews))
            inputs.push_back(folderInput(std::move(previews)));
    return makeResult(metadata_, sizeInParallel(std::move(inputs), context));
}

} // namespace vesko
