#include "base/Paths.h"

#include <cstdlib>

/// The folders of the XDG Base Directory Specification: a variable that is unset, empty or no absolute path
/// counts as absent.
namespace vesko {
namespace {

FileURL folderNamedBy(const char* variable, std::string_view belowHome, std::string_view own) {
    const char* folder = std::getenv(variable);
    if (folder && folder[0] == '/') return FileURL(folder).appending(own);
    const FileURL home = homeFolder();
    // A user without a home folder is recorded with the root, where nobody keeps files of their own.
    if (home.path() == "/") return temporaryFolder().appending(own);
    return home.appending(belowHome).appending(own);
}

} // namespace

FileURL applicationSupportFolder() { return folderNamedBy("XDG_DATA_HOME", ".local/share", "Vesko"); }

FileURL configurationFolder() { return folderNamedBy("XDG_CONFIG_HOME", ".config", "vesko"); }

} // namespace vesko
