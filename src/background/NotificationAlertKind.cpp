#include "background/NotificationAlertKind.h"

#include <array>
#include <utility>

namespace vesko {
namespace {

constexpr std::array<std::pair<NotificationAlertKind, std::string_view>, 3> words{{
    {NotificationAlertKind::lowSpace, "lowSpace"},
    {NotificationAlertKind::largeNewOpportunity, "largeNewOpportunity"},
    {NotificationAlertKind::scanCompleted, "scanCompleted"},
}};

} // namespace

std::string_view notificationAlertKindWord(NotificationAlertKind kind) noexcept {
    return words[static_cast<std::size_t>(kind)].second;
}

std::optional<NotificationAlertKind> notificationAlertKindFromWord(std::string_view word) noexcept {
    for (const auto& [kind, name] : words)
        if (name == word) return kind;
    return std::nullopt;
}

} // namespace vesko
