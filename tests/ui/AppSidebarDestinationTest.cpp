#include "ui/AppSidebarDestination.h"
#include "ui/WindowModel.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

TEST(AppSidebarDestination, AllCasesStandInOrderWithRawValueLabelAndIcon) {
    ASSERT_EQ(allDestinations.size(), 2u);
    EXPECT_EQ(rawValue(allDestinations[0]), "home");
    EXPECT_EQ(labelKey(allDestinations[0]), "sidebar.home");
    EXPECT_EQ(iconName(allDestinations[0]), "house");
    EXPECT_EQ(rawValue(allDestinations[1]), "cleanup");
    EXPECT_EQ(labelKey(allDestinations[1]), "sidebar.cleanup");
    EXPECT_EQ(iconName(allDestinations[1]), "trash");
}

TEST(AppSidebarDestination, ARawValueLeadsBackToItsCase) {
    for (const AppSidebarDestination each : allDestinations)
        EXPECT_EQ(destinationFromRawValue(rawValue(each)), each);
    EXPECT_FALSE(destinationFromRawValue(QStringLiteral("settings")));
}

WindowModelParts granted() {
    return {.accessTest = [] { return true; }, .openAccessSettings = {}};
}

TEST(WindowModel, BeginsAtHome) {
    WindowModel shell(granted());
    EXPECT_EQ(shell.selection(), "home");
}

TEST(WindowModel, TakesNoDestinationThatDoesNotExist) {
    WindowModel shell(granted());
    shell.setSelection(QStringLiteral("settings"));
    shell.selectDestination(7);
    EXPECT_EQ(shell.selection(), "home");
    shell.selectDestination(1);
    EXPECT_EQ(shell.selection(), "cleanup");
}

TEST(WindowModel, AGrantFoundByTheCheckIsToldOnce) {
    bool access = false;
    WindowModel shell({.accessTest = [&] { return access; }, .openAccessSettings = {}});
    int grants = 0;
    QObject::connect(&shell, &WindowModel::accessGranted, &shell, [&] { ++grants; });
    EXPECT_FALSE(shell.hasFullDiskAccess());
    shell.checkAccess();
    EXPECT_FALSE(shell.hasFullDiskAccess());
    EXPECT_EQ(grants, 0);
    access = true;
    shell.checkAccess();
    shell.checkAccess();
    EXPECT_TRUE(shell.hasFullDiskAccess());
    EXPECT_EQ(grants, 1);
}

TEST(WindowModel, ASettingsLinkThatCantBeFormedDoesNothing) {
    WindowModel shell(granted());
    shell.openAccessSettings();
    SUCCEED() << "no crash without an action";
}

} // namespace
} // namespace vesko
