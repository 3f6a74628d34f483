#include "AskedModel.h"
#include "HostileServer.h"
#include "RightAnswers.h"
#include "enrichment/CleanupEnrichmentService.h"
#include "enrichment/CleanupReviewService.h"
#include "enrichment/PassSamples.h"
#include "platform/qt/ModelServer.h"
#include <chrono>
#include <gtest/gtest.h>
#include <set>

/// Both passes over a real connection, to a server that is bad once and right afterwards.
namespace vesko::testing {
namespace {

using namespace std::chrono_literals;

const QByteArray jsonHead = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n";

QByteArray saying(const std::string& text) {
    JsonWriter content;
    content.string(text);
    return QByteArray::fromStdString(R"({"choices":[{"message":{"content":)" + content.take() + "}}]}");
}

void sendSpaces(QTcpSocket& socket) {
    static long pieces = 0;
    HostileServer::sendForever(socket, QByteArray(1 << 16, ' '), &pieces);
}

struct BadAnswer {
    const char* name;
    void (*give)(QTcpSocket& socket, const HeardRequest& request);
};

const BadAnswer badAnswers[] = {
    {"Hangs", [](QTcpSocket&, const HeardRequest&) {}},
    {"ClosesAtOnce", [](QTcpSocket& socket, const HeardRequest&) { socket.abort(); }},
    {"ClosesInTheMiddle",
     [](QTcpSocket& socket, const HeardRequest& request) {
         const QByteArray whole = rightAnswer(request);
         socket.write(jsonHead + "Content-Length: " + QByteArray::number(whole.size()) + "\r\n\r\n" +
                      whole.left(whole.size() - 2));
         socket.disconnectFromHost();
     }},
    {"NeverEnds",
     [](QTcpSocket& socket, const HeardRequest&) {
         socket.write(jsonHead + "\r\n");
         sendSpaces(socket);
     }},
    {"AnswersAGigabyte",
     [](QTcpSocket& socket, const HeardRequest&) {
         socket.write(jsonHead + "Content-Length: 1000000000\r\n\r\n");
         sendSpaces(socket);
     }},
    {"AnswersAnotherSchema",
     [](QTcpSocket& socket, const HeardRequest&) {
         HostileServer::send(socket, saying(R"({"items":[{"id":"0","friendlyName":"x"}]})"));
     }},
    {"AnswersAValueOutsideTheChoices",
     [](QTcpSocket& socket, const HeardRequest& request) {
         HostileServer::send(socket, rightAnswer(request).replace("seguro", "risco").replace("revisar", "?"));
     }},
    {"Chats", [](QTcpSocket& socket, const HeardRequest&) { HostileServer::send(socket, saying("Sure!")); }},
    {"AnswersAPage",
     [](QTcpSocket& socket, const HeardRequest&) {
         HostileServer::send(socket, "<html></html>", "200 OK", "text/html");
     }},
    {"AnswersDamagedText",
     [](QTcpSocket& socket, const HeardRequest& request) {
         HostileServer::send(socket, rightAnswer(request).replace("name", "n\xff").replace("porque", "\xc3"));
     }},
    {"AnswersALoneSurrogate",
     [](QTcpSocket& socket, const HeardRequest& request) {
         HostileServer::send(socket,
                             rightAnswer(request).replace("name", "\\ud800").replace("porque", "\\ud800"));
     }},
    {"Fails",
     [](QTcpSocket& socket, const HeardRequest& request) {
         HostileServer::send(socket, rightAnswer(request), "500 Broken");
     }},
    {"RedirectsToItself",
     [](QTcpSocket& socket, const HeardRequest&) {
         socket.write(
             "HTTP/1.1 307 Elsewhere\r\nLocation: /v1/chat/completions\r\nContent-Length: 0\r\n\r\n");
     }},
};

/// Gives the first question that bad answer and the later ones right answers; counts them in `asked`.
HostileServer::Answer badOnce(const BadAnswer& bad, int& asked) {
    return [&bad, &asked](QTcpSocket& socket, const HeardRequest& request) {
        if (request.method == "GET") return HostileServer::sendModels(socket);
        if (++asked == 1) return bad.give(socket, request);
        HostileServer::send(socket, rightAnswer(request));
    };
}

ModelServer::Limits hasty() {
    ModelServer::Limits limits;
    limits.answer.total = 400ms;
    return limits;
}

class ModelServerPassesTest : public ::testing::TestWithParam<BadAnswer> {
protected:
    std::set<EnrichmentKey> enriched(const std::shared_ptr<LanguageModel>& model, int count) {
        CleanupEnrichmentService service({}, model, loop.context());
        std::set<EnrichmentKey> keys;
        const auto run = spawn(loop.context(), [&]() -> Task<void> {
            AsyncStream<EnrichmentPatch> patches = service.enrich(manyItems(count));
            for (;;) {
                const std::optional<EnrichmentPatch> patch = co_await patches.next();
                if (!patch) break;
                keys.insert(patch->key);
            }
        });
        EXPECT_TRUE(loop.turnUntil([&] { return run.done(); }));
        return keys;
    }
    std::size_t reviewedItems(const std::shared_ptr<LanguageModel>& model, int count) {
        const CleanupReviewService service({}, model);
        std::size_t patches = 0;
        const auto run = spawn(loop.context(), [&]() -> Task<void> {
            CleanupReviewService asked = service;
            const std::vector<ReviewPatch> answered =
                co_await asked.review(manyItems(count), std::vector<ScanReviewCandidate>());
            patches = answered.size();
        });
        EXPECT_TRUE(loop.turnUntil([&] { return run.done(); }));
        return patches;
    }

