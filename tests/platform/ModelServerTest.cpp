#include "platform/qt/ModelServer.h"
#include "AskedModel.h"
#include "HostileServer.h"
#include "base/JsonWriter.h"
#include "platform/qt/ChatProtocol.h"
#include "support/ScopedEnvironment.h"
#include <QNetworkProxy>
#include <QNetworkProxyFactory>
#include <QTimer>
#include <chrono>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace std::chrono_literals;
using testing::ask;
using testing::Asked;
using testing::askInto;
using testing::availabilityOf;
using testing::HeardRequest;
using testing::HostileServer;
using testing::sampleRequest;
using testing::TurnedLoop;

constexpr const char* goodAnswer = R"({"entries":[]})";

/// As the program has it, with less patience.
ModelServer::Limits hasty() {
    ModelServer::Limits limits;
    limits.availability.total = 300ms;
    limits.answer.total = 600ms;
    limits.answer.silence = 200ms;
    return limits;
}

QByteArray completion(const std::string& text) {
    JsonWriter content;
    content.string(text);
    return QByteArray::fromStdString(R"({"choices":[{"index":0,"message":{"role":"assistant","content":)" +
                                     content.take() + R"(},"finish_reason":"stop"}]})");
}

/// A server whose list of models is right and that answers questions as told.
HostileServer::Answer answeringWith(std::function<void(QTcpSocket&)> answer) {
    return [answer = std::move(answer)](QTcpSocket& socket, const HeardRequest& request) {
        if (request.method == "GET")
            HostileServer::sendModels(socket);
        else
            answer(socket);
    };
}

HostileServer::Answer right() {
    return answeringWith([](QTcpSocket& socket) { HostileServer::send(socket, completion(goodAnswer)); });
}

class ModelServerTest : public ::testing::Test {
protected:
    /// What becomes of a question to a server that answers so; the connection is closed in each case.
    Asked askServerThat(std::function<void(QTcpSocket&)> answer) {
        HostileServer server(answeringWith(std::move(answer)));
        ModelServer model(server.address(), hasty());
        Asked asked = ask(loop, model);
        EXPECT_TRUE(asked.ended);
        EXPECT_EQ(server.questions(), 1) << "nothing is asked twice";
        EXPECT_TRUE(loop.turnUntil([&] { return server.closed() == server.connections(); }, 2000));
        return asked;
    }
    void expectNoAnswer(std::function<void(QTcpSocket&)> answer) {
        const Asked asked = askServerThat(std::move(answer));
        EXPECT_FALSE(asked.answer) << *asked.answer;
        EXPECT_FALSE(asked.failure.empty());
        EXPECT_FALSE(asked.cancelled);
    }

    TurnedLoop loop;
};

TEST_F(ModelServerTest, AQuestionIsAnswered) {
    HostileServer server(right());
    ModelServer model(server.address());
    EXPECT_EQ(availabilityOf(loop, model), ModelAvailability::available);
    const Asked asked = ask(loop, model, sampleRequest("0 | caf\xe9 | /a"));
    EXPECT_EQ(asked.answer, goodAnswer);
    ASSERT_EQ(server.requests().size(), 3u);
    const HeardRequest& question = server.requests()[2];
    EXPECT_EQ(question.method, "POST");
    EXPECT_EQ(question.path, "/v1/chat/completions");
    EXPECT_EQ(question.headers.at("content-type"), "application/json");
    EXPECT_EQ(question.body.toStdString(),
              chatQuestion("first one", "Be brief.", sampleRequest("0 | caf\xe9 | /a")));
    EXPECT_EQ(server.requests()[0].path, "/v1/models");
}

