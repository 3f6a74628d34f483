#include "core/Safety.h"

#include "core/RelevancePolicy.h"

namespace vesko {

std::string_view safetyWord(Safety safety) noexcept {
    switch (safety) {
    case Safety::seguro: return "seguro";
    case Safety::revisar: return "revisar";
    case Safety::risco: return "risco";
    }
    return "revisar";
}

std::optional<Safety> safetyFromWord(std::string_view word) noexcept {
    for (const Safety safety : {Safety::seguro, Safety::revisar, Safety::risco})
        if (safetyWord(safety) == word) return safety;
    return std::nullopt;
}

std::string_view relevancePolicyWord(RelevancePolicy policy) noexcept {
    return policy == RelevancePolicy::alwaysRelevant ? "alwaysRelevant" : "standard";
}

} // namespace vesko
