#pragma once
#include <string_view>

namespace vesko {

/// A descriptive tag, copied from the catalog into groups and the cache file; nothing decides by it.
enum class RelevancePolicy { standard, alwaysRelevant };

/// "standard" or "alwaysRelevant".
std::string_view relevancePolicyWord(RelevancePolicy policy) noexcept;

} // namespace vesko
