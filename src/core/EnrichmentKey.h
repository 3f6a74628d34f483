#pragma once
#include "base/FileURL.h"
#include <cstddef>
#include <functional>
#include <string>
#include <utility>

namespace vesko {

/// The link between an item and what is known of it: a form tag, a colon and a value, such as "url:/a/b",
/// "bundle:com.example.tool", "docker:volume:data". For objects inside a tool it is also the way to delete
/// them.
struct EnrichmentKey {
    std::string rawValue;

    /// "url:" and the path's bytes.
    static EnrichmentKey forURL(const FileURL& url) { return {"url:" + url.path()}; }
    /// "bundle:" and a name, as a rule a bundle identifier.
    static EnrichmentKey forBundle(std::string_view name) { return {"bundle:" + std::string(name)}; }
    /// What can be measured and not deleted.
    static EnrichmentKey unsupportedDockerObject() { return {"docker:unsupported"}; }

    friend bool operator==(const EnrichmentKey&, const EnrichmentKey&) = default;
    friend auto operator<=>(const EnrichmentKey&, const EnrichmentKey&) = default;
};

} // namespace vesko

template <> struct std::hash<vesko::EnrichmentKey> {
    // Not noexcept: libstdc++ keeps the hashes of a table's keys only for functions that might throw, and
    // without them every look-up hashes the neighbours' texts anew.
    std::size_t operator()(const vesko::EnrichmentKey& key) const {
        return std::hash<std::string>()(key.rawValue);
    }
};
