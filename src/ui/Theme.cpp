#include "ui/Theme.h"
#include "orchestration/StorageSegment.h"
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <algorithm>
#include <cmath>

namespace vesko {

Theme::Theme(QObject* parent)
    : QObject(parent), baseSize_(std::max(QFontInfo(QGuiApplication::font()).pixelSize(), 13)) {}

void Theme::setDark(bool dark) {
    if (dark == dark_) return;
    dark_ = dark;
    Q_EMIT changed();
}

void Theme::setReducedMotion(bool reduced) {
    if (reduced == reducedMotion_) return;
    reducedMotion_ = reduced;
    Q_EMIT changed();
}

void Theme::setHighContrast(bool high) {
    if (high == highContrast_) return;
    highContrast_ = high;
    Q_EMIT changed();
}

const ThemePalette& Theme::paletteFor(bool dark) const {
    if (highContrast_) return dark ? darkContrastPalette() : lightContrastPalette();
    return dark ? darkPalette() : lightPalette();
}

void Theme::setBaseSize(double pixels) {
    if (pixels == baseSize_) return;
    baseSize_ = pixels;
    Q_EMIT changed();
}

QColor Theme::segmentColor(int token, bool dark) const {
    const ThemePalette& colors = paletteFor(dark);
    switch (static_cast<SegmentColor>(token)) {
    case SegmentColor::purple: return colors.purple;
    case SegmentColor::cyan: return colors.cyan;
    case SegmentColor::green: return colors.green;
    case SegmentColor::pink: return colors.pink;
    case SegmentColor::slate: return colors.slate;
    case SegmentColor::warning: return colors.warning;
    case SegmentColor::muted: break;
    }
    return colors.muted;
}

QString Theme::fixedFont() const { return QFontDatabase::systemFont(QFontDatabase::FixedFont).family(); }

int Theme::scaled(double factor) const { return static_cast<int>(std::lround(baseSize_ * factor)); }

int Theme::heightFor(int usual, double textHeights) const {
    return std::max(usual, static_cast<int>(std::ceil(baseSize_ * textHeights)));
}

} // namespace vesko
