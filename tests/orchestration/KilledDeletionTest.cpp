#include "orchestration/CleanupFixture.h"

#include "base/FileSystem.h"
#include "core/DiskSizeCalculator.h"
#include "enrichment/EnrichmentCacheFile.h"
#include "probes/FixedPathProbe.h"
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <random>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace vesko::testing {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

/// The process that deletes, from its start to its end or the moment it is killed.
class Deleting {
public:
    explicit Deleting(const std::vector<std::string>& words) {
        std::vector<char*> arguments;
        for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        int ends[2] = {-1, -1};
        if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
        if (::posix_spawn(&process_, arguments[0], &actions, nullptr, arguments.data(), environ) != 0)
            throw std::runtime_error("can't start " + words.front());
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        output_ = ends[0];
    }
    Deleting(const Deleting&) = delete;
    Deleting& operator=(const Deleting&) = delete;
    ~Deleting() {
        kill();
        ::close(output_);
    }
    /// The next line that it prints; empty at its end.
    std::string line() {
        std::string text;
        for (char byte = 0; ::read(output_, &byte, 1) == 1 && byte != '\n';) text += byte;
        return text;
    }
    void kill() {
        if (process_ <= 0) return;
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
        process_ = -1;
    }

private:
    pid_t process_ = -1;
    int output_ = -1;
};

/// A file system in memory where there is one: 10,000 files are made a hundred times over.
class InMemory {
protected:
    InMemory() {
        if (::access("/dev/shm", W_OK | X_OK) == 0) place.emplace("TMPDIR", "/dev/shm");
    }
    std::optional<ScopedEnvironment> place;
};

/// A home with one large folder of 8,000 files and 2,000 single ones to delete, and things beside them that
/// must stay.
class KilledDeletion : private InMemory, public CleanupTest {
protected:
    static constexpr int inFolder = 8'000;
    static constexpr int single = 2'000;
    static constexpr int folders = 40;

    KilledDeletion() {
        parts.scanEngineFactory = [this](ScanMode mode) {
            ScanEngine made = engine(mode);
            made.size = std::make_shared<DiskSizeCalculator>();
            return made;
        };
        FixedPathRow large;
        large.metadata = metadata("cache.npm");
        large.relativePaths = {"Library/Caches/large"};
        FixedPathRow logs;
        logs.metadata = metadata("logs.stale");
        logs.relativePaths = {"Library/Logs"};
        logs.expandChildren = true;
        probes = {std::make_shared<FixedPathProbe>(large), std::make_shared<FixedPathProbe>(logs)};
        for (const char* canary : canaries) tree.file(canary, std::string("alive ") + canary);
        for (int folder = 0; folder < folders; ++folder) this->folder(folder);
        tree.folder("Library/Logs");
        fill();
    }

    void folder(int number) { tree.folder("Library/Caches/large/" + std::to_string(number)); }
    static std::string nameInFolder(int index) {
        return "Library/Caches/large/" + std::to_string(index % folders) + "/" + std::to_string(index);
    }
    static std::string singleName(int index) { return "Library/Logs/" + std::to_string(index) + ".log"; }

    /// Makes every file of a byte that is not there, and a link that leads out.
    void fill() {
        for (int number = 0; number < folders; ++number) folder(number);
        for (int index = 0; index < inFolder; ++index) put(nameInFolder(index));
        for (int index = 0; index < single; ++index) put(singleName(index));
        std::error_code isThere;
        fs::create_symlink(tree.path("Documents"), tree.path("Library/Caches/large/7/link"), isThere);
    }
    void put(const std::string& relative) {
        const std::string path = tree.path(relative);
        const int file = ::open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0644);
        if (file < 0) return;
        if (::write(file, "x", 1) != 1) throw std::runtime_error("can't write " + path);
        ::close(file);
    }

    static std::int64_t blocksOf(const fs::path& path) {
        struct stat status{};
        return ::lstat(path.c_str(), &status) == 0 ? status.st_blocks * 512 : 0;
    }
    /// What really lies there, folders included.
    static std::int64_t bytesIn(const fs::path& folder) {
        if (!fs::exists(folder)) return 0;
        std::int64_t sum = blocksOf(folder);
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
            sum += blocksOf(entry.path());
        return sum;
    }
    std::map<std::string, std::int64_t> singleOnes() const {
        std::map<std::string, std::int64_t> sizes;
        for (const fs::directory_entry& entry : fs::directory_iterator(tree.path("Library/Logs")))
            sizes[entry.path().string()] = blocksOf(entry.path());
        return sizes;
    }
    std::vector<std::uint64_t> canaryInodes() const {
        std::vector<std::uint64_t> inodes;
        for (const char* canary : canaries) {
            struct stat status{};
            inodes.push_back(::lstat(tree.path(canary).c_str(), &status) == 0 ? status.st_ino : 0);
        }
        return inodes;
    }

    /// Another start of the program on the same state files.
    void start() {
        model.reset();
        loop.waitFor([&] { return registry.empty(); });
        parts.enrichmentStore = std::make_shared<EnrichmentStore>(tree.url("state/enrichment-cache.json"),
                                                                  "model-1", context, dates);
        make();
    }

    void expectCanaries(const std::vector<std::uint64_t>& inodes) {
        EXPECT_EQ(canaryInodes(), inodes);
        for (const char* canary : canaries)
            EXPECT_EQ(bytesOf(tree.url(canary)), std::string("alive ") + canary);
    }
    /// That a scan lists what is really there, each with its true size, and nothing else.
    void expectTrueRemainder() {
        const std::int64_t inLarge = bytesIn(tree.path("Library/Caches/large"));
        const std::map<std::string, std::int64_t> singles = singleOnes();
        scan();
        std::int64_t sum = inLarge;
        std::map<std::string, std::int64_t> listedSingles;
        bool isLargeListed = false;
        for (const CleanupGroup& group : *model->groups)
            for (const ScannableItem& each : group.items) {
                if (group.id == "cache.npm") {
                    isLargeListed = true;
                    EXPECT_EQ(each.url, tree.url("Library/Caches/large"));
                    EXPECT_EQ(each.size, inLarge);
                } else {
                    listedSingles[each.url.path()] = each.size;
                }
            }
        EXPECT_EQ(isLargeListed, inLarge > 0);
        EXPECT_EQ(listedSingles, singles);
        for (const auto& [path, bytes] : singles) sum += bytes;
        EXPECT_EQ(*model->foundTotalBytes, sum);
    }

    static constexpr std::array<const char*, 4> canaries{"Documents/canary", "Library/Caches/beside/canary",
                                                         "Library/canary", "outside/canary"};
};

