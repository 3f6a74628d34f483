#pragma once
#include "base/Date.h"
#include "base/FileURL.h"
#include "core/InstalledApplications.h"
#include "probes/RunTool.h"
#include "probes/SpotlightQuerying.h"
#include <functional>
#include <vector>

namespace vesko {

/// Asks the search index for each folder of applications, by a child of its own, and measures what it names.
/// A folder that can't be searched, an answer that is no UTF-8 and an application that is gone lose what they
/// concern and nothing else. An application whose name begins with "com.apple." is the system's.
class UninstallerSpotlightQuery final : public SpotlightQuerying {
public:
    /// How a child is started; runTool.
    using ToolRunning =
        std::function<std::optional<ChildResult>(const std::string&, const std::vector<std::string>&)>;

    explicit UninstallerSpotlightQuery(std::vector<FileURL> applicationRoots = vesko::applicationRoots(),
                                       ToolRunning run = runTool, const DateSource& dates = systemDates());

    const std::vector<FileURL>& applicationRoots() const noexcept { return applicationRoots_; }
    std::vector<ScannableItem> unusedApplications(std::int64_t olderThanDays) const override;

private:
    std::vector<FileURL> applicationRoots_;
    ToolRunning run_;
    const DateSource* dates_;
};

} // namespace vesko
