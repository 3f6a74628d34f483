#include "probes/DockerProbes.h"

#include "base/FileSystem.h"
#include "base/Text.h"
#include "core/GroupBuilders.h"
#include "core/ParallelSizing.h"
#include "probes/DockerBinary.h"
#include "probes/DockerListings.h"
#include <utility>

namespace vesko {
namespace {

FileURL dataFolder(const FileURL& home) {
    return home.appending("Library/Containers/com.docker.docker/Data");
}

/// Each probe looks by itself, since the daemon may start or end between two of them.
std::optional<std::string> dockerBinary(const DockerBinaryProvider& provider, const CommandRunning& runner) {
    return provider ? provider(runner) : defaultDockerBinary(runner);
}

/// The path stands for the image and does not exist.
ScannableItem itemOf(const DockerImageLine& image, const FileURL& home) {
    ScannableItem item;
    item.url = dataFolder(home).appending("images/" + image.id);
    item.size = image.size;
    item.enrichmentKey = {"docker:image:" + image.id};
    item.displayLabel = image.reference;
    return item;
}

ParallelSizeInput volumeFolder(FileURL folder, EnrichmentKey key) {
    ParallelSizeInput input = folderInput(std::move(folder));
    input.enrichmentKey = std::move(key);
    return input;
}

std::optional<ParallelSizeInput> volumeInput(const std::string& docker, const std::string& name,
                                             const CommandRunning& runner) {
    const CommandResult answer =
        runner.run(docker, {"volume", "inspect", name, "--format", "{{.Mountpoint}}"});
    if (answer.exitCode != 0) return std::nullopt;
    std::string mountPoint = trimmedWhiteSpace(answer.output);
    if (mountPoint.empty()) return std::nullopt;
    ParallelSizeInput input = volumeFolder(FileURL(std::move(mountPoint)), {"docker:volume:" + name});
    input.displayLabel = name;
    return input;
}

std::optional<ScannableItem> buildCacheOf(const CommandResult& answer, const FileURL& home) {
    if (answer.exitCode != 0) return std::nullopt;
    return parseBuildCacheLine(answer.output, dataFolder(home));
}

} // namespace

DockerImagesProbe::DockerImagesProbe(GroupMetadata metadata, DockerBinaryProvider dockerBinaryProvider)
    : metadata_(std::move(metadata)), dockerBinaryProvider_(std::move(dockerBinaryProvider)) {}

ProbeResult DockerImagesProbe::run(const ProbeContext& context) const {
    const auto docker = dockerBinary(dockerBinaryProvider_, *context.runner);
    if (!docker) return offline(context);
    const CommandResult listing =
        context.runner->run(*docker, {"image", "ls", "--format", std::string(dockerImageTemplate)});
    if (listing.exitCode != 0) return offline(context);
    std::vector<ScannableItem> items;
    for (const DockerImageLine& image : parseDockerImages(listing.output))
        items.push_back(itemOf(image, context.home));
    return makeResult(metadata_, std::move(items));
}

ProbeResult DockerImagesProbe::offline(const ProbeContext& context) const {
    const FileURL data = dataFolder(context.home);
    if (!fileExists(data)) return {};
    ScannableItem item;
    item.url = data;
    item.size = context.size->size(data, true);
    item.isDirectory = true;
    item.enrichmentKey = EnrichmentKey::unsupportedDockerObject();
    return makeResult(metadata_, {std::move(item)});
}

DockerVolumesProbe::DockerVolumesProbe(GroupMetadata metadata, DockerBinaryProvider dockerBinaryProvider)
    : metadata_(std::move(metadata)), dockerBinaryProvider_(std::move(dockerBinaryProvider)) {}

ProbeResult DockerVolumesProbe::run(const ProbeContext& context) const {
    const CommandRunning& runner = *context.runner;
    const auto docker = dockerBinary(dockerBinaryProvider_, runner);
    if (!docker) return offline(context);
    const CommandResult listing = runner.run(*docker, {"volume", "ls", "-q"});
    if (listing.exitCode != 0) return offline(context);
    std::vector<ParallelSizeInput> inputs;
    for (const std::string& name : parseDockerVolumes(listing.output))
        if (auto input = volumeInput(*docker, name, runner)) inputs.push_back(std::move(*input));
    std::vector<ScannableItem> items = sizeInParallel(std::move(inputs), context);
    // Volumes inside a virtual machine have no folder here; then the machine's disk tells what they weigh.
    if (items.empty()) return offline(context);
    return makeResult(metadata_, std::move(items));
}

ProbeResult DockerVolumesProbe::offline(const ProbeContext& context) const {
    const FileURL folder = dataFolder(context.home).appending("vms/0/data/docker/volumes");
    std::vector<ParallelSizeInput> inputs;
    for (FileURL& child : directChildren(folder, Hidden::skip).value_or(std::vector<FileURL>()))
        if (isDirectory(child).value_or(false))
            inputs.push_back(volumeFolder(std::move(child), EnrichmentKey::unsupportedDockerObject()));
    return makeResult(metadata_, sizeInParallel(std::move(inputs), context));
}

DockerBuildCacheProbe::DockerBuildCacheProbe(GroupMetadata metadata,
                                             DockerBinaryProvider dockerBinaryProvider)
    : metadata_(std::move(metadata)), dockerBinaryProvider_(std::move(dockerBinaryProvider)) {}

ProbeResult DockerBuildCacheProbe::run(const ProbeContext& context) const {
    const CommandRunning& runner = *context.runner;
    const auto docker = dockerBinary(dockerBinaryProvider_, runner);
    if (!docker) return {};
    std::optional<ScannableItem> item =
        buildCacheOf(runner.run(*docker, {"system", "df", "--format", "{{.Type}}\t{{.Size}}"}), context.home);
    if (!item) item = buildCacheOf(runner.run(*docker, {"system", "df"}), context.home);
    if (!item) return {};
    return makeResult(metadata_, {std::move(*item)});
}

} // namespace vesko
