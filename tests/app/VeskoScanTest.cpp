// Runs the real program.
#include "base/ChildProcess.h"
#include "base/StringCatalog.h"
#include "support/ScopedEnvironment.h"
#include "support/TempTree.h"
#include <fstream>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <unistd.h>

namespace vesko {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using testing::ScopedEnvironment;
using testing::TempTree;
using Json = nlohmann::json;

struct Ended {
    std::int32_t status = -1;
    std::string output;
    std::string errors;
};

class VeskoScan : public ::testing::Test {
protected:
    Ended run(std::vector<std::string> arguments) {
        const FileURL errors = tree.url("errors");
        std::vector<std::string> words{"-c", R"(e="$1"; shift; exec "$@" 2>"$e")", "sh", errors.path(),
                                       VESKO_SCAN};
        words.insert(words.end(), arguments.begin(), arguments.end());
        const auto child = runChild("/bin/sh", words);
        if (!child) return {};
        return {child->status, child->standardOutput, testing::bytesOf(errors)};
    }
    std::vector<Json> events(const std::string& output) {
        std::vector<Json> lines;
        std::istringstream stream(output);
        for (std::string line; std::getline(stream, line);) lines.push_back(Json::parse(line));
        return lines;
    }

    TempTree tree;
    ScopedEnvironment locale{"LC_ALL", "C.UTF-8"};
    ScopedEnvironment home{"HOME", tree.folder("process-home").path()};
    // The containers of whoever runs the tests are none of theirs.
    ScopedEnvironment docker{"DOCKER_HOST", "unix://" + tree.path("no-daemon")};
};

/// The report's groups but those of tools, which know things of the whole machine.
std::vector<Json> groupsOfFiles(const Json& report) {
    std::vector<Json> groups;
    for (const Json& group : report["groups"])
        if (const std::string id = group["id"]; !id.starts_with("docker.") && !id.starts_with("xcode.sim"))
            groups.push_back(group);
    return groups;
}

TEST_F(VeskoScan, PrintsEveryEventAsALineAndTheReportLast) {
    tree.file("home/.npm/_cacache/a", std::string(200'000, 'x'));
    tree.file("home/.Trash/thrown away", std::string(90'000, 'x'));
    tree.file("home/.Trash/caf\xe9", std::string(70'000, 'x'));
    const Ended ended = run({"--home", tree.path("home")});
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.errors, IsEmpty());
    const auto lines = events(ended.output);
    int started = 0;
    int finished = 0;
    for (const Json& line : lines) {
        started += line["event"] == "probeStarted";
        finished += line["event"] == "probeFinished";
    }
    EXPECT_EQ(started, 44);
    EXPECT_EQ(started, finished);
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(started + finished + 1));
    for (int i = 0; i < 5; ++i) EXPECT_EQ(lines[static_cast<std::size_t>(i)]["event"], "probeStarted");
    ASSERT_EQ(lines.back()["event"], "finalize");
    const Json report = lines.back()["report"];
    const std::vector<Json> groups = groupsOfFiles(report);
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0]["id"], "cache.npm");
    EXPECT_EQ(groups[1]["items"][0]["path"], tree.path("home/.Trash/thrown away"));
    EXPECT_EQ(groups[1]["items"][1]["name"], "caf\\xE9");
    if (::access("/usr/bin/xcrun", X_OK) != 0) {
        // Both rows of simulators say so.
        const Json missing = "The simulators could not be listed, because Xcode’s tool did not answer.";
        EXPECT_EQ(report["errors"], (Json{missing, missing}));
    }
    EXPECT_GE(report["foundTotalBytes"], 360'000);
}

TEST_F(VeskoScan, DeletesNothing) {
    const FileURL kept = tree.file("home/.npm/_cacache/a", "kept");
    run({"--home", tree.path("home")});
    EXPECT_EQ(testing::bytesOf(kept), "kept");
}

TEST_F(VeskoScan, LooksInThePersonsHomeByDefault) {
    tree.file("process-home/.npm/_cacache/a", std::string(200'000, 'x'));
    EXPECT_THAT(run({}).output, HasSubstr(tree.path("process-home/.npm/_cacache")));
}

TEST_F(VeskoScan, PrintsATableInThePersonsLanguage) {
    tree.file("home/.npm/_cacache/a", std::string(200'000, 'x'));
    EXPECT_THAT(run({"--summary", "--home", tree.path("home")}).output, HasSubstr("can be freed\n"));
    const ScopedEnvironment portuguese("LC_ALL", "pt_BR.UTF-8");
    EXPECT_THAT(run({"--summary", "--home", tree.path("home")}).output, HasSubstr("Seguro"));
}

TEST_F(VeskoScan, ATrailingSlashAndDotsInTheHomeMakeNoDifference) {
    tree.file("home/.npm/_cacache/a", std::string(200'000, 'x'));
    EXPECT_THAT(run({"--home", tree.path("home/../home/")}).output,
                HasSubstr("\"" + tree.path("home/.npm/_cacache") + "\""));
}

TEST_F(VeskoScan, AnEmptyHomeGivesAnEmptyReport) {
    tree.folder("empty");
    const auto lines = events(run({"--home", tree.path("empty")}).output);
    ASSERT_FALSE(lines.empty());
    EXPECT_THAT(groupsOfFiles(lines.back()["report"]), IsEmpty());
}

TEST_F(VeskoScan, StatisticsAreOneMoreLineAtTheEnd) {
    tree.file("home/.npm/_cacache/a/one", std::string(200'000, 'x'));
    tree.file("home/.npm/_cacache/two", std::string(200'000, 'x'));
    const std::string plain = run({"--home", tree.path("home")}).output;
    const auto lines = events(run({"--statistics", "--home", tree.path("home")}).output);
    EXPECT_EQ(lines.size(), events(plain).size() + 1);
    const Json statistics = lines.back();
    EXPECT_EQ(statistics["event"], "statistics");
    EXPECT_EQ(statistics["measuring"]["foldersRead"], 2);
    EXPECT_EQ(statistics["measuring"]["entriesRead"], 3);
    EXPECT_TRUE(statistics["searching"]["foldersRead"].is_number_integer());
    EXPECT_TRUE(statistics["childrenStarted"].is_number_integer());
    const std::string table = run({"--statistics", "--summary", "--home", tree.path("home")}).output;
    EXPECT_THAT(table, HasSubstr("can be freed\n{\"event\":\"statistics\""));
}

TEST_F(VeskoScan, PlacesThatSeveralProbesLookAtAreReadOnce) {
    const std::string bytes(20'000, 'x');
    tree.file("home/Library/Caches/JetBrains/editor/deep/one", bytes);
    tree.file("home/Library/Caches/JetBrains/database/two", bytes);
    tree.file("home/Library/Caches/pip/http/three", bytes);
    tree.file("home/Library/Developer/Xcode/DerivedData/app/Previews/four", bytes);
    tree.file("home/Library/Developer/Xcode/DerivedData/app/Build/five", bytes);
    const auto lines = events(run({"--statistics", "--home", tree.path("home")}).output);
    // Four in JetBrains, two in pip, three in DerivedData; each is asked for by two rows.
    EXPECT_EQ(lines.back()["measuring"]["foldersRead"], 9);
    std::set<std::string> found;
    for (const Json& group : lines[lines.size() - 2]["report"]["groups"])
        for (const Json& item : group["items"]) found.insert(item["name"]);
    EXPECT_THAT(found, IsSupersetOf({"editor", "database", "pip", "app", "Previews"}));
}

TEST_F(VeskoScan, SaysHowItIsUsed) {
    const Ended ended = run({"--help"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.output, HasSubstr("--home DIR"));
    EXPECT_THAT(ended.errors, IsEmpty());
}

TEST_F(VeskoScan, AWrongOptionIsToldOnStandardErrorWithStatusTwo) {
    for (const std::vector<std::string>& wrong : {std::vector<std::string>{"--hom"},
                                                  {"extra"},
                                                  {"--home"},
                                                  {"--home", tree.path("missing")},
                                                  {"-h"}}) {
        const Ended ended = run(wrong);
        EXPECT_EQ(ended.status, 2) << wrong.front();
        EXPECT_THAT(ended.output, IsEmpty());
        EXPECT_THAT(ended.errors, HasSubstr("vesko-scan: "));
    }
}

TEST_F(VeskoScan, AFullDiskIsToldAndNoSuccess) {
    std::ofstream full("/dev/full");
    if (!full) GTEST_SKIP() << "this system has no /dev/full";
    const auto child = runChild("/bin/sh", {"-c", R"("$1" --home "$2" >/dev/full 2>"$3")", "sh", VESKO_SCAN,
                                            tree.folder("empty").path(), tree.path("errors")});
    ASSERT_TRUE(child);
    EXPECT_EQ(child->status, 1);
    EXPECT_THAT(testing::bytesOf(tree.url("errors")), HasSubstr("vesko-scan: "));
}

} // namespace
} // namespace vesko
