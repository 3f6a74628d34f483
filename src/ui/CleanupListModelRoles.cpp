#include "base/ByteFormat.h"
#include "base/Paths.h"
#include "core/GroupBuilders.h"
#include "orchestration/CleanupViewModel.h"
#include "ui/CleanupListModel.h"
#include "ui/SectionColor.h"
#include "ui/ShownLine.h"

// What each kind of row answers for each role.
namespace vesko {

namespace {

QString shown(const std::string& text) { return QString::fromStdString(text); }

/// The path with the home folder as "~", fit to be shown.
QString shortened(const FileURL& url) {
    static const std::string home = homeFolder().path();
    const std::string& path = url.path();
    if (path == home) return QStringLiteral("~");
    if (path.size() > home.size() && path.starts_with(home) && path[home.size()] == '/') {
        return shown(escapedForDisplay("~" + path.substr(home.size())));
    }
    return shown(escapedForDisplay(path));
}

/// What can be measured and not deleted has a box that takes no clicks.
bool isDeletable(const ScannableItem& item) {
    static const EnrichmentKey unsupported = EnrichmentKey::unsupportedDockerObject();
    return item.enrichmentKey != unsupported;
}

} // namespace

QVariant CleanupListModel::bandValue(const ListBlock& block, int role) const {
    switch (role) {
    case KindRole: return Band;
    case Qt::DisplayRole:
    case TitleRole: return shown(sectionTitle(block.section.id));
    case SizeRole: return shown(formatBytes(block.bytes));
    case CheckRole: return static_cast<int>(block.selection);
    case CheckableRole: return block.isSelectable;
    case TintRole: return static_cast<int>(sectionColor(block.section.id));
    case DetailRole:
    case IconRole:
    case PathRole: return QString();
    case SafetyRole: return static_cast<int>(Safety::seguro);
    case ExpandedRole:
    case AnalyzingRole:
    case DiscoveredRole:
    case FirstRole:
    case LastRole: return false;
    default: return {};
    }
}

QVariant CleanupListModel::groupValue(const ListBlock& block, int role) const {
    switch (role) {
    case KindRole: return Group;
    case Qt::DisplayRole:
    case TitleRole: return shownLine(model_->displayTitle(block.group));
    case DetailRole: return shownLine(verdict(block).reason);
    case SizeRole: return shown(formatBytes(block.bytes));
    case CheckRole: return static_cast<int>(block.selection);
    case CheckableRole: return block.isSelectable;
    case ExpandedRole: return block.isExpanded;
    case IconRole: return shown(block.group.icon);
    case TintRole: return static_cast<int>(sectionColor(block.section.id));
    case SafetyRole: return static_cast<int>(verdict(block).safety);
    case AnalyzingRole: return verdict(block).isAnalyzing;
    case DiscoveredRole: return verdict(block).isAIDiscovered;
    case PathRole:
        return block.group.items.size() == 1 ? shown(escapedForDisplay(block.group.items.front().url.path()))
                                             : QString();
    case FirstRole: return block.isFirst;
    case LastRole: return block.isLast && block.shown.empty();
    default: return {};
    }
}

QVariant CleanupListModel::itemValue(const ListBlock& block, int offset, int role) const {
    const ScannableItem& item = *block.shown[static_cast<std::size_t>(offset - 1)];
    switch (role) {
    case KindRole: return Item;
    case Qt::DisplayRole:
    case TitleRole: return shownLine(escapedForDisplay(model_->itemTitle(item, block.group)));
    case DetailRole: return shortened(item.url.parent());
    case SizeRole: return shown(formatBytes(item.size));
    case CheckRole:
        return static_cast<int>(
            model_->selectedItemIDs->contains(item.url) && isDeletable(item) ? TriState::on : TriState::off);
    case CheckableRole: return isDeletable(item);
    case TintRole: return static_cast<int>(sectionColor(block.section.id));
    case SafetyRole: return static_cast<int>(Safety::seguro); // items carry no badge
    case AnalyzingRole: return model_->analyzingKeys->contains(item.enrichmentKey);
    case DiscoveredRole: return model_->aiDiscoveredURLs->contains(item.url);
    case PathRole: return shown(escapedForDisplay(item.url.path()));
    case IconRole: return QString();
    case ExpandedRole:
    case FirstRole: return false;
    case LastRole: return block.isLast && static_cast<std::size_t>(offset) == block.shown.size();
    default: return {};
    }
}

} // namespace vesko
