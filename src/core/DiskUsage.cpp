#include "core/DiskUsage.h"

#include "base/CheckedSum.h"
#include "base/Paths.h"
#include "core/FastDirectorySize.h"
#include "probes/RunTool.h"
#include <charconv>

namespace vesko {
namespace {

std::string_view firstWord(std::string_view output) {
    const std::size_t lineBegin = output.find_first_not_of("\n\r\v\f");
    if (lineBegin == std::string_view::npos) return {};
    output.remove_prefix(lineBegin);
    const std::string_view line = output.substr(0, output.find_first_of("\n\r\v\f"));
    const std::size_t wordBegin = line.find_first_not_of(" \t");
    if (wordBegin == std::string_view::npos) return {};
    const std::string_view rest = line.substr(wordBegin);
    return rest.substr(0, rest.find_first_of(" \t"));
}

std::optional<std::int64_t> wholeNumber(std::string_view word) {
    if (word.starts_with('+')) {
        word.remove_prefix(1);
        if (word.starts_with('-')) return std::nullopt;
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size()) return std::nullopt;
    return value;
}

} // namespace

std::int64_t duSize(const FileURL& url, bool followLinks) {
    if (const std::optional<std::int64_t> figure = allocatedFileSize(url, followLinks)) return *figure;
    return duProgramSize(url, followLinks, runTool);
}

std::int64_t duProgramSize(const FileURL& url, bool followLinks, const ChildRunning& run) {
    std::vector<std::string> arguments;
    if (followLinks) arguments.emplace_back("-L");
    arguments.emplace_back("-sk");
    arguments.push_back(url.path());
    const std::optional<ChildResult> child = run("/usr/bin/du", arguments);
    return child ? bytesFromDuOutput(child->standardOutput) : 0;
}

std::int64_t bytesFromDuOutput(std::string_view output) {
    if (!isUtf8(output)) return 0;
    const std::optional<std::int64_t> kibibytes = wholeNumber(firstWord(output));
    return kibibytes ? checkedProduct(*kibibytes, 1024) : 0;
}

} // namespace vesko