TEST_F(ModelServerTest, ARequestTellsNothingButItself) {
    HostileServer server([](QTcpSocket& socket, const HeardRequest& request) {
        const QByteArray body = request.method == "GET" ? R"({"data":[{"id":"m"}]})" : completion(goodAnswer);
        socket.write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nSet-Cookie: who=me; Path=/\r\n"
                     "Cache-Control: max-age=3600\r\nETag: \"1\"\r\nContent-Length: " +
                     QByteArray::number(body.size()) + "\r\n\r\n" + body);
    });
    ModelServer model(server.address());
    ask(loop, model);
    ask(loop, model);
    ASSERT_EQ(server.requests().size(), 4u) << "nothing comes out of a cache";
    for (const HeardRequest& request : server.requests()) {
        for (const char* unwanted : {"cookie", "upgrade", "http2-settings", "authorization", "if-none-match",
                                     "proxy-authorization", "referer", "range"})
            EXPECT_FALSE(request.headers.contains(unwanted)) << unwanted;
        EXPECT_EQ(request.headers.at("accept-encoding"), "identity");
        EXPECT_EQ(request.headers.at("connection").toLower(), "close");
        EXPECT_EQ(request.headers.at("user-agent"), "vesko");
    }
    EXPECT_EQ(server.connections(), 4) << "each question has a connection of its own";
}

TEST_F(ModelServerTest, AnAnswerInChunksAndInManyPiecesIsRead) {
    const Asked asked = askServerThat([](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Type: Application/JSON; charset=utf-8\r\n"
                     "Transfer-Encoding: chunked\r\n\r\n");
        for (const char byte : completion(goodAnswer)) {
            socket.write("1\r\n" + QByteArray(1, byte) + "\r\n");
            socket.flush();
        }
        socket.write("0\r\n\r\n");
    });
    EXPECT_EQ(asked.answer, goodAnswer) << asked.failure;
}

TEST_F(ModelServerTest, AnAnswerThatEndsWithItsConnectionIsRead) {
    const Asked asked = askServerThat([](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n\r\n" + completion(goodAnswer));
        socket.disconnectFromHost();
    });
    EXPECT_EQ(asked.answer, goodAnswer) << asked.failure;
}

TEST_F(ModelServerTest, WithoutAServerThereIsNoModel) {
    std::string address;
    {
        const HostileServer gone(right());
        address = gone.address();
    }
    ModelServer model(address);
    EXPECT_EQ(availabilityOf(loop, model), ModelAvailability::unavailable);
    EXPECT_EQ(ask(loop, model).failure, "unavailable");
}

TEST_F(ModelServerTest, AServerThatHangsIsUnavailableAfterASecond) {
    HostileServer server([](QTcpSocket&, const HeardRequest&) {});
    ModelServer model(server.address());
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(availabilityOf(loop, model), ModelAvailability::unavailable);
    const auto took = std::chrono::steady_clock::now() - before;
    EXPECT_GE(took, 800ms);
    EXPECT_LT(took, 10s);
    EXPECT_TRUE(loop.turnUntil([&] { return server.closed() == 1; }));
}

TEST_F(ModelServerTest, AListWithoutAModelOrOfAnotherFormMeansUnavailable) {
    for (const char* list :
         {"", R"({"data":[]})", R"({"data":[{"id":)", "[]", "{\"data\":[{\"id\":\"\xff\"}]}"}) {
        HostileServer server(
            [list](QTcpSocket& socket, const HeardRequest&) { HostileServer::send(socket, list); });
        ModelServer model(server.address(), hasty());
        EXPECT_EQ(availabilityOf(loop, model), ModelAvailability::unavailable) << list;
    }
}

TEST_F(ModelServerTest, AModelThatGoesIsUnavailableAgainAndAsksForNothing) {
    bool isThere = true;
    HostileServer server([&](QTcpSocket& socket, const HeardRequest&) {
        isThere ? HostileServer::sendModels(socket) : HostileServer::send(socket, R"({"data":[]})");
    });
    ModelServer model(server.address(), hasty());
    EXPECT_EQ(availabilityOf(loop, model), ModelAvailability::available);
    isThere = false;
    EXPECT_EQ(ask(loop, model).failure, "unavailable");
    EXPECT_EQ(server.questions(), 0);
}

