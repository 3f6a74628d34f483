#include "storage/StorageHome.h"

#include "scan/SampleHome.h"
#include <array>
#include <filesystem>
#include <utility>

namespace vesko::bench {

namespace fs = std::filesystem;

/// The sample home, its projects shared out among the folders that the dashboard measures.
std::string storageHome(const std::string& folder, std::size_t entries) {
    const fs::path home = sampleHome(folder, entries);
    constexpr std::array<std::pair<const char*, const char*>, 12> moves{{
        {"projects/team-0", "Applications/team-0"},
        {"projects/team-1", "Desktop/team-1"},
        {"projects/team-2", "Documents/team-2"},
        {"projects/team-3", "Documents/team-3"},
        {"projects/team-4", "Pictures/team-4"},
        {"projects/team-5", "Movies/team-5"},
        {"projects/team-6", "Music/team-6"},
        {"projects", "Downloads/projects"},
        {".npm", "Library/npm"},
        {".cargo", "Library/cargo"},
        {".gradle", "Library/gradle"},
        {".m2", "Library/m2"},
    }};
    for (const auto& [from, to] : moves) {
        if (!fs::exists(home / from)) continue;
        fs::create_directories((home / to).parent_path());
        fs::rename(home / from, home / to);
    }
    return home.string();
}

} // namespace vesko::bench
