#pragma once
#include <optional>
#include <string_view>

namespace vesko {

/// The notifications that a finished scan can raise.
enum class NotificationAlertKind { lowSpace, largeNewOpportunity, scanCompleted };

/// The case's own name, as the last-fired list keeps it.
std::string_view notificationAlertKindWord(NotificationAlertKind kind) noexcept;
/// Nothing for any other word.
std::optional<NotificationAlertKind> notificationAlertKindFromWord(std::string_view word) noexcept;

} // namespace vesko
