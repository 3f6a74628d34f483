#pragma once
#include "base/FileURL.h"
#include <optional>
#include <string>
#include <string_view>

namespace vesko {

/// The text under "CFBundleIdentifier" in the bundle's "Contents/Info.plist" (XML or binary property list).
/// Nothing when the file can't be read, is no property list or holds no such text. Blocks; any thread.
std::optional<std::string> bundleIdentifier(const FileURL& bundle);

/// The same out of the bytes of an "Info.plist".
std::optional<std::string> bundleIdentifierFromPropertyList(std::string_view bytes);

} // namespace vesko
