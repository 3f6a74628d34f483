#include "platform/qt/DesktopNotifications.h"

#include "base/StringCatalog.h"
#include "platform/PrivateBus.h"
#include "platform/QtLoop.h"
#include "platform/ScriptedBusObject.h"
#include "support/LanguageScope.h"
#include <QDBusArgument>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

namespace vesko {
namespace {

using namespace std::chrono_literals;
using testing::PrivateBus;
using testing::QtLoop;
using testing::ScriptedBusObject;
using Status = NotificationCenter::AuthorizationStatus;

const QString server = QStringLiteral("org.freedesktop.Notifications");
const QString place = QStringLiteral("/org/freedesktop/Notifications");

class DesktopNotificationsTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (bus_.address().isEmpty()) GTEST_SKIP() << "no dbus-daemon";
        center_ = centerOn(bus_.connection());
    }

    std::shared_ptr<DesktopNotifications> centerOn(QDBusConnection connection) {
        return std::make_shared<DesktopNotifications>(
            std::move(connection),
            DesktopNotifications::Program{.name = QStringLiteral("Vesko"),
                                          .desktopEntry = QStringLiteral("vesko"),
                                          .icon = QStringLiteral("vesko")},
            [this] { ++clicks_; });
    }
    std::unique_ptr<ScriptedBusObject> startServer(const QStringList& capabilities) {
        auto object = std::make_unique<ScriptedBusObject>(bus_.connection(), server, place);
        object->answers[QStringLiteral("GetCapabilities")] = ScriptedBusObject::with({capabilities});
        object->answers[QStringLiteral("Notify")] = ScriptedBusObject::with({7U});
        return object;
    }
    int status() {
        return loop_.run([this] { return center_->authorizationStatus(); }).value_or(-1);
    }
    bool show(const std::string& title = "title", const std::string& body = "body") {
        return loop_
            .run([this, title, body] {
                return center_->add({.identifier = "id", .title = title, .body = body});
            })
            .value();
    }

    QtLoop loop_;
    PrivateBus bus_;
    std::shared_ptr<DesktopNotifications> center_;
    int clicks_ = 0;
    testing::LanguageScope language_{Language::english};
};

TEST_F(DesktopNotificationsTest, AuthorizedWhereAServerAnswers) {
    const auto object = startServer({});
    EXPECT_EQ(status(), Status::authorized);
    const auto answer = loop_.run([this] { return center_->requestAuthorization(6); });
    ASSERT_TRUE(answer);
    EXPECT_TRUE(answer->granted);
    EXPECT_FALSE(answer->failed);
}

TEST_F(DesktopNotificationsTest, DeniedWithoutAServer) {
    EXPECT_EQ(status(), Status::denied);
    const auto answer = loop_.run([this] { return center_->requestAuthorization(6); });
    EXPECT_FALSE(answer.value().granted);
    EXPECT_FALSE(show());
}

TEST_F(DesktopNotificationsTest, DeniedWithoutABus) {
    center_ = centerOn(QDBusConnection(QStringLiteral("a bus that nobody has")));
    EXPECT_EQ(status(), Status::denied);
    EXPECT_FALSE(show());
}

TEST_F(DesktopNotificationsTest, AServerThatComesLaterCounts) {
    EXPECT_EQ(status(), Status::denied);
    const auto object = startServer({});
    EXPECT_EQ(status(), Status::authorized);
    EXPECT_TRUE(show());
}

