#include "platform/posix/FolderNode.h"

#include <algorithm>

namespace vesko {

namespace {

/// Writes `part` so that it ends where `end` points, and moves `end` to its beginning.
void putBefore(std::string& text, std::size_t& end, std::string_view part) {
    end -= part.size();
    std::copy(part.begin(), part.end(), text.begin() + static_cast<std::ptrdiff_t>(end));
}

} // namespace

std::string FolderNode::path() const { return pathOf({}); }

std::string FolderNode::pathOf(std::string_view entry) const {
    const auto isRootFolder = [](const FolderNode* node) { return !node->parent_ && node->name_ == "/"; };
    std::size_t length = entry.empty() ? 0 : entry.size() + 1;
    for (const FolderNode* node = this; node; node = node->parent_)
        if (!isRootFolder(node)) length += node->name_.size() + (node->parent_ ? 1 : 0);
    if (length == 0) return "/";
    std::string text(length, '/');
    std::size_t end = length;
    if (!entry.empty()) {
        putBefore(text, end, entry);
        --end;
    }
    for (const FolderNode* node = this; node; node = node->parent_) {
        if (isRootFolder(node)) continue;
        putBefore(text, end, node->name_);
        if (node->parent_) --end;
    }
    return text;
}

FolderNodeRef FolderNodeRef::root(std::string path) {
    return FolderNodeRef(new FolderNode(nullptr, std::move(path), false, 0));
}

FolderNodeRef FolderNodeRef::below(const FolderNodeRef& parent, std::string name, bool isThroughLink,
                                   std::uint32_t number) {
    parent.node_->references_.fetch_add(1, std::memory_order_relaxed);
    return FolderNodeRef(new FolderNode(parent.node_, std::move(name), isThroughLink, number));
}

void FolderNodeRef::release() noexcept {
    const FolderNode* node = std::exchange(node_, nullptr);
    while (node && node->references_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        const FolderNode* above = node->parent_;
        delete node;
        node = above;
    }
}

} // namespace vesko
