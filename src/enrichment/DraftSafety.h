#pragma once
#include "enrichment/AnswerSchema.h"
#include <array>
#include <string_view>

namespace vesko {

/// What a model may say of an item's safety. The highest level is not on offer: it is for rules to give.
enum class DraftSafety { seguro, revisar };

inline constexpr std::array<std::string_view, 2> draftSafetyWords{"seguro", "revisar"};
inline constexpr SchemaChoices draftSafetyChoices{"DraftSafety", draftSafetyWords};

/// Of a word that is one of the choices.
constexpr DraftSafety draftSafetyOf(std::string_view word) {
    return word == draftSafetyWords[1] ? DraftSafety::revisar : DraftSafety::seguro;
}

} // namespace vesko
