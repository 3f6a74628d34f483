#include "ui/CleanupListModel.h"
#include "orchestration/CleanupViewModel.h"
#include "ui/ListDifference.h"
#include <algorithm>
#include <map>

namespace vesko {

namespace {

std::vector<const ScannableItem*> pointers(const ItemList& items) {
    std::vector<const ScannableItem*> list;
    list.reserve(items.size());
    for (const ScannableItem& item : items) list.push_back(&item);
    return list;
}

/// The state of several groups together: what has nothing to select is passed over.
class CombinedSelection {
public:
    void add(const GroupFigures& figures) {
        if (!figures.isSelectable) return;
        state_ = isSelectable_ && state_ != figures.selection ? TriState::mixed : figures.selection;
        isSelectable_ = true;
    }
    TriState state() const noexcept { return state_; }
    bool isSelectable() const noexcept { return isSelectable_; }

private:
    TriState state_ = TriState::off;
    bool isSelectable_ = false;
};

} // namespace

CleanupListModel::CleanupListModel(std::shared_ptr<CleanupViewModel> model, QObject* parent)
    : QAbstractListModel(parent), model_(std::move(model)) {
    // A timer lets input and painting in between; posted events would run one after another.
    pieceDue_.setSingleShot(true);
    pieceDue_.setInterval(1);
    connect(&pieceDue_, &QTimer::timeout, this, &CleanupListModel::judgeAPiece);
}

CleanupListModel::~CleanupListModel() = default;

int CleanupListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

QHash<int, QByteArray> CleanupListModel::roleNames() const {
    return {{KindRole, "kind"},         {TitleRole, "title"},         {DetailRole, "detail"},
            {SizeRole, "size"},         {CheckRole, "check"},         {CheckableRole, "checkable"},
            {ExpandedRole, "expanded"}, {IconRole, "icon"},           {TintRole, "tint"},
            {SafetyRole, "safety"},     {AnalyzingRole, "analyzing"}, {DiscoveredRole, "discovered"},
            {PathRole, "path"},         {FirstRole, "first"},         {LastRole, "last"}};
}

std::vector<ListBlock> CleanupListModel::present() const {
    std::map<std::string, int> seen; // two groups of one id are told apart by their order
    std::vector<ListBlock> blocks;
    for (CleanupSectionEntry& entry : model_->cleanupSections()) {
        ListBlock band;
        band.kind = ListBlock::Kind::band;
        band.key = "band " + std::to_string(entry.section.sortIndex) + ' ' + entry.section.id + ' ' +
                   entry.section.title;
        band.section = entry.section;
        CombinedSelection combined;
        for (const CleanupGroup& group : *model_->groups) {
            if (group.section == entry.section) combined.add(model_->groupFigures(group));
        }
        band.selection = combined.state();
        band.isSelectable = combined.isSelectable();
        const std::size_t bandAt = blocks.size();
        blocks.push_back(std::move(band));
        for (CleanupGroup& group : entry.groups) {
            const GroupFigures figures = model_->groupFigures(group);
            ListBlock block;
            block.kind = ListBlock::Kind::group;
            const int nth = seen[group.id]++;
            block.key = "group " + group.id + (nth == 0 ? "" : ' ' + std::to_string(nth));
            block.section = entry.section;
            block.bytes = figures.totalBytes;
            block.selection = figures.selection;
            block.isSelectable = figures.isSelectable;
            block.group = std::move(group);
            block.isExpanded = expanded_.contains(block.key);
            if (block.isExpanded) block.shown = pointers(block.group.items);
            block.isFirst = blocks.size() == bandAt + 1;
            block.verdict = model_->beginVerdict(block.group);
            blocks[bandAt].bytes += block.bytes;
            blocks.push_back(std::move(block));
        }
        blocks.back().isLast = true;
    }
    return blocks;
}

void CleanupListModel::refresh() {
    const std::uint64_t verdicts = model_->verdictRevision();
    const std::uint64_t selection = model_->selectionRevision();
    const bool verdictsChanged = std::exchange(verdictRevision_, verdicts) != verdicts;
    const bool selectionChanged = std::exchange(selectionRevision_, selection) != selection;

    std::vector<ListBlock> wanted = present();
    matchBlocks(wanted);
    for (std::size_t i = 0; i < blocks_.size(); ++i)
        takeOver(i, wanted[i], verdictsChanged, selectionChanged);
}

void CleanupListModel::languageChanged() {
    if (rows_ > 0) tellChanged(0, rows_ - 1);
}

// Afterwards the blocks are the wanted ones in the wanted order, each with the rows that it had.
void CleanupListModel::matchBlocks(std::vector<ListBlock>& wanted) {
    std::set<std::string, std::less<>> keys;
    for (const ListBlock& block : wanted) keys.insert(block.key);
    for (std::size_t end = blocks_.size(); end > 0;) {
        std::size_t from = end;
        while (from > 0 && !keys.contains(blocks_[from - 1].key)) --from;
        if (from < end) removeBlocks(from, end - from);
        end = from == end ? end - 1 : from;
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (i < blocks_.size() && blocks_[i].key == wanted[i].key) continue;
        const auto standing =
            std::find_if(blocks_.begin() + static_cast<std::ptrdiff_t>(std::min(i, blocks_.size())),
                         blocks_.end(), [&](const ListBlock& block) { return block.key == wanted[i].key; });
        if (standing != blocks_.end()) {
            moveBlock(static_cast<std::size_t>(standing - blocks_.begin()), i);
        } else {
            insertBlocks(i, {wanted[i]});
            judgeAnew(blocks_[i]);
        }
    }
}

void CleanupListModel::insertBlocks(std::size_t at, std::vector<ListBlock> added) {
    const int row = at < blocks_.size() ? blocks_[at].firstRow : rows_;
    int count = 0;
    for (const ListBlock& block : added) count += block.rowCount();
    beginInsertRows({}, row, row + count - 1);
    blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(at), std::make_move_iterator(added.begin()),
                   std::make_move_iterator(added.end()));
    number(at);
    endInsertRows();
}