TEST_F(ModelServerTest, AnAddressOfAnotherMachineIsNeverAsked) {
    HostileServer everywhere(right(), QHostAddress::AnyIPv4);
    ASSERT_TRUE(everywhere.isListening());
    const std::string port = std::to_string(everywhere.port());
    for (const std::string host : {"0.0.0.0", "10.0.0.1", "example.com", "127.0.0.1.example.com"}) {
        ModelServer model("http://" + host + ":" + port, hasty());
        EXPECT_EQ(availabilityOf(loop, model), ModelAvailability::unavailable) << host;
        Asked asked;
        const auto task = spawn(loop.context(), [&]() -> Task<void> {
            const std::unique_ptr<LanguageModelSession> session = model.session("");
            try {
                asked.answer = co_await session->respond(sampleRequest("Who?"));
            } catch (const std::exception& error) {
                asked.failure = error.what();
            }
        });
        EXPECT_TRUE(loop.turnUntil([&] { return task.done(); }));
        EXPECT_FALSE(asked.failure.empty());
    }
    EXPECT_EQ(everywhere.connections(), 0);
}

TEST_F(ModelServerTest, ProxiesArePassedOver) {
    HostileServer proxy(right());
    HostileServer server(right());
    const testing::ScopedEnvironment http("http_proxy", proxy.address());
    const testing::ScopedEnvironment upper("HTTP_PROXY", proxy.address());
    const testing::ScopedEnvironment all("all_proxy", proxy.address());
    const testing::ScopedEnvironment none("no_proxy", std::nullopt);
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    {
        ModelServer model(server.address(), hasty());
        EXPECT_EQ(ask(loop, model).answer, goodAnswer);
    }
    /// For each connection whatever its aim, as a proxy set up by hand.
    class ForEverything final : public QNetworkProxyFactory {
    public:
        explicit ForEverything(quint16 port) : port_(port) {}
        QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery&) override {
            return {QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), port_)};
        }

    private:
        quint16 port_;
    };
    QNetworkProxyFactory::setApplicationProxyFactory(new ForEverything(proxy.port()));
    {
        ModelServer model(server.address(), hasty());
        EXPECT_EQ(ask(loop, model).answer, goodAnswer);
    }
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    QNetworkProxyFactory::setApplicationProxyFactory(nullptr);
    EXPECT_EQ(proxy.connections(), 0);
}

TEST_F(ModelServerTest, ARedirectionIsAFailureAndNobodyElseIsAsked) {
    HostileServer elsewhere(right());
    for (const char* status : {"301 Moved", "302 Found", "303 See Other", "307 Temporary", "308 Permanent"})
        expectNoAnswer([&](QTcpSocket& socket) {
            socket.write(QByteArray("HTTP/1.1 ") + status +
                         "\r\nLocation: " + QByteArray::fromStdString(elsewhere.address()) +
                         "/v1/chat/completions\r\nContent-Length: 0\r\n\r\n");
        });
    HostileServer moved([&](QTcpSocket& socket, const HeardRequest&) {
        socket.write("HTTP/1.1 302 Found\r\nLocation: " + QByteArray::fromStdString(elsewhere.address()) +
                     "/v1/models\r\nContent-Length: 0\r\n\r\n");
    });
    ModelServer model(moved.address(), hasty());
    EXPECT_EQ(availabilityOf(loop, model), ModelAvailability::unavailable);
    EXPECT_EQ(elsewhere.connections(), 0);
}

TEST_F(ModelServerTest, AHangingAnswerEndsInTime) {
    expectNoAnswer([](QTcpSocket&) {});
}

TEST_F(ModelServerTest, AnAnswerThatBreaksOffEndsSoon) {
    const Asked asked = askServerThat([](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 100\r\n\r\n{");
    });
    EXPECT_EQ(asked.failure, "an answer that breaks off") << "before the time for a whole answer is over";
}

TEST_F(ModelServerTest, AnAnswerThatComesByAndByEndsInTimeToo) {
    expectNoAnswer([](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 100000\r\n\r\n");
        auto* drip = new QTimer(&socket);
        QObject::connect(drip, &QTimer::timeout, &socket, [&socket] { socket.write(" "); });
        drip->start(20);
    });
}

TEST_F(ModelServerTest, AClosedConnectionIsNoAnswer) {
    expectNoAnswer([](QTcpSocket& socket) { socket.disconnectFromHost(); });
    expectNoAnswer([](QTcpSocket& socket) { socket.abort(); });
    expectNoAnswer([](QTcpSocket& socket) {
        const QByteArray whole = completion(goodAnswer);
        socket.write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: " +
                     QByteArray::number(whole.size()) + "\r\n\r\n" + whole.left(whole.size() / 2));
        socket.disconnectFromHost();
    });
    expectNoAnswer([](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nTransfer-Encoding: chunked\r\n\r\n"
                     "40\r\n{\"choices\"");
        socket.disconnectFromHost();
    });
    expectNoAnswer([](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Type: appli");
        socket.disconnectFromHost();
    });
}

