#include "background/NotificationPreferencesStorage.h"

#include "base/Json.h"
#include "base/JsonWriter.h"
#include <string>

namespace vesko {
namespace {

std::string encode(const NotificationPreferences& preferences) {
    JsonWriter json;
    json.beginObject();
    json.key("lowSpaceEnabled");
    json.boolean(preferences.lowSpaceEnabled);
    json.key("lowSpaceThresholdBytes");
    json.integer(preferences.lowSpaceThresholdBytes);
    json.key("largeOpportunityEnabled");
    json.boolean(preferences.largeOpportunityEnabled);
    json.key("largeOpportunityDeltaBytes");
    json.integer(preferences.largeOpportunityDeltaBytes);
    json.key("scanCompletedEnabled");
    json.boolean(preferences.scanCompletedEnabled);
    json.endObject();
    return json.take();
}

std::optional<NotificationPreferences> decodePreferences(std::string_view bytes) {
    const auto document = JsonDocument::parse(bytes);
    if (!document) return std::nullopt;
    const JsonValue root = document->root();
    NotificationPreferences found;
    const bool isWhole = readMember(root, "lowSpaceEnabled", found.lowSpaceEnabled) &&
                         readMember(root, "lowSpaceThresholdBytes", found.lowSpaceThresholdBytes) &&
                         readMember(root, "largeOpportunityEnabled", found.largeOpportunityEnabled) &&
                         readMember(root, "largeOpportunityDeltaBytes", found.largeOpportunityDeltaBytes) &&
                         readMember(root, "scanCompletedEnabled", found.scanCompletedEnabled);
    if (!isWhole) return std::nullopt;
    return found;
}

std::string encode(const NotificationPreferencesStorage::LastFired& lastFired) {
    JsonWriter json;
    json.beginArray();
    for (const auto& [kind, date] : lastFired) {
        json.beginObject();
        json.key("kind");
        json.string(notificationAlertKindWord(kind));
        json.key("date");
        json.number(referenceSeconds(date));
        json.endObject();
    }
    json.endArray();
    return json.take();
}

/// A date that is too far off for Date is as good as the farthest one.
Date dateFrom(double seconds) {
    if (const auto date = dateFromReferenceSeconds(seconds)) return *date;
    return seconds < 0 ? Date::min() : Date::max();
}

std::optional<NotificationPreferencesStorage::LastFired> decodeLastFired(std::string_view bytes) {
    const auto document = JsonDocument::parse(bytes);
    if (!document || !document->root().isArray()) return std::nullopt;
    NotificationPreferencesStorage::LastFired found;
    for (const JsonValue element : document->root().elements()) {
        std::string_view word;
        double seconds = 0;
        if (!readMember(element, "kind", word) || !readMember(element, "date", seconds)) return std::nullopt;
        if (const auto kind = notificationAlertKindFromWord(word))
            found.insert_or_assign(*kind, dateFrom(seconds));
    }
    return found;
}

} // namespace

NotificationPreferences NotificationPreferencesStorage::loadPreferences(const UserDefaults& defaults) {
    const auto bytes = defaults.data(preferencesKey);
    const auto preferences = bytes ? decodePreferences(*bytes) : std::nullopt;
    return preferences.value_or(NotificationPreferences());
}

void NotificationPreferencesStorage::savePreferences(const NotificationPreferences& preferences,
                                                     UserDefaults& defaults) {
    defaults.setData(preferencesKey, encode(preferences));
}

NotificationPreferencesStorage::LastFired
NotificationPreferencesStorage::loadLastFired(const UserDefaults& defaults) {
    const auto bytes = defaults.data(lastFiredKey);
    const auto lastFired = bytes ? decodeLastFired(*bytes) : std::nullopt;
    return lastFired.value_or(LastFired());
}

void NotificationPreferencesStorage::saveLastFired(const LastFired& lastFired, UserDefaults& defaults) {
    defaults.setData(lastFiredKey, encode(lastFired));
}

} // namespace vesko
