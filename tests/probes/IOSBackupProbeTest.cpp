#include "probes/IOSBackupProbe.h"

#include "base/FileSystem.h"
#include "concurrency/CurrentTask.h"
#include "support/ProbeHome.h"
#include "support/builders.h"
#include <gmock/gmock.h>
#include <ostream>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ScriptedSizes;

const std::string root = "Library/Application Support/MobileSync/Backup";

class IOSBackupProbeTest : public ::testing::Test {
protected:
    ProbeResult run() const { return IOSBackupProbe(about).run(home.context); }
    std::vector<std::string> found() const {
        const ProbeResult result = run();
        EXPECT_THAT(result.errors, IsEmpty());
        return home.paths(result);
    }

    testing::ProbeHome home;
    GroupMetadata about = testing::metadata("backup.ios", "fixed");
};

TEST_F(IOSBackupProbeTest, EachVisibleFolderIsABackup) {
    home.tree.file(root + "/00008110-A/Manifest.db");
    home.tree.file(root + "/00008110-B-20250101/Manifest.db");
    home.tree.file(root + "/loose.plist");
    home.tree.file(root + "/.hidden/Manifest.db");
    home.tree.file("Library/Application Support/MobileSync/Other/file");
    EXPECT_THAT(found(), ElementsAre(root + "/00008110-A", root + "/00008110-B-20250101"));
}

TEST_F(IOSBackupProbeTest, ABackupHasTheKeyOfItsPath) {
    home.tree.file(root + "/00008110-A/Manifest.db");
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->id, "backup.ios");
    EXPECT_EQ(result.group->items, ItemList{testing::item(home.tree.path(root + "/00008110-A"), 1000, true)});
}

TEST_F(IOSBackupProbeTest, BackupsAreMeasuredAsDiskUsageAndNotLookedInto) {
    home.tree.file(root + "/00008110-A/00/file");
    home.tree.file(root + "/00008110-A/01/file");
    run();
    EXPECT_THAT(home.sizes->calls(),
                ElementsAre(ScriptedSizes::Call{home.tree.path(root + "/00008110-A"), true, false}));
}

TEST_F(IOSBackupProbeTest, ASizeOfOneByteIsEnoughAndNoneIsNot) {
    home.tree.folder(root + "/empty");
    home.tree.folder(root + "/tiny");
    home.answerSizes([](const FileURL& url) { return url.lastPathComponent() == "tiny" ? 1 : 0; });
    EXPECT_THAT(found(), ElementsAre(root + "/tiny"));
}

TEST_F(IOSBackupProbeTest, ALinkIsNoBackup) {
    home.tree.folder("elsewhere");
    home.tree.link(root + "/linked", home.tree.path("elsewhere"));
    home.tree.link(root + "/dangling", "nowhere");
    EXPECT_EQ(run(), ProbeResult());
}

TEST_F(IOSBackupProbeTest, NamesThatAreNoUtf8AreFound) {
    home.tree.folder(root + "/caf\xE9");
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->items[0].enrichmentKey.rawValue, "url:" + home.tree.path(root + "/caf\xE9"));
}

struct Failure {
    const char* name;
    void (*arrange)(const testing::TempTree&);
};
void PrintTo(const Failure& failure, std::ostream* stream) { *stream << failure.name; }
class IOSBackupFailure : public IOSBackupProbeTest, public ::testing::WithParamInterface<Failure> {};

TEST_P(IOSBackupFailure, IsNoGroupAndNoError) {
    GetParam().arrange(home.tree);
    EXPECT_EQ(run(), ProbeResult());
    EXPECT_THAT(home.sizes->calls(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Root, IOSBackupFailure,
    ::testing::Values(
        Failure{"Missing", [](const testing::TempTree&) {}},
        Failure{"Empty", [](const testing::TempTree& tree) { tree.folder(root); }},
        Failure{"File", [](const testing::TempTree& tree) { tree.file(root); }},
        Failure{"DanglingLink", [](const testing::TempTree& tree) { tree.link(root, "nowhere"); }},
        Failure{"OnlyFiles", [](const testing::TempTree& tree) { tree.file(root + "/a.plist"); }}),
    [](const auto& each) { return each.param.name; });

TEST_F(IOSBackupProbeTest, ACancelledRunMeasuresNothing) {
    home.tree.file(root + "/00008110-A/Manifest.db");
    StopSource source;
    source.requestStop();
    const CurrentTaskScope scope(source.token());
    EXPECT_EQ(run(), ProbeResult());
    EXPECT_THAT(home.sizes->calls(), IsEmpty());
}

} // namespace
} // namespace vesko
