#pragma once
#include "support/TempTree.h"
#include <stdexcept>
#include <string>

namespace vesko::testing {

/// The bytes of a file below tests/fixtures; a missing one ends the test.
inline std::string fixture(const std::string& name) {
    const FileURL url(std::string(VESKO_FIXTURES) + "/" + name);
    if (!std::filesystem::is_regular_file(url.path())) throw std::runtime_error("no fixture " + name);
    return bytesOf(url);
}

} // namespace vesko::testing
