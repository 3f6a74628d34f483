#include "search/SearchQuery.h"

#include "base/Paths.h"
#include <charconv>

namespace vesko {
namespace {

/// What stands between the two, or nothing when the text is not framed by them.
std::optional<std::string_view> between(std::string_view text, std::string_view begin, std::string_view end) {
    if (text.size() < begin.size() + end.size() || !text.starts_with(begin) || !text.ends_with(end))
        return std::nullopt;
    return text.substr(begin.size(), text.size() - begin.size() - end.size());
}

bool isPlainName(std::string_view name) {
    using namespace std::string_view_literals;
    if (name.empty() || name == "." || name == "..") return false;
    // A name with a line's end is never in an answer; asking for one is a mistake.
    return name.find_first_of("'\\*/\n\0"sv) == std::string_view::npos && isUtf8(name);
}

std::optional<std::int64_t> wholeNumber(std::string_view text) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

} // namespace

std::optional<SearchQuery> searchQueryFromText(std::string_view text) {
    constexpr std::string_view named = "kMDItemFSName == '";
    if (const auto seconds = between(text,
                                     "kMDItemContentTypeTree == 'public.application' && "
                                     "kMDItemLastUsedDate < $time.iso(",
                                     ")")) {
        const auto number = wholeNumber(*seconds);
        if (!number) return std::nullopt;
        return ApplicationsUnusedSince{*number};
    }
    if (const auto name = between(text, named, "' && kMDItemContentType == 'public.folder'")) {
        if (!isPlainName(*name)) return std::nullopt;
        return FolderNamed{std::string(*name)};
    }
    if (const auto name = between(text, named, "'")) {
        if (!isPlainName(*name)) return std::nullopt;
        return EntryNamed{std::string(*name)};
    }
    return std::nullopt;
}

} // namespace vesko
