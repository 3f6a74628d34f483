#include "Fuzzing.h"
#include "background/NotificationPreferencesStorage.h"
#include "support/MemoryUserDefaults.h"

using namespace vesko;
using fuzzing::require;
using Storage = NotificationPreferencesStorage;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    testing::MemoryUserDefaults defaults;
    defaults.setData(Storage::preferencesKey, fuzzing::textOf(bytes, size));
    defaults.setData(Storage::lastFiredKey, fuzzing::textOf(bytes, size));
    const NotificationPreferences preferences = Storage::loadPreferences(defaults);
    const Storage::LastFired lastFired = Storage::loadLastFired(defaults);
    Storage::savePreferences(preferences, defaults);
    Storage::saveLastFired(lastFired, defaults);
    require(Storage::loadPreferences(defaults) == preferences, "preferences come back as they were");
    require(Storage::loadLastFired(defaults).size() == lastFired.size(), "no entry goes missing");
    return 0;
}
