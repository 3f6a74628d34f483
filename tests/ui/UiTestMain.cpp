// Runs the window's tests in a real application object, on a display that nobody sees. Every warning of the
// toolkit fails the test in which it came: a binding that fails at run time says so only there.
#include "base/StringCatalog.h"
#include <QAccessible>
#include <QGuiApplication>
#include <QStringList>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

QStringList& warnings() {
    static QStringList list;
    return list;
}

void note(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtDebugMsg || type == QtInfoMsg) return;
    if (message.startsWith(QStringLiteral("QStandardPaths:"))) return; // of the machine, not of the window
    warnings().append(message);
}

class WarningsFail : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override {
        warnings().clear();
        vesko::setCurrentLanguage(vesko::Language::english);
    }
    void OnTestEnd(const testing::TestInfo&) override {
        for (const QString& warning : warnings()) ADD_FAILURE() << "warning: " << warning.toStdString();
    }
};

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("HOME", "/home/someone"); // so that paths read the same everywhere
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QGuiApplication application(argc, argv);
    QAccessible::setActive(true);
    qInstallMessageHandler(note);
    testing::UnitTest::GetInstance()->listeners().Append(new WarningsFail);
    return RUN_ALL_TESTS();
}
