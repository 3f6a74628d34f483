// Folders that this user may not read. In a child process, which gives up the rights of the super-user.
#include "core/CatalogRows.h"
#include "core/DiskSizeCalculator.h"
#include "probes/DockerProbes.h"
#include "probes/IOSBackupProbe.h"
#include "probes/InstallerProbe.h"
#include "probes/ShallowScanProbe.h"

#include "support/MountNamespace.h"
#include "support/ProbeHome.h"
#include "support/ToolScript.h"
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace vesko {
namespace {

class UnreadablePlaces : public ::testing::Test {
protected:
    UnreadablePlaces() { ::chmod(home.tree.root().path().c_str(), 0755); }
    ~UnreadablePlaces() override { allow(0755); }

    void forbid(const std::vector<std::string>& folders) {
        places_ = folders;
        allow(0);
    }
    /// What goes wrong when the probe runs as an ordinary user: nothing when it finds these and no error.
    std::string problem(const ScanProbe& probe, const std::vector<std::string>& expected) const {
        return testing::asOrdinaryUser([&]() -> std::string {
            const ProbeResult result = probe.run(home.context);
            if (!result.errors.empty()) return result.errors.front();
            return home.paths(result) == expected ? "" : "other items";
        });
    }

    testing::ProbeHome home;

private:
    void allow(mode_t mode) const {
        for (const std::string& each : places_) ::chmod(home.tree.path(each).c_str(), mode);
    }

    std::vector<std::string> places_;
};

TEST_F(UnreadablePlaces, ShallowScansHaveNoGroupAndNoError) {
    for (const ShallowScanRow& row : shallowScanRows()) {
        const std::string entry = row.relativeRoot + "/com.example.gone";
        home.tree.file(entry + "/content");
        home.answerSizes([](const FileURL&) { return 20 << 20; });
        const ShallowScanProbe probe(row);
        ASSERT_EQ(problem(probe, {entry}), "");
        forbid({row.relativeRoot});
        EXPECT_EQ(problem(probe, {}), "") << row.metadata.id;
    }
}

TEST_F(UnreadablePlaces, DeviceBackupsHaveNoGroupAndNoError) {
    const std::string root = "Library/Application Support/MobileSync/Backup";
    home.tree.file(root + "/00008110-A/Manifest.db");
    const IOSBackupProbe probe(rowMetadata("backup.ios"));
    ASSERT_EQ(problem(probe, {root + "/00008110-A"}), "");
    forbid({root});
    EXPECT_EQ(problem(probe, {}), "");
}

TEST_F(UnreadablePlaces, InstallersOfTheOtherPlacesAreFound) {
    for (const char* path : {"a.dmg", "Downloads/b.dmg", "Desktop/c.dmg"}) home.tree.file(path);
    const InstallerProbe probe(rowMetadata("installers.forgotten"));
    ASSERT_EQ(problem(probe, {"Desktop/c.dmg", "Downloads/b.dmg", "a.dmg"}), "");
    forbid({"Downloads", "Desktop"});
    EXPECT_EQ(problem(probe, {"a.dmg"}), "");
}

TEST_F(UnreadablePlaces, DockersVolumesDoNotShow) {
    const std::string docker = "/usr/local/bin/docker";
    testing::ToolScript script;
    script.on({docker, "info"}, "").on({docker, "volume", "ls", "-q"}, "closed\n");
    script.on({docker, "volume", "inspect", "closed", "--format", "{{.Mountpoint}}"},
              home.tree.path("closed/data"));
    home.tree.file("closed/data/content", std::string(100'000, 'x'));
    home.context.runner = script.runner();
    home.context.size = std::make_shared<DiskSizeCalculator>();
    const DockerVolumesProbe probe(rowMetadata("docker.volumes"));
    ASSERT_EQ(problem(probe, {"closed/data"}), "");
    forbid({"closed"});
    EXPECT_EQ(problem(probe, {}), "");
}

} // namespace
} // namespace vesko
