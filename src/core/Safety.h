#pragma once
#include <optional>
#include <string_view>

namespace vesko {

/// How safe it is to delete something. The three words are the system's own in every language, in files and
/// in prompts; they rank upwards in this order.
enum class Safety {
    seguro,  ///< safe to remove without looking
    revisar, ///< the person should look first
    risco,   ///< removal can lose something that matters
};

/// "seguro", "revisar" or "risco".
std::string_view safetyWord(Safety safety) noexcept;
/// Nothing for any other word.
std::optional<Safety> safetyFromWord(std::string_view word) noexcept;

} // namespace vesko
