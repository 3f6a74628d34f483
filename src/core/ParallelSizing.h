#pragma once
#include "core/ParallelSizeInput.h"
#include "core/ProbeContext.h"
#include "core/ScannableItem.h"
#include <vector>

namespace vesko {

/// Measures the inputs side by side with `context.size` on `context.workers` and gives the items that reach
/// their smallest size (and at least 1 byte), largest first; equal sizes stand in the order in which they
/// were finished. Inputs are begun in their order by a handful of loops, this thread's among them, however
/// many inputs there are; how many measure at once is for `context.size` to bound. Once the current task is
/// cancelled no further input is begun, and what was finished is the result. Blocks; called on a worker.
std::vector<ScannableItem> sizeInParallel(std::vector<ParallelSizeInput> inputs, const ProbeContext& context);

} // namespace vesko
