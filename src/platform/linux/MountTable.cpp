#include "MountTable.h"

#include <vector>

namespace vesko {
namespace {

std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    while (!line.empty()) {
        const std::size_t end = line.find(' ');
        if (end != 0) words.push_back(line.substr(0, end));
        if (end == std::string_view::npos) break;
        line.remove_prefix(end + 1);
    }
    return words;
}

bool isOctal(char character) { return character >= '0' && character <= '7'; }

/// The table writes blanks, line ends and backslashes as "\" and three octal digits.
std::string unescaped(std::string_view word) {
    std::string text;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (word[i] == '\\' && i + 3 < word.size() && isOctal(word[i + 1]) && isOctal(word[i + 2]) &&
            isOctal(word[i + 3])) {
            const int code = (word[i + 1] - '0') * 64 + (word[i + 2] - '0') * 8 + (word[i + 3] - '0');
            text += static_cast<char>(code);
            i += 3;
        } else {
            text += word[i];
        }
    }
    return text;
}

std::optional<Mount> mountFrom(std::string_view line) {
    constexpr std::size_t pointField = 4;
    const std::vector<std::string_view> words = wordsOf(line);
    // A variable number of optional fields ends with "-"; type and source come behind it.
    for (std::size_t i = pointField + 1; i + 2 < words.size(); ++i)
        if (words[i] == "-") return Mount{unescaped(words[pointField]), unescaped(words[i + 2])};
    return std::nullopt;
}

bool liesOn(std::string_view path, std::string_view point) {
    if (point == "/") return path.starts_with('/');
    return path.starts_with(point) && (path.size() == point.size() || path[point.size()] == '/');
}

} // namespace

std::optional<Mount> mountOf(std::string_view path, std::string_view table) {
    std::optional<Mount> deepest;
    while (!table.empty()) {
        const std::size_t end = table.find('\n');
        std::optional<Mount> mount = mountFrom(table.substr(0, end));
        if (mount && liesOn(path, mount->point) && (!deepest || mount->point.size() >= deepest->point.size()))
            deepest = std::move(mount);
        if (end == std::string_view::npos) break;
        table.remove_prefix(end + 1);
    }
    return deepest;
}

} // namespace vesko
