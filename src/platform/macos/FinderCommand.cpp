#include "FinderCommand.h"

namespace vesko {

FinderCommand finderCommand(const FileURL& url) { return {"/usr/bin/open", {"-R", url.path()}}; }

} // namespace vesko
