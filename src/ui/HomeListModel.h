#pragma once
#include "ui/HomeRow.h"
#include <QAbstractListModel>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace vesko {

/// A short list of the Home screen. It follows what it is given by insertions, removals, moves and changes of
/// single rows, told apart by their ids, never by a reset: a row that fills keeps its place and the keyboard.
/// Main thread.
class HomeListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        IdRole = Qt::UserRole,
        TitleRole,
        DetailRole,
        IconRole,
        AmountRole,
        TintRole,   ///< a SegmentColor
        SafetyRole, ///< a Safety
        BusyRole,
        SelectedRole,
    };
    Q_ENUM(Role)

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;
    int count() const { return static_cast<int>(rows_.size()); }

    const std::vector<HomeRow>& rows() const { return rows_; }
    /// Becomes these rows; their ids differ.
    void take(std::vector<HomeRow> wanted);

Q_SIGNALS:
    void countChanged();

private:
    void removeMissing(const std::vector<HomeRow>& wanted);
    void put(int place, HomeRow row);

    std::vector<HomeRow> rows_;
};

} // namespace vesko
