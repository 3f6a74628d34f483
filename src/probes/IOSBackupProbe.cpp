#include "probes/IOSBackupProbe.h"

#include "base/FileSystem.h"
#include "core/GroupBuilders.h"
#include "core/ParallelSizing.h"
#include <utility>

namespace vesko {
namespace {

ParallelSizeInput input(const FileURL& backup) {
    ParallelSizeInput made;
    made.url = backup;
    made.isDirectory = true;
    made.preferDiskUsage = true;
    return made;
}

} // namespace

IOSBackupProbe::IOSBackupProbe(GroupMetadata metadata) : metadata_(std::move(metadata)) {}

ProbeResult IOSBackupProbe::run(const ProbeContext& context) const {
    const FileURL root = context.home.appending("Library/Application Support/MobileSync/Backup");
    // A folder that is missing can't be listed either.
    const auto children = directChildren(root, Hidden::skip);
    if (!children) return {};
    std::vector<ParallelSizeInput> inputs;
    for (const FileURL& child : *children)
        if (isDirectory(child).value_or(false)) inputs.push_back(input(child));
    return makeResult(metadata_, sizeInParallel(std::move(inputs), context));
}

} // namespace vesko
