#include "ui/WindowMemory.h"
#include "support/MemoryUserDefaults.h"
#include <QGuiApplication>
#include <QTest>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace testing;

/// Counts what is set.
class CountingDefaults final : public MemoryUserDefaults {
public:
    void setInteger(std::string_view key, std::int64_t value) override {
        ++writes;
        MemoryUserDefaults::setInteger(key, value);
    }
    void setBoolean(std::string_view key, bool value) override {
        ++writes;
        MemoryUserDefaults::setBoolean(key, value);
    }
    int writes = 0;
};

class AWindowMemory : public ::testing::Test {
protected:
    void remember(int x, int y, int width, int height) {
        defaults.setInteger("vesko.window.x", x);
        defaults.setInteger("vesko.window.y", y);
        defaults.setInteger("vesko.window.width", width);
        defaults.setInteger("vesko.window.height", height);
    }
    QVariantMap begins() { return WindowMemory(defaults, shell).initialProperties(screens); }
    static QVariantMap sized(int width, int height) { return {{"width", width}, {"height", height}}; }
    static QVariantMap placed(int x, int y, int width, int height) {
        return {{"x", x}, {"y", y}, {"width", width}, {"height", height}};
    }

    CountingDefaults defaults;
    WindowModel shell{{.accessTest = [] { return true; }, .openAccessSettings = {}}};
    QList<QRect> screens{QRect(0, 0, 1920, 1080), QRect(1920, 0, 1280, 1024)};
};

TEST_F(AWindowMemory, OfNothingChangesNothing) {
    EXPECT_EQ(begins(), QVariantMap());
    EXPECT_EQ(shell.sidebarWidth(), 220);
    EXPECT_EQ(defaults.writes, 0);
}

TEST_F(AWindowMemory, BringsSizeAndPlaceBack) {
    remember(1950, 40, 1000, 700);
    EXPECT_EQ(begins(), placed(1950, 40, 1000, 700));
}

TEST_F(AWindowMemory, AWindowThatNoScreenShowsKeepsItsSizeAlone) {
    const QRect places[] = {{5000, 40, 1000, 700}, {-980, 40, 1000, 700}, {40, -200, 1000, 700},
                            {40, 1070, 1000, 700}, {3150, 40, 1000, 700}, {1950, 1030, 1000, 700}};
    for (const QRect& place : places) {
        remember(place.x(), place.y(), place.width(), place.height());
        EXPECT_EQ(begins(), sized(1000, 700)) << place.x() << ' ' << place.y();
    }
    remember(40, 40, 1000, 700);
    screens.clear();
    EXPECT_EQ(begins(), QVariantMap()) << "no screen at all";
}

TEST_F(AWindowMemory, ASizeThatCannotBeIsPassedOver) {
    const QSize sizes[] = {{899, 700}, {1000, 599}, {0, 0}, {-1000, -700}, {3201, 700}, {1000, 1081}};
    for (const QSize& size : sizes) {
        remember(40, 40, size.width(), size.height());
        EXPECT_EQ(begins(), QVariantMap()) << size.width() << ' ' << size.height();
    }
    remember(40, 40, 900, 600);
    EXPECT_EQ(begins(), placed(40, 40, 900, 600));
}

TEST_F(AWindowMemory, ValuesOfAnotherTypeArePassedOver) {
    defaults.setString("vesko.window.width", "wide");
    defaults.setInteger("vesko.window.height", 700);
    defaults.setString("vesko.window.maximized", "yes");
    defaults.setInteger("vesko.window.sidebarWidth", std::int64_t{1} << 40);
    EXPECT_EQ(begins(), QVariantMap());
    EXPECT_EQ(shell.sidebarWidth(), 220);
}

TEST_F(AWindowMemory, AMaximizedWindowComesBackMaximizedWithItsSizeBeneath) {
    remember(40, 40, 1000, 700);
    defaults.setBoolean("vesko.window.maximized", true);
    QVariantMap wanted = placed(40, 40, 1000, 700);
    wanted.insert("visibility", QVariant::fromValue(QWindow::Maximized));
    EXPECT_EQ(begins(), wanted);
}

TEST_F(AWindowMemory, TheSidebarsWidthComesBackWithinItsBounds) {
    for (const auto& [kept, shown] : {std::pair(200, 200), {260, 260}, {199, 220}, {261, 220}, {-5, 220}}) {
        WindowModel fresh({.accessTest = [] { return true; }, .openAccessSettings = {}});
        defaults.setInteger("vesko.window.sidebarWidth", kept);
        const WindowMemory memory(defaults, fresh);
        EXPECT_EQ(fresh.sidebarWidth(), shown) << kept;
    }
}

TEST_F(AWindowMemory, KeepsAChangeOnceItIsQuiet) {
    WindowMemory memory(defaults, shell);
    QWindow window;
    window.setGeometry(30, 30, 1000, 700);
    memory.follow(window);
    for (int step = 0; step < 50; ++step) {
        window.resize(1000 + step, 700);
        shell.setSidebarWidth(200 + step);
    }
    EXPECT_EQ(defaults.writes, 0) << "not while it is being dragged";
    ASSERT_TRUE(QTest::qWaitFor([&] { return defaults.writes > 0; }, 5000));
    EXPECT_EQ(defaults.integer("vesko.window.width"), 1049);
    EXPECT_EQ(defaults.integer("vesko.window.height"), 700);
    EXPECT_EQ(defaults.integer("vesko.window.x"), 30);
    EXPECT_EQ(defaults.integer("vesko.window.y"), 30);
    EXPECT_EQ(defaults.integer("vesko.window.sidebarWidth"), 249);
    EXPECT_EQ(defaults.boolean("vesko.window.maximized"), false);
    const int writes = defaults.writes;
    EXPECT_EQ(writes, 6);
    memory.keep();
    EXPECT_EQ(defaults.writes, writes) << "what stands there already is not written again";
}

TEST_F(AWindowMemory, KeepsWhatIsStillWaitingWhenTheWindowCloses) {
    WindowMemory memory(defaults, shell);
    QWindow window;
    window.setGeometry(30, 30, 1000, 700);
    window.show();
    memory.follow(window);
    window.resize(1200, 800);
    QCoreApplication::processEvents();
    EXPECT_EQ(defaults.writes, 0);
    window.close();
    EXPECT_EQ(defaults.integer("vesko.window.width"), 1200);
    EXPECT_EQ(defaults.integer("vesko.window.height"), 800);
}

TEST_F(AWindowMemory, AMaximizedWindowKeepsTheSizeFromBefore) {
    WindowMemory memory(defaults, shell);
    QWindow window;
    window.setGeometry(30, 30, 1000, 700);
    window.show();
    memory.follow(window);
    memory.keep();
    window.showMaximized();
    QCoreApplication::processEvents();
    memory.keep();
    EXPECT_EQ(defaults.boolean("vesko.window.maximized"), true);
    EXPECT_EQ(defaults.integer("vesko.window.width"), 1000);
    EXPECT_EQ(defaults.integer("vesko.window.height"), 700);
    window.showNormal();
    QCoreApplication::processEvents();
    memory.keep();
    EXPECT_EQ(defaults.boolean("vesko.window.maximized"), false);
}

} // namespace
} // namespace vesko
