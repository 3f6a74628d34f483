#include "platform/posix/FolderReader.h"

#include "support/TempTree.h"
#include <fcntl.h>
#include <gmock/gmock.h>
#include <map>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace vesko {
namespace {

using Details = FolderReader::Details;
using Step = FolderReader::Step;
using ::testing::IsEmpty;
using testing::TempTree;

FolderHandle opened(const std::string& path) {
    OpenedFolder folder = openFolder(path);
    EXPECT_TRUE(folder) << path;
    return std::move(*folder);
}

/// All entries by name; a name that comes twice fails the test.
std::map<std::string, EntryStatus> entriesOf(FolderReader& reader, const FolderHandle& folder,
                                             Details details = Details::status) {
    std::map<std::string, EntryStatus> found;
    reader.begin(folder, details);
    for (Step step = reader.next(); step != Step::end; step = reader.next()) {
        EXPECT_EQ(step, Step::entry) << reader.error().message();
        if (step != Step::entry) break;
        EXPECT_TRUE(reader.isKindKnown());
        EXPECT_TRUE(found.emplace(reader.name(), reader.status()).second) << reader.name();
        EXPECT_EQ(reader.name().data()[reader.name().size()], '\0');
    }
    return found;
}

TEST(FolderReader, TellsEveryEntryOnceWithItsKind) {
    const TempTree tree;
    tree.file("file");
    tree.file(".hidden");
    tree.file("folder/inside");
    tree.link("link", "folder");
    tree.pipe("pipe");
    FolderReader reader;
    for (const Details details : {Details::status, Details::namesOnly}) {
        const auto found = entriesOf(reader, opened(tree.root().path()), details);
        ASSERT_EQ(found.size(), 5U);
        EXPECT_EQ(found.at("file").kind, EntryKind::file);
        EXPECT_EQ(found.at(".hidden").kind, EntryKind::file);
        EXPECT_EQ(found.at("folder").kind, EntryKind::folder);
        EXPECT_EQ(found.at("link").kind, EntryKind::link);
        EXPECT_EQ(found.at("pipe").kind, EntryKind::other);
    }
}

TEST(FolderReader, SaysOfAnEntryWhatAskingForItSays) {
    const TempTree tree;
    tree.file("file", std::string(70'000, 'x'));
    tree.folder("folder");
    tree.link("link", "nowhere");
    std::filesystem::create_hard_link(tree.path("file"), tree.path("other-name"));
    const FolderHandle folder = opened(tree.root().path());
    FolderReader reader;
    for (const auto& [name, status] : entriesOf(reader, folder)) {
        const AskedStatus asked = entryStatus(folder, name.c_str());
        ASSERT_TRUE(asked) << name;
        EXPECT_EQ(status.identity, asked->identity) << name;
        EXPECT_EQ(status.allocatedBytes, asked->allocatedBytes) << name;
        EXPECT_EQ(status.kind, asked->kind) << name;
        EXPECT_EQ(status.isOwned, asked->isOwned) << name;
        EXPECT_EQ(status.isMountRoot, asked->isMountRoot) << name;
        EXPECT_FALSE(status.isPlaceholder) << name;
        if (status.kind == EntryKind::file) {
            EXPECT_EQ(status.links, 2U) << name;
        }
    }
}

TEST(FolderReader, TellsAnOddNameAsItsBytes) {
    const TempTree tree;
    for (const char* name : {" ", "a b", "line\nbreak", "...", "\xC3\xA7\xC3\xA3o", "-rf"}) tree.file(name);
    tree.file(std::string(255, 'n'));
    FolderReader reader;
    const auto found = entriesOf(reader, opened(tree.root().path()));
    std::set<std::string> names;
    for (const auto& each : found) names.insert(each.first);
    EXPECT_EQ(names, (std::set<std::string>{" ", "a b", "line\nbreak", "...", "\xC3\xA7\xC3\xA3o", "-rf",
                                            std::string(255, 'n')}));
}

TEST(FolderReader, AnEmptyFolderIsAtItsEnd) {
    const TempTree tree;
    FolderReader reader;
    EXPECT_THAT(entriesOf(reader, opened(tree.root().path())), IsEmpty());
}

TEST(FolderReader, ManyEntriesComeThroughASmallBuffer) {
    const TempTree tree;
    for (int i = 0; i < 700; ++i) tree.file("entry-" + std::to_string(i));
    FolderReader reader(1024);
    EXPECT_EQ(entriesOf(reader, opened(tree.root().path())).size(), 700U);
}

TEST(FolderReader, OneReaderServesFolderAfterFolder) {
    const TempTree tree;
    tree.file("a/one");
    tree.file("b/two");
    FolderReader reader;
    EXPECT_EQ(entriesOf(reader, opened(tree.path("a"))).count("one"), 1U);
    const FolderHandle unfinished = opened(tree.path("a"));
    reader.begin(unfinished, Details::status);
    EXPECT_EQ(reader.next(), Step::entry);
    const auto found = entriesOf(reader, opened(tree.path("b")));
    EXPECT_EQ(found.size(), 1U);
    EXPECT_EQ(found.count("two"), 1U);
}

TEST(FolderReader, AFolderIsReadAgainFromItsBeginning) {
    const TempTree tree;
    tree.file("one");
    const FolderHandle folder = opened(tree.root().path());
    FolderReader reader;
    EXPECT_EQ(entriesOf(reader, folder).size(), 1U);
    EXPECT_THAT(entriesOf(reader, folder), IsEmpty());
    rewindFolder(folder);
    EXPECT_EQ(entriesOf(reader, folder).size(), 1U);
}

TEST(FolderReader, WhatIsNoFolderStopsItWithAReason) {
    const TempTree tree;
    const FolderHandle file(::open(tree.file("file").path().c_str(), O_RDONLY | O_CLOEXEC));
    FolderReader reader;
    for (const FolderHandle* handle : {&file, static_cast<const FolderHandle*>(nullptr)}) {
        const FolderHandle none;
        reader.begin(handle ? *handle : none, Details::status);
        EXPECT_EQ(reader.next(), Step::stopped);
        EXPECT_EQ(reader.error().value(), handle ? ENOTDIR : EBADF);
    }
}

TEST(FolderReader, AFolderThatIsGoneIsAtItsEnd) {
    const TempTree tree;
    const FolderHandle folder = opened(tree.folder("gone").path());
    std::filesystem::remove(tree.path("gone"));
    FolderReader reader;
    reader.begin(folder, Details::status);
    const Step step = reader.next();
    EXPECT_TRUE(step == Step::end || (step == Step::stopped && reader.error().value() == ENOENT));
}

} // namespace
} // namespace vesko