TEST_F(DesktopNotificationsTest, AServerThatNeverAnswersIsWaitedForTwoSecondsAndTheLoopRunsOn) {
    const ScriptedBusObject object(bus_.connection(), server, place);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(status(), Status::denied);
    EXPECT_EQ(object.count(QStringLiteral("GetCapabilities")), 1);
    EXPECT_GE(timer.elapsed(), 1500); // the toolkit's timers may be early
    EXPECT_LT(timer.elapsed(), 10'000);
    EXPECT_FALSE(show());
    EXPECT_LT(loop_.longestStandstill(), 500ms);
}

TEST_F(DesktopNotificationsTest, ABusThatHangsIsWaitedForTwoSecondsAndTheLoopRunsOn) {
    const auto object = startServer({});
    EXPECT_EQ(status(), Status::authorized);
    bus_.stop();
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(show());
    EXPECT_EQ(status(), Status::denied);
    EXPECT_LT(timer.elapsed(), 15'000);
    EXPECT_LT(loop_.longestStandstill(), 500ms);
    bus_.resume();
    EXPECT_TRUE(loop_.until([this] { return status() == Status::authorized; }));
}

TEST_F(DesktopNotificationsTest, ABusThatGoesAwayInMidCallCountsAsDenied) {
    ScriptedBusObject object(bus_.connection(), server, place);
    object.answers[QStringLiteral("GetCapabilities")] = [this](const QDBusMessage& call) {
        bus_.kill();
        return call.createReply();
    };
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(status(), Status::denied);
    EXPECT_EQ(object.count(QStringLiteral("GetCapabilities")), 1);
    EXPECT_LT(timer.elapsed(), 10'000);
    EXPECT_FALSE(show());
    EXPECT_EQ(status(), Status::denied);
}

TEST_F(DesktopNotificationsTest, CapabilitiesThatMakeNoSenseCountAsDenied) {
    const auto object = startServer({});
    const QString method = QStringLiteral("GetCapabilities");
    const QList<ScriptedBusObject::Script> answers{ScriptedBusObject::error(), ScriptedBusObject::with({}),
                                                   ScriptedBusObject::with({42}),
                                                   ScriptedBusObject::with({QStringLiteral("body-markup")})};
    for (const auto& answer : answers) {
        object->answers[method] = answer;
        EXPECT_EQ(status(), Status::denied);
    }
    EXPECT_EQ(object->count(method), 4);
}

TEST_F(DesktopNotificationsTest, AnAnswerWithoutANumberIsAFailure) {
    const auto object = startServer({});
    for (const auto& answer : {ScriptedBusObject::error(), ScriptedBusObject::with({QStringLiteral("7")}),
                               ScriptedBusObject::with({}), ScriptedBusObject::with({0U})}) {
        object->answers[QStringLiteral("Notify")] = answer;
        EXPECT_FALSE(show());
    }
    EXPECT_EQ(object->count(QStringLiteral("Notify")), 4);
}

TEST_F(DesktopNotificationsTest, TellsWhoSpeaksAndWhatWithoutTakingAnOthersPlace) {
    const auto object = startServer({});
    ASSERT_EQ(status(), Status::authorized);
    ASSERT_TRUE(show("Pouco espaço", "Restam só 4,2 GB"));
    const QVariantList said = object->last(QStringLiteral("Notify")).value();
    ASSERT_EQ(said.size(), 8);
    EXPECT_EQ(said[0].toString(), QStringLiteral("Vesko"));
    EXPECT_EQ(said[1].toUInt(), 0U);
    EXPECT_EQ(said[2].toString(), QStringLiteral("vesko"));
    EXPECT_EQ(said[3].toString(), QStringLiteral("Pouco espaço"));
    EXPECT_EQ(said[4].toString(), QStringLiteral("Restam só 4,2 GB"));
    EXPECT_EQ(said[5].toStringList(), QStringList());
    const auto hints = qdbus_cast<QVariantMap>(said[6]);
    EXPECT_EQ(hints.value(QStringLiteral("desktop-entry")).toString(), QStringLiteral("vesko"));
    EXPECT_EQ(said[7].toInt(), -1);
}

TEST_F(DesktopNotificationsTest, TheTextIsEscapedWhereMarkupIsUnderstoodAndPlainWhereNot) {
    const std::string odd = "<b>1 < 2</b> & \"more\"";
    auto object = startServer({QStringLiteral("body"), QStringLiteral("body-markup")});
    ASSERT_EQ(status(), Status::authorized);
    ASSERT_TRUE(show("A & B", odd));
    EXPECT_EQ(object->last(QStringLiteral("Notify")).value()[3].toString(), QStringLiteral("A & B"));
    EXPECT_EQ(object->last(QStringLiteral("Notify")).value()[4].toString(),
              QStringLiteral("&lt;b&gt;1 &lt; 2&lt;/b&gt; &amp; &quot;more&quot;"));
    object->answers[QStringLiteral("GetCapabilities")] = ScriptedBusObject::with({QStringList{}});
    ASSERT_EQ(status(), Status::authorized);
    ASSERT_TRUE(show("A & B", odd));
    EXPECT_EQ(object->last(QStringLiteral("Notify")).value()[4].toString().toStdString(), odd);
}

TEST_F(DesktopNotificationsTest, AClickIsOfferedWhereActionsAreUnderstood) {
    const auto object = startServer({QStringLiteral("actions")});
    ASSERT_EQ(status(), Status::authorized);
    ASSERT_TRUE(show());
    const QStringList offered{QStringLiteral("default"), QStringLiteral("Open Vesko")};
    EXPECT_EQ(object->last(QStringLiteral("Notify")).value()[5].toStringList(), offered);
}

TEST_F(DesktopNotificationsTest, AClickIsToldAndThatOnAnothersNotificationIsNot) {
    const auto object = startServer({QStringLiteral("actions")});
    ASSERT_EQ(status(), Status::authorized);
    ASSERT_TRUE(show());
    const QString invoked = QStringLiteral("ActionInvoked");
    object->emitSignal(server, invoked, {8U, QStringLiteral("default")});
    object->emitSignal(server, invoked, {7U, QStringLiteral("something")});
    object->emitSignal(server, invoked, {QStringLiteral("7")});
    object->emitSignal(server, QStringLiteral("ActivationToken"), {7U, QStringLiteral("token")});
    object->emitSignal(server, invoked, {7U, QStringLiteral("default")});
    EXPECT_TRUE(loop_.until([this] { return clicks_ > 0; }));
    object->emitSignal(server, QStringLiteral("NotificationClosed"), {7U, 2U});
    object->emitSignal(server, invoked, {7U, QStringLiteral("default")});
    object->emitSignal(server, QStringLiteral("NotificationClosed"), {9U, 2U});
    loop_.turnFor(200ms);
    EXPECT_EQ(clicks_, 1);
}

} // namespace
} // namespace vesko
