#pragma once
#include "core/Safety.h"
#include <string>

namespace vesko {

/// What is said of a group as a whole: as risky as its riskiest item.
struct GroupVerdict {
    Safety safety = Safety::seguro;
    std::string reason;
    bool isAIRefined = false;
    bool isAnalyzing = false;
    bool isAIDiscovered = false;

    friend bool operator==(const GroupVerdict&, const GroupVerdict&) = default;
};

} // namespace vesko
