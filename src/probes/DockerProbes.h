#pragma once
#include "core/CommandRunning.h"
#include "core/ScanProbe.h"
#include <functional>
#include <optional>
#include <string>

/// What the container engine holds. Where its tool and its daemon answer, the items can be deleted by name
/// through the tool; where they do not, images and volumes are measured in the engine's data folder, with the
/// key "docker:unsupported", which nothing deletes. That there is no docker is a normal state: none of these
/// probes ever reports an error. The runs do not look at cancellation; the measuring does.
namespace vesko {

/// Decides which docker executable is used; nothing means that there is none. Empty: defaultDockerBinary.
using DockerBinaryProvider = std::function<std::optional<std::string>(const CommandRunning&)>;

/// Every image that docker lists, untagged ones included, with the size that it tells.
class DockerImagesProbe final : public ScanProbe {
public:
    explicit DockerImagesProbe(GroupMetadata metadata, DockerBinaryProvider dockerBinaryProvider = nullptr);

    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    ProbeResult offline(const ProbeContext& context) const;

    GroupMetadata metadata_;
    DockerBinaryProvider dockerBinaryProvider_;
};

/// Every named volume, measured where docker mounts it. Volumes that can't be measured from outside (they lie
/// in a virtual machine, or below a folder that only root may enter) weigh nothing and don't show.
class DockerVolumesProbe final : public ScanProbe {
public:
    explicit DockerVolumesProbe(GroupMetadata metadata, DockerBinaryProvider dockerBinaryProvider = nullptr);

    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    ProbeResult offline(const ProbeContext& context) const;

    GroupMetadata metadata_;
    DockerBinaryProvider dockerBinaryProvider_;
};

/// The build cache as a whole, with the size that docker tells. Without docker there is nothing to show.
class DockerBuildCacheProbe final : public ScanProbe {
public:
    explicit DockerBuildCacheProbe(GroupMetadata metadata,
                                   DockerBinaryProvider dockerBinaryProvider = nullptr);

    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    GroupMetadata metadata_;
    DockerBinaryProvider dockerBinaryProvider_;
};

} // namespace vesko
