// Runs tests that need the toolkit's application object, on a display that nobody sees.
#include <QGuiApplication>
#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
