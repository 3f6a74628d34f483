#include "probes/UninstallerSpotlightQuery.h"

#include "base/FileSystem.h"
#include "base/Paths.h"
#include "base/Text.h"
#include "concurrency/Cancelled.h"
#include "core/BundleIdentifier.h"
#include "core/ItemOrder.h"
#include "core/WalkedSize.h"
#include "probes/TextPieces.h"
#include <cmath>
#include <limits>
#include <unordered_set>
#include <utility>

namespace vesko {
namespace {

/// So many days ago, in whole seconds since 2001, fractions cut off.
std::int64_t cutoff(Date now, std::int64_t days) {
    constexpr double secondsOfADay = 24 * 60 * 60;
    const double seconds = std::trunc(referenceSeconds(now) - static_cast<double>(days) * secondsOfADay);
    constexpr auto least = std::numeric_limits<std::int64_t>::min();
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    if (seconds <= static_cast<double>(least)) return least;
    if (seconds >= static_cast<double>(most)) return most;
    return static_cast<std::int64_t>(seconds);
}

/// The number stands where the query language would take a text of a date; indexes read it as seconds.
std::string queryFor(std::int64_t seconds) {
    return "kMDItemContentTypeTree == 'public.application' && kMDItemLastUsedDate < $time.iso(" +
           std::to_string(seconds) + ")";
}

/// The name without its extension.
std::string_view stem(const FileURL& url) {
    const std::string_view name = url.lastPathComponent();
    const std::size_t extension = url.pathExtension().size();
    return extension == 0 ? name : name.substr(0, name.size() - extension - 1);
}

std::int64_t measured(const FileURL& url) {
    try {
        return walkedSize(url);
    } catch (const Cancelled&) {
        return 0;
    }
}

std::optional<ScannableItem> application(const std::string& path) {
    ScannableItem item;
    item.url = FileURL(path);
    if (lowercased(item.url.lastPathComponent()).starts_with("com.apple.")) return std::nullopt;
    if (!fileExists(item.url)) return std::nullopt;
    item.size = measured(item.url);
    if (item.size < 1) return std::nullopt;
    item.isDirectory = true;
    item.enrichmentKey = {"app:" + bundleIdentifier(item.url).value_or(std::string(stem(item.url)))};
    return item;
}

} // namespace

UninstallerSpotlightQuery::UninstallerSpotlightQuery(std::vector<FileURL> applicationRoots, ToolRunning run,
                                                     const DateSource& dates)
    : applicationRoots_(std::move(applicationRoots)), run_(std::move(run)), dates_(&dates) {}

std::vector<ScannableItem> UninstallerSpotlightQuery::unusedApplications(std::int64_t olderThanDays) const {
    const std::string query = queryFor(cutoff(dates_->now(), olderThanDays));
    std::vector<ScannableItem> items;
    std::unordered_set<std::string> seen;
    for (const FileURL& root : applicationRoots_) {
        const auto child = run_("/usr/bin/mdfind", {"-onlyin", root.path(), query});
        if (!child || child->status != 0 || !isUtf8(child->standardOutput)) continue;
        std::string_view rest = child->standardOutput;
        while (const auto path = takePiece(rest, "\n")) {
            if (!seen.emplace(*path).second) continue;
            if (auto item = application(std::string(*path))) items.push_back(std::move(*item));
        }
    }
    sortLargestFirst(items);
    return items;
}

} // namespace vesko
