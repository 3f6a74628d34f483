#include "concurrency/Concurrency.h"
#include "support/ManualLoop.h"

#include <benchmark/benchmark.h>

namespace vesko {
namespace {

struct World {
    ManualLoop loop;
    WorkerPool workers;
    TaskRegistry registry;
    TaskContext context{&loop, &workers, &loop, {}, &registry};
};

void spawnAndEnd(benchmark::State& state) {
    World world;
    for (auto round : state) {
        auto handle = spawn(world.context, []() -> Task<void> { co_return; });
        world.loop.drain();
        benchmark::DoNotOptimize(handle.done());
    }
}
BENCHMARK(spawnAndEnd);

void awaitATask(benchmark::State& state) {
    World world;
    const auto count = state.range(0);
    for (auto round : state) {
        auto handle = spawn(world.context, [count]() -> Task<std::int64_t> {
            auto body = [](std::int64_t value) -> Task<std::int64_t> { co_return value; };
            std::int64_t sum = 0;
            for (std::int64_t i = 0; i < count; ++i) {
                const std::int64_t value = co_await body(i);
                sum += value;
            }
            co_return sum;
        });
        world.loop.drain();
        benchmark::DoNotOptimize(handle.done());
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(awaitATask)->Arg(10'000);

void streamAValue(benchmark::State& state) {
    World world;
    const auto count = state.range(0);
    for (auto round : state) {
        auto handle = spawn(world.context, [count]() -> Task<void> {
            AsyncStream<std::int64_t> stream([count](AsyncStream<std::int64_t>::Producer producer) {
                for (std::int64_t i = 0; i < count; ++i) producer.yield(i);
                producer.finish();
            });
            for (;;) {
                auto value = co_await stream.next();
                if (!value) break;
            }
        });
        world.loop.drain();
        benchmark::DoNotOptimize(handle.done());
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(streamAValue)->Arg(10'000);

void thirtyDaysOfPolling(benchmark::State& state) {
    for (auto round : state) {
        World world;
        auto handle = spawn(world.context, []() -> Task<void> {
            for (;;) co_await sleepFor(std::chrono::seconds(30));
        });
        world.loop.advance(std::chrono::hours(24 * 30));
        handle.cancel();
        world.loop.drain();
    }
}
BENCHMARK(thirtyDaysOfPolling)->Unit(benchmark::kMillisecond);

// From home to a worker and back, through a loop that waits on a condition.
void roundTripToAWorker(benchmark::State& state) {
    World world;
    const auto count = state.range(0);
    for (auto round : state) {
        auto handle = spawn(world.context, [count]() -> Task<void> {
            for (std::int64_t i = 0; i < count; ++i) {
                auto work = offload([] { return 1; });
                const int value = co_await work;
                benchmark::DoNotOptimize(value);
            }
        });
        world.loop.waitFor([&] { return handle.done(); });
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(roundTripToAWorker)->Arg(1'000)->UseRealTime();

void groupOfBlockingChildren(benchmark::State& state) {
    World world;
    const auto count = state.range(0);
    for (auto round : state) {
        auto handle = spawn(world.context, [count]() -> Task<void> {
            auto body = [count](TaskGroup<int>& children) -> Task<void> {
                for (std::int64_t i = 0; i < count; ++i) children.add([] { return 1; });
                for (;;) {
                    auto child = co_await children.next();
                    if (!child) break;
                }
            };
            auto group = withTaskGroup<int>(body);
            co_await group;
        });
        world.loop.waitFor([&] { return handle.done(); });
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(groupOfBlockingChildren)->Arg(10)->Arg(1'000)->UseRealTime();

} // namespace
} // namespace vesko

BENCHMARK_MAIN();
