#include "base/Date.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace vesko {
namespace {

using Microseconds = std::chrono::microseconds;
constexpr std::int64_t microsecondsInSecond = 1'000'000;
constexpr std::int64_t secondsInDay = 86'400;
/// 2001-01-01T00:00:00Z, counted from 1970.
constexpr std::int64_t referenceDate = 978'307'200;
/// The first and last second that four digits of a year can name.
constexpr std::int64_t firstSecond = -62'167'219'200;
constexpr std::int64_t lastSecond = 253'402'300'799;

Date dateFromMicroseconds(std::int64_t count) { return Date(Microseconds(count)); }

std::int64_t floorDivide(std::int64_t value, std::int64_t by) {
    return value / by - (value % by < 0 ? 1 : 0);
}

void writeDigits(char* at, std::int64_t value, int width) {
    for (int place = width - 1; place >= 0; --place, value /= 10)
        at[place] = static_cast<char>('0' + value % 10);
}

/// A run of digits of a fixed width; nothing when one of them is no digit.
std::optional<int> digits(std::string_view text, std::size_t at, std::size_t width) {
    int value = 0;
    for (const char character : text.substr(at, width)) {
        if (character < '0' || character > '9') return std::nullopt;
        value = value * 10 + (character - '0');
    }
    return value;
}

/// "Z" or "+HH:MM" or "-HH:MM" as seconds east of Greenwich.
std::optional<std::int64_t> zoneOffset(std::string_view text) {
    if (text == "Z") return 0;
    if (text.size() != 6 || (text[0] != '+' && text[0] != '-') || text[3] != ':') return std::nullopt;
    const auto hours = digits(text, 1, 2);
    const auto minutes = digits(text, 4, 2);
    if (!hours || !minutes || *hours > 23 || *minutes > 59) return std::nullopt;
    const std::int64_t seconds = *hours * 3600 + *minutes * 60;
    return text[0] == '-' ? -seconds : seconds;
}

class SystemDates final : public DateSource {
public:
    Date now() const override { return std::chrono::floor<Microseconds>(std::chrono::system_clock::now()); }
};

} // namespace

double secondsBetween(Date earlier, Date later) noexcept {
    // The distance of two signed counts always fits the unsigned type, their difference need not fit the
    // signed.
    const auto from = earlier.time_since_epoch().count();
    const auto to = later.time_since_epoch().count();
    const auto distance = [](std::int64_t low, std::int64_t high) {
        return static_cast<double>(static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low)) /
               static_cast<double>(microsecondsInSecond);
    };
    return to >= from ? distance(from, to) : -distance(to, from);
}

Date dateFromUnixSeconds(std::int64_t seconds, std::int64_t nanoseconds) noexcept {
    std::int64_t count = 0;
    const std::int64_t fraction = floorDivide(nanoseconds, 1000);
    if (__builtin_mul_overflow(seconds, microsecondsInSecond, &count))
        return dateFromMicroseconds(seconds < 0 ? std::numeric_limits<std::int64_t>::min()
                                                : std::numeric_limits<std::int64_t>::max());
    if (__builtin_add_overflow(count, fraction, &count))
        return dateFromMicroseconds(fraction < 0 ? std::numeric_limits<std::int64_t>::min()
                                                 : std::numeric_limits<std::int64_t>::max());
    return dateFromMicroseconds(count);
}

std::string iso8601(Date date) {
    const std::int64_t seconds = std::clamp(
        floorDivide(date.time_since_epoch().count(), microsecondsInSecond), firstSecond, lastSecond);
    const std::int64_t day = floorDivide(seconds, secondsInDay);
    const std::int64_t second = seconds - day * secondsInDay;
    const std::chrono::year_month_day civil{std::chrono::sys_days(std::chrono::days(day))};
    std::string text = "0000-00-00T00:00:00Z";
    writeDigits(&text[0], static_cast<int>(civil.year()), 4);
    writeDigits(&text[5], static_cast<unsigned>(civil.month()), 2);
    writeDigits(&text[8], static_cast<unsigned>(civil.day()), 2);
    writeDigits(&text[11], second / 3600, 2);
    writeDigits(&text[14], second / 60 % 60, 2);
    writeDigits(&text[17], second % 60, 2);
    return text;
}

std::optional<Date> dateFromIso8601(std::string_view text) {
    if (text.size() < 20 || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':' ||
        text[16] != ':')
        return std::nullopt;
    const auto year = digits(text, 0, 4);
    const auto month = digits(text, 5, 2);
    const auto day = digits(text, 8, 2);
    const auto hour = digits(text, 11, 2);
    const auto minute = digits(text, 14, 2);
    const auto second = digits(text, 17, 2);
    const auto offset = zoneOffset(text.substr(19));
    if (!year || !month || !day || !hour || !minute || !second || !offset) return std::nullopt;
    const std::chrono::year_month_day civil{std::chrono::year(*year),
                                            std::chrono::month(static_cast<unsigned>(*month)),
                                            std::chrono::day(static_cast<unsigned>(*day))};
    if (!civil.ok() || *hour > 23 || *minute > 59 || *second > 59) return std::nullopt;
    const std::int64_t days = std::chrono::sys_days(civil).time_since_epoch().count();
    return dateFromUnixSeconds(days * secondsInDay + *hour * 3600 + *minute * 60 + *second - *offset);
}

double referenceSeconds(Date date) noexcept {
    return secondsBetween(dateFromUnixSeconds(referenceDate), date);
}

std::optional<Date> dateFromReferenceSeconds(double seconds) noexcept {
    constexpr double bound = 9'223'372'036'854'774'784.0; // the last double below 2^63
    const double count = std::round(seconds * static_cast<double>(microsecondsInSecond));
    if (!(count >= -bound && count <= bound)) return std::nullopt;
    std::int64_t sum = 0;
    if (__builtin_add_overflow(static_cast<std::int64_t>(count), referenceDate * microsecondsInSecond, &sum))
        return std::nullopt;
    return dateFromMicroseconds(sum);
}

const DateSource& systemDates() {
    static const SystemDates dates;
    return dates;
}

} // namespace vesko
