#include "ui/ThemePalette.h"
#include <algorithm>
#include <cmath>

namespace vesko {

const ThemePalette& lightPalette() {
    static const ThemePalette palette{
        .background = QColor(0xF5F5F8),
        .surface = QColor(0xFFFFFF),
        .hover = QColor(0xECECF2),
        .chosen = QColor(0xEAE4FB),
        .border = QColor(0xDCDCE4),
        .text = QColor(0x1A1A22),
        .muted = QColor(0x5C6070),
        .purple = QColor(0x6B3FE0),
        .cyan = QColor(0x0B7285),
        .green = QColor(0x1B7A3D),
        .pink = QColor(0xC2255C),
        .slate = QColor(0x51607A),
        .warning = QColor(0x8F5200),
        .danger = QColor(0xC92A2A),
        .success = QColor(0x1B7A3D),
        .prominent = QColor(0x6B3FE0),
        .onProminent = QColor(0xFFFFFF),
        .destructive = QColor(0xC92A2A),
        .onDestructive = QColor(0xFFFFFF),
        .safe = QColor(0x1B7A3D),
        .safeGround = QColor(0xE3F4E8),
        .review = QColor(0x8F5200),
        .reviewGround = QColor(0xFFF0D9),
        .risk = QColor(0xC92A2A),
        .riskGround = QColor(0xFDE7E7),
    };
    return palette;
}

const ThemePalette& darkPalette() {
    static const ThemePalette palette{
        .background = QColor(0x16161C),
        .surface = QColor(0x1F1F27),
        .hover = QColor(0x2A2A34),
        .chosen = QColor(0x322E45),
        .border = QColor(0x34343F),
        .text = QColor(0xF1F1F6),
        .muted = QColor(0xA3A7B7),
        .purple = QColor(0xA88BFF),
        .cyan = QColor(0x4DD4E8),
        .green = QColor(0x5FD38A),
        .pink = QColor(0xFF7EB6),
        .slate = QColor(0xA9B4CC),
        .warning = QColor(0xFFB454),
        .danger = QColor(0xFF8A8A),
        .success = QColor(0x5FD38A),
        .prominent = QColor(0x7A55F5),
        .onProminent = QColor(0xFFFFFF),
        .destructive = QColor(0xD63A3A),
        .onDestructive = QColor(0xFFFFFF),
        .safe = QColor(0x5FD38A),
        .safeGround = QColor(0x1E3A2A),
        .review = QColor(0xFFB454),
        .reviewGround = QColor(0x3D2E17),
        .risk = QColor(0xFF8A8A),
        .riskGround = QColor(0x43212A),
    };
    return palette;
}

namespace {

ThemePalette strengthened(ThemePalette palette) {
    palette.border = palette.muted;
    palette.muted = palette.text;
    return palette;
}

} // namespace

const ThemePalette& lightContrastPalette() {
    static const ThemePalette palette = strengthened(lightPalette());
    return palette;
}

const ThemePalette& darkContrastPalette() {
    static const ThemePalette palette = strengthened(darkPalette());
    return palette;
}

namespace {

double linear(float part) { return part <= 0.04045F ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4); }

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

double contrast(const QColor& a, const QColor& b) {
    const double first = luminance(a);
    const double second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

} // namespace vesko
