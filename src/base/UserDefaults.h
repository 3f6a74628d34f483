#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vesko {

/// The platform's preferences of this user for this program: typed values under string keys. Main thread
/// only; neither reading nor setting waits for a disk, a first reading aside. What was set can be read at
/// once and reaches the disk a moment later, at the program's ordinary end at the latest. No failure is told:
/// a value that can't be kept is there until the program ends.
///
/// Keys are UTF-8. Each reader gives nothing for a missing key and for a value of another type.
class UserDefaults {
public:
    /// In bytes. Longer texts and data are not taken: preferences are no place for contents.
    static constexpr std::size_t longestValue = 128 << 10;

    virtual ~UserDefaults() = default;

    virtual std::optional<bool> boolean(std::string_view key) const = 0;
    /// A number of integral value within 64 bits.
    virtual std::optional<std::int64_t> integer(std::string_view key) const = 0;
    /// Any number, integers included.
    virtual std::optional<double> number(std::string_view key) const = 0;
    virtual std::optional<std::string> string(std::string_view key) const = 0;
    /// The bytes as they were set; a text is no data.
    virtual std::optional<std::string> data(std::string_view key) const = 0;

    /// Each replaces what stands under the key, of whatever type it is. What can't be kept (a figure that is
    /// not finite, a text that is no UTF-8, anything too long) leaves the value as it was.
    virtual void setBoolean(std::string_view key, bool value) = 0;
    virtual void setInteger(std::string_view key, std::int64_t value) = 0;
    virtual void setNumber(std::string_view key, double value) = 0;
    virtual void setString(std::string_view key, std::string_view text) = 0;
    virtual void setData(std::string_view key, std::string_view bytes) = 0;
    virtual void remove(std::string_view key) = 0;
};

} // namespace vesko
