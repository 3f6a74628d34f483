#pragma once
#include "base/Date.h"
#include <map>
#include <string>

namespace vesko {

/// The remembered state of what a probe looked at: path to date. Empty means that nothing is known.
struct ProbeFingerprint {
    std::map<std::string, Date> pathMtimes;

    friend bool operator==(const ProbeFingerprint&, const ProbeFingerprint&) = default;
};

/// Probe id to what it looked at.
using ProbeFingerprints = std::map<std::string, ProbeFingerprint>;

} // namespace vesko
