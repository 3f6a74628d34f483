#pragma once
#include "core/ScanRecords.h"
#include <string>

namespace vesko {

/// A report as a table in the current language: a line for each band, below it one for each of its groups
/// (size, how safe, title, count), and the total. Ends with a line's end.
std::string scanSummary(const ScanReport& report);

} // namespace vesko
