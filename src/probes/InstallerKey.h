#pragma once
#include <string>
#include <string_view>

namespace vesko {

/// What all versions of one product's disk image share, so that what is known of one holds for the next:
/// "installer:" and the words before the version, in lower case, out of a file's last path component. Only
/// ".dmg" is no part of the key: a package keeps its extension, and with it the version that it is glued to.
/// Stored enrichments are found by this text, so that its form must not change. Pure; bytes that are no UTF-8
/// stay as they are.
std::string installerKey(std::string_view name);

} // namespace vesko