TEST_F(KilledDeletion, LeavesOnlyLessOfWhatWentAndTheNextStartShowsTheRest) {
    // What the run before leaves: the list of a scan, and what is known of each item.
    make();
    scan();
    ASSERT_EQ(model->groups->size(), 2U);
    model->enrichmentStore().schedulePersist();
    loop.advance(std::chrono::seconds(1));
    const auto snapshot = saved();
    ASSERT_TRUE(snapshot);
    const EnrichmentEntries entries = model->enrichmentStore().entries();
    ASSERT_EQ(entries.size(), static_cast<std::size_t>(single + 1));
    const std::string cacheFile = bytesOf(tree.url("state/scan-cache.json"));
    const std::string entriesFile = bytesOf(tree.url("state/enrichment-cache.json"));
    const std::string demotedFile = R"({"schemaVersion":1,"paths":["/h/one","/h/two"]})";
    const std::unordered_set<std::string> demoted{"/h/one", "/h/two"};
    const std::vector<std::uint64_t> inodes = canaryInodes();
    const std::vector<std::string> words{VESKO_DELETE_EVERYTHING, tree.root().path(), demotedFile};

    // Undisturbed, all of it goes; that is how long there is to kill it. On a machine that has much else to
    // do the last part is left out, so that a hundred kills end in a minute.
    constexpr Clock::duration longest = std::chrono::milliseconds(500);
    Clock::duration whole{};
    {
        Deleting undisturbed(words);
        ASSERT_EQ(undisturbed.line(), "begins");
        const auto begun = Clock::now();
        ASSERT_EQ(undisturbed.line(), "done");
        whole = std::min<Clock::duration>(Clock::now() - begun, longest);
        EXPECT_EQ(bytesIn(tree.path("Library/Caches/large")) + static_cast<int>(singleOnes().size()), 0);
        expectCanaries(inodes);
    }
    std::mt19937_64 random(7);
    int killedMeanwhile = 0;
    for (int round = 0; round < 100 && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        fill();
        tree.file("state/scan-cache.json", cacheFile);
        tree.file("state/enrichment-cache.json", entriesFile);
        {
            Deleting deleting(words);
            ASSERT_EQ(deleting.line(), "begins");
            std::this_thread::sleep_for(Clock::duration(
                static_cast<Clock::rep>(random() % static_cast<std::uint64_t>(whole.count()))));
            deleting.kill();
        }
        const bool isAnythingLeft = fs::exists(tree.path("Library/Caches/large")) || !singleOnes().empty();
        if (isAnythingLeft)
            ++killedMeanwhile;
        else
            whole = whole * 9 / 10; // the machine has become quicker than it was undisturbed
        expectCanaries(inodes);
        EXPECT_EQ(parts.demotedPathsStore->load(), demoted);
        const auto cached = parts.scanCacheStore->load();
        // Only a deletion that has come to its end writes a list, and that in one step.
        if (isAnythingLeft || (cached && !cached->groups.empty())) EXPECT_EQ(cached, snapshot);
        ASSERT_TRUE(cached);
        start();
        EXPECT_TRUE(*model->didHydrateFromScanCache);
        EXPECT_EQ(*model->groups, cached->groups);
        EXPECT_EQ(model->enrichmentStore().entries(), entries);
        expectTrueRemainder();
    }
    EXPECT_GE(killedMeanwhile, 50) << "of 100 kills";
    RecordProperty("killed_meanwhile", killedMeanwhile);
}

} // namespace
} // namespace vesko::testing
