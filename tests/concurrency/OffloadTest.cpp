#include "concurrency/Concurrency.h"
#include "support/ManualLoop.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

namespace vesko {
namespace {

TEST(Offload, RunsOnAWorkerAndResumesAtHome) {
    ManualLoop loop;
    WorkerPool workers;
    const TaskContext context{&loop, &workers, &loop, {}, nullptr};
    const auto home = std::this_thread::get_id();
    std::thread::id worker;
    std::thread::id resumed;
    auto handle = spawn(context, [&]() -> Task<int> {
        auto work = offload([&] {
            worker = std::this_thread::get_id();
            return 42;
        });
        const int value = co_await work;
        resumed = std::this_thread::get_id();
        co_return value;
    });
    ASSERT_TRUE(loop.waitFor([&] { return handle.done(); }));
    EXPECT_NE(worker, home);
    EXPECT_EQ(resumed, home);
}

TEST(Offload, AGroupDeliversInFinishingOrder) {
    ManualLoop loop;
    WorkerPool workers;
    const TaskContext context{&loop, &workers, &loop, {}, nullptr};
    std::vector<int> order;
    auto handle = spawn(context, [&order]() -> Task<void> {
        auto group = withTaskGroup<int>([&order](TaskGroup<int>& children) -> Task<void> {
            for (int wait : {80, 20, 60, 40}) {
                children.add([wait](StopToken) {
                    std::this_thread::sleep_for(std::chrono::milliseconds(wait));
                    return wait;
                });
            }
            for (;;) {
                auto finished = co_await children.next();
                if (!finished) break;
                order.push_back(finished->take());
            }
        });
        co_await group;
    });
    ASSERT_TRUE(loop.waitFor([&] { return handle.done(); }));
    EXPECT_EQ(order, (std::vector<int>{20, 40, 60, 80}));
}

} // namespace
} // namespace vesko
