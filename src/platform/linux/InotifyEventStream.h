#pragma once
#include "storage/FileEventStream.h"
#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace vesko {

/// Changes below some folders by inotify(7), on a thread of its own that looks at all folders first. Changes
/// made meanwhile in a folder that was not reached yet are told when the folder itself has changed; a file
/// that only grew there is not.
class InotifyEventStream final : public FileEventStream {
public:
    using Duration = std::chrono::steady_clock::duration;
    struct Options {
        std::size_t mostWatches = 0;
        /// From one look at what is not watched to the next, and at roots that may have been replaced. With
        /// the look itself it must stay below a minute.
        Duration pollPeriod = std::chrono::seconds(45);
    };
    struct Figures {
        bool isSettled = false; ///< all folders known now have been looked at
        std::size_t folders = 0;
        std::size_t watched = 0; ///< the others are polled
    };

    /// Null when the system gives no descriptor to wake the thread with.
    static std::unique_ptr<InotifyEventStream> make(const std::vector<std::string>& paths, double latency,
                                                    FileEvents onEvents, const Options& options);
    /// Waits for a callback under way on another thread, and for the thread's end, which a file system that
    /// does not answer delays by a second at most.
    ~InotifyEventStream() override;
    InotifyEventStream(const InotifyEventStream&) = delete;
    InotifyEventStream& operator=(const InotifyEventStream&) = delete;

    /// Any thread.
    Figures figures() const;

private:
    struct State;
    explicit InotifyEventStream(std::shared_ptr<State> state) : state_(std::move(state)) {}

    std::shared_ptr<State> state_; ///< the thread holds it as well
};

} // namespace vesko
