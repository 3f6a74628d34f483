#include "app/ScanStatistics.h"

#include "base/ChildProcess.h"
#include "platform/posix/WalkCounts.h"
#include <nlohmann/json.hpp>

namespace vesko {
namespace {

using Json = nlohmann::ordered_json;

Json json(const WalkCounts& counts) {
    return {{"foldersRead", counts.foldersRead},
            {"foldersOpened", counts.foldersOpened},
            {"entriesRead", counts.entriesRead},
            {"readingCalls", counts.readingCalls},
            {"statusCalls", counts.statusCalls}};
}

} // namespace

std::string statisticsLine() {
    return Json({{"event", "statistics"},
                 {"measuring", json(walkCounts(WalkPurpose::measuring))},
                 {"searching", json(walkCounts(WalkPurpose::searching))},
                 {"childrenStarted", childrenStarted()}})
        .dump();
}

} // namespace vesko
