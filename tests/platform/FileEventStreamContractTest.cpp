#include "platform/FileEventStreamContract.h"

#include <fstream>

namespace vesko::testing {
namespace {

/// Real changes; this system's stream tells them by itself.
class RealChanges {
public:
    /// A stream may look at its folders first, and a date that is as old as the look hides a change.
    void afterStart() { std::this_thread::sleep_for(std::chrono::milliseconds(50)); }
    void in(const std::string& folder) {
        std::ofstream file(folder + "/file-" + std::to_string(count_++));
        file << "x";
    }

private:
    int count_ = 0;
};
INSTANTIATE_TYPED_TEST_SUITE_P(OfThisSystem, FileEventStreamContract, RealChanges);

} // namespace
} // namespace vesko::testing
