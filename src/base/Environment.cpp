#include "base/Environment.h"

#include <cstdlib>
#include <string_view>

namespace vesko {

bool isDevelopmentHost() noexcept {
    const char* playground = std::getenv("XCODE_RUNNING_FOR_PLAYGROUNDS");
    if (playground && std::string_view(playground) == "1") return true;
    return std::getenv("XCTestConfigurationFilePath") != nullptr;
}

} // namespace vesko
