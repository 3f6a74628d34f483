#include "execution/RemovalFailure.h"

#include "base/Paths.h"
#include "base/StringCatalog.h"

namespace vesko {

std::string RemovalFailure::localizedDescription() const {
    const std::string shown = escapedForDisplay(path.path());
    switch (kind) {
    case RemovalFailureKind::notFound: return localized("error.remove.notFound %@", shown);
    case RemovalFailureKind::permission: return localized("error.remove.permission %@", shown);
    case RemovalFailureKind::readOnly: return localized("error.remove.readOnly %@", shown);
    case RemovalFailureKind::mounted: return localized("error.remove.mounted %@", shown);
    case RemovalFailureKind::busy: return localized("error.remove.busy %@", shown);
    case RemovalFailureKind::changed: return localized("error.remove.changed %@", shown);
    case RemovalFailureKind::immutable: return localized("error.remove.immutable %@", shown);
    case RemovalFailureKind::other: break;
    }
    return localized("error.remove.other %1$@ %2$@", shown, code.message());
}

} // namespace vesko
