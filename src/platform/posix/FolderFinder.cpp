#include "platform/posix/FolderFinder.h"

#include <algorithm>
#include <vector>

namespace vesko {

namespace {

using Way = std::vector<const FolderNode*>;

bool isThis(const FolderHandle& handle, const FolderIdentity& identity) {
    const AskedStatus status = folderStatus(handle);
    return status && status->identity == identity;
}

bool liesBelow(const FolderNode* node, const FolderNode& above) {
    while (node && node->depth() > above.depth()) {
        if (node->isThroughLink()) return false; // its ".." leads elsewhere
        node = node->parent();
    }
    return node == &above;
}

/// Opens ".." so many times; each handle is closed once the next is there.
OpenedFolder climb(const FolderHandle& from, std::size_t levels) {
    OpenedFolder handle = openFolderAbove(from);
    for (; handle && levels > 1; --levels) handle = openFolderAbove(*handle);
    return handle;
}

/// The names from `first` up to the next node that was entered through a link; moves `first` there.
std::string plainNames(Way::const_iterator& first, Way::const_iterator end) {
    std::string names;
    for (; first != end && !(*first)->isThroughLink(); ++first) {
        if (!names.empty()) names += '/';
        names += (*first)->name();
    }
    return names;
}

OpenedFolder descend(const FolderNode& wanted, const FolderHandle& root) {
    Way way;
    for (const FolderNode* node = &wanted; node->parent(); node = node->parent()) way.push_back(node);
    std::reverse(way.begin(), way.end());
    OpenedFolder handle = openFolderBelow(root, {}, Mounts::refuse);
    for (auto next = way.cbegin(); handle && next != way.cend();) {
        if ((*next)->isThroughLink()) {
            handle = openLinkedFolder(*handle, (*next)->name());
            ++next;
        } else {
            handle = openFolderBelow(*handle, plainNames(next, way.cend()), Mounts::refuse);
        }
    }
    return handle;
}

} // namespace

void OpenFolder::closeHandle() {
    if (!handle) return;
    if (const AskedStatus status = folderStatus(*handle)) identity = status->identity;
    handle.reset();
}

std::error_code reopen(OpenFolder& folder, const OpenFolder& below, const SharedHandle& root) {
    const FolderNode& wanted = *folder.node;
    if (!wanted.parent()) {
        folder.handle = root;
        return {};
    }
    if (below.isOpen() && below.node.node() != &wanted && liesBelow(below.node.node(), wanted)) {
        OpenedFolder found = climb(*below.handle, below.node->depth() - wanted.depth());
        if (found && isThis(*found, folder.identity)) {
            folder.handle = std::make_shared<const FolderHandle>(std::move(*found));
            return {};
        }
    }
    OpenedFolder found = descend(wanted, *root);
    if (!found) return found.error();
    if (!isThis(*found, folder.identity)) return std::make_error_code(std::errc::no_such_file_or_directory);
    folder.handle = std::make_shared<const FolderHandle>(std::move(*found));
    return {};
}

} // namespace vesko
