#pragma once
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <execinfo.h>
#include <pthread.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace vesko {

/// Measures the longest time that the loop of its thread was not free: a timer that wants to run every
/// millisecond notes how late it came, and how much of that time the thread itself was at work: on a machine
/// that others use too, the rest is theirs. With VESKO_STALLS=MILLISECONDS in the environment it also writes
/// to the standard error where the thread stands whenever it has not been free for that long, as addresses
/// for `addr2line -Cfpie PROGRAM`.
class Watchdog {
public:
    Watchdog() {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { note(); });
        since_.start();
        timer_.start(1);
        if (const char* limit = std::getenv("VESKO_STALLS")) watch(std::atoi(limit));
    }
    ~Watchdog() {
        isEnding_ = true;
        if (watcher_.joinable()) watcher_.join();
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    struct Stall {
        double time; ///< the longest, in milliseconds
        double work; ///< the most work between two beats, in milliseconds of the processor
    };
    /// Since the last call.
    Stall takeLongest() {
        note();
        return std::exchange(longest_, {0, 0});
    }

private:
    void note() {
        const double worked = workedSoFar();
        longest_.time = std::max(longest_.time, static_cast<double>(since_.nsecsElapsed()) / 1e6 - 1);
        longest_.work = std::max(longest_.work, worked - workedBefore_);
        workedBefore_ = worked;
        since_.start();
        ++beats_;
    }
    static double workedSoFar() {
        timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    }
    void watch(int limit) {
        struct sigaction action = {};
        action.sa_handler = [](int) {
            std::array<void*, 48> frames{};
            const int count = ::backtrace(frames.data(), static_cast<int>(frames.size()));
            ::backtrace_symbols_fd(frames.data(), count, STDERR_FILENO);
        };
        action.sa_flags = SA_RESTART;
        ::sigaction(SIGUSR2, &action, nullptr);
        watcher_ = std::thread([this, limit, watched = pthread_self()] {
            using Clock = std::chrono::steady_clock;
            std::uint64_t beat = beats_;
            auto since = Clock::now();
            while (!isEnding_) {
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
                if (const std::uint64_t now = beats_; now != beat) {
                    beat = now;
                    since = Clock::now();
                } else if (Clock::now() - since > std::chrono::milliseconds(limit)) {
                    const auto late =
                        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - since).count();
                    std::fprintf(stderr, "--- not free for %lld ms\n", static_cast<long long>(late));
                    ::pthread_kill(watched, SIGUSR2);
                    std::this_thread::sleep_for(std::chrono::milliseconds(limit / 2));
                }
            }
        });
    }

    QTimer timer_;
    QElapsedTimer since_;
    Stall longest_{0, 0};
    double workedBefore_ = workedSoFar();
    std::atomic<std::uint64_t> beats_{0};
    std::atomic<bool> isEnding_{false};
    std::thread watcher_;
};

} // namespace vesko
