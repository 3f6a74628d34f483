#include "Flows.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

namespace vesko {
namespace {

using namespace std::chrono_literals;
using Producer = AsyncStream<int>::Producer;

// A stream whose producer is used from outside, with the ends that its handler was told.
struct Source {
    std::optional<Producer> producer;
    std::vector<StreamEnd> ends;

    AsyncStream<int> stream() {
        return AsyncStream<int>([this](Producer made) {
            producer = made;
            made.onTermination([this](StreamEnd end) { ends.push_back(end); });
        });
    }
};

Task<void> readAll(AsyncStream<int> stream, std::vector<int>* values) {
    for (;;) {
        auto value = co_await stream.next();
        if (!value) break;
        values->push_back(*value);
    }
}

TEST(AsyncStream, DeliversInOrderWhatWasYieldedBeforeTheEnd) {
    Flows flows;
    Source source;
    std::vector<int> got;
    auto stream = source.stream();
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(source.producer->yield(i));
    source.producer->finish();
    EXPECT_EQ(source.ends, (std::vector{StreamEnd::Finished}));
    EXPECT_FALSE(source.producer->yield(9));
    auto handle = spawn(flows.context,
                        [&got, s = std::make_shared<AsyncStream<int>>(std::move(stream))]() -> Task<void> {
                            return readAll(std::move(*s), &got);
                        });
    flows.loop.drain();
    EXPECT_TRUE(handle.done());
    EXPECT_EQ(got, (std::vector{0, 1, 2}));
    EXPECT_EQ(source.ends, (std::vector{StreamEnd::Finished}));
}

TEST(AsyncStream, AReaderThatWaitsIsWokenByEachValueAndByTheEnd) {
    Flows flows;
    Source source;
    std::vector<int> got;
    auto handle = spawn(flows.context, [&]() -> Task<void> { return readAll(source.stream(), &got); });
    flows.loop.drain();
    EXPECT_TRUE(source.producer->yield(1));
    flows.loop.drain();
    EXPECT_EQ(got, (std::vector{1}));
    source.producer->finish();
    flows.loop.drain();
    EXPECT_TRUE(handle.done());
    EXPECT_EQ(source.ends, (std::vector{StreamEnd::Finished}));
}

AsyncStream<int> ticks(const TaskContext& context, bool* producerEnded) {
    return AsyncStream<int>([&](Producer producer) {
        auto driver = spawn(context, [producer, producerEnded]() -> Task<void> {
            try {
                for (int i = 1;; ++i) {
                    co_await sleepFor(1s);
                    producer.yield(i);
                }
            } catch (const Cancelled&) {
                *producerEnded = true;
            }
        });
        producer.onTermination([driver](StreamEnd) { driver.cancel(); });
    });
}

TEST(AsyncStream, AReaderThatLeavesCancelsTheProducer) {
    Flows flows;
    bool producerEnded = false;
    std::vector<int> got;
    auto handle = spawn(flows.context, [&]() -> Task<void> {
        auto stream = ticks(flows.context, &producerEnded);
        for (;;) {
            auto value = co_await stream.next();
            got.push_back(*value);
            if (*value == 3) break;
        }
    });
    flows.loop.advance(10s);
    EXPECT_TRUE(handle.done());
    EXPECT_TRUE(producerEnded);
    EXPECT_EQ(got, (std::vector{1, 2, 3}));
    EXPECT_EQ(flows.loop.timers(), 0u);
    EXPECT_TRUE(flows.registry.empty());
}

TEST(AsyncStream, CancellingTheReaderEndsTheStreamAndTheProducer) {
    Flows flows;
    bool producerEnded = false;
    std::vector<int> got;
    auto handle = spawn(flows.context,
                        [&]() -> Task<void> { return readAll(ticks(flows.context, &producerEnded), &got); });
    flows.loop.advance(2500ms);
    handle.cancel();
    flows.loop.drain();
    EXPECT_TRUE(handle.done());
    EXPECT_TRUE(producerEnded);
    EXPECT_EQ(got, (std::vector{1, 2}));
    EXPECT_EQ(flows.loop.timers(), 0u);
}

TEST(AsyncStream, ACancelledReaderStillGetsWhatWasYieldedBefore) {
    Flows flows;
    Source source;
    std::vector<int> got;
    auto stream = std::make_shared<AsyncStream<int>>(source.stream());
    auto handle = spawn(flows.context, [&, stream]() -> Task<void> {
        co_await sleepFor(1s);
        co_return;
    });
    auto reader =
        spawn(flows.context, [&got, stream]() -> Task<void> { return readAll(std::move(*stream), &got); });
    source.producer->yield(1);
    source.producer->yield(2);
    reader.cancel();
    flows.loop.drain();
    EXPECT_TRUE(reader.done());
    EXPECT_EQ(got, (std::vector{1, 2}));
    EXPECT_EQ(source.ends, (std::vector{StreamEnd::Cancelled}));
    EXPECT_FALSE(source.producer->yield(3));
    flows.loop.advance(1s);
    EXPECT_TRUE(handle.done());
}

TEST(AsyncStream, TheHandlerIsCalledOnceHoweverManyEndsThereAre) {
    Source source;
    {
        auto stream = source.stream();
        source.producer->finish();
        source.producer->finish();
    }
    source.producer->finish();
    EXPECT_EQ(source.ends, (std::vector{StreamEnd::Finished}));
}

TEST(AsyncStream, DestroyingTheStreamCancelsIt) {
    Source source;
    {
        auto stream = source.stream();
        source.producer->yield(1);
    }
    EXPECT_EQ(source.ends, (std::vector{StreamEnd::Cancelled}));
    EXPECT_FALSE(source.producer->yield(2));
}

TEST(AsyncStream, AssigningOverAStreamCancelsTheOldOne) {
    Source first;
    Source second;
    auto stream = first.stream();
    stream = second.stream();
    EXPECT_EQ(first.ends, (std::vector{StreamEnd::Cancelled}));
    EXPECT_TRUE(second.ends.empty());
    EXPECT_TRUE(second.producer->yield(1));
}

TEST(AsyncStream, AHandlerThatIsSetAfterTheEndIsCalledAtOnce) {
    std::vector<StreamEnd> ends;
    std::optional<Producer> kept;
    {
        const AsyncStream<int> stream([&](Producer producer) { kept = producer; });
        kept->finish();
        kept->onTermination([&](StreamEnd end) { ends.push_back(end); });
    }
    kept->onTermination([&](StreamEnd end) { ends.push_back(end); });
    EXPECT_EQ(ends, (std::vector{StreamEnd::Finished, StreamEnd::Cancelled}));
}

TEST(AsyncStream, ALaterHandlerReplacesTheEarlierOne) {
    Source source;
    int later = 0;
    {
        auto stream = source.stream();
        source.producer->onTermination([&](StreamEnd) { ++later; });
    }
    EXPECT_TRUE(source.ends.empty());
    EXPECT_EQ(later, 1);
}

TEST(AsyncStream, ASecondReaderIsAnError) {
    Flows flows;
    Source source;
    auto stream = std::make_shared<AsyncStream<int>>(source.stream());
    std::optional<int> first;
    bool refused = false;
    auto reader = spawn(flows.context, [&first, stream]() -> Task<void> { first = co_await stream->next(); });
    auto second = spawn(flows.context, [&refused, stream]() -> Task<void> {
        try {
            auto value = co_await stream->next();
            refused = !value;
        } catch (const std::logic_error&) {
            refused = true;
        }
    });
    flows.loop.drain();
    EXPECT_TRUE(second.done());
    EXPECT_TRUE(refused);
    EXPECT_FALSE(reader.done());
    source.producer->yield(4);
    flows.loop.drain();
    EXPECT_TRUE(reader.done());
    EXPECT_EQ(first, 4);
}

TEST(AsyncStream, ProducersMayYieldFromManyThreads) {
    Flows flows;
    constexpr int threads = 4;
    constexpr int each = 5000;
    std::vector<int> got;
    Source source;
    auto handle = spawn(flows.context, [&]() -> Task<void> { return readAll(source.stream(), &got); });
    flows.loop.drain();
    std::vector<std::thread> producers;
    for (int t = 0; t < threads; ++t) {
        producers.emplace_back([producer = *source.producer, t] {
            for (int i = 0; i < each; ++i) producer.yield(t * each + i);
        });
    }
    EXPECT_TRUE(flows.loop.waitFor([&] { return got.size() == threads * each; }, 30s));
    for (std::thread& producer : producers) producer.join();
    source.producer->finish();
    flows.loop.drain();
    EXPECT_TRUE(handle.done());
    std::vector<int> last(threads, -1);
    int outOfOrder = 0;
    for (const int value : got) {
        int& previous = last[static_cast<std::size_t>(value / each)];
        if (value % each != previous + 1) ++outOfOrder;
        previous = value % each;
    }
    EXPECT_EQ(outOfOrder, 0);
}

TEST(AsyncStream, CancellingFromAnotherThreadMayRaceWithAValue) {
    for (int round = 0; round < 300; ++round) {
        Flows flows;
        Source source;
        std::vector<int> got;
        auto handle = spawn(flows.context, [&]() -> Task<void> { return readAll(source.stream(), &got); });
        flows.loop.drain();
        bool accepted = false;
        std::thread producer([&] { accepted = source.producer->yield(1); });
        std::thread canceller([&] { handle.cancel(); });
        EXPECT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
        producer.join();
        canceller.join();
        EXPECT_EQ(got.size(), accepted ? 1u : 0u);
        EXPECT_EQ(source.ends, (std::vector{StreamEnd::Cancelled}));
    }
}

} // namespace
} // namespace vesko