/// How much is taken of an answer that is too long: what the system's buffers hold, and no more.
constexpr long mostTaken = 16 << 20;

TEST_F(ModelServerTest, AnAnswerWithoutEndIsCutOff) {
    long pieces = 0;
    const QByteArray piece(1 << 16, ' ');
    expectNoAnswer([&](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n\r\n");
        HostileServer::sendForever(socket, piece, &pieces);
    });
    EXPECT_GT(pieces * piece.size(), 1 << 18);
    EXPECT_LT(pieces * piece.size(), mostTaken);
}

TEST_F(ModelServerTest, AGigabyteInChunksIsCutOff) {
    long pieces = 0;
    const QByteArray piece = "10000\r\n" + QByteArray(1 << 16, '[') + "\r\n";
    expectNoAnswer([&](QTcpSocket& socket) {
        socket.write(
            "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nTransfer-Encoding: chunked\r\n\r\n");
        HostileServer::sendForever(socket, piece, &pieces);
    });
    EXPECT_LT(pieces * piece.size(), mostTaken);
}

TEST_F(ModelServerTest, AnAnnouncedGigabyteIsNotRead) {
    long pieces = 0;
    const QByteArray piece(1 << 16, ' ');
    expectNoAnswer([&](QTcpSocket& socket) {
        socket.write(
            "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 1000000000\r\n\r\n");
        HostileServer::sendForever(socket, piece, &pieces);
    });
    EXPECT_LT(pieces * piece.size(), mostTaken);
}

TEST_F(ModelServerTest, AHeadWithoutEndIsCutOff) {
    long pieces = 0;
    expectNoAnswer([&](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\n");
        HostileServer::sendForever(socket, "X-More: " + QByteArray(1000, 'x') + "\r\n", &pieces);
    });
    EXPECT_LT(pieces * 1000, mostTaken);
}

TEST_F(ModelServerTest, AListOfModelsWithoutEndMeansUnavailable) {
    long pieces = 0;
    HostileServer server([&](QTcpSocket& socket, const HeardRequest&) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n\r\n");
        HostileServer::sendForever(socket, QByteArray(1 << 16, ' '), &pieces);
    });
    ModelServer model(server.address(), hasty());
    EXPECT_EQ(availabilityOf(loop, model), ModelAvailability::unavailable);
}

TEST_F(ModelServerTest, AnotherContentTypeIsNoAnswer) {
    for (const char* type : {"text/html", "text/plain", "application/jsonp", "application/octet-stream", ""})
        expectNoAnswer([type](QTcpSocket& socket) {
            HostileServer::send(socket, completion(goodAnswer), "200 OK", type);
        });
}

TEST_F(ModelServerTest, AnotherStatusIsNoAnswer) {
    for (const char* status : {"201 Created", "204 No Content", "206 Partial", "400 Bad", "401 Who",
                               "404 Not Found", "407 Proxy", "429 Later", "500 Broken", "503 Busy"})
        expectNoAnswer(
            [status](QTcpSocket& socket) { HostileServer::send(socket, completion(goodAnswer), status); });
}

