#pragma once
#include "ui/ListBlock.h"
#include <QAbstractListModel>
#include <QTimer>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace vesko {

class CleanupViewModel;

/// The Cleanup screen's list: bands, their groups, and the items of expanded groups, as one flat list. It
/// follows the view model by insertions, removals, moves and changes, never by a reset, so that the view
/// keeps its place. Rows are worked out when they are asked for; an item costs a pointer. Main thread.
class CleanupListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")

public:
    enum Kind { Band, Group, Item };
    Q_ENUM(Kind)
    enum Role {
        KindRole = Qt::UserRole,
        TitleRole,
        DetailRole,    ///< a group's reason, an item's parent folder
        SizeRole,      ///< formatted
        CheckRole,     ///< a TriState
        CheckableRole, ///< whether the box takes clicks
        ExpandedRole,
        IconRole,
        TintRole,   ///< a SegmentColor
        SafetyRole, ///< a Safety
        AnalyzingRole,
        DiscoveredRole, ///< the review added it
        PathRole,       ///< an item's full path, fit to be shown; otherwise empty
        FirstRole,      ///< first row of its card
        LastRole,       ///< last row of its card
    };
    Q_ENUM(Role)

    explicit CleanupListModel(std::shared_ptr<CleanupViewModel> model, QObject* parent = nullptr);
    ~CleanupListModel() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Takes over the view model's present state.
    void refresh();
    /// Every text may read differently now.
    void languageChanged();

    /// Every role of a row by its name; empty for a row that does not exist.
    Q_INVOKABLE QVariantMap row(int row) const;
    Q_INVOKABLE int kind(int row) const;
    Q_INVOKABLE bool isExpanded(int row) const;
    /// Shows or hides the items of the group at this row; anything else is left alone.
    Q_INVOKABLE void setExpanded(int row, bool expanded);
    /// What a click on the row's box asks for: the item, all of the group, all of the band.
    void toggle(int row);
    /// The header row of the band that `row` belongs to, -1 without rows.
    Q_INVOKABLE int bandRow(int row) const;
    /// The header row of the next band, -1 behind the last.
    Q_INVOKABLE int nextBandRow(int row) const;
    /// The header row of the group that `row` belongs to, `row` itself for a band.
    Q_INVOKABLE int headerRow(int row) const;
    /// -1 when no such group is listed.
    int rowOfGroup(std::string_view groupID) const;
    /// What is revealed and copied for a row: the item's own URL, the first item's of a group with one item.
    std::optional<FileURL> url(int row) const;

private:
    struct Place {
        std::size_t block;
        int offset; ///< 0 is the header
    };
    std::optional<Place> place(int row) const;

    std::vector<ListBlock> present() const;
    void matchBlocks(std::vector<ListBlock>& wanted);
    void insertBlocks(std::size_t at, std::vector<ListBlock> added);
    void removeBlocks(std::size_t from, std::size_t count);
    void moveBlock(std::size_t from, std::size_t to);
    void takeOver(std::size_t at, ListBlock& wanted, bool verdictsChanged, bool selectionChanged);
    void matchItems(std::size_t at, const ItemList& items);
    void insertItems(std::size_t at, std::size_t offset, std::vector<const ScannableItem*> added);
    void removeItems(std::size_t at, std::size_t offset, std::size_t count);
    void number(std::size_t from = 0);
    void tellChanged(int first, int last, const QList<int>& roles = {});

    /// Whether a group's verdict is worked out a piece a turn, so that no turn is felt.
    static bool isJudgedInPieces(const CleanupGroup& group) { return group.items.size() > itemsAtOnce; }
    void judgeAnew(ListBlock& block);
    void judgeAPiece();
    GroupVerdict verdict(const ListBlock& block) const;

    static constexpr std::size_t itemsAtOnce = 6000;

    QVariant bandValue(const ListBlock& block, int role) const;
    QVariant groupValue(const ListBlock& block, int role) const;
    QVariant itemValue(const ListBlock& block, int offset, int role) const;

    std::shared_ptr<CleanupViewModel> model_;
    std::vector<ListBlock> blocks_;
    std::set<std::string> expanded_; ///< keys, also of groups that a running scan has yet to find again
    std::uint64_t verdictRevision_ = 0;
    std::uint64_t selectionRevision_ = 0;
    int rows_ = 0;
    QTimer pieceDue_;
};

} // namespace vesko