    TurnedLoop loop;
};

TEST_P(ModelServerPassesTest, OnlyTheNamesOfThatBatchAreMissingAndTheNextRunAsksAgain) {
    int asked = 0;
    const HostileServer server(badOnce(GetParam(), asked));
    const auto model = std::make_shared<ModelServer>(server.address(), hasty());
    EXPECT_EQ(enriched(model, 36).size(), 24u);
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(enriched(model, 36).size(), 36u);
    EXPECT_EQ(asked, 6);
}

TEST_P(ModelServerPassesTest, OnlyTheMovesOfThatBatchAreMissingAndTheNextRunAsksAgain) {
    int asked = 0;
    const HostileServer server(badOnce(GetParam(), asked));
    const auto model = std::make_shared<ModelServer>(server.address(), hasty());
    EXPECT_EQ(reviewedItems(model, 25), 15u);
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(reviewedItems(model, 25), 25u);
    EXPECT_EQ(asked, 6);
}

INSTANTIATE_TEST_SUITE_P(AServerThat, ModelServerPassesTest, ::testing::ValuesIn(badAnswers),
                         [](const auto& tested) { return tested.param.name; });

using PassesTest = ModelServerPassesTest;

TEST_F(PassesTest, AServerThatRefusesIsAskedNothingAndTheNextRunFindsTheOneThatCame) {
    quint16 port = 0;
    {
        const HostileServer gone([](QTcpSocket&, const HeardRequest&) {});
        port = gone.port();
    }
    const auto model = std::make_shared<ModelServer>("http://127.0.0.1:" + std::to_string(port), hasty());
    EXPECT_TRUE(enriched(model, 5).empty());
    EXPECT_EQ(reviewedItems(model, 5), 0u);
    HostileServer come(
        [](QTcpSocket& socket, const HeardRequest& request) {
            if (request.method == "GET") return HostileServer::sendModels(socket);
            HostileServer::send(socket, rightAnswer(request));
        },
        QHostAddress::LocalHost, port);
    if (!come.isListening()) GTEST_SKIP() << "somebody else took the port";
    EXPECT_EQ(enriched(model, 5).size(), 5u);
    EXPECT_EQ(reviewedItems(model, 5), 5u);
}

TEST_F(PassesTest, HostileNamesArriveAsOneLineEach) {
    std::vector<std::string> lines;
    HostileServer server([&](QTcpSocket& socket, const HeardRequest& request) {
        if (request.method == "GET") return HostileServer::sendModels(socket);
        for (const std::string& line : itemLines(promptOf(request))) lines.push_back(line);
        HostileServer::send(socket, rightAnswer(request));
    });
    const auto model = std::make_shared<ModelServer>(server.address());
    CleanupEnrichmentService service({}, model, loop.context());
    std::vector<ScannableItem> found;
    for (const std::string& name : hostileNames())
        if (!name.contains('\0')) found.push_back(item("/c/" + name, 1));
    const auto run = spawn(loop.context(), [&]() -> Task<void> {
        AsyncStream<EnrichmentPatch> patches = service.enrich({discovered("discover.caches", found)});
        for (;;) {
            const std::optional<EnrichmentPatch> patch = co_await patches.next();
            if (!patch) break;
        }
    });
    ASSERT_TRUE(loop.turnUntil([&] { return run.done(); }));
    ASSERT_EQ(lines.size(), found.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_TRUE(lines[i].starts_with(std::to_string(i) + " | ")) << lines[i];
        EXPECT_TRUE(isOneLine(lines[i])) << lines[i];
    }
}

} // namespace
} // namespace vesko::testing
