#include "DefaultsFile.h"

#include "base/Json.h"
#include "base/JsonWriter.h"
#include <algorithm>
#include <array>
#include <cstdint>

namespace vesko {
namespace {

/// Walks through the members of an object that is known to be well-formed.
class MemberTexts {
public:
    explicit MemberTexts(std::string_view document) : text_(document), at_(document.find('{') + 1) {}

    /// The text of the next member's value; to be asked as often as there are members.
    std::string_view next() {
        at_ = text_.find('"', at_);
        passString();
        at_ = text_.find(':', at_) + 1;
        at_ = text_.find_first_not_of(whiteSpace, at_);
        const std::size_t begin = at_;
        passValue();
        return text_.substr(begin, at_ - begin);
    }

private:
    static constexpr std::string_view whiteSpace = " \t\r\n";

    void passString() {
        do {
            const bool isEscape = text_[at_] == '\\';
            at_ += isEscape ? 2 : 1;
        } while (text_[at_] != '"');
        ++at_;
    }

    void passValue() {
        std::size_t level = 0;
        do {
            const char first = text_[at_];
            if (first == '"') {
                passString();
            } else if (first == '{' || first == '[') {
                ++level;
                ++at_;
            } else if (first == '}' || first == ']') {
                --level;
                ++at_;
            } else if (level == 0) {
                at_ = text_.find_first_of(" \t\r\n,}", at_);
            } else {
                ++at_;
            }
        } while (level > 0);
    }

    std::string_view text_;
    std::size_t at_;
};

constexpr std::string_view base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<std::int8_t, 256> base64Values = [] {
    std::array<std::int8_t, 256> table{};
    table.fill(-1);
    for (std::size_t value = 0; value < base64Digits.size(); ++value)
        table[static_cast<unsigned char>(base64Digits[value])] = static_cast<std::int8_t>(value);
    return table;
}();

std::string base64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const std::string_view three = bytes.substr(at, 3);
        std::uint32_t bits = 0;
        for (std::size_t index = 0; index < 3; ++index)
            bits = bits << 8 | (index < three.size() ? static_cast<unsigned char>(three[index]) : 0u);
        for (std::size_t digit = 0; digit < 4; ++digit)
            text += digit <= three.size() ? base64Digits[bits >> (18 - 6 * digit) & 63] : '=';
    }
    return text;
}

/// Nothing for what base64() does not write.
std::optional<std::string> bytesFromBase64(std::string_view text) {
    if (text.size() % 4 != 0) return std::nullopt;
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    for (std::size_t at = 0; at < text.size(); at += 4) {
        std::string_view four = text.substr(at, 4);
        if (at + 4 == text.size())
            for (int padding = 0; padding < 2 && four.ends_with('='); ++padding) four.remove_suffix(1);
        std::uint32_t bits = 0;
        for (std::size_t index = 0; index < 4; ++index) {
            const int value = index < four.size() ? base64Values[static_cast<unsigned char>(four[index])] : 0;
            if (value < 0) return std::nullopt;
            bits = bits << 6 | static_cast<std::uint32_t>(value);
        }
        const std::size_t count = four.size() - 1;
        for (std::size_t index = 0; index < count; ++index)
            bytes += static_cast<char>(bits >> (16 - 8 * index) & 255);
        // Bits behind the last byte that are not zero would be a second way to write the same bytes.
        if ((bits & ((1u << (24 - 8 * count)) - 1)) != 0) return std::nullopt;
    }
    return bytes;
}

} // namespace

std::optional<DefaultsFile> DefaultsFile::parse(std::string_view bytes) {
    const auto document = JsonDocument::parse(bytes);
    if (!document || !document->root().isObject()) return std::nullopt;
    DefaultsFile file;
    MemberTexts texts(bytes);
    for (const JsonMember member : document->root().members()) {
        const std::string_view text = texts.next();
        file.members_.emplace_back(member.key, text);
    }
    return file;
}

std::string DefaultsFile::text() const {
    std::string text = "{";
    JsonWriter writer;
    for (const auto& [key, json] : members_) {
        writer.string(key);
        text += text.size() == 1 ? "\n  " : ",\n  ";
        text += writer.take();
        text += ": ";
        text += json;
    }
    text += members_.empty() ? "}\n" : "\n}\n";
    return text;
}

std::optional<std::string_view> DefaultsFile::value(std::string_view key) const {
    std::optional<std::string_view> found;
    for (const auto& [name, json] : members_)
        if (name == key) found = json;
    return found;
}

void DefaultsFile::set(std::string_view key, std::string json) {
    const auto isKey = [key](const auto& member) { return member.first == key; };
    const auto first = std::ranges::find_if(members_, isKey);
    if (first == members_.end()) {
        members_.emplace_back(key, std::move(json));
        return;
    }
    first->second = std::move(json);
    members_.erase(std::remove_if(first + 1, members_.end(), isKey), members_.end());
}

void DefaultsFile::remove(std::string_view key) {
    std::erase_if(members_, [key](const auto& member) { return member.first == key; });
}

std::string dataJson(std::string_view bytes) { return "{\"data\": \"" + base64(bytes) + "\"}"; }

std::optional<std::string> dataFromJson(std::string_view json) {
    const auto document = JsonDocument::parse(json);
    if (!document || document->root().members().size() != 1) return std::nullopt;
    std::string_view text;
    if (!readMember(document->root(), "data", text)) return std::nullopt;
    return bytesFromBase64(text);
}

} // namespace vesko
