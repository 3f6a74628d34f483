#pragma once
#include "base/UserDefaults.h"
#include "ui/WindowModel.h"
#include <QList>
#include <QObject>
#include <QRect>
#include <QTimer>
#include <QVariantMap>
#include <QWindow>
#include <optional>

namespace vesko {

/// Remembers how large the main window is, where it stands and how wide its sidebar is, from one start to the
/// next. Main thread.
///
/// In the preferences: "vesko.window.width", "vesko.window.height", "vesko.window.x", "vesko.window.y"
/// (integers, of the window when it is not maximized), "vesko.window.maximized" (boolean) and
/// "vesko.window.sidebarWidth" (integer). A value that cannot be is passed over, alone: one smaller than the
/// smallest window, larger than all screens together, a place on no screen.
class WindowMemory : public QObject {
    Q_OBJECT

public:
    /// How long a change waits for others, so that dragging an edge does not write at each step.
    static constexpr int quietMilliseconds = 400;

    /// Takes what is remembered of the sidebar over into `shell`. Both must outlive this.
    WindowMemory(UserDefaults& defaults, WindowModel& shell, QObject* parent = nullptr);

    /// What the window begins with, as its properties: "width" and "height", "x" and "y" where they lie on
    /// one of these screens, "visibility" where it was maximized. Empty where nothing is remembered.
    QVariantMap initialProperties(const QList<QRect>& screens) const;
    /// Follows the window from now on; what is still to be kept is kept when it closes.
    void follow(QWindow& window);
    /// Keeps what has changed now.
    void keep();

private:
    std::optional<int> remembered(const char* key, int least, int most) const;
    void noteChange();

    UserDefaults& defaults_;
    WindowModel& shell_;
    QWindow* window_ = nullptr;
    QTimer quiet_;
};

} // namespace vesko
