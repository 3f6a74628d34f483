#include "platform/macos/FakePolicies.h"

namespace vesko::testing {

FakePolicies& fakePolicies() {
    static FakePolicies fake;
    return fake;
}

} // namespace vesko::testing

extern "C" {

int getiopolicy_np(int iotype, int scope) {
    const auto& fake = vesko::testing::fakePolicies();
    if (iotype != IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES || scope != IOPOL_SCOPE_THREAD) return -1;
    return fake.hidesThem ? -1 : fake.ofThread;
}

int setiopolicy_np(int iotype, int scope, int policy) {
    auto& fake = vesko::testing::fakePolicies();
    fake.set.push_back({iotype, scope, policy});
    if (iotype == IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES && scope == IOPOL_SCOPE_THREAD)
        fake.ofThread = policy;
    return 0;
}
}
