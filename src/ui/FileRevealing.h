#pragma once
#include "base/FileURL.h"

namespace vesko {

/// Shows files to the person in the system's file manager. Returns at once; a failure shows nothing.
class FileRevealing {
public:
    virtual ~FileRevealing() = default;
    /// Opens the folder that holds `url`, with the entry marked where the file manager can do that.
    virtual void reveal(const FileURL& url) = 0;
};

} // namespace vesko
