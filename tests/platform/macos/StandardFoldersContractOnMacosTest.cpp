#include "platform/StandardFoldersContract.h"

namespace vesko::testing {
namespace {

INSTANTIATE_TEST_SUITE_P(OnMacos, StandardFoldersContract, homeFolders);

} // namespace
} // namespace vesko::testing
