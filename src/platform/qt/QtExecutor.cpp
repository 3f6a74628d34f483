#include "platform/qt/QtExecutor.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace vesko {

namespace {
constexpr auto longestTurn = std::chrono::milliseconds(8);
}

QtExecutor::Pipe::Pipe() {
    if (::pipe(ends) != 0) qFatal("no pipe for the loop's executor");
    for (const int end : ends) {
        fcntl(end, F_SETFL, O_NONBLOCK);
        fcntl(end, F_SETFD, FD_CLOEXEC);
    }
}

QtExecutor::Pipe::~Pipe() {
    for (const int end : ends) close(end);
}

QtExecutor::QtExecutor() : notifier_(pipe_.ends[0], QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { run(); });
}

QtExecutor::~QtExecutor() { notifier_.setEnabled(false); }

void QtExecutor::post(std::function<void()> closure) {
    std::lock_guard lock(mutex_);
    closures_.push_back(std::move(closure));
    if (!woken_) wake();
}

void QtExecutor::run() {
    {
        std::lock_guard lock(mutex_);
        clearWake();
    }
    const auto end = std::chrono::steady_clock::now() + longestTurn;
    for (std::function<void()> closure; pop(closure);) {
        closure();
        closure = nullptr;
        if (std::chrono::steady_clock::now() >= end) return;
    }
}

// Leaves the byte in the pipe while more closures wait: for the turn after this one, or for a nested loop
// that the closure runs.
bool QtExecutor::pop(std::function<void()>& closure) {
    std::lock_guard lock(mutex_);
    if (closures_.empty()) return false;
    closure = std::move(closures_.front());
    closures_.pop_front();
    if (!closures_.empty() && !woken_) wake();
    return true;
}

void QtExecutor::wake() {
    woken_ = true;
    while (write(pipe_.ends[1], "", 1) < 0 && errno == EINTR) continue;
}

void QtExecutor::clearWake() {
    char byte = 0;
    while (read(pipe_.ends[0], &byte, 1) < 0 && errno == EINTR) continue;
    woken_ = false;
}

} // namespace vesko
