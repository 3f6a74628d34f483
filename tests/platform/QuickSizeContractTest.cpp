#include "platform/QuickSizeContract.h"

namespace vesko::testing {
namespace {

/// Every volume of Linux is walked for its figures.
struct Walked {};
INSTANTIATE_TYPED_TEST_SUITE_P(OfThisSystem, QuickSizeContract, Walked);

} // namespace
} // namespace vesko::testing
