#include "platform/qt/Appcast.h"

#include "background/VersionOrder.h"
#include "platform/qt/PlainNotes.h"
#include <QString>
#include <QUrl>
#include <QXmlStreamReader>
#include <utility>

namespace vesko {
namespace {

constexpr int deepestElement = 32;

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
    explicit Reader(const QByteArray& feed) : xml_(feed) {}

    std::optional<NewerVersion> read() {
        while (!xml_.atEnd()) step(xml_.readNext());
        if (xml_.hasError() || !isFeed_) return std::nullopt;
        return std::move(newest_);
    }

private:
    void step(QXmlStreamReader::TokenType token) {
        switch (token) {
        case QXmlStreamReader::DTD: xml_.raiseError(); break;
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

std::optional<NewerVersion> newestInAppcast(const QByteArray& feed) { return Reader(feed).read(); }

} // namespace vesko
