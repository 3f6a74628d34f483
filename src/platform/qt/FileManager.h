#pragma once
#include "ui/FileRevealing.h"

namespace vesko {

/// The system's file manager. On Linux it is asked over the session bus to show the entry marked
/// (org.freedesktop.FileManager1.ShowItems, the desktop's common interface); where nobody answers, the folder
/// is opened with the program that the desktop has for folders. On macOS the Finder shows the entry. Waits
/// for no answer. Main thread.
class FileManager final : public FileRevealing {
public:
    void reveal(const FileURL& url) override;
    /// Opens a folder.
    static void openFolder(const FileURL& folder);
};

} // namespace vesko
