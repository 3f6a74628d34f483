#pragma once
#include "base/FileURL.h"
#include <string>
#include <system_error>

namespace vesko {

/// Why something could not be removed, as far as a person can do something about it.
enum class RemovalFailureKind {
    notFound,   ///< there is nothing at the path
    permission, ///< this user may not
    readOnly,   ///< the volume can't be written
    mounted,    ///< another volume is mounted there; it is never entered
    busy,       ///< the system or another program holds it
    changed,    ///< it is not what it was: a link stands on the way, or another program keeps filling it
    immutable,  ///< it is marked as not to be changed
    other,      ///< anything else; the system's own words say what
};

/// The first thing that a removal could not remove, and why.
struct RemovalFailure {
    FileURL path; ///< the entry itself, which may lie deep inside what was to be removed
    RemovalFailureKind kind = RemovalFailureKind::other;
    std::error_code code; ///< the system's reason

    /// One sentence in the current language with the path, escaped where it can't be shown as it is.
    std::string localizedDescription() const;

    friend bool operator==(const RemovalFailure&, const RemovalFailure&) = default;
};

} // namespace vesko
