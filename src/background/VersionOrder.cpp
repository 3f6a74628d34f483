#include "background/VersionOrder.h"

#include <algorithm>
#include <vector>

namespace vesko {
namespace {

constexpr std::size_t longestVersion = 64;

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool isNumber(std::string_view text) { return !text.empty() && std::ranges::all_of(text, isDigit); }

/// What a suffix may consist of.
bool isWord(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char character) {
        return isDigit(character) || (character >= 'a' && character <= 'z') ||
               (character >= 'A' && character <= 'Z') || character == '-';
    });
}

std::vector<std::string_view> parts(std::string_view text) {
    std::vector<std::string_view> list;
    for (;;) {
        const std::size_t dot = text.find('.');
        list.push_back(text.substr(0, dot));
        if (dot == std::string_view::npos) return list;
        text.remove_prefix(dot + 1);
    }
}

struct Version {
    std::vector<std::string_view> numbers;
    std::vector<std::string_view> before; ///< the suffix of a version before
};

std::optional<Version> read(std::string_view text) {
    if (text.size() > longestVersion) return std::nullopt;
    if (const std::size_t plus = text.find('+'); plus != std::string_view::npos) text = text.substr(0, plus);
    Version version;
    if (const std::size_t minus = text.find('-'); minus != std::string_view::npos) {
        version.before = parts(text.substr(minus + 1));
        text = text.substr(0, minus);
        if (!std::ranges::all_of(version.before, isWord)) return std::nullopt;
    }
    version.numbers = parts(text);
    if (!std::ranges::all_of(version.numbers, isNumber)) return std::nullopt;
    return version;
}

std::strong_ordering compareNumbers(std::string_view first, std::string_view second) {
    const auto significant = [](std::string_view text) {
        return text.substr(std::min(text.find_first_not_of('0'), text.size()));
    };
    const std::string_view a = significant(first);
    const std::string_view b = significant(second);
    return a.size() == b.size() ? a <=> b : a.size() <=> b.size();
}

std::strong_ordering compareWords(std::string_view first, std::string_view second) {
    const bool numbers[]{isNumber(first), isNumber(second)};
    if (numbers[0] && numbers[1]) return compareNumbers(first, second);
    if (numbers[0] != numbers[1])
        return numbers[0] ? std::strong_ordering::less : std::strong_ordering::greater;
    return first <=> second;
}

std::strong_ordering compareBefore(const Version& a, const Version& b) {
    if (a.before.empty() || b.before.empty()) return b.before.size() <=> a.before.size();
    for (std::size_t at = 0; at < std::min(a.before.size(), b.before.size()); ++at)
        if (const auto order = compareWords(a.before[at], b.before[at]); order != 0) return order;
    return a.before.size() <=> b.before.size();
}

} // namespace

std::optional<std::strong_ordering> compareVersions(std::string_view first, std::string_view second) {
    const std::optional<Version> a = read(first);
    const std::optional<Version> b = read(second);
    if (!a || !b) return std::nullopt;
    for (std::size_t at = 0; at < std::max(a->numbers.size(), b->numbers.size()); ++at) {
        const auto number = [at](const Version& version) {
            return at < version.numbers.size() ? version.numbers[at] : std::string_view("0");
        };
        if (const auto order = compareNumbers(number(*a), number(*b)); order != 0) return order;
    }
    return compareBefore(*a, *b);
}

bool isNewerVersion(std::string_view version, std::string_view than) {
    const auto order = compareVersions(version, than);
    return order && *order == std::strong_ordering::greater;
}

} // namespace vesko
