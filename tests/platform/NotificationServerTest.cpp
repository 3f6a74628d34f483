// With a notification server of the system's packages (dunst), on a bus and a display of the test's own.
#include "platform/qt/DesktopNotifications.h"

#include "background/NotificationService.h"
#include "base/StringCatalog.h"
#include "platform/PrivateBus.h"
#include "platform/QtLoop.h"
#include "support/LanguageScope.h"
#include <QDBusArgument>
#include <QDBusMessage>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

namespace vesko {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using testing::PrivateBus;
using testing::QtLoop;

const QString name = QStringLiteral("org.freedesktop.Notifications");
const QString place = QStringLiteral("/org/freedesktop/Notifications");

class NotificationServerTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* program : {"dbus-daemon", "Xvfb", "dunst"})
            if (QStandardPaths::findExecutable(QString::fromLatin1(program)).isEmpty())
                GTEST_SKIP() << program << " is not installed";
        display_.start(QStringLiteral("Xvfb"),
                       {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                        QStringLiteral("0"), QStringLiteral("800x600x24")});
        ASSERT_TRUE(display_.waitForReadyRead(10'000)) << display_.readAllStandardError().toStdString();
        while (!display_.canReadLine()) ASSERT_TRUE(display_.waitForReadyRead(10'000));
        displayName_ = QStringLiteral(":") + QString::fromLatin1(display_.readLine()).trimmed();
        startServer("full");
        center_ = std::make_shared<DesktopNotifications>(
            bus_.connection(),
            DesktopNotifications::Program{.name = QStringLiteral("Vesko"),
                                          .desktopEntry = QStringLiteral("vesko"),
                                          .icon = QStringLiteral("vesko")},
            [this] { ++clicks_; });
        ASSERT_TRUE(loop_.until([this] { return status() == NotificationCenter::authorized; }));
    }
    void TearDown() override {
        for (QProcess* process : {&server_, &display_}) {
            process->kill();
            process->waitForFinished(5000);
        }
    }

    /// `markup`: whether the server takes the texts as marked up ("full") or as they are ("no").
    void startServer(const char* markup) {
        QFile file(folder_.filePath(QStringLiteral("dunstrc")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("[global]\nmarkup = ") + markup + "\n");
        file.close();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), displayName_);
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus_.address());
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        server_.setProcessEnvironment(environment);
        server_.start(QStringLiteral("dunst"), {QStringLiteral("-conf"), file.fileName()});
    }
    void endServer() {
        server_.kill();
        server_.waitForFinished(5000);
    }
    int status() {
        return loop_.run([this] { return center_->authorizationStatus(); }).value_or(-1);
    }
    void deliver(NotificationAlertKind kind) {
        NotificationService service(center_);
        const auto done = loop_.run([&]() -> Task<int> { return delivered(service, kind); });
        ASSERT_TRUE(done);
    }
    static Task<int> delivered(NotificationService& service, NotificationAlertKind kind) {
        co_await service.deliver(kind, 4'200'000'000, 12'300'000'000);
        co_return 1;
    }
    /// What is only for the one at the machine to do.
    QDBusMessage tell(const QString& method, const QVariantList& arguments = {}) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(name, place, QStringLiteral("org.dunstproject.cmd0"), method);
        message.setArguments(arguments);
        return hand_.call(message, QDBus::BlockWithGui, 5000);
    }
    /// What has been shown and put away.
    QList<QVariantMap> history() {
        tell(QStringLiteral("NotificationCloseAll"));
        QList<QVariantMap> found;
        loop_.until([&] {
            const QDBusMessage answer = tell(QStringLiteral("NotificationListHistory"));
            found = answer.arguments().isEmpty() ? QList<QVariantMap>()
                                                 : qdbus_cast<QList<QVariantMap>>(answer.arguments().first());
            return !found.isEmpty();
        });
        return found;
    }

    QtLoop loop_;
    PrivateBus bus_;
    QDBusConnection hand_ = bus_.connection();
    QTemporaryDir folder_;
    QProcess display_;
    QProcess server_;
    QString displayName_;
    std::shared_ptr<DesktopNotifications> center_;
    int clicks_ = 0;
    testing::LanguageScope language_{Language::portuguese};
};

TEST_F(NotificationServerTest, ShowsWhatAFinishedScanTells) {
    deliver(NotificationAlertKind::lowSpace);
    const QList<QVariantMap> shown = history();
    ASSERT_EQ(shown.size(), 1);
    const auto text = [&](const char* key) {
        return shown[0].value(QString::fromLatin1(key)).toString().toStdString();
    };
    EXPECT_EQ(text("appname"), "Vesko");
    EXPECT_EQ(text("summary"), "Pouco espaço livre");
    EXPECT_EQ(text("body"), "Restam só 4,2 GB no seu disco. Abra o Vesko para ver o que pode sair.");
}

TEST_F(NotificationServerTest, ShowsMarkupAsItIsWritten) {
    for (const char* markup : {"full", "no"}) {
        SCOPED_TRACE(markup);
        endServer();
        startServer(markup);
        ASSERT_TRUE(loop_.until([this] { return status() == NotificationCenter::authorized; }));
        const std::string body = "<b>1 < 2</b> & <i>3";
        loop_.run([this, body] { return center_->add({.identifier = "i", .title = "t", .body = body}); });
        const QList<QVariantMap> shown = history();
        ASSERT_EQ(shown.size(), 1);
        // What the server draws, in the form that its text library reads.
        EXPECT_THAT(shown[0].value(QStringLiteral("message")).toString().toStdString(),
                    HasSubstr("&lt;b&gt;1 &lt; 2&lt;/b&gt; &amp; &lt;i&gt;3"));
    }
}

TEST_F(NotificationServerTest, AClickIsTold) {
    deliver(NotificationAlertKind::scanCompleted);
    tell(QStringLiteral("NotificationAction"), {0U});
    EXPECT_TRUE(loop_.until([this] { return clicks_ == 1; }));
}

TEST_F(NotificationServerTest, AServerThatIsKilledIsMissedAndAnotherOneTakesItsPlace) {
    endServer();
    EXPECT_EQ(status(), NotificationCenter::denied);
    deliver(NotificationAlertKind::lowSpace);
    startServer("full");
    EXPECT_TRUE(loop_.until([this] { return status() == NotificationCenter::authorized; }));
    deliver(NotificationAlertKind::largeNewOpportunity);
    EXPECT_EQ(history().size(), 1);
}

} // namespace
} // namespace vesko
