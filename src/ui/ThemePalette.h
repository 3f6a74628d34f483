#pragma once
#include <QColor>

namespace vesko {

/// The colours of one theme, by what they are for. Every text stands out from background, surface and hover
/// by a contrast of at least 4.5, and so does every label from its own ground. `chosen` lies beneath the
/// texts of the row that is open.
struct ThemePalette {
    QColor background, surface, hover, chosen, border;
    QColor text, muted;
    QColor purple, cyan, green, pink, slate;
    QColor warning, danger, success;
    QColor prominent, onProminent, destructive, onDestructive;
    QColor safe, safeGround, review, reviewGround, risk, riskGround;
};

const ThemePalette& lightPalette();
const ThemePalette& darkPalette();
/// For those who want more contrast: hairlines and what has only lines stand out by at least 3, every text
/// that is otherwise muted by at least 7.
const ThemePalette& lightContrastPalette();
const ThemePalette& darkContrastPalette();

/// The contrast of two opaque colours as the web's accessibility guidelines define it (WCAG 2.1): 1 to 21.
double contrast(const QColor& a, const QColor& b);

} // namespace vesko
