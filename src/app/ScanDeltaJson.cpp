#include "app/ScanDeltaJson.h"

#include "base/Date.h"
#include "base/Paths.h"
#include <nlohmann/json.hpp>

namespace vesko {
namespace {

using Json = nlohmann::ordered_json;

std::string text(std::string_view bytes) {
    return isUtf8(bytes) ? std::string(bytes) : escapedForDisplay(bytes);
}

Json json(const ScannableItem& item) {
    return {{"path", text(item.url.path())},
            {"name", text(item.name())},
            {"size", item.size},
            {"isDirectory", item.isDirectory},
            {"enrichmentKey", text(item.enrichmentKey.rawValue)},
            {"displayLabel", item.displayLabel ? Json(text(*item.displayLabel)) : Json(nullptr)}};
}

Json json(const CleanupGroup& group) {
    Json items = Json::array();
    for (const ScannableItem& item : group.items) items.push_back(json(item));
    return {
        {"id", group.id},
        {"title", text(group.title)},
        {"icon", group.icon},
        {"section",
         {{"id", group.section.id}, {"title", group.section.title}, {"sortIndex", group.section.sortIndex}}},
        {"providerID", group.providerID.rawValue},
        {"relevancePolicy", relevancePolicyWord(group.relevancePolicy)},
        {"subtitle", text(group.subtitle)},
        {"items", std::move(items)},
        {"baselineSafety", safetyWord(group.baselineSafety)},
        {"baselineReason", text(group.baselineReason)}};
}

Json json(const ScanProgress& progress) {
    return {{"currentPath", text(progress.currentPath)},
            {"directoriesVisited", progress.directoriesVisited},
            {"bytesIndexed", progress.bytesIndexed},
            {"candidatesFound", progress.candidatesFound},
            {"estimatedFraction", progress.estimatedFraction}};
}

Json json(const ScanReport& report) {
    Json groups = Json::array();
    for (const CleanupGroup& group : report.groups) groups.push_back(json(group));
    Json errors = Json::array();
    for (const std::string& error : report.errors) errors.push_back(text(error));
    return {{"groups", std::move(groups)},
            {"foundTotalBytes", report.foundTotalBytes},
            {"errors", std::move(errors)},
            {"date", iso8601(report.date)}};
}

struct EventJson {
    Json operator()(const ProbeStarted& event) const {
        return {{"event", "probeStarted"}, {"id", event.id}, {"title", text(event.title)}};
    }
    Json operator()(const ProbeFinished& event) const {
        return {{"event", "probeFinished"},
                {"group", event.group ? json(*event.group) : Json(nullptr)},
                {"progress", json(event.progress)}};
    }
    Json operator()(const Finalize& event) const {
        return {{"event", "finalize"}, {"report", json(event.report)}};
    }
};

} // namespace

std::string jsonLine(const ScanDelta& delta) { return std::visit(EventJson(), delta).dump(); }

} // namespace vesko