void CleanupListModel::removeBlocks(std::size_t from, std::size_t count) {
    const ListBlock& last = blocks_[from + count - 1];
    beginRemoveRows({}, blocks_[from].firstRow, last.firstRow + last.rowCount() - 1);
    const auto begin = blocks_.begin() + static_cast<std::ptrdiff_t>(from);
    blocks_.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
    number(from);
    endRemoveRows();
}

void CleanupListModel::moveBlock(std::size_t from, std::size_t to) {
    const ListBlock& moved = blocks_[from];
    beginMoveRows({}, moved.firstRow, moved.firstRow + moved.rowCount() - 1, {}, blocks_[to].firstRow);
    const auto begin = blocks_.begin();
    std::rotate(begin + static_cast<std::ptrdiff_t>(to), begin + static_cast<std::ptrdiff_t>(from),
                begin + static_cast<std::ptrdiff_t>(from) + 1);
    number(to);
    endMoveRows();
}

void CleanupListModel::takeOver(std::size_t at, ListBlock& wanted, bool verdictsChanged,
                                bool selectionChanged) {
    const bool sameItems = blocks_[at].group.items.sharesMemory(wanted.group.items);
    const bool sameGroup = sameItems && blocks_[at].group == wanted.group;
    if (!sameItems && blocks_[at].isExpanded) matchItems(at, wanted.group.items);

    ListBlock& block = blocks_[at];
    const bool headerChanged = !sameGroup || block.bytes != wanted.bytes ||
                               block.selection != wanted.selection ||
                               block.isSelectable != wanted.isSelectable || block.isFirst != wanted.isFirst ||
                               block.isLast != wanted.isLast;
    const bool lastMoved = block.isLast != wanted.isLast;
    block.group = std::move(wanted.group);
    block.section = std::move(wanted.section);
    block.bytes = wanted.bytes;
    block.selection = wanted.selection;
    block.isSelectable = wanted.isSelectable;
    block.isFirst = wanted.isFirst;
    block.isLast = wanted.isLast;
    if (!sameItems || verdictsChanged) judgeAnew(block);

    const int lastRow = block.firstRow + block.rowCount() - 1;
    if (!sameGroup || verdictsChanged) {
        tellChanged(block.firstRow, lastRow);
        return;
    }
    if (headerChanged) tellChanged(block.firstRow, block.firstRow);
    if (block.shown.empty()) return;
    if (selectionChanged) tellChanged(block.firstRow + 1, lastRow, {CheckRole});
    if (lastMoved) tellChanged(lastRow, lastRow, {LastRole});
}

void CleanupListModel::matchItems(std::size_t at, const ItemList& items) {
    std::vector<const ScannableItem*> wanted = pointers(items);
    ListBlock& block = blocks_[at];
    const ItemList kept = block.group.items; // until every row points into the new list
    const auto sameURL = [](const ScannableItem* a, const ScannableItem* b) { return a->url == b->url; };
    const bool sameRows =
        std::equal(block.shown.begin(), block.shown.end(), wanted.begin(), wanted.end(), sameURL);
    if (!sameRows) {
        if (const auto difference = listDifference(block.shown, wanted)) {
            for (const auto& range : difference->removed) removeItems(at, range.from, range.count);
            for (const auto& range : difference->inserted) {
                const auto begin = wanted.begin() + static_cast<std::ptrdiff_t>(range.from);
                insertItems(at, range.from, {begin, begin + static_cast<std::ptrdiff_t>(range.count)});
            }
        } else {
            removeItems(at, 0, block.shown.size());
            insertItems(at, 0, wanted);
        }
    }
    block.shown = std::move(wanted);
}

void CleanupListModel::insertItems(std::size_t at, std::size_t offset,
                                   std::vector<const ScannableItem*> added) {
    if (added.empty()) return;
    ListBlock& block = blocks_[at];
    const int row = block.firstRow + 1 + static_cast<int>(offset);
    beginInsertRows({}, row, row + static_cast<int>(added.size()) - 1);
    block.shown.insert(block.shown.begin() + static_cast<std::ptrdiff_t>(offset), added.begin(), added.end());
    number(at);
    endInsertRows();
}

