#include "ui/Theme.h"
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

void Theme::setBaseSize(double pixels) {
    if (pixels == baseSize_) return;
    baseSize_ = pixels;
    Q_EMIT changed();
}

int Theme::scaled(double factor) const { return static_cast<int>(std::lround(baseSize_ * factor)); }

int Theme::heightFor(int usual, double textHeights) const {
    return std::max(usual, static_cast<int>(std::ceil(baseSize_ * textHeights)));
}

} // namespace vesko
