#include "base/QuietReading.h"

#include "execution/Remover.h"
#include "platform/macos/FakePolicies.h"
#include "support/TempTree.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using testing::fakePolicies;
using testing::TempTree;

using Setting = testing::FakePolicies::Setting;
constexpr int placeholders = IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES;
constexpr int offPolicy = IOPOL_MATERIALIZE_DATALESS_FILES_OFF;
constexpr int onPolicy = IOPOL_MATERIALIZE_DATALESS_FILES_ON;
constexpr int ofProcess = IOPOL_MATERIALIZE_DATALESS_FILES_DEFAULT;

class QuietReadingOnMacos : public ::testing::Test {
protected:
    QuietReadingOnMacos() { fakePolicies() = {}; }
};

TEST_F(QuietReadingOnMacos, TheWholeProcessLeavesDatesAndPlaceholdersAlone) {
    readQuietly();
    EXPECT_THAT(fakePolicies().set, ElementsAre(Setting{IOPOL_TYPE_VFS_ATIME_UPDATES, IOPOL_SCOPE_PROCESS,
                                                        IOPOL_ATIME_UPDATES_OFF},
                                                Setting{placeholders, IOPOL_SCOPE_PROCESS, offPolicy}));
}

TEST_F(QuietReadingOnMacos, AThreadMayFetchForAWhileAndThenDoesAsBefore) {
    {
        const PlaceholderFetching fetching;
        EXPECT_EQ(fakePolicies().ofThread, onPolicy);
        {
            const PlaceholderFetching again;
            EXPECT_EQ(fakePolicies().ofThread, onPolicy);
        }
        EXPECT_EQ(fakePolicies().ofThread, onPolicy);
    }
    EXPECT_EQ(fakePolicies().ofThread, ofProcess);
}

TEST_F(QuietReadingOnMacos, APolicyThatCannotBeReadGivesWayToTheProcesss) {
    fakePolicies().hidesThem = true;
    { const PlaceholderFetching fetching; }
    EXPECT_THAT(fakePolicies().set, ElementsAre(Setting{placeholders, IOPOL_SCOPE_THREAD, onPolicy},
                                                Setting{placeholders, IOPOL_SCOPE_THREAD, ofProcess}));
}

TEST_F(QuietReadingOnMacos, RemovingLooksIntoThemAndMeasuringAfterwardsDoesNot) {
    const TempTree tree;
    tree.file("folder/inside");
    EXPECT_FALSE(removeForGood(tree.url("folder"), {}, {}));
    EXPECT_THAT(fakePolicies().set, ElementsAre(Setting{placeholders, IOPOL_SCOPE_THREAD, onPolicy},
                                                Setting{placeholders, IOPOL_SCOPE_THREAD, ofProcess}));
}

} // namespace
} // namespace vesko
