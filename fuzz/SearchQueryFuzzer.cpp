#include "Fuzzing.h"
#include "base/Paths.h"
#include "search/SearchQuery.h"
#include <string>

namespace {

using namespace vesko;

std::string written(const SearchQuery& query) {
    if (const auto* folder = std::get_if<FolderNamed>(&query))
        return "kMDItemFSName == '" + folder->name + "' && kMDItemContentType == 'public.folder'";
    if (const auto* entry = std::get_if<EntryNamed>(&query)) return "kMDItemFSName == '" + entry->name + "'";
    return "kMDItemContentTypeTree == 'public.application' && kMDItemLastUsedDate < $time.iso(" +
           std::to_string(std::get<ApplicationsUnusedSince>(query).referenceSeconds) + ")";
}

} // namespace

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    const std::optional<SearchQuery> query = searchQueryFromText(text);
    if (!query) return 0;
    require(isUtf8(text), "a query is UTF-8");
    require(searchQueryFromText(written(*query)) == query, "a query means what it says");
    if (!std::holds_alternative<ApplicationsUnusedSince>(*query))
        require(written(*query) == text, "a name is taken to the letter");
    return 0;
}
