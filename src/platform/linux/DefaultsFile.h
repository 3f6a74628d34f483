#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vesko {

/// The text of a settings file: one JSON object whose members are the values. Members keep their order and
/// each value the very characters that somebody wrote, so that what is not understood goes through unharmed.
/// Of several members of one name the last counts, and setting it makes it the only one.
class DefaultsFile {
public:
    /// No members.
    DefaultsFile() = default;
    /// Nothing for bytes that are no single well-formed JSON object (see JsonDocument for the limits).
    static std::optional<DefaultsFile> parse(std::string_view bytes);

    /// One member a line.
    std::string text() const;

    /// The value's JSON text; nothing for a missing key.
    std::optional<std::string_view> value(std::string_view key) const;
    /// `json` is the text of one value.
    void set(std::string_view key, std::string json);
    void remove(std::string_view key);

private:
    std::vector<std::pair<std::string, std::string>> members_;
};

/// Bytes as a value of the file: {"data": "BASE64"} (RFC 4648, section 4, padded), since JSON has no type for
/// them.
std::string dataJson(std::string_view bytes);
/// Those bytes; nothing for any other value.
std::optional<std::string> dataFromJson(std::string_view json);

} // namespace vesko
