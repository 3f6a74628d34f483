#pragma once
#include "core/CleanupSection.h"
#include <string>
#include <string_view>
#include <vector>

namespace vesko {

/// One plain word for used space on the Home screen, and the probes whose groups stand for it.
struct ConsultantCategory {
    std::string id;
    std::string icon; ///< symbol name
    CleanupSection section;
    std::vector<std::string> probeIDs; ///< in the order in which their items are counted

    friend bool operator==(const ConsultantCategory&, const ConsultantCategory&) = default;
};

/// All categories in the order in which items are given to them; an item counts for the first that reaches
/// it.
const std::vector<ConsultantCategory>& consultantCategories();
/// The category of that id; null when there is none.
const ConsultantCategory* consultantCategory(std::string_view id);

/// The part of the catalog keys that stands for a category: its own word for most, otherwise the id with each
/// piece behind a "-" capitalized.
std::string consultantKey(std::string_view id);
/// In the current language; any id has a title key, known or not.
std::string consultantCategoryTitle(std::string_view id);
std::string consultantCategoryExplanation(std::string_view id);

} // namespace vesko
