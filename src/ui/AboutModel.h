#pragma once
#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>
#include <functional>

namespace vesko {

/// What the information about the program stands on.
struct AboutFacts {
    QString version;
    QString contactEmail; ///< empty: the build was given none
    std::function<void(const QUrl&)> openLink;
};

/// The information about the program as QML sees it. Main thread.
class AboutModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString contactEmail READ contactEmail CONSTANT)

public:
    explicit AboutModel(AboutFacts facts, QObject* parent = nullptr);

    QString version() const { return facts_.version; }
    /// Empty where there is nobody to write to.
    QString contactEmail() const { return facts_.contactEmail; }
    /// Opens a new message to the contact in the person's mail program.
    Q_INVOKABLE void writeToContact() const;
    /// The components of this build and their notices, a row for each name and each paragraph beneath it: of
    /// each "text" and "isName".
    Q_INVOKABLE QVariantList acknowledgementRows() const;

private:
    AboutFacts facts_;
};

} // namespace vesko
