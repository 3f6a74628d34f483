#include "ui/Icon.h"
#include "core/ProbeCatalog.h"
#include "orchestration/ConsultantCategory.h"
#include "ui/AppSidebarDestination.h"
#include <QDir>
#include <QSvgRenderer>
#include <gtest/gtest.h>

namespace vesko {
namespace {

TEST(Icon, EveryGroupOfTheCatalogHasADrawing) {
    ASSERT_FALSE(probeMetadataByID().empty());
    for (const auto& [id, metadata] : probeMetadataByID()) {
        EXPECT_TRUE(hasIcon(QString::fromStdString(metadata.icon))) << id << ": " << metadata.icon;
    }
}

TEST(Icon, EverySymbolOfTheScreensHasADrawing) {
    for (const char* name : {"house",
                             "trash",
                             "magnifyingglass",
                             "sparkles",
                             "arrow.clockwise",
                             "exclamationmark.triangle.fill",
                             "exclamationmark.triangle",
                             "xmark",
                             "square",
                             "minus.square.fill",
                             "checkmark.square.fill",
                             "chevron.right",
                             "arrow.up.forward.square",
                             "lock.shield",
                             "internaldrive",
                             "mark",
                             "checkmark",
                             "eye",
                             "gearshape",
                             "arrow.triangle.2.circlepath",
                             "info.circle",
                             "envelope"}) {
        EXPECT_TRUE(hasIcon(QString::fromLatin1(name))) << name;
    }
    for (const AppSidebarDestination destination : allDestinations)
        EXPECT_TRUE(hasIcon(iconName(destination)));
}

TEST(Icon, EveryDrawingIsOneOfTheGridOf24) {
    const QStringList files = QDir(QStringLiteral(":/icons")).entryList();
    ASSERT_GE(files.size(), 30);
    for (const QString& file : files) {
        QSvgRenderer drawing(QStringLiteral(":/icons/") + file);
        EXPECT_TRUE(drawing.isValid()) << file.toStdString();
        EXPECT_EQ(drawing.viewBox(), QRect(0, 0, 24, 24)) << file.toStdString();
    }
}

TEST(Icon, AnUnknownNameHasNone) { EXPECT_FALSE(hasIcon(QStringLiteral("no.such.symbol"))); }

} // namespace
} // namespace vesko
