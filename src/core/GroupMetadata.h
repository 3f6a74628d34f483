#pragma once
#include "core/CleanupProviderID.h"
#include "core/CleanupSection.h"
#include "core/RelevancePolicy.h"
#include "core/Safety.h"
#include <string>

namespace vesko {

/// The static description of one probe and of the group that it yields.
struct GroupMetadata {
    std::string id;   ///< the probe's id, the group's id and the key of its catalog texts
    std::string icon; ///< symbol name
    CleanupSection section;
    CleanupProviderID providerID;
    RelevancePolicy relevancePolicy = RelevancePolicy::standard;
    std::string subtitle; ///< empty throughout the catalog; the group's own subtitle is made when it is built
    Safety baselineSafety = Safety::revisar; ///< verdict that holds until something better is known

    friend bool operator==(const GroupMetadata&, const GroupMetadata&) = default;
};

} // namespace vesko