TEST_F(ModelServerTest, NoHttpAtAllIsNoAnswer) {
    expectNoAnswer([](QTcpSocket& socket) { socket.write("220 mail.example.com ready\r\n"); });
    expectNoAnswer([](QTcpSocket& socket) { socket.write(QByteArray(100'000, '\0')); });
    expectNoAnswer([](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nTransfer-Encoding: chunked\r\n\r\n"
                     "zz\r\n" +
                     completion(goodAnswer) + "\r\n0\r\n\r\n");
    });
}

TEST_F(ModelServerTest, ADocumentOfAnotherFormIsNoAnswer) {
    expectNoAnswer([](QTcpSocket& socket) { HostileServer::send(socket, R"({"hello":"world"})"); });
    expectNoAnswer([](QTcpSocket& socket) {
        HostileServer::send(socket, "{\"choices\":[{\"message\":{\"content\":\"\xff\xfe\"}}]}");
    });
    expectNoAnswer([](QTcpSocket& socket) {
        HostileServer::send(socket, QByteArray(200'000, '[')); // deep
    });
}

TEST_F(ModelServerTest, AnAnswerOfTheLargestSizeIsReadAndALargerOneIsNot) {
    const qsizetype most = ModelServer::Limits().answer.bytes;
    QByteArray whole = completion(goodAnswer);
    whole += QByteArray(most - whole.size(), ' ');
    EXPECT_EQ(askServerThat([&](QTcpSocket& socket) { HostileServer::send(socket, whole); }).answer,
              goodAnswer);
    expectNoAnswer([&](QTcpSocket& socket) { HostileServer::send(socket, whole + " "); });
}

TEST_F(ModelServerTest, CancellingClosesTheConnectionAtOnce) {
    HostileServer server(answeringWith([](QTcpSocket&) {}));
    ModelServer model(server.address());
    Asked asked;
    const auto task = spawn(loop.context(), [&] { return askInto(model, sampleRequest("Who?"), asked); });
    ASSERT_TRUE(loop.turnUntil([&] { return server.questions() == 1; }));
    const int closedBefore = server.closed();
    task.cancel();
    // Long before the minute that an answer may take.
    ASSERT_TRUE(loop.turnUntil([&] { return task.done() && server.closed() > closedBefore; }));
    EXPECT_TRUE(asked.cancelled);
}

TEST_F(ModelServerTest, CancellingWhileItIsAskedForItsModelsIsPassedOn) {
    HostileServer server([](QTcpSocket&, const HeardRequest&) {});
    ModelServer model(server.address());
    Asked asked;
    const auto task = spawn(loop.context(), [&] { return askInto(model, sampleRequest("Who?"), asked); });
    ASSERT_TRUE(loop.turnUntil([&] { return server.requests().size() == 1; }));
    task.cancel();
    ASSERT_TRUE(loop.turnUntil([&] { return task.done() && server.closed() == 1; }));
    EXPECT_TRUE(asked.cancelled);
}

TEST_F(ModelServerTest, ATaskThatIsCancelledAlreadyGetsNoAnswer) {
    HostileServer server(right());
    ModelServer model(server.address());
    Asked asked;
    TaskHandle<void> task;
    bool isHeld = true;
    task = spawn(loop.context(), [&]() -> Task<void> {
        // Ends its wait early and goes on as a cancelled task.
        try {
            co_await sleepFor(1h);
        } catch (const Cancelled&) {
            isHeld = false;
        }
        co_await askInto(model, sampleRequest("Who?"), asked);
    });
    task.cancel();
    ASSERT_TRUE(loop.turnUntil([&] { return task.done(); }));
    EXPECT_FALSE(isHeld);
    EXPECT_TRUE(asked.cancelled);
    EXPECT_EQ(server.questions(), 0);
}

TEST_F(ModelServerTest, TwoQuestionsAreOnTheirWayAtOnce) {
    std::vector<QTcpSocket*> waiting;
    HostileServer server(answeringWith([&](QTcpSocket& socket) { waiting.push_back(&socket); }));
    ModelServer model(server.address());
    Asked first;
    Asked second;
    const auto one = spawn(loop.context(), [&] { return askInto(model, sampleRequest("1"), first); });
    const auto two = spawn(loop.context(), [&] { return askInto(model, sampleRequest("2"), second); });
    ASSERT_TRUE(loop.turnUntil([&] { return waiting.size() == 2; }));
    one.cancel();
    HostileServer::send(*waiting[1], completion("late"));
    HostileServer::send(*waiting[0], completion("late"));
    ASSERT_TRUE(loop.turnUntil([&] { return one.done() && two.done(); }));
    EXPECT_TRUE(first.cancelled);
    EXPECT_EQ(second.answer, "late");
}

} // namespace
} // namespace vesko
