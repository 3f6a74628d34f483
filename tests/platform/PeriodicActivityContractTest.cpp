#include "platform/PeriodicActivityContract.h"

#include "support/ManualLoop.h"

namespace vesko::testing {
namespace {

/// The program's own timer, on virtual time.
class Clocked {
public:
    std::unique_ptr<PeriodicActivity> make(const PeriodicActivitySettings& settings) {
        return platformPeriodicActivity({&loop_, nullptr, &loop_, {}, nullptr})(settings);
    }
    void pass(std::chrono::seconds time) { loop_.advance(time); }

private:
    ManualLoop loop_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(OfThisSystem, PeriodicActivityContract, Clocked);

} // namespace
} // namespace vesko::testing
