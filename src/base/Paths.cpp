#include "base/Paths.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace vesko {
namespace {

/// The home folder that the user database names; empty when it has none for this user.
std::string homeInUserDatabase() {
    std::vector<char> buffer(16'384);
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found || !found->pw_dir)
        return {};
    return found->pw_dir;
}

/// How many bytes the well-formed UTF-8 sequence at the beginning of `bytes` has, 0 when there is none. The
/// bounds of the second byte rule out overlong forms, surrogates and what lies above U+10FFFF.
std::size_t sequenceLength(std::string_view bytes) noexcept {
    const auto at = [&](std::size_t index) { return static_cast<std::uint8_t>(bytes[index]); };
    const auto continues = [&](std::size_t index) { return (at(index) & 0xC0) == 0x80; };
    const std::uint8_t lead = at(0);
    if (lead < 0x80) return 1;
    const std::size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                               : lead >= 0xE0 && lead <= 0xEF ? 3
                               : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                              : 0;
    if (length == 0 || bytes.size() < length) return 0;
    for (std::size_t index = 1; index < length; ++index)
        if (!continues(index)) return 0;
    const std::uint8_t second = at(1);
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
        (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F))
        return 0;
    return length;
}

void appendEscaped(std::string& text, std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (const char byte : bytes) {
        const auto value = static_cast<std::uint8_t>(byte);
        text += "\\x";
        text += digits[value >> 4];
        text += digits[value & 15];
    }
}

/// C0, DEL and C1 (whose UTF-8 form is C2 80 to C2 9F).
bool isControl(std::string_view sequence) noexcept {
    const auto lead = static_cast<std::uint8_t>(sequence[0]);
    if (sequence.size() == 1) return lead < 0x20 || lead == 0x7F;
    return lead == 0xC2 && static_cast<std::uint8_t>(sequence[1]) < 0xA0;
}

} // namespace

std::string standardizedPath(std::string_view path) {
    std::string expanded;
    if (path == "~" || path.starts_with("~/")) {
        expanded = homeFolder().path();
        expanded += path.substr(1);
        path = expanded;
    }
    if (path.empty()) return {};
    const bool absolute = path.front() == '/';
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view part = path.substr(0, slash);
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
        if (part.empty() || part == ".") continue;
        if (part != "..")
            parts.push_back(part);
        else if (!parts.empty() && parts.back() != "..")
            parts.pop_back();
        else if (!absolute)
            parts.push_back(part);
    }
    std::string clean = absolute ? "/" : "";
    for (const std::string_view part : parts) {
        if (!clean.empty() && clean.back() != '/') clean += '/';
        clean += part;
    }
    return clean.empty() ? "." : clean;
}

FileURL homeFolder() {
    const char* home = std::getenv("HOME");
    if (home && home[0] == '/') return FileURL(home);
    const std::string recorded = homeInUserDatabase();
    return FileURL(recorded.starts_with('/') ? recorded : "/");
}

FileURL temporaryFolder() {
    const char* folder = std::getenv("TMPDIR");
    return FileURL(folder && folder[0] == '/' ? folder : "/tmp");
}

bool isUtf8(std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        // Nearly all text is ASCII, told eight bytes at a time.
        if (std::uint64_t eight = 0; bytes.size() >= sizeof eight) {
            std::memcpy(&eight, bytes.data(), sizeof eight);
            if ((eight & 0x8080808080808080u) == 0) {
                bytes.remove_prefix(sizeof eight);
                continue;
            }
        }
        const std::size_t length = sequenceLength(bytes);
        if (length == 0) return false;
        bytes.remove_prefix(length);
    }
    return true;
}

std::string escapedForDisplay(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t length = sequenceLength(bytes);
        const std::string_view sequence = bytes.substr(0, length == 0 ? 1 : length);
        if (length == 0 || isControl(sequence))
            appendEscaped(text, sequence);
        else
            text += sequence;
        bytes.remove_prefix(sequence.size());
    }
    return text;
}

} // namespace vesko
