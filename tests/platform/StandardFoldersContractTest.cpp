#include "platform/StandardFoldersContract.h"

namespace vesko::testing {
namespace {

INSTANTIATE_TEST_SUITE_P(OfThisSystem, StandardFoldersContract, homeFolders);

} // namespace
} // namespace vesko::testing
