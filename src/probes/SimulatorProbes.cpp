#include "probes/SimulatorProbes.h"

#include "base/FileSystem.h"
#include "base/StringCatalog.h"
#include "core/GroupBuilders.h"
#include "core/ParallelSizing.h"
#include "probes/SimulatorListings.h"
#include <utility>

namespace vesko {
namespace {

CommandResult simctlList(const CommandRunning& runner, const std::string& kind) {
    return runner.run("/usr/bin/xcrun", {"simctl", "list", kind, "-j"});
}

ParallelSizeInput deviceInput(const SimctlDevice& device, const FileURL& home) {
    ParallelSizeInput input = folderInput(
        device.dataPath ? FileURL(*device.dataPath).parent()
                        : home.appending("Library/Developer/CoreSimulator/Devices/" + device.udid));
    input.enrichmentKey = {"simulator:" + device.udid};
    return input;
}

std::unordered_set<FileURL> registeredRuntimes(const CommandRunning& runner) {
    const CommandResult listing = simctlList(runner, "runtimes");
    if (listing.exitCode != 0) return {};
    std::unordered_set<FileURL> known;
    if (const auto paths = parseSimctlRuntimes(listing.output))
        for (const std::string& path : *paths) known.insert(FileURL(path));
    return known;
}

} // namespace

SimulatorProbe::SimulatorProbe(GroupMetadata metadata, bool onlyUnavailable)
    : metadata_(std::move(metadata)), onlyUnavailable_(onlyUnavailable) {}

ProbeResult SimulatorProbe::run(const ProbeContext& context) const {
    const CommandResult listing = simctlList(*context.runner, "devices");
    if (listing.exitCode != 0) return makeResult(metadata_, {}, {localized("error.simctl.unavailable")});
    const auto devices = parseSimctlDevices(listing.output);
    if (!devices) return makeResult(metadata_, {}, {localized("error.simctl.invalidJSON")});
    std::vector<ParallelSizeInput> inputs;
    for (const SimctlDevice& device : *devices)
        if (!(onlyUnavailable_ && device.isAvailable)) inputs.push_back(deviceInput(device, context.home));
    return makeResult(metadata_, sizeInParallel(std::move(inputs), context));
}

SimulatorRuntimeProbe::SimulatorRuntimeProbe(GroupMetadata metadata) : metadata_(std::move(metadata)) {}

ProbeResult SimulatorRuntimeProbe::run(const ProbeContext& context) const {
    const FileURL root = context.home.appending("Library/Developer/CoreSimulator/Profiles/Runtimes");
    std::optional<std::vector<FileURL>> children = directChildren(root, Hidden::include);
    if (!children) return {};
    const std::unordered_set<FileURL> known = registeredRuntimes(*context.runner);
    std::vector<ParallelSizeInput> inputs;
    for (FileURL& child : *children)
        if (!known.contains(child)) inputs.push_back(folderInput(std::move(child)));
    return makeResult(metadata_, sizeInParallel(std::move(inputs), context));
}

} // namespace vesko
