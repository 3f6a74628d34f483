#include "concurrency/Concurrency.h"
#include "platform/qt/QtClock.h"
#include "platform/qt/QtExecutor.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

namespace vesko {
namespace {

// From the Qt loop to a worker and back.
void roundTripThroughTheQtLoop(benchmark::State& state) {
    int argc = 0;
    QCoreApplication application(argc, nullptr);
    QtExecutor home;
    QtClock clock;
    WorkerPool workers;
    TaskRegistry registry;
    const TaskContext context{&home, &workers, &clock, {}, &registry};
    const auto count = state.range(0);
    for (auto round : state) {
        spawn(context, [count]() -> Task<void> {
            for (std::int64_t i = 0; i < count; ++i) {
                auto work = offload([] { return 1; });
                const int value = co_await work;
                benchmark::DoNotOptimize(value);
            }
            QCoreApplication::quit();
        });
        QCoreApplication::exec();
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(roundTripThroughTheQtLoop)->Arg(1'000)->UseRealTime();

} // namespace
} // namespace vesko
