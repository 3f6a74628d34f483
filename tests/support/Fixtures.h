#pragma once
#include "support/TempTree.h"
#include <cstdlib>
#include <stdexcept>
#include <string>

namespace vesko::testing {

/// The folder of recorded data: ctest names it in the environment; a test program that is started by hand
/// finds it from the folder it is started in, anywhere in the checkout.
inline std::filesystem::path fixturesFolder() {
    if (const char* told = std::getenv("VESKO_FIXTURES")) return told;
    for (std::filesystem::path above = std::filesystem::current_path();; above = above.parent_path()) {
        if (std::filesystem::is_directory(above / "tests/fixtures")) return above / "tests/fixtures";
        if (above == above.parent_path())
            throw std::runtime_error("start it in the checkout, or name tests/fixtures in VESKO_FIXTURES");
    }
}

/// The bytes of a file below tests/fixtures; a missing one ends the test.
inline std::string fixture(const std::string& name) {
    const FileURL url((fixturesFolder() / name).string());
    if (!std::filesystem::is_regular_file(url.path())) throw std::runtime_error("no fixture " + name);
    return bytesOf(url);
}

} // namespace vesko::testing
