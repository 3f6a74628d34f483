#pragma once
#include "background/Updater.h"
#include <QByteArray>
#include <optional>

namespace vesko {

/// The newest version of a feed in the common RSS form: `item` elements below `rss` and `channel`, each with
/// a version (`shortVersionString`, else `version`, as elements or as attributes of `enclosure`), notes
/// (`description`) and a page (`link`, else `releaseNotesLink`, else the enclosure's `url`; only https
/// counts). Passed over: items for another system (the attribute `os` of the enclosure), of a channel of
/// their own, or with something that is no version. Nothing where the feed is damaged anywhere, is no such
/// feed, holds a document type declaration (and so anything that expands) or a tag with more than 64
/// attributes, or no version at all.
std::optional<NewerVersion> newestInAppcast(const QByteArray& feed);

} // namespace vesko
