#pragma once
#include <sys/resource.h>
#include <vector>

namespace vesko::testing {

/// getiopolicy_np(3) and setiopolicy_np(3) of a test.
struct FakePolicies {
    struct Setting {
        int type;
        int scope;
        int policy;
        friend bool operator==(const Setting&, const Setting&) = default;
    };
    std::vector<Setting> set; ///< in order
    /// What this thread does about placeholders.
    int ofThread = IOPOL_MATERIALIZE_DATALESS_FILES_DEFAULT;
    bool hidesThem = false; ///< asking fails
};

/// Those in force; a test begins with fresh ones.
FakePolicies& fakePolicies();

} // namespace vesko::testing
