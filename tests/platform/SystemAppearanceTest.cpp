#include "platform/qt/SystemAppearance.h"

#include "platform/PrivateBus.h"
#include "platform/QtLoop.h"
#include "platform/ScriptedBusObject.h"
#include <gtest/gtest.h>
#include <memory>

namespace vesko {
namespace {

using namespace std::chrono_literals;
using testing::PrivateBus;
using testing::QtLoop;
using testing::ScriptedBusObject;

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString place = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString read = QStringLiteral("Read");

QVariant wrapped(const QVariant& value) { return QVariant::fromValue(QDBusVariant(value)); }

class SystemAppearanceTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (bus_.address().isEmpty()) GTEST_SKIP() << "no dbus-daemon";
        portal_ = std::make_unique<ScriptedBusObject>(bus_.connection(), portal, place);
        system_ = std::make_unique<SystemAppearance>(bus_.connection());
        QObject::connect(system_.get(), &SystemAppearance::changed, system_.get(), [this] { ++changes_; });
    }
    /// What the portal says of a key; of the others nothing.
    void answer(const QString& key, const QVariant& value) {
        portal_->answers[read] = [key, value](const QDBusMessage& call) {
            if (call.arguments().value(1).toString() != key)
                return call.createErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"),
                                             QString());
            return call.createReply(wrapped(wrapped(value)));
        };
    }
    void tell(const QString& space, const QString& key, const QVariant& value) {
        portal_->emitSignal(settings, QStringLiteral("SettingChanged"), {space, key, wrapped(value)});
    }

    QtLoop loop_;
    PrivateBus bus_;
    std::unique_ptr<ScriptedBusObject> portal_;
    std::unique_ptr<SystemAppearance> system_;
    int changes_ = 0;
};

TEST_F(SystemAppearanceTest, TakesTheContrastFromThePortalAndFollowsIt) {
    answer(QStringLiteral("contrast"), 1U);
    EXPECT_FALSE(system_->prefersHighContrast());
    system_->askPortal();
    EXPECT_TRUE(loop_.until([this] { return system_->prefersHighContrast(); }));
    tell(appearance, QStringLiteral("contrast"), 0U);
    EXPECT_TRUE(loop_.until([this] { return !system_->prefersHighContrast(); }));
    EXPECT_EQ(changes_, 2);
}

TEST_F(SystemAppearanceTest, FollowsTheSchemeAndTheMotionWhileRunning) {
    answer(QStringLiteral("color-scheme"), 1U);
    system_->askPortal();
    EXPECT_TRUE(loop_.until([this] { return system_->isDark(); }));
    tell(appearance, QStringLiteral("color-scheme"), 2U);
    EXPECT_TRUE(loop_.until([this] { return !system_->isDark(); }));
    tell(QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("enable-animations"), false);
    EXPECT_TRUE(loop_.until([this] { return system_->prefersReducedMotion(); }));
}

TEST_F(SystemAppearanceTest, WhatMakesNoSenseChangesNothing) {
    answer(QStringLiteral("contrast"), QStringLiteral("high"));
    system_->askPortal();
    for (const QVariant& value : {QVariant(QStringLiteral("1")), QVariant(QStringList{QStringLiteral("a")}),
                                  QVariant(true), QVariant(1.0)}) {
        tell(appearance, QStringLiteral("contrast"), value);
        tell(appearance, QStringLiteral("color-scheme"), value);
    }
    tell(appearance, QStringLiteral("contrast"), 77U);
    for (const QVariant& value : {QVariant(0U), QVariant(QStringLiteral("no")), QVariant(QStringList())})
        tell(QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("enable-animations"), value);
    tell(QStringLiteral("another.space"), QStringLiteral("contrast"), 1U);
    EXPECT_TRUE(loop_.until([this] { return portal_->count(read) == 3; }));
    loop_.turnFor(200ms);
    EXPECT_EQ(changes_, 0);
    // The signals do arrive.
    tell(appearance, QStringLiteral("contrast"), 1U);
    EXPECT_TRUE(loop_.until([this] { return changes_ == 1; }));
}

TEST_F(SystemAppearanceTest, APortalThatIsAbsentOrNeverAnswersHoldsNothingUp) {
    system_->askPortal(); // is never answered
    EXPECT_TRUE(loop_.until([this] { return portal_->count(read) == 3; }));
    portal_.reset();
    system_->askPortal();
    bus_.stop();
    system_->askPortal();
    loop_.turnFor(300ms);
    bus_.resume();
    EXPECT_LT(loop_.longestStandstill(), 500ms);
    EXPECT_EQ(changes_, 0);
    SystemAppearance alone(QDBusConnection(QStringLiteral("a bus that nobody has")));
    alone.askPortal();
    EXPECT_FALSE(alone.prefersHighContrast());
}

} // namespace
} // namespace vesko
