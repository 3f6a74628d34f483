#include "orchestration/CleanupFixture.h"

#include <rapidcheck/gtest.h>

namespace vesko::testing {
namespace {

/// What the kept figures must always equal.
GroupFigures walkedFigures(const CleanupViewModel& model, const CleanupGroup& group) {
    GroupFigures figures;
    std::int64_t selectable = 0;
    std::int64_t selected = 0;
    for (const ScannableItem& each : group.items) {
        const bool isSelected = model.selectedItemIDs->contains(each.url);
        const bool isSelectable = each.enrichmentKey.rawValue != "docker:unsupported";
        figures.itemCount += 1;
        figures.totalBytes += each.size;
        figures.selectedCount += isSelected;
        figures.selectedBytes += isSelected ? each.size : 0;
        selectable += isSelectable;
        selected += isSelectable && isSelected;
    }
    figures.isSelectable = selectable > 0;
    figures.selection = selected == 0            ? TriState::off
                        : selected == selectable ? TriState::on
                                                 : TriState::mixed;
    return figures;
}

class CleanupSelectionProperty : public CleanupTest {
protected:
    CleanupSelectionProperty() { make(); }
};

RC_GTEST_FIXTURE_PROP(CleanupSelectionProperty, TheKeptFiguresAreThoseOfAPlainWalk, ()) {
    std::vector<CleanupGroup> list;
    const int groupCount = *rc::gen::inRange(0, 5);
    for (int index = 0; index < groupCount; ++index) {
        std::vector<ScannableItem> items;
        const int itemCount = *rc::gen::inRange(0, 6);
        for (int each = 0; each < itemCount; ++each) {
            const std::string path = "/" + std::to_string(*rc::gen::inRange(0, 9));
            items.push_back(*rc::gen::arbitrary<bool>() ? item(path, *rc::gen::inRange(0, 50))
                                                        : item(path, 7, "docker:unsupported"));
        }
        list.push_back(group("g" + std::to_string(*rc::gen::inRange(0, 4)), items));
    }
    model->groups = list;
    for (int step = *rc::gen::inRange(1, 8); step > 0; --step) {
        const int choice = *rc::gen::inRange(0, 4);
        if (choice == 0 && !list.empty()) {
            model->toggleGroup(list[static_cast<std::size_t>(*rc::gen::inRange(0, groupCount))]);
        } else if (choice == 1) {
            model->setSelected(*rc::gen::arbitrary<bool>(),
                               item("/" + std::to_string(*rc::gen::inRange(0, 9))));
        } else if (choice == 2) {
            model->applyDefaultSelection();
        } else if (!list.empty()) {
            list.erase(list.begin());
            list.push_back(group("g1", {item("/1", step), item("/2", 3)}));
            model->groups = list;
        }
        GroupFigures sum;
        for (const CleanupGroup& each : *model->groups) {
            const GroupFigures walked = walkedFigures(*model, each);
            RC_ASSERT(model->groupFigures(each) == walked);
            RC_ASSERT(model->selectionState(each.items) == walked.selection);
            sum.totalBytes += walked.totalBytes;
            sum.selectedBytes += walked.selectedBytes;
            sum.selectedCount += walked.selectedCount;
        }
        RC_ASSERT(model->selectedBytes() == sum.selectedBytes);
        RC_ASSERT(model->selectedCount() == sum.selectedCount);
        RC_ASSERT(model->recoverableBytes() == sum.totalBytes);
    }
}

} // namespace
} // namespace vesko::testing
