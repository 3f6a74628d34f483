#pragma once
#include "InotifyEventStream.h"
#include "platform/HeardChanges.h"
#include "support/TempTree.h"
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace vesko::testing {

/// A latency.
constexpr double shortly = 0.02;

/// A folder of its own, a stream over it, and what was heard.
class WatchedTree : public ::testing::Test {
protected:
    /// Made with many watches and no polling unless told otherwise.
    static InotifyEventStream::Options
    options(std::size_t mostWatches = 100'000,
            InotifyEventStream::Duration pollPeriod = std::chrono::hours(1)) {
        return {.mostWatches = mostWatches, .pollPeriod = pollPeriod};
    }

    void start(const std::vector<std::string>& paths, const InotifyEventStream::Options& chosen,
               double latency = shortly) {
        stream = InotifyEventStream::make(paths, latency, heard.receiver(), chosen);
        ASSERT_TRUE(stream);
        ASSERT_TRUE(becomes([](const auto& figures) { return figures.isSettled; }));
    }
    /// Watches the test's folder, after what was put there has become old.
    void start(double latency = shortly) {
        letTheClockTick();
        start({root()}, options(), latency);
    }

    /// Files get their dates from a clock that ticks every few milliseconds.
    static void letTheClockTick() { std::this_thread::sleep_for(std::chrono::milliseconds(15)); }

    template <class Condition> bool becomes(const Condition& condition) const {
        for (const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
             std::chrono::steady_clock::now() < end;) {
            if (condition(stream->figures())) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return false;
    }

    /// Everything that was done before has been told when this comes back.
    void settle() { settleBelow("."); }
    void settleBelow(std::string_view folder) {
        static int count = 0;
        const std::string name = "settled-" + std::to_string(count++);
        const FileURL mark = tree.file(folder == "." ? name : std::string(folder) + "/" + name);
        ASSERT_TRUE(heard.waitFor({mark.parent().path()}));
        ASSERT_TRUE(becomes([](const auto& figures) { return figures.isSettled; }));
        std::filesystem::remove(mark.path());
        std::this_thread::sleep_for(
            std::chrono::milliseconds(100)); // longer than reading pause and latency together
        heard.forgetAll();
    }

    std::string root() const { return tree.root().path(); }
    std::string path(std::string_view relative) const { return tree.path(relative); }
    void rename(std::string_view from, std::string_view to) const {
        std::filesystem::rename(path(from), path(to));
    }

    TempTree tree;
    HeardChanges heard;
    std::unique_ptr<InotifyEventStream> stream;
};

} // namespace vesko::testing
