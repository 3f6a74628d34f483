#pragma once
#include "base/FileURL.h"
#include <string>
#include <vector>

namespace vesko {

/// A program and what it is told.
struct FinderCommand {
    std::string program;
    std::vector<std::string> arguments;
};

/// What has the Finder open the folder of `url` with the entry selected: open(1) with -R.
FinderCommand finderCommand(const FileURL& url);

} // namespace vesko
