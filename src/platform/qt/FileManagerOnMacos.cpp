#include "platform/macos/FinderCommand.h"
#include "platform/qt/FileManager.h"
#include <QDesktopServices>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace vesko {

void FileManager::openFolder(const FileURL& folder) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(folder.path())));
}

void FileManager::reveal(const FileURL& url) {
    const FinderCommand command = finderCommand(url);
    QStringList arguments;
    for (const std::string& argument : command.arguments) arguments << QString::fromStdString(argument);
    QProcess::startDetached(QString::fromStdString(command.program), arguments);
}

} // namespace vesko
