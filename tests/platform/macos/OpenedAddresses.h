#pragma once
#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>
#include <utility>

namespace vesko::testing {

/// Takes the addresses of one scheme that the program has the desktop open; nothing leaves the process.
class OpenedAddresses : public QObject {
    Q_OBJECT

public:
    explicit OpenedAddresses(QString scheme) : scheme_(std::move(scheme)) {
        QDesktopServices::setUrlHandler(scheme_, this, "open");
    }
    ~OpenedAddresses() override { QDesktopServices::unsetUrlHandler(scheme_); }

    QList<QUrl> all;

public Q_SLOTS:
    void open(const QUrl& address) { all << address; }

private:
    QString scheme_;
};

} // namespace vesko::testing
