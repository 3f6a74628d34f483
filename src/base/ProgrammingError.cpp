#include "base/ProgrammingError.h"

#include <cstdio>
#include <cstdlib>

namespace vesko {

void programmingError(std::string_view message) noexcept {
    std::fprintf(stderr, "vesko: %.*s\n", static_cast<int>(message.size()), message.data());
    std::abort();
}

} // namespace vesko
