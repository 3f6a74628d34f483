#include "core/FastDirectorySize.h"

#include "AttributeRecord.h"
#include <sys/attr.h>
#include <unistd.h>

namespace vesko {

std::optional<std::int64_t> fastDirectorySize(const FileURL& url, bool /*followLinks*/) {
    attrlist wanted{};
    wanted.bitmapcount = ATTR_BIT_MAP_COUNT;
    wanted.dirattr = ATTR_DIR_ALLOCSIZE;
    char answer[quickAnswerBytes]{};
    if (::getattrlist(url.path().c_str(), &wanted, answer, sizeof answer, 0) != 0) return std::nullopt;
    return quickFigure(answer);
}

} // namespace vesko
