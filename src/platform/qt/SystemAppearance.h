#pragma once
#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QVariant>

namespace vesko {

/// How the person has set the system to look. At first judged by the palette that the toolkit took from the
/// system; on Linux the desktop portal is asked as well, without waiting, and its answer and later changes
/// win. A portal that is not there, is slow or makes no sense changes nothing. Main thread.
class SystemAppearance : public QObject {
    Q_OBJECT

public:
    explicit SystemAppearance(QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);

    bool isDark() const { return isDark_; }
    bool prefersReducedMotion() const { return reducedMotion_; }
    bool prefersHighContrast() const { return highContrast_; }
    /// Asks the portal; to be called once the window stands.
    void askPortal();

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void portalChanged(const QString& space, const QString& key, const QDBusVariant& value);

private:
    bool eventFilter(QObject* object, QEvent* event) override;
    void judgePalette();
    void take(const QString& space, const QString& key, const QVariant& value);
    void change(bool& what, bool value);
    void ask(const QString& space, const QString& key);

    QDBusConnection bus_;
    bool isDark_ = false;
    bool highContrast_ = false;
    bool reducedMotion_ = false;
    bool portalSpoke_ = false; ///< the portal has said which scheme; the palette counts no more
};

} // namespace vesko
