#include "AskedModel.h"
#include "RightAnswers.h"
#include "enrichment/CleanupEnrichmentService.h"
#include "enrichment/CleanupReviewService.h"
#include "platform/qt/ModelServer.h"
#include <QElapsedTimer>
#include <QTimer>
#include <fstream>
#include <gtest/gtest.h>
#include <set>

/// What asking a server costs: the main thread's time, and memory.
namespace vesko::testing {
namespace {

/// The longest time for which the loop did not turn, in milliseconds.
class Heartbeat {
public:
    Heartbeat() {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
            longest_ = std::max(longest_, since_.nsecsElapsed());
            since_.restart();
        });
        timer_.setTimerType(Qt::PreciseTimer);
        since_.start();
        timer_.start(1);
    }
    /// The time since the last turn counts too.
    double longest() const { return static_cast<double>(std::max(longest_, since_.nsecsElapsed())) / 1e6; }

private:
    QTimer timer_;
    QElapsedTimer since_;
    qint64 longest_ = 0;
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
    std::printf("longest stall of the loop: %.1f ms\n", heart.longest());
    // Less would be about the machine's load; what the program promises is measured on a quiet one.
    EXPECT_LT(heart.longest(), 250);
}

TEST_F(ModelServerLoadTest, TheLongestAnswersHoldTheLoopOnlyShortly) {
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
        const Heartbeat heart;
        EXPECT_TRUE(enriched(manyItems(1)).empty());
        std::printf("longest stall of the loop: %.1f ms\n", heart.longest());
        EXPECT_LT(heart.longest(), 250);
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
