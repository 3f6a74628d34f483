#include "platform/posix/AllocationSum.h"

#include <cstdio>
#include <cstdlib>

namespace vesko {

void AllocationSum::stopOnOverflow() {
    std::fputs("vesko: a sum of sizes went beyond 63 bits\n", stderr);
    std::abort();
}

std::int64_t roundedUpToKiB(std::int64_t bytes) {
    std::int64_t raised = 0;
    if (__builtin_add_overflow(bytes, 1023, &raised)) AllocationSum::stopOnOverflow();
    return raised / 1024 * 1024;
}

} // namespace vesko