void CleanupListModel::removeItems(std::size_t at, std::size_t offset, std::size_t count) {
    if (count == 0) return;
    ListBlock& block = blocks_[at];
    const int row = block.firstRow + 1 + static_cast<int>(offset);
    beginRemoveRows({}, row, row + static_cast<int>(count) - 1);
    const auto begin = block.shown.begin() + static_cast<std::ptrdiff_t>(offset);
    block.shown.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
    number(at);
    endRemoveRows();
}

void CleanupListModel::number(std::size_t from) {
    int row = from == 0 ? 0 : blocks_[from - 1].firstRow + blocks_[from - 1].rowCount();
    for (std::size_t i = from; i < blocks_.size(); ++i) {
        blocks_[i].firstRow = row;
        row += blocks_[i].rowCount();
    }
    rows_ = row;
}

void CleanupListModel::tellChanged(int first, int last, const QList<int>& roles) {
    Q_EMIT dataChanged(index(first), index(last), roles);
}

std::optional<CleanupListModel::Place> CleanupListModel::place(int row) const {
    if (row < 0 || row >= rows_) return std::nullopt;
    const auto behind =
        std::upper_bound(blocks_.begin(), blocks_.end(), row,
                         [](int wanted, const ListBlock& block) { return wanted < block.firstRow; });
    const auto block = behind - 1;
    return Place{static_cast<std::size_t>(block - blocks_.begin()), row - block->firstRow};
}

QVariantMap CleanupListModel::row(int row) const {
    QVariantMap values;
    if (!place(row)) return values;
    const QHash<int, QByteArray> names = roleNames();
    for (auto role = names.begin(); role != names.end(); ++role) {
        values.insert(QString::fromLatin1(*role), data(index(row), role.key()));
    }
    return values;
}

int CleanupListModel::kind(int row) const {
    const auto found = place(row);
    if (!found || blocks_[found->block].kind == ListBlock::Kind::band) return Band;
    return found->offset == 0 ? Group : Item;
}

bool CleanupListModel::isExpanded(int row) const {
    const auto found = place(row);
    return found && found->offset == 0 && blocks_[found->block].isExpanded;
}

void CleanupListModel::setExpanded(int row, bool expanded) {
    const auto found = place(row);
    if (!found || found->offset != 0) return;
    ListBlock& block = blocks_[found->block];
    if (block.kind != ListBlock::Kind::group || block.isExpanded == expanded) return;
    block.isExpanded = expanded;
    if (expanded) {
        expanded_.insert(block.key);
        insertItems(found->block, 0, pointers(block.group.items));
    } else {
        expanded_.erase(block.key);
        removeItems(found->block, 0, block.shown.size());
    }
    tellChanged(row, row, {ExpandedRole, LastRole});
}

void CleanupListModel::toggle(int row) {
    const auto found = place(row);
    if (!found) return;
    const ListBlock& block = blocks_[found->block];
    if (block.kind == ListBlock::Kind::band) {
        model_->toggleSection(block.section);
    } else if (found->offset == 0) {
        model_->toggleGroup(CleanupGroup(block.group));
    } else {
        const ScannableItem item = *block.shown[static_cast<std::size_t>(found->offset - 1)];
        model_->setSelected(!model_->selectedItemIDs->contains(item.url), item);
    }
}

int CleanupListModel::bandRow(int row) const {
    const auto found = place(row);
    if (!found) return -1;
    for (std::size_t i = found->block + 1; i > 0; --i) {
        if (blocks_[i - 1].kind == ListBlock::Kind::band) return blocks_[i - 1].firstRow;
    }
    return -1;
}

int CleanupListModel::nextBandRow(int row) const {
    const auto found = place(row);
    if (!found) return -1;
    for (std::size_t i = found->block + 1; i < blocks_.size(); ++i) {
        if (blocks_[i].kind == ListBlock::Kind::band) return blocks_[i].firstRow;
    }
    return -1;
}

int CleanupListModel::headerRow(int row) const {
    const auto found = place(row);
    return found ? blocks_[found->block].firstRow : -1;
}

int CleanupListModel::rowOfGroup(std::string_view groupID) const {
    for (const ListBlock& block : blocks_) {
        if (block.kind == ListBlock::Kind::group && block.group.id == groupID) return block.firstRow;
    }
    return -1;
}

std::optional<FileURL> CleanupListModel::url(int row) const {
    const auto found = place(row);
    if (!found) return std::nullopt;
    const ListBlock& block = blocks_[found->block];
    if (found->offset > 0) return block.shown[static_cast<std::size_t>(found->offset - 1)]->url;
    if (block.group.items.size() == 1) return block.group.items.front().url;
    return std::nullopt;
}

QVariant CleanupListModel::data(const QModelIndex& index, int role) const {
    const auto found = place(index.isValid() ? index.row() : -1);
    if (!found) return {};
    const ListBlock& block = blocks_[found->block];
    if (block.kind == ListBlock::Kind::band) return bandValue(block, role);
    return found->offset == 0 ? groupValue(block, role) : itemValue(block, found->offset, role);
}

} // namespace vesko
