#pragma once

#include "concurrency/Executor.h"

#include <QSocketNotifier>

#include <deque>
#include <functional>
#include <mutex>

namespace vesko {

// Runs closures in the Qt loop of the thread that makes it, in the order of posting, also in a nested loop.
// A turn ends after about 8 ms, so that a long queue leaves the loop time to paint and to take input.
// What has not run when the executor is destroyed is dropped.
//
// The wake-up is one byte in a pipe and no posted event: no object of the toolkit is used from another
// thread, which keeps the thread sanitizer's word on this code worth something.
class QtExecutor : public Executor {
public:
    QtExecutor();
    QtExecutor(const QtExecutor&) = delete;
    QtExecutor& operator=(const QtExecutor&) = delete;
    ~QtExecutor() override;

    void post(std::function<void()> closure) override;

private:
    struct Pipe {
        Pipe();
        ~Pipe();
        int ends[2];
    };

    void run();
    bool pop(std::function<void()>& closure);
    void wake();
    void clearWake();

    Pipe pipe_;
    QSocketNotifier notifier_;
    std::mutex mutex_;
    std::deque<std::function<void()>> closures_;
    bool woken_ = false; // a byte is in the pipe; always so while closures wait
};

} // namespace vesko
