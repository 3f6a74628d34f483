#include "app/ProgramLife.h"
#include <QCoreApplication>

namespace vesko {

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
    const bool free = workers_.abandon() == 0;
    return finished && free;
}

} // namespace vesko
