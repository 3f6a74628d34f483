#include "platform/qt/Appcast.h"

#include "background/VersionOrder.h"
#include "platform/qt/PlainNotes.h"
#include <QString>
#include <QStringDecoder>
#include <QUrl>
#include <QXmlStreamReader>
#include <utility>

namespace vesko {
namespace {

constexpr int deepestElement = 32;
constexpr int mostAttributes = 64;

/// The feed as text, by the mark that it begins with or the encoding that it declares. Decoded here, so that
/// what is looked at before reading is what is read.
std::optional<QString> decoded(const QByteArray& feed) {
    QXmlStreamReader beginning(feed);
    beginning.readNext();
    if (beginning.hasError()) return std::nullopt;
    const QByteArray declared = beginning.documentEncoding().toLatin1();
    const auto marked = QStringConverter::encodingForData(feed, u'<');
    QStringDecoder decoder = marked               ? QStringDecoder(*marked)
                             : declared.isEmpty() ? QStringDecoder(QStringConverter::Utf8)
                                                  : QStringDecoder(declared.constData());
    if (!decoder.isValid()) return std::nullopt;
    QString text = decoder(feed);
    if (decoder.hasError()) return std::nullopt;
    return text;
}

/// The place behind the next such mark, or the end.
qsizetype behind(QStringView mark, QStringView text, qsizetype from) {
    const qsizetype at = text.indexOf(mark, from);
    return at < 0 ? text.size() : at + mark.size();
}

/// How many values in quotes a tag bears; `at` goes from its beginning to its end.
int countValues(QStringView text, qsizetype& at) {
    for (int count = 0;; ++count) {
        while (at < text.size() && !QStringView(u"<>'\"").contains(text[at])) ++at;
        if (at == text.size() || text[at] == u'<' || text[at] == u'>') return count;
        at = behind(text.sliced(at, 1), text, at + 1);
    }
}

/// Whether reading takes a time that grows with the length alone. The reader compares the attributes of a tag
/// pairwise, looks each prefix up among all that are declared around it, and goes through a document type
/// declaration again and again: within the size of a feed that can make half a minute.
bool isQuickToRead(QStringView text) {
    for (qsizetype at = text.indexOf(u'<'); at >= 0; at = text.indexOf(u'<', at)) {
        const QStringView rest = text.sliced(at);
        if (rest.startsWith(u"<!--")) {
            at = behind(u"-->", text, at + 4);
        } else if (rest.startsWith(u"<![CDATA[")) {
            at = behind(u"]]>", text, at + 9);
        } else if (rest.startsWith(u"<?")) {
            at = behind(u"?>", text, at + 2);
        } else if (rest.startsWith(u"<!") || countValues(text, ++at) > mostAttributes) {
            return false;
        }
    }
    return true;
}

struct Item {
    QString shortVersion, version, notes, link, notesLink, enclosure;
    bool isForOthers = false;
};

/// A link that may be opened: https, a host, nobody's name before it.
std::string safeLink(const QString& text) {
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    const bool isSafe = url.isValid() && url.scheme() == QStringLiteral("https") && !url.host().isEmpty() &&
                        url.userInfo().isEmpty();
    return isSafe ? url.toEncoded().toStdString() : std::string();
}

QString attribute(const QXmlStreamReader& xml, const char* name) {
    for (const QXmlStreamAttribute& each : xml.attributes())
        if (each.name() == QLatin1String(name)) return each.value().toString();
    return {};
}

/// Reads one feed from its beginning to its end: a mistake anywhere makes all of it worth nothing.
class Reader {
public:
    explicit Reader(const QString& feed) : xml_(feed) {}

    std::optional<NewerVersion> read() {
        while (!xml_.atEnd()) step(xml_.readNext());
        if (xml_.hasError() || !isFeed_) return std::nullopt;
        return std::move(newest_);
    }

private:
    void step(QXmlStreamReader::TokenType token) {
        switch (token) {
        case QXmlStreamReader::StartElement: begin(); break;
        case QXmlStreamReader::EndElement: end(); break;
        case QXmlStreamReader::Characters:
            if (path_.size() == 4) text_ += xml_.text();
            break;
        default: break;
        }
    }

    void begin() {
        path_ << xml_.name().toString();
        if (path_.size() > deepestElement) xml_.raiseError();
        if (path_.size() == 1) isFeed_ = path_[0] == QStringLiteral("rss");
        if (!isItem()) return;
        if (path_.size() == 3) item_ = {};
        if (path_.size() != 4) return;
        text_.clear();
        if (path_[3] == QStringLiteral("enclosure")) takeEnclosure();
    }

    void takeEnclosure() {
        if (item_.shortVersion.isEmpty()) item_.shortVersion = attribute(xml_, "shortVersionString");
        if (item_.version.isEmpty()) item_.version = attribute(xml_, "version");
        item_.enclosure = attribute(xml_, "url");
        const QString system = attribute(xml_, "os");
        if (!system.isEmpty() && system != QStringLiteral("linux")) item_.isForOthers = true;
    }

    void end() {
        if (isItem() && path_.size() == 4) takeField(path_[3]);
        if (isItem() && path_.size() == 3) takeItem();
        path_.removeLast();
    }

    void takeField(const QString& name) {
        if (name == QStringLiteral("shortVersionString")) item_.shortVersion = text_.trimmed();
        if (name == QStringLiteral("version")) item_.version = text_.trimmed();
        if (name == QStringLiteral("description")) item_.notes = text_;
        if (name == QStringLiteral("link")) item_.link = text_;
        if (name == QStringLiteral("releaseNotesLink")) item_.notesLink = text_;
        if (name == QStringLiteral("channel") && !text_.trimmed().isEmpty()) item_.isForOthers = true;
    }

    void takeItem() {
        if (item_.isForOthers) return;
        const std::string version =
            (item_.shortVersion.isEmpty() ? item_.version : item_.shortVersion).toStdString();
        // A version is no version without something to compare it with.
        if (!compareVersions(version, version)) return;
        if (newest_ && !isNewerVersion(version, newest_->version)) return;
        NewerVersion found{.version = version, .notes = plainNotes(item_.notes).toStdString(), .page = {}};
        for (const QString& link : {item_.link, item_.notesLink, item_.enclosure})
            if (found.page.empty()) found.page = safeLink(link);
        newest_ = std::move(found);
    }

    bool isItem() const {
        return isFeed_ && path_.size() >= 3 && path_[1] == QStringLiteral("channel") &&
               path_[2] == QStringLiteral("item");
    }

    QXmlStreamReader xml_;
    QStringList path_;
    QString text_;
    Item item_;
    bool isFeed_ = false;
    std::optional<NewerVersion> newest_;
};

} // namespace

std::optional<NewerVersion> newestInAppcast(const QByteArray& feed) {
    const std::optional<QString> text = decoded(feed);
    if (!text || !isQuickToRead(*text)) return std::nullopt;
    return Reader(*text).read();
}

} // namespace vesko
