#pragma once
#include <compare>
#include <optional>
#include <string_view>

namespace vesko {

/// Orders versions as semver.org does, with any number of parts: dotted numbers, of which missing ones count
/// as 0 (1.10 is newer than 1.9 and the same as 1.10.0); a suffix after "-" is a version before the one
/// without (1.2-beta.2 comes after 1.2-beta.1 and before 1.2); a suffix after "+" does not count. Numbers may
/// be of any size. Nothing where one of the two is no version, or longer than 64 bytes.
std::optional<std::strong_ordering> compareVersions(std::string_view first, std::string_view second);

/// False where one of the two is no version.
bool isNewerVersion(std::string_view version, std::string_view than);

} // namespace vesko
