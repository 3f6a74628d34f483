#pragma once
#include "ui/ThemePalette.h"
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <algorithm>

namespace vesko {

/// Colours, sizes and motion for every QML file; nothing else names a colour or a font size. The system's
/// appearance is written into it from outside. Main thread.
class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark WRITE setDark NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ reducedMotion WRITE setReducedMotion NOTIFY changed)
    Q_PROPERTY(bool highContrast READ highContrast WRITE setHighContrast NOTIFY changed)
    Q_PROPERTY(QColor background READ background NOTIFY changed)
    Q_PROPERTY(QColor surface READ surface NOTIFY changed)
    Q_PROPERTY(QColor hover READ hover NOTIFY changed)
    Q_PROPERTY(QColor chosen READ chosen NOTIFY changed)
    Q_PROPERTY(QColor border READ border NOTIFY changed)
    Q_PROPERTY(QColor text READ text NOTIFY changed)
    Q_PROPERTY(QColor muted READ muted NOTIFY changed)
    Q_PROPERTY(QColor purple READ purple NOTIFY changed)
    Q_PROPERTY(QColor cyan READ cyan NOTIFY changed)
    Q_PROPERTY(QColor green READ green NOTIFY changed)
    Q_PROPERTY(QColor pink READ pink NOTIFY changed)
    Q_PROPERTY(QColor slate READ slate NOTIFY changed)
    Q_PROPERTY(QColor warning READ warning NOTIFY changed)
    Q_PROPERTY(QColor danger READ danger NOTIFY changed)
    Q_PROPERTY(QColor success READ success NOTIFY changed)
    Q_PROPERTY(QColor prominent READ prominent NOTIFY changed)
    Q_PROPERTY(QColor onProminent READ onProminent NOTIFY changed)
    Q_PROPERTY(QColor destructive READ destructive NOTIFY changed)
    Q_PROPERTY(QColor onDestructive READ onDestructive NOTIFY changed)
    Q_PROPERTY(QColor safe READ safe NOTIFY changed)
    Q_PROPERTY(QColor safeGround READ safeGround NOTIFY changed)
    Q_PROPERTY(QColor review READ review NOTIFY changed)
    Q_PROPERTY(QColor reviewGround READ reviewGround NOTIFY changed)
    Q_PROPERTY(QColor risk READ risk NOTIFY changed)
    Q_PROPERTY(QColor riskGround READ riskGround NOTIFY changed)
    Q_PROPERTY(int caption READ caption NOTIFY changed)
    Q_PROPERTY(int body READ body NOTIFY changed)
    Q_PROPERTY(int section READ section NOTIFY changed)
    Q_PROPERTY(int title READ title NOTIFY changed)
    Q_PROPERTY(int figure READ figure NOTIFY changed)
    Q_PROPERTY(QString fixedFont READ fixedFont CONSTANT)
    Q_PROPERTY(int motion READ motion NOTIFY changed)
    Q_PROPERTY(int grid READ grid CONSTANT)
    Q_PROPERTY(int page READ page CONSTANT)
    Q_PROPERTY(int inset READ inset CONSTANT)
    Q_PROPERTY(int cardCorner READ cardCorner CONSTANT)
    Q_PROPERTY(int buttonCorner READ buttonCorner CONSTANT)
    Q_PROPERTY(int controlHeight READ controlHeight NOTIFY changed)
    Q_PROPERTY(int groupHeight READ groupHeight NOTIFY changed)
    Q_PROPERTY(int itemHeight READ itemHeight NOTIFY changed)
    Q_PROPERTY(int bandHeight READ bandHeight NOTIFY changed)
    Q_PROPERTY(int bucketHeight READ bucketHeight NOTIFY changed)
    Q_PROPERTY(int chipHeight READ chipHeight NOTIFY changed)

public:
    explicit Theme(QObject* parent = nullptr);

    bool dark() const { return dark_; }
    void setDark(bool dark);
    bool reducedMotion() const { return reducedMotion_; }
    void setReducedMotion(bool reduced);
    bool highContrast() const { return highContrast_; }
    void setHighContrast(bool high);
    /// The size in pixels that all text follows; the interface font's by default.
    void setBaseSize(double pixels);

    const ThemePalette& palette() const { return paletteFor(dark_); }
    QColor background() const { return palette().background; }
    QColor surface() const { return palette().surface; }
    QColor hover() const { return palette().hover; }
    QColor chosen() const { return palette().chosen; }
    QColor border() const { return palette().border; }
    QColor text() const { return palette().text; }
    QColor muted() const { return palette().muted; }
    QColor purple() const { return palette().purple; }
    QColor cyan() const { return palette().cyan; }
    QColor green() const { return palette().green; }
    QColor pink() const { return palette().pink; }
    QColor slate() const { return palette().slate; }
    QColor warning() const { return palette().warning; }
    QColor danger() const { return palette().danger; }
    QColor success() const { return palette().success; }
    QColor prominent() const { return palette().prominent; }
    QColor onProminent() const { return palette().onProminent; }
    QColor destructive() const { return palette().destructive; }
    QColor onDestructive() const { return palette().onDestructive; }
    QColor safe() const { return palette().safe; }
    QColor safeGround() const { return palette().safeGround; }
    QColor review() const { return palette().review; }
    QColor reviewGround() const { return palette().reviewGround; }
    QColor risk() const { return palette().risk; }
    QColor riskGround() const { return palette().riskGround; }

    int caption() const { return scaled(0.85); }
    int body() const { return scaled(1.0); }
    int section() const { return scaled(1.15); }
    int title() const { return scaled(1.6); }
    int figure() const { return scaled(2.4); }

    /// The family of the system's face in which all letters are equally wide.
    QString fixedFont() const;
    int motion() const { return reducedMotion_ ? 0 : 160; } ///< milliseconds
    int grid() const { return 8; }
    int page() const { return 24; }
    int inset() const { return 16; }
    int cardCorner() const { return 10; }
    int buttonCorner() const { return 6; }
    // Heights grow with the text, so that larger letters are never cut.
    int controlHeight() const { return heightFor(32, 2.4); }
    int groupHeight() const { return heightFor(64, 4.4); }
    int itemHeight() const { return heightFor(40, 2.8); }
    int bandHeight() const { return heightFor(44, 3.0); }
    int bucketHeight() const { return heightFor(52, 3.2); }
    int chipHeight() const { return std::max(26, caption() + 14); }

    /// The colour of a band's or a segment's token (see SegmentColor) in one of the themes. The theme is an
    /// argument so that a binding follows it.
    Q_INVOKABLE QColor segmentColor(int token, bool dark) const;

Q_SIGNALS:
    void changed();

private:
    const ThemePalette& paletteFor(bool dark) const;
    int scaled(double factor) const;
    int heightFor(int usual, double textHeights) const;

    bool dark_ = false;
    bool reducedMotion_ = false;
    bool highContrast_ = false;
    double baseSize_;
};

} // namespace vesko
