// What every probe of the catalog must hold to, whatever it looks for.
#include "core/CatalogRows.h"
#include "core/DiskSizeCalculator.h"
#include "core/ProbeCatalog.h"

#include "concurrency/CurrentTask.h"
#include "concurrency/WorkerPool.h"
#include "support/FileTimes.h"
#include "support/IndexedRunner.h"
#include "support/ScriptedSizes.h"
#include "support/TempTree.h"
#include <algorithm>
#include <filesystem>
#include <future>
#include <gmock/gmock.h>
#include <set>
#include <sys/stat.h>

namespace vesko {
namespace {

using ::testing::IsEmpty;
using ::testing::StartsWith;
using testing::TempTree;

const Date today = dateFromUnixSeconds(1'700'000'000);

const std::string dockerData = "home/Library/Containers/com.docker.docker/Data";
const std::string dockerVolume = dockerData + "/volumes/data/_data";

/// A home folder with something old at every place that a probe knows, two children each, and things beside
/// the places that belong to nobody. Gives every path below the tree's root, the root's own included.
std::vector<FileURL> furnish(const TempTree& tree) {
    const Date old = today - std::chrono::seconds(400 * 86400);
    for (const FixedPathRow& row : fixedPathRows()) {
        for (const std::string& path : row.relativePaths) {
            tree.file("home/" + path + "/child/content", std::string(60'000, 'x'));
            tree.file("home/" + path + "/lone", std::string(30'000, 'x'));
            if (const std::string link = "home/" + path + "/way-out";
                !std::filesystem::is_symlink(tree.path(link))) // two rows may share a path
                tree.link(link, tree.path("outside"));
        }
    }
    tree.file("home/Library/Application Support/com.example.gone/content", std::string(60'000, 'x'));
    tree.file("home/Library/Application Support/MobileSync/Backup/00008110/Manifest.db", "x");
    tree.file("home/Downloads/Tool-1.0.dmg", std::string(30'000, 'x'));
    for (const char* folder :
         {"Library/Caches/org.swift.swiftpm", "Library/Caches/Homebrew", ".m2/repository",
          "Library/Caches/JetBrains/Tool", "Library/Developer/Xcode/DerivedData/App/Previews",
          "Library/Developer/CoreSimulator/Devices/AB-12/data",
          "Library/Developer/CoreSimulator/Profiles/Runtimes/old.simruntime"})
        tree.file("home/" + std::string(folder) + "/content", std::string(60'000, 'x'));
    tree.file(dockerVolume + "/content", std::string(60'000, 'x'));
    for (const ProjectArtifactRow& row : projectArtifactRows()) {
        const std::string project = "home/Projects/" + row.metadata.id + "/";
        for (const char* name : {"first/", "second/"}) {
            tree.file(project + name + row.folderName + "/content", std::string(60'000, 'x'));
            if (row.requireSiblingFile) tree.file(project + name + *row.requireSiblingFile);
        }
    }
    tree.file("home/Documents/letter", "kept");
    tree.file("outside/precious", std::string(90'000, 'x'));
    std::vector<FileURL> all{tree.root()};
    for (const auto& entry : std::filesystem::recursive_directory_iterator(tree.root().path()))
        all.emplace_back(entry.path().string());
    for (const FileURL& each : all) testing::setFileTimes(each, old, old);
    return all;
}

/// The tools of that home: they are there, and know something once it is furnished.
CommandResult answerOfTools(const TempTree& tree, const testing::FakeRunner::Command& command) {
    if (command.front() == "/usr/bin/mdfind") return testing::answerOfIndex(command);
    const bool furnished = std::filesystem::exists(tree.path("home/Documents/letter"));
    const std::string line = [&] {
        std::string joined;
        for (const std::string& word : command) joined += word + " ";
        return joined;
    }();
    if (line == "/usr/local/bin/docker info ") return {0, ""};
    if (line == "/usr/bin/xcrun simctl list devices -j ")
        return {0, furnished ? R"({"devices":{"a":[{"udid":"AB-12","name":"a","isAvailable":false}]}})"
                             : R"({"devices":{}})"};
    if (!furnished) return {0, ""};
    if (line.starts_with("/usr/local/bin/docker image ls ")) return {0, "abc  a:1  1GB\n"};
    if (line.starts_with("/usr/local/bin/docker volume ls ")) return {0, "data\n"};
    if (line.starts_with("/usr/local/bin/docker volume inspect ")) return {0, tree.path(dockerVolume)};
    if (line.starts_with("/usr/local/bin/docker system df ")) return {0, "Build Cache\t1GB\n"};
    return {-1, ""};
}

/// Probes that hear from a tool what their items weigh.
const std::set<std::string> sizedByTheirTool{"docker.images", "docker.buildcache"};
/// Probes that ask little and in one go: they look at cancellation neither before nor between.
const std::set<std::string> notCutShort{"docker.images", "docker.buildcache", "cache.swiftpm",
                                        "cache.homebrew", "cache.maven"};

/// Each path with its size and dates; asking changes none of them. A folder's date of modification tells
/// whether something was added to it. A link's own access date changes with every question for its target,
/// and nothing judges by it.
std::vector<std::string> drawn(const std::vector<FileURL>& paths) {
    std::vector<std::string> lines;
    for (const FileURL& path : paths) {
        struct stat status{};
        const bool isThere = ::lstat(path.path().c_str(), &status) == 0;
        const bool counts = !S_ISLNK(status.st_mode) && path.path().find("/outside") == std::string::npos;
        const long accessed = counts ? status.st_atime : 0;
        lines.push_back(path.path() + (isThere ? " " : " gone ") + std::to_string(status.st_size) + " " +
                        std::to_string(status.st_mtime) + " " + std::to_string(accessed));
    }
    return lines;
}

class ProbeContract : public ::testing::TestWithParam<std::string> {
protected:
    ProbeContract() {
        for (const auto& each : probeCatalog())
            if (each->metadata().id == GetParam()) probe = each;
        context.home = tree.url("home");
        context.now = today;
        context.size = sizes;
        context.runner = runner;
        context.workers = &workers;
        tree.folder("home");
    }

    TempTree tree;
    WorkerPool workers;
    std::shared_ptr<testing::ScriptedSizes> sizes =
        std::make_shared<testing::ScriptedSizes>([](const FileURL&) { return 100 << 20; });
    std::shared_ptr<testing::FakeRunner> runner = std::make_shared<testing::FakeRunner>(
        [this](const testing::FakeRunner::Command& command) { return answerOfTools(tree, command); });
    std::shared_ptr<const ScanProbe> probe;
    ProbeContext context;
};

TEST_P(ProbeContract, AnEmptyHomeGivesNothing) {
    const ProbeResult result = probe->run(context);
    EXPECT_FALSE(result.group);
    EXPECT_THAT(result.errors, IsEmpty());
}

TEST_P(ProbeContract, AMissingHomeGivesNothing) {
    context.home = tree.url("missing");
    const ProbeResult result = probe->run(context);
    EXPECT_FALSE(result.group);
    EXPECT_THAT(result.errors, IsEmpty());
}

TEST_P(ProbeContract, WhatIsFoundMakesAProperGroup) {
    furnish(tree);
    const ProbeResult result = probe->run(context);
    ASSERT_TRUE(result.group);
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_EQ(result.group->id, GetParam());
    EXPECT_EQ(result.group->section, probe->metadata().section);
    EXPECT_EQ(result.group->providerID, probe->metadata().providerID);
    for (const ScannableItem& item : result.group->items) {
        EXPECT_GT(item.size, 0);
        EXPECT_THAT(item.url.path(), StartsWith(context.home.path() + "/"));
        EXPECT_NE(item.enrichmentKey.rawValue.find(':'), std::string::npos);
    }
}

TEST_P(ProbeContract, NothingOutsideOfTheHomeIsMeasured) {
    furnish(tree);
    probe->run(context);
    EXPECT_EQ(sizes->calls().empty(), sizedByTheirTool.contains(GetParam()));
    for (const auto& call : sizes->calls()) EXPECT_THAT(call.path, StartsWith(context.home.path() + "/"));
}

TEST_P(ProbeContract, LookingChangesNothing) {
    const std::vector<FileURL> all = furnish(tree);
    context.size = std::make_shared<DiskSizeCalculator>();
    const std::vector<std::string> before = drawn(all);
    probe->run(context);
    probe->run(context);
    const std::vector<std::string> after = drawn(all);
    for (std::size_t i = 0; i < all.size(); ++i) EXPECT_EQ(after[i], before[i]);
}

class CancelledProbeContract : public ProbeContract {};

TEST_P(CancelledProbeContract, ACancelledRunMeasuresNothing) {
    furnish(tree);
    StopSource source;
    source.requestStop();
    const CurrentTaskScope scope(source.token());
    const ProbeResult result = probe->run(context);
    EXPECT_FALSE(result.group);
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_THAT(sizes->calls(), IsEmpty());
}

TEST_P(CancelledProbeContract, ARunThatIsCancelledMidwayBeginsNoFurtherMeasurement) {
    furnish(tree);
    StopSource source;
    context.workers = nullptr;
    sizes = std::make_shared<testing::ScriptedSizes>([&](const FileURL&) {
        source.requestStop();
        return 100 << 20;
    });
    context.size = sizes;
    const CurrentTaskScope scope(source.token());
    const ProbeResult result = probe->run(context);
    EXPECT_EQ(sizes->calls().size(), 1U);
    ASSERT_TRUE(result.group) << "what was measured before is the result";
    EXPECT_EQ(result.group->items.size(), 1U);
}

TEST_P(ProbeContract, RunsAtOnceDoNotDisturbEachOther) {
    furnish(tree);
    const auto sorted = [](const ProbeResult& result) {
        std::vector<std::string> paths;
        if (result.group)
            for (const ScannableItem& item : result.group->items) paths.push_back(item.url.path());
        std::sort(paths.begin(), paths.end());
        return paths;
    };
    const auto expected = sorted(probe->run(context));
    std::vector<std::future<std::vector<std::string>>> runs;
    for (int i = 0; i < 8; ++i)
        runs.push_back(std::async(std::launch::async, [&] { return sorted(probe->run(context)); }));
    for (auto& run : runs) EXPECT_EQ(run.get(), expected);
}

/// All but the one that looks where the system keeps applications and not into the home.
std::vector<std::string> allIDs() {
    std::vector<std::string> ids;
    for (const auto& each : probeCatalog())
        if (each->metadata().id != "apps.unused") ids.push_back(each->metadata().id);
    return ids;
}

std::vector<std::string> idsOfThoseCutShort() {
    std::vector<std::string> ids = allIDs();
    std::erase_if(ids, [](const std::string& id) { return notCutShort.contains(id); });
    return ids;
}

std::string nameOf(const ::testing::TestParamInfo<std::string>& each) {
    std::string name = each.param;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Catalog, ProbeContract, ::testing::ValuesIn(allIDs()), nameOf);
INSTANTIATE_TEST_SUITE_P(Catalog, CancelledProbeContract, ::testing::ValuesIn(idsOfThoseCutShort()), nameOf);

} // namespace
} // namespace vesko
