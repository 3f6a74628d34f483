#pragma once
#include "core/ScanRecords.h"
#include <string>

namespace vesko {

/// One event of a scan as one line of JSON, without the line's end: "event" names it, all other fields have
/// the names of the records' fields. A missing optional is null, dates are ISO 8601, enumerations are their
/// words. Text that is no UTF-8 is escaped the way that it is shown.
std::string jsonLine(const ScanDelta& delta);

} // namespace vesko
