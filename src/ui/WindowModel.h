#pragma once
#include "ui/AppSidebarDestination.h"
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>
#include <functional>

namespace vesko {

/// What the window's frame stands on.
struct WindowModelParts {
    std::function<bool()> accessTest; ///< whether the person's files can be read
    std::function<void()> openAccessSettings;
};

/// The state of the window's frame: whether the files can be read, and which screen is shown. Main thread.
class WindowModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool hasFullDiskAccess READ hasFullDiskAccess NOTIFY accessChanged)
    Q_PROPERTY(QString selection READ selection WRITE setSelection NOTIFY selectionChanged)
    Q_PROPERTY(QVariantList destinations READ destinations CONSTANT)
    Q_PROPERTY(bool hasFrame READ hasFrame NOTIFY framed)
    Q_PROPERTY(QString freeSpace READ freeSpace NOTIFY freeSpaceChanged)
    Q_PROPERTY(int sidebarWidth READ sidebarWidth WRITE setSidebarWidth NOTIFY sidebarWidthChanged)

public:
    static constexpr int narrowestSidebar = 200;
    static constexpr int widestSidebar = 260;

    explicit WindowModel(WindowModelParts parts, QObject* parent = nullptr);

    bool hasFullDiskAccess() const { return hasAccess_; }
    /// The raw value of the destination; empty without one, which shows the home screen.
    QString selection() const { return selection_; }
    void setSelection(const QString& rawValue);
    /// Of each: "id", "label" (a catalog key), "icon".
    QVariantList destinations() const;
    QString freeSpace() const { return freeSpace_; }
    void setFreeSpace(const QString& line);
    /// Within its bounds, whatever is set.
    int sidebarWidth() const { return sidebarWidth_; }
    void setSidebarWidth(int width);

    /// Whether the window has shown its first frame; what can wait until then does.
    bool hasFrame() const { return hasFrame_; }
    Q_INVOKABLE void noteFrame();

    /// Repeats the access test; the window goes over to the screens when it finds the files readable.
    Q_INVOKABLE void checkAccess();
    Q_INVOKABLE void openAccessSettings() const;
    /// Shows the destination at this place of the sidebar, counted from 0; no such place changes nothing.
    Q_INVOKABLE void selectDestination(int index);

Q_SIGNALS:
    void accessChanged();
    void accessGranted(); ///< once each time that a missing access turns out to be there
    void selectionChanged();
    void freeSpaceChanged();
    void sidebarWidthChanged();
    void framed();
    void raiseRequested(); ///< the window is to come to the front

private:
    WindowModelParts parts_;
    bool hasAccess_;
    bool hasFrame_ = false;
    QString selection_ = rawValue(AppSidebarDestination::home);
    QString freeSpace_;
    int sidebarWidth_ = 220;
};

} // namespace vesko
