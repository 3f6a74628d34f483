#pragma once
#include "platform/posix/FolderHandle.h"
#include "platform/posix/FolderNode.h"
#include <memory>

namespace vesko {

/// A handle that several may hold; closed with the last of them.
using SharedHandle = std::shared_ptr<const FolderHandle>;

/// A folder that work is left in. Its handle may be closed to spare descriptors, and found again.
struct OpenFolder {
    FolderNodeRef node;
    SharedHandle handle;
    FolderIdentity identity; ///< set by closeHandle

    bool isOpen() const noexcept { return handle != nullptr; }
    /// Remembers which folder it is, then lets go of the handle.
    void closeHandle();
};

/// Opens a folder again whose handle was closed: upwards from `below` where that is open and lies beneath it,
/// else from the root by its names, through those links only that the walk itself followed. What is found is
/// compared with what the handle was on, so a folder that was moved away is never taken for the one it was.
/// Fails when the folder is not at its place any more, and then leaves it closed.
std::error_code reopen(OpenFolder& folder, const OpenFolder& below, const SharedHandle& root);

} // namespace vesko
