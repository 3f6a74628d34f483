#include "AskedModel.h"
#include "RightAnswers.h"
#include "enrichment/CleanupEnrichmentService.h"
#include "enrichment/CleanupReviewService.h"
#include "platform/qt/ModelServer.h"
#include "support/ProcessorTime.h"
#include <QTimer>
#include <fstream>
#include <gtest/gtest.h>
#include <set>

/// What asking a server costs: the main thread's time, and memory.
namespace vesko::testing {
namespace {

/// Counts the turns of the loop in which a timer of a millisecond came up.
class Heartbeat {
public:
    Heartbeat() {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { ++beats_; });
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.start(1);
    }
    int beats() const { return beats_; }

private:
    QTimer timer_;
    int beats_ = 0;
};

long residentBytes() {
    std::ifstream file("/proc/self/statm");
    long all = 0;
    long resident = 0;
    file >> all >> resident;
    return resident * 4096;
}

class ModelServerLoadTest : public ::testing::Test {
protected:
    /// Asks for the names of all items; gives the keys that got one.
    std::set<EnrichmentKey> enriched(const std::vector<CleanupGroup>& groups) {
        CleanupEnrichmentService service({}, model, loop.context());
        std::set<EnrichmentKey> keys;
        const auto run = spawn(loop.context(), [&]() -> Task<void> {
            AsyncStream<EnrichmentPatch> patches = service.enrich(groups);
            for (;;) {
                const std::optional<EnrichmentPatch> patch = co_await patches.next();
                if (!patch) break;
                keys.insert(patch->key);
            }
        });
        EXPECT_TRUE(loop.turnUntil([&] { return run.done(); }, 60'000));
        return keys;
    }
    std::size_t reviewed(const std::vector<CleanupGroup>& groups) {
        CleanupReviewService service({}, model);
        std::size_t patches = 0;
        const auto run = spawn(loop.context(), [&]() -> Task<void> {
            const std::vector<ReviewPatch> answered =
                co_await service.review(groups, std::vector<ScanReviewCandidate>());
            patches = answered.size();
        });
        EXPECT_TRUE(loop.turnUntil([&] { return run.done(); }, 60'000));
        return patches;
    }

    TurnedLoop loop;
    int delay = 0;
    HostileServer server{[this](QTcpSocket& socket, const HeardRequest& request) {
        if (request.method == "GET") return HostileServer::sendModels(socket);
        QTimer::singleShot(delay, &socket,
                           [&socket, request] { HostileServer::send(socket, rightAnswer(request)); });
    }};
    std::shared_ptr<ModelServer> model = std::make_shared<ModelServer>(server.address());
};

TEST_F(ModelServerLoadTest, FiveHundredNamesAreAskedForInFewRequestsAndTheLoopGoesOnTurning) {
    delay = 50;
    const Heartbeat heart;
    EXPECT_EQ(enriched(manyItems(500)).size(), 500u);
    EXPECT_EQ(server.questions(), 42) << "twelve items each";
    EXPECT_EQ(server.requests().size(), 1u + 42 + 42)
        << "whether there is a model, once and before each batch";
    EXPECT_EQ(server.connections(), 1 + 42 + 42);
    // How long it stands still at most is measured by bench/passes, on a quiet machine.
    EXPECT_GE(heart.beats(), 42) << "it turned while each answer was waited for";
}

TEST_F(ModelServerLoadTest, TheLongestAnswersAreLittleWork) {
    const qsizetype most = ModelServer::Limits().answer.bytes;
    QByteArray figures = R"({"entries":[0)";
    while (figures.size() < most - 100) figures += ",0";
    figures += "]}";
    const QByteArray said =
        R"({"choices":[{"message":{"content":")" + figures.replace('"', "\\\"") + "\"}}]}";
    QByteArray entries = R"({"choices":[{"message":{"content":"{\"entries\":[{})";
    while (entries.size() < most - 100) entries += R"(,{\"id\":\"0\",\"kind\":null})";
    entries += R"(]}"}}]})";
    for (const QByteArray& body : {figures, said, entries}) {
        ASSERT_LE(body.size(), most);
        server.answerWith([&](QTcpSocket& socket, const HeardRequest& request) {
            request.method == "GET" ? HostileServer::sendModels(socket) : HostileServer::send(socket, body);
        });
        const auto began = processorTime();
        EXPECT_TRUE(enriched(manyItems(1)).empty());
        EXPECT_LT(processorTime() - began, std::chrono::seconds(1) * slowness);
    }
}

TEST_F(ModelServerLoadTest, MemoryIsFlatAfterAThousandRuns) {
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    GTEST_SKIP() << "a sanitizer keeps memory of its own";
#endif
    const std::vector<CleanupGroup> groups = manyItems(24);
    long early = 0;
    for (int run = 0; run < 1000; ++run) {
        ASSERT_EQ(enriched(groups).size(), 24u);
        ASSERT_EQ(reviewed(groups), 24u);
        server.forget();
        if (run == 199) early = residentBytes();
    }
    const long growth = residentBytes() - early;
    std::printf("resident: %ld KiB after 200 runs, %+ld KiB after 1000\n", early / 1024, growth / 1024);
    EXPECT_LT(growth, 1 << 20);
}

} // namespace
} // namespace vesko::testing
