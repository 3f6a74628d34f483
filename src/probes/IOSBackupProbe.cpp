#include "probes/IOSBackupProbe.h"

#include "base/FileSystem.h"
#include "core/GroupBuilders.h"
#include "core/ParallelSizing.h"
#include <utility>

namespace vesko {

IOSBackupProbe::IOSBackupProbe(GroupMetadata metadata) : metadata_(std::move(metadata)) {}

ProbeResult IOSBackupProbe::run(const ProbeContext& context) const {
    const FileURL root = context.home.appending("Library/Application Support/MobileSync/Backup");
    // A folder that is missing can't be listed either.
    auto children = directChildren(root, Hidden::skip);
    if (!children) return {};
    std::vector<ParallelSizeInput> inputs;
    for (FileURL& child : *children)
        if (isDirectory(child).value_or(false)) inputs.push_back(folderInput(std::move(child)));
    return makeResult(metadata_, sizeInParallel(std::move(inputs), context));
}

} // namespace vesko
