#include "platform/qt/PlainNotes.h"

#include <QStringList>
#include <QStringView>
#include <algorithm>
#include <array>
#include <utility>

namespace vesko {
namespace {

constexpr qsizetype longestNotes = 4000;
constexpr qsizetype longestMarkup = 1 << 16; // what lies behind is not looked at
constexpr qsizetype longestEntity = 10;

/// The name of a tag: "p" of "<p class='x'>" and of "</p>".
QString tagName(QStringView tag) {
    qsizetype from = tag.startsWith(u'/') ? 1 : 0;
    qsizetype to = from;
    while (to < tag.size() && tag[to].isLetterOrNumber()) ++to;
    return tag.sliced(from, to - from).toString().toLower();
}

bool breaksLine(const QString& name) {
    static const QStringList names{QStringLiteral("br"), QStringLiteral("p"),  QStringLiteral("div"),
                                   QStringLiteral("li"), QStringLiteral("ul"), QStringLiteral("ol"),
                                   QStringLiteral("tr"), QStringLiteral("h1"), QStringLiteral("h2"),
                                   QStringLiteral("h3"), QStringLiteral("h4"), QStringLiteral("h5")};
    return names.contains(name);
}

/// What stands for itself in the text below: a number or one of the names that everybody writes.
QString character(QStringView entity) {
    static constexpr std::array<std::pair<const char16_t*, char16_t>, 6> known{
        {{u"lt", u'<'}, {u"gt", u'>'}, {u"amp", u'&'}, {u"quot", u'"'}, {u"apos", u'\''}, {u"nbsp", u' '}}};
    for (const auto& [name, meant] : known)
        if (entity == QStringView(name)) return QChar(meant);
    if (!entity.startsWith(u'#')) return {};
    const bool hex = entity.startsWith(u"#x", Qt::CaseInsensitive);
    bool isNumber = false;
    const uint code = entity.sliced(hex ? 2 : 1).toUInt(&isNumber, hex ? 16 : 10);
    if (!isNumber || code < ' ' || code > 0x10FFFF || QChar::isSurrogate(code)) return {};
    const char32_t one = code;
    return QString::fromUcs4(&one, 1);
}

/// Without the markup; white space as it comes, "\n" where a line ends.
QString withoutTags(QStringView notes) {
    QString text;
    for (qsizetype at = 0; at < notes.size() && text.size() < 4 * longestNotes; ++at) {
        const QChar next = notes[at];
        if (next == u'<') {
            const qsizetype end = notes.indexOf(u'>', at);
            const bool isTag = end > at + 1 && (notes[at + 1].isLetter() || notes[at + 1] == u'/' ||
                                                notes[at + 1] == u'!' || notes[at + 1] == u'?');
            if (isTag) {
                if (breaksLine(tagName(notes.sliced(at + 1, end - at - 1)))) text += u'\n';
                at = end;
                continue;
            }
        } else if (next == u'&') {
            const qsizetype end = notes.sliced(at, std::min(notes.size() - at, longestEntity)).indexOf(u';');
            const QString meant = end > 1 ? character(notes.sliced(at + 1, end - 1)) : QString();
            if (!meant.isEmpty()) {
                text += meant;
                at += end;
                continue;
            }
        }
        text += next;
    }
    return text;
}

} // namespace

QString plainNotes(const QString& notes) {
    const QStringList raw = withoutTags(QStringView(notes).left(longestMarkup)).split(u'\n');
    QStringList lines;
    for (const QString& line : raw) {
        QString clean;
        for (const QChar each : line.simplified())
            if (each.isPrint() || each.isSurrogate()) clean += each;
        if (!clean.isEmpty()) lines << clean;
    }
    QString text = lines.join(u'\n').left(longestNotes);
    if (!text.isEmpty() && text.back().isHighSurrogate()) text.chop(1);
    return text;
}

} // namespace vesko
