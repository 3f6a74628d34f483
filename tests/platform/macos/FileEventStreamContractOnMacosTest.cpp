#include "platform/FileEventStreamContract.h"
#include "platform/macos/FakeFileEvents.h"

namespace vesko::testing {
namespace {

/// Changes as FSEvents tells them, on its queue.
class ToldChanges {
public:
    ToldChanges() { resetFakeFileEvents(); }
    ~ToldChanges() { fakeFileEvents().runQueue(); }
    void afterStart() {}
    void in(const std::string& folder) {
        fakeFileEvents().deliver({folder});
        std::thread([] { fakeFileEvents().runQueue(); }).join();
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(OnMacos, FileEventStreamContract, ToldChanges);

} // namespace
} // namespace vesko::testing
