#pragma once
#include "core/CleanupProviderID.h"
#include "core/CleanupSection.h"
#include "core/ItemList.h"
#include "core/RelevancePolicy.h"
#include "core/Safety.h"
#include <cstdint>
#include <string>

namespace vesko {

/// What one probe found, and the unit that the list shows. A group that reaches the person has at least one
/// item, and each of its items a size above zero.
struct CleanupGroup {
    std::string id;
    std::string title; ///< in the language of the moment when the group was built
    std::string icon;
    CleanupSection section;
    CleanupProviderID providerID;
    RelevancePolicy relevancePolicy = RelevancePolicy::standard;
    std::string subtitle; ///< count text
    ItemList items;       ///< largest first
    Safety baselineSafety = Safety::revisar;
    std::string baselineReason; ///< in the language of the moment when the group was built

    friend bool operator==(const CleanupGroup&, const CleanupGroup&) = default;
};

/// Sum of the sizes of the group's items. A sum beyond 63 bits stops the process with a message.
std::int64_t groupBytes(const CleanupGroup& group);

} // namespace vesko
