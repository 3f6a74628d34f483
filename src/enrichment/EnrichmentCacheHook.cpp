#include "enrichment/EnrichmentCacheHook.h"

#include <map>
#include <string>

namespace vesko {
namespace {

ChangeSource& sourceOf(std::string_view name) {
    static std::map<std::string, ChangeSource, std::less<>> sources;
    const auto found = sources.find(name);
    return found != sources.end() ? found->second : sources[std::string(name)];
}

} // namespace

void postNotification(std::string_view name) { sourceOf(name).notify(); }

ChangeSource::Subscription subscribeToNotification(std::string_view name, ChangeSource::Listener listener) {
    return sourceOf(name).subscribe(std::move(listener));
}

} // namespace vesko
