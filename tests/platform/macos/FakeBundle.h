#pragma once
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vesko::testing {

/// The program's bundle, and those that lie in it (NSBundle).
struct FakeBundle {
    std::optional<std::string> identifier = "org.example.program"; ///< nothing: the program lies in no bundle
    std::optional<std::string> frameworks = "/Applications/Program.app/Contents/Frameworks";
    /// By the path of a bundle, the class that it has under each name.
    std::map<std::string, std::map<std::string, std::string>> classes;

    std::vector<std::string> askedPaths;
};

FakeBundle& fakeBundle();
/// A fresh one for each test.
void resetFakeBundle();

} // namespace vesko::testing
