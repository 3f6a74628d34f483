#pragma once
#include "core/ParallelSizeInput.h"
#include "core/ScanProbe.h"
#include <cstdint>
#include <string>

namespace vesko {

/// What a row of the catalog says of a folder in which each application has a folder of its own.
struct ShallowScanRow {
    GroupMetadata metadata;
    std::string relativeRoot;     ///< the folder to list, below the home folder
    std::int64_t minBytes = 0;    ///< smallest size of an item
    bool onlyUninstalled = false; ///< true: only names in the form of a bundle identifier that no installed
                                  ///< application bears; false: every entry

    friend bool operator==(const ShallowScanRow&, const ShallowScanRow&) = default;
};

/// Offers the visible entries of one folder, one level deep, as folders, loose files too; paths that are
/// claimed by others are left out. A folder that can't be listed is no error: there is nothing.
class ShallowScanProbe final : public ScanProbe {
public:
    explicit ShallowScanProbe(ShallowScanRow row);

    const ShallowScanRow& row() const noexcept { return row_; }
    const GroupMetadata& metadata() const noexcept override { return row_.metadata; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    bool isKept(const FileURL& child, const ProbeContext& context) const;
    ParallelSizeInput input(const FileURL& child) const;

    ShallowScanRow row_;
};

} // namespace vesko
