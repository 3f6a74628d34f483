#include "probes/ToolTable.h"

#include <filesystem>

namespace vesko {

/// The search program lies beside the running program in a build folder, below the same prefix in an
/// installed one, and where this build was told to install it. The container client's vendor installs it in
/// /usr/local/bin, the system's packages in /usr/bin.
std::vector<ToolStandIn> toolStandIns() {
    std::vector<std::string> searchPrograms;
    std::error_code failure;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", failure);
    if (!failure) {
        const std::filesystem::path folder = self.parent_path();
        searchPrograms.push_back((folder / "vesko-mdfind").string());
        searchPrograms.push_back((folder.parent_path() / "libexec/vesko/vesko-mdfind").string());
    }
    searchPrograms.emplace_back(VESKO_LIBEXEC "/vesko-mdfind");
    return {{"/usr/bin/mdfind", std::move(searchPrograms)}, {"/usr/local/bin/docker", {"/usr/bin/docker"}}};
}

} // namespace vesko
