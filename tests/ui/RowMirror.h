#pragma once
#include "ui/CleanupListModel.h"
#include <QObject>
#include <QVariantMap>
#include <algorithm>
#include <vector>

namespace vesko::testing {

/// Every role of every row.
inline std::vector<QVariantMap> allRows(const CleanupListModel& list) {
    std::vector<QVariantMap> rows;
    for (int row = 0; row < list.rowCount(); ++row) rows.push_back(list.row(row));
    return rows;
}

/// A copy of a list's rows that is kept up by its signals alone, as a view keeps it.
class RowMirror {
public:
    explicit RowMirror(const CleanupListModel& list) : list_(list), rows_(allRows(list)) {
        QObject::connect(&list, &QAbstractItemModel::rowsInserted, &here_,
                         [this](const QModelIndex&, int first, int last) {
                             for (int row = first; row <= last; ++row) rows_.insert(at(row), list_.row(row));
                         });
        QObject::connect(
            &list, &QAbstractItemModel::rowsRemoved, &here_,
            [this](const QModelIndex&, int first, int last) { rows_.erase(at(first), at(last + 1)); });
        QObject::connect(&list, &QAbstractItemModel::rowsMoved, &here_,
                         [this](const QModelIndex&, int first, int last, const QModelIndex&, int to) {
                             if (to < first) {
                                 std::rotate(at(to), at(first), at(last + 1));
                             } else {
                                 std::rotate(at(first), at(last + 1), at(to));
                             }
                         });
        QObject::connect(&list, &QAbstractItemModel::dataChanged, &here_,
                         [this](const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) {
                             const auto names = list_.roleNames();
                             for (int row = first.row(); row <= last.row(); ++row) {
                                 const QVariantMap now = list_.row(row);
                                 if (roles.isEmpty()) *at(row) = now;
                                 for (const int role : roles) {
                                     const QString name = QString::fromLatin1(names.value(role));
                                     at(row)->insert(name, now.value(name));
                                 }
                             }
                         });
        QObject::connect(&list, &QAbstractItemModel::modelReset, &here_, [this] { ++resets_; });
    }

    const std::vector<QVariantMap>& rows() const { return rows_; }
    int resets() const { return resets_; }

private:
    std::vector<QVariantMap>::iterator at(int row) { return rows_.begin() + row; }

    const CleanupListModel& list_;
    std::vector<QVariantMap> rows_;
    QObject here_;
    int resets_ = 0;
};

} // namespace vesko::testing
