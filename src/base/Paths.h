#pragma once
#include "base/FileURL.h"
#include <string>
#include <string_view>

namespace vesko {

/// The path in its cleaned form: a leading "~" or "~/" becomes the home folder, "." parts and doubled "/" go,
/// ".." takes the part before it away, a trailing "/" goes. Lexical only: no link is resolved and the disk is
/// not asked, so that two ways of writing one path compare equal at no cost.
std::string standardizedPath(std::string_view path);

/// The user's home folder: HOME when it is absolute, else the user database, else "/".
FileURL homeFolder();
/// Where the program keeps its state: "Vesko" below the platform's application-support folder
/// ($XDG_DATA_HOME, by default ~/.local/share, on Linux; a relative XDG_DATA_HOME is ignored), below the
/// temporary folder when there is none. The folder need not exist.
FileURL applicationSupportFolder();
/// Where the settings file lies on systems without a preferences service: "vesko" below $XDG_CONFIG_HOME,
/// by default ~/.config.
FileURL configurationFolder();
/// The system's temporary folder: TMPDIR when it is absolute, else "/tmp".
FileURL temporaryFolder();

/// Whether the bytes are well-formed UTF-8.
bool isUtf8(std::string_view bytes) noexcept;
/// The bytes as text that can be shown: each byte that is no part of well-formed UTF-8 and each control
/// character becomes "\xNN" with two upper-case hexadecimal digits; all else stays as it is.
std::string escapedForDisplay(std::string_view bytes);

} // namespace vesko
