#pragma once
#include "execution/RemovalFailure.h"
#include "platform/posix/EntryStatus.h"
#include <system_error>

namespace vesko {

/// What the system's reason means to a person. The same number stands for several things, so the state of the
/// entry and of the folder that holds it is looked at too.
RemovalFailureKind removalFailureKind(std::error_code code, const EntryStatus& entry,
                                      const EntryStatus& holder);

} // namespace vesko
