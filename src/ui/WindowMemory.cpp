#include "ui/WindowMemory.h"
#include <algorithm>

namespace vesko {

namespace {

constexpr const char* widthKey = "vesko.window.width";
constexpr const char* heightKey = "vesko.window.height";
constexpr const char* xKey = "vesko.window.x";
constexpr const char* yKey = "vesko.window.y";
constexpr const char* maximizedKey = "vesko.window.maximized";
constexpr const char* sidebarKey = "vesko.window.sidebarWidth";

constexpr QSize smallest(900, 600);
/// Of a window's upper edge, so much has to lie on a screen for it to be moved by hand.
constexpr QSize grip(120, 32);

bool canBeReached(const QRect& window, const QList<QRect>& screens) {
    const QRect edge(window.x(), window.y(), window.width(), grip.height());
    return std::any_of(screens.begin(), screens.end(), [&](const QRect& screen) {
        const QRect seen = edge & screen;
        return seen.width() >= grip.width() && seen.height() >= grip.height();
    });
}

// What stands there already costs no writing.
void put(UserDefaults& defaults, const char* key, int value) {
    if (defaults.integer(key) != value) defaults.setInteger(key, value);
}

} // namespace

WindowMemory::WindowMemory(UserDefaults& defaults, WindowModel& shell, QObject* parent)
    : QObject(parent), defaults_(defaults), shell_(shell) {
    quiet_.setSingleShot(true);
    quiet_.setInterval(quietMilliseconds);
    connect(&quiet_, &QTimer::timeout, this, &WindowMemory::keep);
    if (const auto width = remembered(sidebarKey, WindowModel::narrowestSidebar, WindowModel::widestSidebar))
        shell.setSidebarWidth(*width);
    connect(&shell, &WindowModel::sidebarWidthChanged, this, &WindowMemory::noteChange);
}

std::optional<int> WindowMemory::remembered(const char* key, int least, int most) const {
    const std::optional<std::int64_t> value = defaults_.integer(key);
    if (!value || *value < least || *value > most) return std::nullopt;
    return static_cast<int>(*value);
}

QVariantMap WindowMemory::initialProperties(const QList<QRect>& screens) const {
    QRect all;
    for (const QRect& screen : screens) all |= screen;
    QVariantMap properties;
    const auto width = remembered(widthKey, smallest.width(), std::max(all.width(), smallest.width()));
    const auto height = remembered(heightKey, smallest.height(), std::max(all.height(), smallest.height()));
    if (width && height) {
        properties.insert(QStringLiteral("width"), *width);
        properties.insert(QStringLiteral("height"), *height);
        const auto x = remembered(xKey, all.left(), all.right());
        const auto y = remembered(yKey, all.top(), all.bottom());
        if (x && y && canBeReached(QRect(*x, *y, *width, *height), screens)) {
            properties.insert(QStringLiteral("x"), *x);
            properties.insert(QStringLiteral("y"), *y);
        }
    }
    if (defaults_.boolean(maximizedKey).value_or(false))
        properties.insert(QStringLiteral("visibility"), QVariant::fromValue(QWindow::Maximized));
    return properties;
}

void WindowMemory::follow(QWindow& window) {
    window_ = &window;
    connect(&window, &QObject::destroyed, this, [this] { window_ = nullptr; });
    connect(&window, &QWindow::widthChanged, this, &WindowMemory::noteChange);
    connect(&window, &QWindow::heightChanged, this, &WindowMemory::noteChange);
    connect(&window, &QWindow::xChanged, this, &WindowMemory::noteChange);
    connect(&window, &QWindow::yChanged, this, &WindowMemory::noteChange);
    connect(&window, &QWindow::windowStateChanged, this, &WindowMemory::noteChange);
    connect(&window, &QWindow::visibleChanged, this, [this](bool visible) {
        if (!visible) keep();
    });
}

void WindowMemory::noteChange() { quiet_.start(); }

void WindowMemory::keep() {
    quiet_.stop();
    put(defaults_, sidebarKey, shell_.sidebarWidth());
    if (!window_) return;
    const Qt::WindowStates states = window_->windowStates();
    if (states & (Qt::WindowMinimized | Qt::WindowFullScreen)) return;
    const bool maximized = states & Qt::WindowMaximized;
    if (defaults_.boolean(maximizedKey) != maximized) defaults_.setBoolean(maximizedKey, maximized);
    // The size to go back to is that from before; the system keeps it while the window is maximized.
    if (maximized) return;
    put(defaults_, widthKey, window_->width());
    put(defaults_, heightKey, window_->height());
    put(defaults_, xKey, window_->x());
    put(defaults_, yKey, window_->y());
}

} // namespace vesko
