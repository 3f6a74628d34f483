#include "support/MemoryUserDefaults.h"

#include "support/UserDefaultsContract.h"

namespace vesko::testing {

INSTANTIATE_TEST_SUITE_P(Memory, UserDefaultsContract,
                         ::testing::Values(UserDefaultsSubject{
                             "Memory", [] { return std::make_unique<MemoryUserDefaults>(); }}),
                         userDefaultsName);

} // namespace vesko::testing
