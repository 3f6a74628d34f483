#include "ui/SectionColor.h"

namespace vesko {

SegmentColor sectionColor(std::string_view sectionID) noexcept {
    if (sectionID == "system" || sectionID == "caches") return SegmentColor::purple;
    if (sectionID == "apps") return SegmentColor::cyan;
    if (sectionID == "development") return SegmentColor::green;
    if (sectionID == "downloads") return SegmentColor::pink;
    if (sectionID == "installers") return SegmentColor::slate;
    return SegmentColor::muted;
}

} // namespace vesko
