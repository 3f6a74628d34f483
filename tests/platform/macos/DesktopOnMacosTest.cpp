// What the program asks of the desktop of macOS, taken over before it leaves the process.
#include "platform/macos/FinderCommand.h"
#include "platform/macos/OpenedAddresses.h"
#include "platform/qt/DiskAccessSettings.h"
#include "platform/qt/FileManager.h"
#include "platform/qt/SingleInstance.h"
#include "support/TempTree.h"
#include <QDeadlineTimer>
#include <QFile>
#include <QThread>
#include <gtest/gtest.h>

namespace vesko {

namespace {
FinderCommand playedFinder;
}

/// A program of the test in the Finder's place.
FinderCommand finderCommand(const FileURL& url) {
    FinderCommand command = playedFinder;
    command.arguments.push_back(url.path());
    return command;
}

namespace {

using testing::OpenedAddresses;

TEST(DiskAccessSettings, AreThePaneOfFullDiskAccess) {
    const OpenedAddresses opened(QStringLiteral("x-apple.systempreferences"));
    openDiskAccessSettings();
    ASSERT_EQ(opened.all.size(), 1);
    EXPECT_EQ(opened.all[0].toEncoded(),
              "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles");
}

TEST(FileManager, AFolderIsOpenedByItsAddress) {
    const OpenedAddresses opened(QStringLiteral("file"));
    FileManager::openFolder(FileURL("/Users/ana/a%20b #1?"));
    ASSERT_EQ(opened.all.size(), 1);
    EXPECT_EQ(opened.all[0].toLocalFile(), QStringLiteral("/Users/ana/a%20b #1?"));
}

TEST(FileManager, TheFinderIsStartedWithTheVeryPath) {
    const testing::TempTree folder;
    const std::string told = folder.path("told");
    // Whole at once under its name, so that nobody reads a part.
    playedFinder = {"/bin/sh", {"-c", R"(printf '%s' "$2" >"$1.part" && mv "$1.part" "$1")", "sh", told}};
    const std::string path = "/Users/ana/-R \"maçã\" %20 $HOME";
    FileManager().reveal(FileURL(path));
    QFile file(QString::fromStdString(told));
    for (const QDeadlineTimer end(10'000); !file.exists() && !end.hasExpired();) QThread::msleep(5);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().toStdString(), path);
}

TEST(SingleInstance, EveryStartCountsAsTheFirstSinceTheSystemSeesToIt) {
    SingleInstance first;
    SingleInstance second;
    EXPECT_TRUE(first.claim());
    EXPECT_TRUE(second.claim());
}

} // namespace
} // namespace vesko
