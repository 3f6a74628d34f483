#include "FileUserDefaults.h"

#include "base/FileSystem.h"
#include "concurrency/Concurrency.h"
#include "support/ManualLoop.h"
#include "support/ProcessorTime.h"
#include "support/ScopedEnvironment.h"
#include "support/TempTree.h"
#include "support/UserDefaultsContract.h"

namespace vesko {
namespace {

using namespace std::chrono_literals;
using testing::bytesOf;
using testing::TempTree;

/// Real workers, a loop that is stepped by hand.
class FileUserDefaultsTest : public ::testing::Test {
protected:
    ~FileUserDefaultsTest() override {
        EXPECT_TRUE(shutDown(registry, [this] { loop.drain(); }));
    }

    FileUserDefaults make() { return FileUserDefaults(file, tasks()); }
    TaskContext tasks() { return {&loop, &pool, &loop, {}, &registry}; }
    /// Lets a change's time pass and waits until it has been written.
    void settle() {
        loop.advance(FileUserDefaults::debounce);
        EXPECT_TRUE(loop.waitFor([this] { return registry.empty(); }));
    }
    void write(std::string_view text) const { (void)tree.file("vesko/defaults.json", text); }

    const TempTree tree;
    const FileURL file = tree.url("vesko/defaults.json");
    ManualLoop loop;
    WorkerPool pool;
    TaskRegistry registry;
};

TEST_F(FileUserDefaultsTest, AFileThatWasWrittenByHandIsRead) {
    write("{\"vesko.backgroundRefreshEnabled\": false}\n");
    EXPECT_EQ(make().boolean("vesko.backgroundRefreshEnabled"), false);
}

TEST_F(FileUserDefaultsTest, AChangeIsOnTheDiskAfterItsTime) {
    FileUserDefaults defaults = make();
    defaults.setBoolean("a", true);
    loop.advance(FileUserDefaults::debounce - 1ms);
    EXPECT_FALSE(fileExists(file));
    settle();
    EXPECT_EQ(bytesOf(file), "{\n  \"a\": true\n}\n");
    EXPECT_EQ(make().boolean("a"), true);
}

TEST_F(FileUserDefaultsTest, ABurstIsOneWriteAndTheLastValueWins) {
    FileUserDefaults defaults = make();
    for (int value = 0; value <= 100; ++value) {
        defaults.setInteger("slider", value);
        EXPECT_EQ(defaults.integer("slider"), value);
        EXPECT_EQ(registry.size(), 1u);
        loop.advance(1ms);
    }
    settle();
    EXPECT_EQ(bytesOf(file), "{\n  \"slider\": 100\n}\n");
    defaults.setInteger("slider", 7);
    settle();
    EXPECT_EQ(make().integer("slider"), 7);
}

TEST_F(FileUserDefaultsTest, WhatWasSetIsOnTheDiskAtTheProgramsEnd) {
    FileUserDefaults defaults = make();
    defaults.setString("a", "late");
    EXPECT_TRUE(shutDown(registry, [this] { loop.drain(); }));
    EXPECT_EQ(bytesOf(file), "{\n  \"a\": \"late\"\n}\n");
}

TEST_F(FileUserDefaultsTest, SettingAndReadingWaitForNoWorker) {
    // Were a set or a read to wait for the write, it would wait for itself: this thread is the loop's, and
    // the workers run nothing before it does.
    ManualLoop workers;
    FileUserDefaults defaults(file, {&loop, &workers, &loop, {}, nullptr});
    defaults.setInteger("a", 1);
    loop.advance(FileUserDefaults::debounce);
    defaults.setInteger("a", 2);
    EXPECT_EQ(defaults.integer("a"), 2);
    EXPECT_FALSE(fileExists(file));
    workers.drain();
    EXPECT_EQ(make().integer("a"), 2);
    loop.advance(FileUserDefaults::debounce);
    workers.drain();
    loop.drain();
    EXPECT_EQ(make().integer("a"), 2);
}

TEST_F(FileUserDefaultsTest, ValuesThatAreNotOursStayAsTheyAre) {
    write("{\"theirs\": {\"x\": [1.50, null]}, \"vesko.a\": 1, \"more\": 12345678901234567890123}");
    FileUserDefaults defaults = make();
    defaults.setInteger("vesko.a", 2);
    defaults.remove("vesko.b");
    settle();
    EXPECT_EQ(bytesOf(file), "{\n  \"theirs\": {\"x\": [1.50, null]},\n  \"vesko.a\": 2,\n"
                             "  \"more\": 12345678901234567890123\n}\n");
}

TEST_F(FileUserDefaultsTest, WhatOtherHandsWroteMeanwhileStaysAndIsReadFromThenOn) {
    write("{\"a\": 1, \"b\": 1, \"c\": 1}");
    FileUserDefaults defaults = make();
    EXPECT_EQ(defaults.integer("b"), 1);
    write("{\"a\": 1, \"b\": 2, \"d\": 4}");
    defaults.setInteger("a", 3);
    settle();
    EXPECT_EQ(bytesOf(file), "{\n  \"a\": 3,\n  \"b\": 2,\n  \"d\": 4\n}\n");
    EXPECT_EQ(defaults.integer("b"), 2);
    EXPECT_EQ(defaults.integer("c"), std::nullopt);
}

TEST_F(FileUserDefaultsTest, ADamagedFileCountsAsNoneAndItsBytesAreKeptBesideIt) {
    const std::string slip = "{\"vesko.backgroundRefreshEnabled\": false,}";
    write(slip);
    FileUserDefaults defaults = make();
    EXPECT_EQ(defaults.boolean("vesko.backgroundRefreshEnabled"), std::nullopt);
    EXPECT_EQ(bytesOf(file), slip);
    defaults.setBoolean("a", true);
    settle();
    EXPECT_EQ(bytesOf(file), "{\n  \"a\": true\n}\n");
    EXPECT_EQ(bytesOf(tree.url("vesko/defaults.json.damaged")), slip);
}

TEST_F(FileUserDefaultsTest, AFailedWriteIsMadeUpForByTheNext) {
    // A folder in the file's place can't be replaced by a file.
    (void)tree.file("vesko/defaults.json/inside");
    FileUserDefaults defaults = make();
    defaults.setInteger("a", 1);
    defaults.setInteger("b", 1);
    settle();
    EXPECT_EQ(defaults.integer("a"), 1);
    EXPECT_EQ(directChildren(tree.url("vesko"), Hidden::include)->size(), 1u) << "something is left over";
    std::filesystem::remove_all(file.path());
    defaults.setInteger("b", 2);
    settle();
    EXPECT_EQ(make().integer("a"), 1);
    EXPECT_EQ(make().integer("b"), 2);
}

TEST_F(FileUserDefaultsTest, WhatIsNoFileCountsAsNone) {
    for (const FileURL& url : {tree.folder("folder"), tree.pipe("pipe"), tree.link("zero", "/dev/zero"),
                               tree.link("dangling", "nowhere"), tree.url("missing")})
        EXPECT_EQ(FileUserDefaults(url, tasks()).boolean("a"), std::nullopt) << url.path();
}

TEST_F(FileUserDefaultsTest, AFileAbove256MebibytesCountsAsNone) {
    write("{\"a\": true}");
    EXPECT_EQ(make().boolean("a"), true);
    ASSERT_EQ(::truncate(file.path().c_str(), (256 << 20) + 1), 0);
    EXPECT_EQ(make().boolean("a"), std::nullopt);
}

TEST_F(FileUserDefaultsTest, HoweverItIsDamagedAFileCountsAsNoneInTime) {
    using namespace std::chrono_literals;
    const std::string valid = R"({"a": true, "x": [1.5, {"y": "]}\""}], "d": {"data": "W10="}})";
    const auto isNone = [&](std::string_view bytes, std::chrono::milliseconds limit) {
        write(bytes);
        const auto began = testing::processorTime();
        const bool found = make().boolean("a").has_value();
        EXPECT_LT(testing::processorTime() - began, limit * testing::slowness);
        return !found;
    };
    ASSERT_FALSE(isNone(valid, 100ms));
    for (std::size_t length = 0; length < valid.size(); ++length)
        ASSERT_TRUE(isNone(valid.substr(0, length), 100ms)) << length;
    EXPECT_TRUE(isNone(std::string(100'000, '['), 100ms));
    EXPECT_TRUE(isNone("{\"a\":true,\"x\":" + std::string(100'000, '['), 100ms));
    const std::string text(200'000'000, 'x');
    EXPECT_TRUE(isNone("{\"a\":true,\"x\":\"" + text + "\"}", 2000ms));
    EXPECT_TRUE(isNone("{\"a\":true,\"x\":\"" + text, 2000ms));
}

TEST_F(FileUserDefaultsTest, AKeyThatIsNoTextSpoilsNothing) {
    FileUserDefaults defaults = make();
    defaults.setBoolean("\xff", true);
    defaults.setBoolean("a", true);
    settle();
    EXPECT_EQ(bytesOf(file), "{\n  \"a\": true\n}\n");
}

TEST_F(FileUserDefaultsTest, NobodyElseMayReadTheFile) {
    FileUserDefaults defaults = make();
    defaults.setBoolean("a", true);
    settle();
    struct stat status{};
    ASSERT_EQ(::stat(file.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(FileUserDefaultsTest, TheFileLiesInTheConfigurationFolder) {
    const testing::ScopedEnvironment home("HOME", "/home/ana");
    {
        const testing::ScopedEnvironment config("XDG_CONFIG_HOME", "/config");
        EXPECT_EQ(FileUserDefaults::defaultFileURL(), FileURL("/config/vesko/defaults.json"));
    }
    const testing::ScopedEnvironment config("XDG_CONFIG_HOME", "relative");
    EXPECT_EQ(FileUserDefaults::defaultFileURL(), FileURL("/home/ana/.config/vesko/defaults.json"));
}

} // namespace

namespace testing {

/// Preferences whose file is fresh and whose writes come at the end alone.
class UnsavedDefaults {
public:
    static std::unique_ptr<UserDefaults> make() {
        static const TempTree tree;
        static int number = 0;
        return std::make_unique<FileUserDefaults>(tree.url(std::to_string(++number)),
                                                  TaskContext{&loop(), &loop(), &loop(), {}, &registry()});
    }
    static void end() {
        registry().cancelAll();
        loop().drain();
    }

private:
    static ManualLoop& loop() {
        static ManualLoop loop;
        return loop;
    }
    static TaskRegistry& registry() {
        static TaskRegistry registry;
        return registry;
    }
};

INSTANTIATE_TEST_SUITE_P(File, UserDefaultsContract,
                         ::testing::Values(UserDefaultsSubject{"File", UnsavedDefaults::make,
                                                               UnsavedDefaults::end}),
                         userDefaultsName);

} // namespace testing
} // namespace vesko
