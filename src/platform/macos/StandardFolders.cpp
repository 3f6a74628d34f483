#include "base/Paths.h"

/// The folders of the user domain in the macOS File System Programming Guide.
namespace vesko {
namespace {

FileURL libraryFolder(std::string_view name, std::string_view own) {
    const FileURL home = homeFolder();
    if (home.path() == "/") return temporaryFolder().appending(own);
    return home.appending("Library").appending(name).appending(own);
}

} // namespace

FileURL applicationSupportFolder() { return libraryFolder("Application Support", "Vesko"); }

FileURL configurationFolder() { return libraryFolder("Preferences", "vesko"); }

} // namespace vesko
