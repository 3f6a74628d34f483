#include "orchestration/CleanupViewModel.h"
#include "ui/CleanupListModel.h"
#include <algorithm>
#include <utility>

// The verdicts of the groups. A group is as risky as its riskiest item, so a change of what is known asks for
// a walk over all its items: of a small group at once, of a large one a piece in each turn of the loop, the
// last finished verdict being shown meanwhile.
namespace vesko {

GroupVerdict CleanupListModel::verdict(const ListBlock& block) const {
    if (isJudgedInPieces(block.group)) return block.verdict;
    ResolvedEnrichment resolved = model_->resolveGroup(block.group);
    return {resolved.safety, std::move(resolved.reason), resolved.isAIRefined, resolved.isAnalyzing,
            resolved.isAIDiscovered};
}

void CleanupListModel::judgeAnew(ListBlock& block) {
    block.isBeingJudged = isJudgedInPieces(block.group);
    if (!block.isBeingJudged) return;
    block.judgedItems = 0;
    block.nextVerdict = model_->beginVerdict(block.group);
    if (!pieceDue_.isActive()) pieceDue_.start();
}

void CleanupListModel::judgeAPiece() {
    const auto block = std::find_if(blocks_.begin(), blocks_.end(),
                                    [](const ListBlock& each) { return each.isBeingJudged; });
    if (block == blocks_.end()) return;
    model_->continueVerdict(block->nextVerdict, block->group, block->judgedItems, itemsAtOnce);
    block->judgedItems += itemsAtOnce;
    if (block->judgedItems >= block->group.items.size()) {
        block->isBeingJudged = false;
        if (std::exchange(block->verdict, block->nextVerdict) != block->nextVerdict) {
            tellChanged(block->firstRow, block->firstRow,
                        {DetailRole, SafetyRole, AnalyzingRole, DiscoveredRole});
        }
    }
    pieceDue_.start();
}

} // namespace vesko
