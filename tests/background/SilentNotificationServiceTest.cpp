#include "background/SilentNotificationService.h"

#include "concurrency/Spawn.h"
#include "support/ManualLoop.h"
#include <gtest/gtest.h>
#include <optional>

namespace vesko {
namespace {

TEST(SilentNotificationService, CountsAsDeniedAndReturnsAtOnce) {
    ManualLoop loop;
    const TaskContext context{&loop, nullptr, &loop, {}, nullptr};
    SilentNotificationService service;
    std::optional<bool> isAllowed;
    const auto task = spawn(context, [&]() -> Task<void> {
        isAllowed = co_await service.requestAuthorization();
        co_await service.deliver(NotificationAlertKind::lowSpace, 1, 2);
    });
    loop.drain();
    EXPECT_TRUE(task.done());
    EXPECT_EQ(isAllowed, false);
}

} // namespace
} // namespace vesko
