#pragma once
#include "concurrency/TaskContext.h"
#include "concurrency/TaskRegistry.h"
#include "concurrency/WorkerPool.h"
#include "platform/qt/QtClock.h"
#include "platform/qt/QtExecutor.h"

namespace vesko {

/// What all flows of the program run on: the toolkit's loop, the workers, the clock. One object, made and
/// ended on the main thread.
class ProgramLife {
public:
    TaskContext tasks();
    /// Ends all flows; to be called when the window's loop has ended. False: a worker is still blocked, so
    /// nothing that it may use can be destroyed and the process has to end at once.
    bool end();

private:
    /// Hands work to the workers behind the thread that paints: a scan may take every processor, and the
    /// window still answers.
    class PoliteWorkers final : public Executor {
    public:
        explicit PoliteWorkers(WorkerPool& pool) : pool_(pool) {}
        void post(std::function<void()> closure) override;

    private:
        WorkerPool& pool_;
    };

    QtExecutor home_;
    QtClock clock_;
    WorkerPool pool_;
    PoliteWorkers workers_{pool_};
    TaskRegistry registry_;
};

} // namespace vesko
