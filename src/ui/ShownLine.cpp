#include "ui/ShownLine.h"

#include <algorithm>

namespace vesko {
namespace {

/// More than a row has room for, and little enough for each redraw and for whoever listens to it.
constexpr qsizetype longest = 400;

bool breaksTheLine(QChar character) {
    const QChar::Category category = character.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph;
}

/// The embeddings, overrides and isolates of Unicode's bidirectional algorithm. The marks beside them turn
/// nothing around and belong to right-to-left texts.
bool turnsAround(QChar character) {
    const char16_t unit = character.unicode();
    return (unit >= 0x202a && unit <= 0x202e) || (unit >= 0x2066 && unit <= 0x2069);
}

} // namespace

QString shownLine(std::string_view text) {
    QString line = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    line.removeIf(turnsAround);
    std::replace_if(line.begin(), line.end(), breaksTheLine, QChar(u' '));
    if (line.size() <= longest) return line;
    const bool isInsidePair = line.at(longest - 2).isHighSurrogate();
    line.truncate(longest - (isInsidePair ? 2 : 1));
    return line + QChar(0x2026);
}

} // namespace vesko
