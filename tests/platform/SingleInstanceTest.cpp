#include "platform/qt/SingleInstance.h"

#include "platform/PrivateBus.h"
#include "platform/QtLoop.h"
#include "platform/ScriptedBusObject.h"
#include <gtest/gtest.h>
#include <optional>
#include <thread>

namespace vesko {
namespace {

using testing::PrivateBus;
using testing::QtLoop;
using testing::ScriptedBusObject;

const QString name = QStringLiteral("org.vesko.Vesko");
const QString place = QStringLiteral("/org/vesko/Vesko");

class SingleInstanceTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (bus_.address().isEmpty()) GTEST_SKIP() << "no dbus-daemon";
    }

    QtLoop loop_;
    PrivateBus bus_;
    SingleInstance first_;
    SingleInstance second_;
};

TEST_F(SingleInstanceTest, ASecondStartAsksTheFirstToShowItself) {
    int raised = 0;
    QObject::connect(&first_, &SingleInstance::raiseRequested, &first_, [&] { ++raised; });
    ASSERT_TRUE(first_.claimOn(bus_.connection()));
    // The second one waits in its own process; here both share a thread, so it is played on another.
    std::optional<bool> claimed;
    QDBusConnection connection = bus_.connection();
    std::thread other([&] { claimed = SingleInstance().claimOn(connection); });
    EXPECT_TRUE(loop_.until([&] { return raised == 1; }));
    other.join();
    EXPECT_EQ(claimed, false);
}

TEST_F(SingleInstanceTest, AFirstOneThatHangsDoesNotHoldTheSecondForLong) {
    const ScriptedBusObject hanging(bus_.connection(), name, place); // never answers
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(second_.claimOn(bus_.connection()));
    EXPECT_LT(timer.elapsed(), 10'000);
}

TEST_F(SingleInstanceTest, AFirstOneThatCrashedDoesNotBlockTheNext) {
    {
        PrivateBus& bus = bus_;
        QDBusConnection dying = bus.connection();
        ASSERT_TRUE(first_.claimOn(dying));
        QDBusConnection::disconnectFromBus(dying.name());
    }
    EXPECT_TRUE(second_.claimOn(bus_.connection()));
}

TEST_F(SingleInstanceTest, WithoutABusOrWithOneThatHangsEveryStartIsTheFirst) {
    EXPECT_TRUE(first_.claimOn(QDBusConnection(QStringLiteral("a bus that nobody has"))));
    QDBusConnection connection = bus_.connection();
    bus_.stop();
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(second_.claimOn(connection));
    EXPECT_LT(timer.elapsed(), 10'000);
    bus_.resume();
}

} // namespace
} // namespace vesko
