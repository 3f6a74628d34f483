#include "base/StateFile.h"

#include "base/FileSystem.h"

namespace vesko {

std::optional<std::string> readStateFile(const FileURL& url) {
    removeReplacementLitter(url);
    return readFile(url, largestStateFile);
}

void writeStateFile(const FileURL& url, std::string_view bytes) {
    // Without the folder the write fails by itself.
    (void)createFolders(url.parent());
    (void)replaceFile(url, bytes);
}

} // namespace vesko
