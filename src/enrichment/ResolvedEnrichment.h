#pragma once
#include "core/Safety.h"
#include <string>

namespace vesko {

/// What the screens show of an item: its entry, merged with its group's baseline and with what goes on now.
/// Never persisted.
struct ResolvedEnrichment {
    std::string friendlyName;
    Safety safety = Safety::revisar;
    std::string reason;
    bool isAIRefined = false;    ///< the model wrote the entry
    bool isAnalyzing = false;    ///< the model is being asked
    bool isAIDiscovered = false; ///< the review put the item where it is

    friend bool operator==(const ResolvedEnrichment&, const ResolvedEnrichment&) = default;
};

} // namespace vesko
