#include "ui/HomeListModel.h"
#include <algorithm>
#include <utility>

namespace vesko {

namespace {

QString text(const std::string& value) { return QString::fromStdString(value); }

} // namespace

int HomeListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant HomeListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const HomeRow& row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case IdRole: return text(row.id);
    case TitleRole: return text(row.title);
    case DetailRole: return text(row.detail);
    case IconRole: return text(row.icon);
    case AmountRole: return text(row.amount);
    case TintRole: return static_cast<int>(row.tint);
    case SafetyRole: return static_cast<int>(row.safety);
    case BusyRole: return row.isBusy;
    case SelectedRole: return row.isSelected;
    default: return {};
    }
}

QHash<int, QByteArray> HomeListModel::roleNames() const {
    return {{IdRole, "rowID"},      {TitleRole, "title"},   {DetailRole, "detail"},
            {IconRole, "icon"},     {AmountRole, "amount"}, {TintRole, "tint"},
            {SafetyRole, "safety"}, {BusyRole, "busy"},     {SelectedRole, "selected"}};
}

void HomeListModel::take(std::vector<HomeRow> wanted) {
    const int before = count();
    removeMissing(wanted);
    for (std::size_t i = 0; i < wanted.size(); ++i) put(static_cast<int>(i), std::move(wanted[i]));
    if (count() != before) Q_EMIT countChanged();
}

void HomeListModel::removeMissing(const std::vector<HomeRow>& wanted) {
    for (int i = count() - 1; i >= 0; --i) {
        const std::string& id = rows_[static_cast<std::size_t>(i)].id;
        if (std::ranges::find(wanted, id, &HomeRow::id) != wanted.end()) continue;
        beginRemoveRows({}, i, i);
        rows_.erase(rows_.begin() + i);
        endRemoveRows();
    }
}

/// Everything above `place` stands already.
void HomeListModel::put(int place, HomeRow row) {
    const auto known = std::find_if(rows_.begin() + place, rows_.end(),
                                    [&](const HomeRow& each) { return each.id == row.id; });
    if (known == rows_.end()) {
        beginInsertRows({}, place, place);
        rows_.insert(rows_.begin() + place, std::move(row));
        endInsertRows();
        return;
    }
    const int from = static_cast<int>(known - rows_.begin());
    if (from != place) {
        beginMoveRows({}, from, from, {}, place);
        std::rotate(rows_.begin() + place, known, known + 1);
        endMoveRows();
    }
    HomeRow& kept = rows_[static_cast<std::size_t>(place)];
    if (kept == row) return;
    kept = std::move(row);
    Q_EMIT dataChanged(index(place), index(place));
}

} // namespace vesko
