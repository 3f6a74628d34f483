#pragma once
#include "core/ScanProbe.h"

/// What the platform's device simulators occupy, asked of `/usr/bin/xcrun simctl`. The runs do not look at
/// cancellation; the measuring does.
namespace vesko {

/// The simulated devices, each with the folder that holds its data; they are deleted through the tool by
/// their identifier. A tool that can't be asked is one error, "error.simctl.unavailable", and an answer that
/// can't be read another, "error.simctl.invalidJSON"; then there is no group.
class SimulatorProbe final : public ScanProbe {
public:
    /// With `onlyUnavailable` the devices that could be started now are left out.
    SimulatorProbe(GroupMetadata metadata, bool onlyUnavailable);

    bool onlyUnavailable() const noexcept { return onlyUnavailable_; }
    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    GroupMetadata metadata_;
    bool onlyUnavailable_;
};

/// Runtime bundles below the home folder that the tool no longer knows. Where the tool can't be asked it
/// knows none, and every bundle in the folder is offered. Never reports an error.
class SimulatorRuntimeProbe final : public ScanProbe {
public:
    explicit SimulatorRuntimeProbe(GroupMetadata metadata);

    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    GroupMetadata metadata_;
};

} // namespace vesko
