#include "ui/SegmentList.h"
#include "base/ByteFormat.h"
#include <QVariantMap>

namespace vesko {

QVariantList segmentList(const std::vector<StorageSegment>& segments) {
    QVariantList list;
    for (const StorageSegment& segment : segments) {
        list.append(
            QVariantMap{{QStringLiteral("id"), QString::fromStdString(segment.id)},
                        {QStringLiteral("title"), QString::fromStdString(segment.title)},
                        {QStringLiteral("bytes"), static_cast<double>(segment.bytes)},
                        {QStringLiteral("amount"), QString::fromStdString(formatBytes(segment.bytes))},
                        {QStringLiteral("color"), static_cast<int>(segment.color)},
                        {QStringLiteral("interactive"), segment.isInteractive}});
    }
    return list;
}

} // namespace vesko
