#pragma once
#include "core/ScanProbe.h"

/// Developer tools whose caches a table of paths could not describe: asking the tool, taking every child,
/// hidden ones too, or a folder inside every child. None of these probes ever reports an error: what is
/// missing, can't be listed, or weighs nothing is silent. The runs do not look at cancellation; the measuring
/// does.
namespace vesko {

/// The usual cache folder, and each other folder that an installed brew names.
class HomebrewCacheProbe final : public ScanProbe {
public:
    explicit HomebrewCacheProbe(GroupMetadata metadata);

    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    GroupMetadata metadata_;
};

/// ".m2/repository", as one item.
class MavenCacheProbe final : public ScanProbe {
public:
    explicit MavenCacheProbe(GroupMetadata metadata);

    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    GroupMetadata metadata_;
};

/// "Library/Caches/org.swift.swiftpm", as one item.
class SwiftPMCacheProbe final : public ScanProbe {
public:
    explicit SwiftPMCacheProbe(GroupMetadata metadata);

    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    GroupMetadata metadata_;
};

/// Every child of "Library/Caches/JetBrains", hidden ones and files included, all called folders.
class JetBrainsCacheProbe final : public ScanProbe {
public:
    explicit JetBrainsCacheProbe(GroupMetadata metadata);

    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    GroupMetadata metadata_;
};

/// The folder "Previews" of every child of "Library/Developer/Xcode/DerivedData", hidden ones included.
class XcodePreviewsProbe final : public ScanProbe {
public:
    explicit XcodePreviewsProbe(GroupMetadata metadata);

    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    GroupMetadata metadata_;
};

} // namespace vesko
