#include "probes/UnusedAppsProbe.h"

#include "core/GroupBuilders.h"

namespace vesko {

ProbeResult UnusedAppsProbe::run(const ProbeContext&) const {
    return makeResult(metadata_, query_->unusedApplications(olderThanDays_));
}

} // namespace vesko
