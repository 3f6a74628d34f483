#include "background/PlatformUpdater.h"

#include "background/FeedUpdater.h"
#include "background/UnavailableUpdater.h"
#include "platform/qt/HttpsFeed.h"
#include <QDesktopServices>
#include <utility>

namespace vesko {

std::shared_ptr<Updater> platformUpdater(const TaskContext& tasks, std::shared_ptr<UserDefaults> defaults) {
    constexpr bool allowsLoopback = VESKO_UPDATE_FEED_ON_LOOPBACK;
    const QUrl address(QStringLiteral(VESKO_UPDATE_FEED), QUrl::StrictMode);
    if (!HttpsFeed::allows(address, allowsLoopback)) return std::make_shared<UnavailableUpdater>();
    HttpsFeed::Options feed;
    feed.address = address;
    feed.program = "Vesko/" VESKO_VERSION;
    feed.allowsLoopback = allowsLoopback;
    return std::make_shared<FeedUpdater>(
        FeedUpdaterParts{.tasks = tasks,
                         .defaults = std::move(defaults),
                         .source = std::make_shared<HttpsFeed>(std::move(feed)),
                         .runningVersion = VESKO_VERSION,
                         .openLink = [](const std::string& link) {
                             QDesktopServices::openUrl(QUrl(QString::fromStdString(link)));
                         }});
}

} // namespace vesko
