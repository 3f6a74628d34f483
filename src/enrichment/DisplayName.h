#pragma once
#include "base/FileURL.h"
#include "core/ScannableItem.h"
#include <optional>
#include <string>
#include <string_view>

/// Names that mean something, by fixed rules and without any model: a dependency folder is called the same in
/// every project, an identifier is written backwards, an installer carries a version and a processor. Pure
/// but for one look-up in the string catalog; no file is touched; safe from any thread.
namespace vesko {

/// The name that the list shows, with what can't be shown escaped. A probe's label beats everything; an
/// enriched name counts as absent when it is empty, and gives way where it has lost the project that tells
/// two generic folders apart.
std::string displayName(const ScannableItem& item, const std::optional<std::string>& enrichedName);

/// A name for an item without a better source: a generic name such as "node_modules" is followed by the
/// folder above it.
std::string friendlyName(std::string_view name, const FileURL& parent);
/// The same for what lies at a URL.
std::string friendlyName(const FileURL& url);

/// The name without what is noise to a person: an identifier in reverse-DNS form gives its last part, an
/// image its product's name. A name of blanks alone stays as it is.
std::string cleanName(std::string_view name);

/// The words before the first version number; the first word when that is a version itself.
std::string cleanInstallerName(std::string_view name);

/// Whether a name has the form of a bundle identifier such as "com.example.tool": no blank, and three or more
/// parts between dots, none of them empty. Nothing else is asked of the parts.
bool isBundleIdentifier(std::string_view name);

/// Whether a folder's name is an identifier made by a machine: a UUID, or mostly hexadecimal digits.
bool looksOpaque(std::string_view name);

/// Where an item of a cache group with several items lies, in words that a developer knows; nothing for an
/// unknown place.
std::optional<std::string> cacheLocationHint(const FileURL& url);

} // namespace vesko
