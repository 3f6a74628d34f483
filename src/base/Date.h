#pragma once
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vesko {

/// A moment on the wall clock, UTC. Microseconds reach some 292,000 years to either side, so that no date
/// that a file system can hold overflows; readers of foreign figures go through dateFromUnixSeconds, which
/// clamps.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// Seconds from `earlier` to `later`; negative when `later` comes first. Never overflows.
double secondsBetween(Date earlier, Date later) noexcept;

/// `seconds` and `nanoseconds` since 1970-01-01T00:00:00Z, clamped to what Date can hold.
Date dateFromUnixSeconds(std::int64_t seconds, std::int64_t nanoseconds = 0) noexcept;

/// "2026-11-21T10:15:00Z": ISO 8601 in UTC with whole seconds, rounded down. A date before the year
/// 0000 or after 9999 is written as the first or last second of those years, so that it can be read again.
std::string iso8601(Date date);
/// Reads exactly that form (years 0000 to 9999, and a numeric offset in the place of "Z" is read too);
/// anything else gives nothing.
std::optional<Date> dateFromIso8601(std::string_view text);

/// Seconds since 2001-01-01T00:00:00Z, the platform's reference date.
double referenceSeconds(Date date) noexcept;
/// Nothing for a figure that is no number or lies outside of what Date can hold.
std::optional<Date> dateFromReferenceSeconds(double seconds) noexcept;

/// The wall clock as a dependency, so that tests set the time.
class DateSource {
public:
    virtual ~DateSource() = default;
    virtual Date now() const = 0;
};

/// The machine's wall clock. Lives for the whole program; safe from any thread.
const DateSource& systemDates();

} // namespace vesko
