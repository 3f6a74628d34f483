#include "background/NotificationAlertKind.h"

#include <gtest/gtest.h>

namespace vesko {
namespace {

TEST(NotificationAlertKind, IsWrittenByTheCasesName) {
    EXPECT_EQ(notificationAlertKindWord(NotificationAlertKind::lowSpace), "lowSpace");
    EXPECT_EQ(notificationAlertKindWord(NotificationAlertKind::largeNewOpportunity), "largeNewOpportunity");
    EXPECT_EQ(notificationAlertKindWord(NotificationAlertKind::scanCompleted), "scanCompleted");
}

TEST(NotificationAlertKind, IsReadFromItsWordAlone) {
    for (const auto kind : {NotificationAlertKind::lowSpace, NotificationAlertKind::largeNewOpportunity,
                            NotificationAlertKind::scanCompleted})
        EXPECT_EQ(notificationAlertKindFromWord(notificationAlertKindWord(kind)), kind);
    EXPECT_EQ(notificationAlertKindFromWord("lowspace"), std::nullopt);
    EXPECT_EQ(notificationAlertKindFromWord(""), std::nullopt);
}

} // namespace
} // namespace vesko
