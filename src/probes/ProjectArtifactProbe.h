#pragma once
#include "core/ScanProbe.h"
#include <expected>
#include <optional>
#include <string>
#include <vector>

namespace vesko {

/// What a row of the catalog says of a folder that projects hold.
struct ProjectArtifactRow {
    GroupMetadata metadata;
    std::string folderName; ///< exact; a hidden one is found through its project, see below
    std::optional<std::string> requireSiblingFile; ///< must stand beside the folder
    std::vector<std::string> excludeSiblingFiles;  ///< none of them may

    friend bool operator==(const ProjectArtifactRow&, const ProjectArtifactRow&) = default;
};

/// Finds build products and dependency folders anywhere in the home folder. It asks the system's search index
/// by name and walks nothing itself; the index knows no hidden folders, so one whose name begins with "." is
/// looked for beside the file that marks a project (`requireSiblingFile`, "package.json" without one). Of
/// folders inside one another only the outermost counts, and what a package manager or another tool made for
/// itself is left out. An index that does not answer is an error of the scan.
class ProjectArtifactProbe final : public ScanProbe {
public:
    explicit ProjectArtifactProbe(ProjectArtifactRow row);

    const ProjectArtifactRow& row() const noexcept { return row_; }
    const GroupMetadata& metadata() const noexcept override { return row_.metadata; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    using FoundFolders = std::expected<std::vector<std::string>, std::string>;
    FoundFolders spotlightFolders(const FileURL& home, const CommandRunning& runner) const;
    bool isArtifact(const FileURL& folder) const;

    ProjectArtifactRow row_;
};

} // namespace vesko
