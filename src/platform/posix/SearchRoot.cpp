#include "platform/posix/SearchRoot.h"

#include "base/Paths.h"
#include <filesystem>
#include <string_view>

namespace vesko {

SearchRoot::SearchRoot(const FileURL& given) : given_(given), walked_(given) {
    std::error_code failure;
    if (!std::filesystem::is_symlink(given.path(), failure)) return;
    const std::filesystem::path target = std::filesystem::canonical(given.path(), failure);
    if (!failure) walked_ = FileURL(target.string());
}

std::optional<std::string> SearchRoot::answered(const std::string& path) const {
    const auto stem = [](const FileURL& root) { return root.path() == "/" ? std::string() : root.path(); };
    std::string answer = stem(given_) + path.substr(stem(walked_).size());
    if (answer.find('\n') != std::string::npos || !isUtf8(answer)) return std::nullopt;
    return answer;
}

} // namespace vesko
