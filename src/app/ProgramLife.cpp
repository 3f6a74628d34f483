#include "app/ProgramLife.h"
#include "platform/posix/BackgroundPriority.h"
#include <QCoreApplication>
#include <utility>

namespace vesko {

void ProgramLife::PoliteWorkers::post(std::function<void()> closure) {
    pool_.post([closure = std::move(closure)] {
        thread_local const bool isPolite = (workInTheBackground(), true);
        static_cast<void>(isPolite);
        closure();
    });
}

TaskContext ProgramLife::tasks() {
    TaskContext context;
    context.home = &home_;
    context.workers = &workers_;
    context.clock = &clock_;
    context.registry = &registry_;
    return context;
}

bool ProgramLife::end() {
    const auto turn = [] { QCoreApplication::processEvents(QEventLoop::AllEvents, 10); };
    const bool finished = shutDown(registry_, turn, std::chrono::milliseconds(1200));
    const bool free = pool_.abandon() == 0;
    return finished && free;
}

} // namespace vesko
