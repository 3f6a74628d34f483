#include "platform/macos/FakeAttributes.h"
#include "platform/macos/ToldEntry.h"
#include "platform/posix/FolderReader.h"
#include "platform/posix/TreeWalker.h"
#include "support/TempTree.h"
#include <cerrno>
#include <cstring>
#include <gmock/gmock.h>
#include <mutex>
#include <sys/stat.h>

namespace vesko {
namespace {

using Step = FolderReader::Step;
using ::testing::ElementsAre;
using testing::fakeAttributes;
using testing::packed;
using testing::TempTree;
using ::testing::UnorderedElementsAre;

class FolderReaderOnMacos : public ::testing::Test {
protected:
    FolderReaderOnMacos() { fakeAttributes() = {}; }
    ~FolderReaderOnMacos() override { fakeAttributes() = {}; }

    /// Answers the first call with `bytes` as `count` records, and further ones with the end.
    void answer(std::string bytes, int count) {
        fakeAttributes().readInstead = [bytes = std::move(bytes), count](void* buffer,
                                                                         std::size_t size) mutable {
            std::memset(buffer, 0xFF, size);
            std::memcpy(buffer, bytes.data(), std::min(size, bytes.size()));
            return std::exchange(count, 0);
        };
    }
    Step next() { return reader.next(); }

    FolderHandle none;
    FolderReader reader{256};
};

TEST_F(FolderReaderOnMacos, AnEntryThatCannotBeAskedIsToldAndReadingGoesOn) {
    answer(packed({.name = "shut", .error = EACCES}) + packed({.name = "open"}), 2);
    reader.begin(none, FolderReader::Details::status);
    EXPECT_EQ(next(), Step::failed);
    EXPECT_EQ(reader.name(), "shut");
    EXPECT_EQ(reader.error().value(), EACCES);
    EXPECT_EQ(next(), Step::entry);
    EXPECT_EQ(reader.name(), "open");
    EXPECT_EQ(next(), Step::end);
}

TEST_F(FolderReaderOnMacos, AnEntryThatIsGoneMeanwhileIsPassedOver) {
    answer(packed({.name = "gone", .error = ENOENT}) + packed({.name = "there"}), 2);
    reader.begin(none, FolderReader::Details::status);
    EXPECT_EQ(next(), Step::entry);
    EXPECT_EQ(reader.name(), "there");
    EXPECT_EQ(next(), Step::end);
}

TEST_F(FolderReaderOnMacos, ADamagedAnswerEndsTheFolderAndNotTheReader) {
    const std::string good = packed({.name = "good"});
    std::string endless = good;
    endless[0] = 0; // a length of nothing
    for (const std::string& bytes : {good + endless, good + std::string(200, '\xFF'), good}) {
        answer(bytes, 3);
        reader.begin(none, FolderReader::Details::status);
        EXPECT_EQ(next(), Step::entry);
        EXPECT_EQ(next(), Step::stopped);
        EXPECT_EQ(reader.error(), std::make_error_code(std::errc::bad_message));
    }
    answer(good, 1);
    reader.begin(none, FolderReader::Details::status);
    EXPECT_EQ(next(), Step::entry);
    EXPECT_EQ(next(), Step::end);
}

TEST_F(FolderReaderOnMacos, MoreRecordsThanTheBufferHoldsEndTheFolder) {
    const std::string record = packed({.name = "x"});
    std::string full;
    while (full.size() + record.size() <= 256) full += record;
    answer(full, 1'000);
    reader.begin(none, FolderReader::Details::status);
    std::size_t told = 0;
    Step step = next();
    for (; step == Step::entry; step = next()) ++told;
    EXPECT_EQ(step, Step::stopped);
    EXPECT_EQ(told, full.size() / record.size());
}

TEST_F(FolderReaderOnMacos, ARefusalIsToldWithItsReason) {
    fakeAttributes().readInstead = [](void*, std::size_t) {
        errno = EDEADLK;
        return -1;
    };
    reader.begin(none, FolderReader::Details::status);
    EXPECT_EQ(next(), Step::stopped);
    EXPECT_EQ(reader.error().value(), EDEADLK);
}

/// What a walk shows, by path below its root.
class Shown final : public TreeVisitor {
public:
    explicit Shown(std::string root) : root_(std::move(root)) {}
    Next visit(const TreeEntry& entry, unsigned) override {
        const std::lock_guard lock(mutex_);
        if (const std::string path = entry.path(); path != root_)
            paths.push_back(path.substr(root_.size() + 1));
        return Next::enter;
    }
    void problem(const TreeProblem& problem, unsigned) override {
        const std::lock_guard lock(mutex_);
        problems.push_back(problem.path.substr(root_.size() + 1));
    }

    std::vector<std::string> paths;
    std::vector<std::string> problems;

private:
    std::string root_;
    std::mutex mutex_;
};

TEST_F(FolderReaderOnMacos, AWalkShowsAPlaceholderAndDoesNotReadIt) {
    const TempTree tree;
    tree.file("here/file");
    tree.file("cloud/would-be-fetched");
    fakeAttributes().flags["cloud"] = SF_DATALESS;
    Shown shown(tree.root().path());
    EXPECT_EQ(walkTree(tree.root(), shown, {}), WalkOutcome::finished);
    EXPECT_THAT(shown.paths, UnorderedElementsAre("here", "here/file", "cloud"));
    EXPECT_THAT(shown.problems, ElementsAre());
}

TEST_F(FolderReaderOnMacos, AWalkTellsAnEntryThatCannotBeAsked) {
    const TempTree tree;
    tree.file("one");
    tree.file("two");
    fakeAttributes().errors["two"] = EIO;
    Shown shown(tree.root().path());
    EXPECT_EQ(walkTree(tree.root(), shown, {}), WalkOutcome::finished);
    EXPECT_THAT(shown.paths, UnorderedElementsAre("one"));
    EXPECT_THAT(shown.problems, ElementsAre("two"));
}

} // namespace
} // namespace vesko
