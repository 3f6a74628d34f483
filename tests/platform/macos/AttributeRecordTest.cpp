#include "AttributeRecord.h"

#include "platform/macos/ToldEntry.h"
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <sys/stat.h>

namespace vesko {
namespace {

using testing::packed;
using testing::ToldEntry;

constexpr std::uint32_t me = 501;

/// In memory of exactly its length, so that a read beyond it shows.
struct Exact {
    explicit Exact(const std::string& from) : size(from.size()), bytes(new char[from.size()]) {
        std::memcpy(bytes.get(), from.data(), size);
    }
    std::size_t size;
    std::unique_ptr<char[]> bytes;
    std::string_view view() const { return {bytes.get(), size}; }
};

/// Where a record without an error has its parts.
constexpr std::size_t placeOfSet = 4;
constexpr std::size_t placeOfNameReference = 24;

template <class Value> std::string changed(std::string record, std::size_t at, Value value) {
    std::memcpy(record.data() + at, &value, sizeof value);
    return record;
}

bool isRefused(const std::string& bytes) {
    const Exact exact(bytes);
    std::string_view rest = exact.view();
    const bool nothing = !takeRecord(rest, me);
    EXPECT_EQ(rest.size() == bytes.size(), nothing) << "what is refused, and that alone, stays where it is";
    return nothing;
}

std::optional<AttributeRecord> taken(const Exact& exact) {
    std::string_view rest = exact.view();
    return takeRecord(rest, me);
}

TEST(AttributeRecord, AFileIsReadFieldByField) {
    const Exact exact(packed({.name = "file.bin", .links = 3}));
    const auto entry = taken(exact);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, "file.bin");
    EXPECT_EQ(entry->name.data()[entry->name.size()], '\0');
    EXPECT_EQ(entry->error, 0);
    EXPECT_TRUE(entry->hasKind);
    EXPECT_EQ(entry->status.kind, EntryKind::file);
    EXPECT_EQ(entry->status.identity, (FolderIdentity{7, 42, 1'000'000'000'005}));
    EXPECT_EQ(entry->status.allocatedBytes, 8192);
    EXPECT_EQ(entry->status.links, 3U);
    EXPECT_TRUE(entry->status.isOwned);
    EXPECT_FALSE(entry->status.isMountRoot);
    EXPECT_FALSE(entry->status.isImmutable);
    EXPECT_FALSE(entry->status.isPlaceholder);
}

TEST(AttributeRecord, AFolderIsReadFieldByField) {
    const Exact exact(packed({.name = "folder",
                              .type = VDIR,
                              .owner = 0,
                              .allocated = 4096,
                              .mountStatus = DIR_MNTSTATUS_MNTPOINT}));
    const auto entry = taken(exact);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, "folder");
    EXPECT_EQ(entry->status.kind, EntryKind::folder);
    EXPECT_EQ(entry->status.allocatedBytes, 4096);
    EXPECT_EQ(entry->status.links, 1U);
    EXPECT_TRUE(entry->status.isMountRoot);
    EXPECT_FALSE(entry->status.isOwned);
}

TEST(AttributeRecord, WhatIsNeitherFolderFileNorLinkIsSomethingElse) {
    EXPECT_EQ(taken(Exact(packed({.name = "a", .type = VLNK})))->status.kind, EntryKind::link);
    for (const std::uint32_t type : {0U, 3U, 4U, 6U, 7U, 99U})
        EXPECT_EQ(taken(Exact(packed({.name = "a", .type = type})))->status.kind, EntryKind::other) << type;
}

TEST(AttributeRecord, EachMarkAgainstChangesCounts) {
    for (const std::uint32_t mark : {UF_IMMUTABLE, UF_APPEND, SF_IMMUTABLE, SF_APPEND}) {
        const auto entry = taken(Exact(packed({.name = "a", .flags = mark})));
        EXPECT_TRUE(entry->status.isImmutable) << mark;
        EXPECT_FALSE(entry->status.isPlaceholder) << mark;
    }
}

TEST(AttributeRecord, APlaceholderIsKnownByItsMark) {
    const auto entry = taken(Exact(packed({.name = "a", .type = VDIR, .flags = SF_DATALESS})));
    EXPECT_TRUE(entry->status.isPlaceholder);
    EXPECT_FALSE(entry->status.isImmutable);
}

TEST(AttributeRecord, OneThatCouldNotBeAskedHasItsNameAndTheReason) {
    const Exact exact(packed({.name = "secret", .error = 13}));
    const auto entry = taken(exact);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, "secret");
    EXPECT_EQ(entry->error, 13);
    EXPECT_FALSE(entry->hasKind);
}

TEST(AttributeRecord, OneAfterTheOtherIsTakenFromABuffer) {
    const Exact exact(packed({.name = "first"}) + packed({.name = "the second", .type = VDIR}) +
                      packed({.name = "3"}));
    std::string_view rest = exact.view();
    EXPECT_EQ(takeRecord(rest, me)->name, "first");
    EXPECT_EQ(takeRecord(rest, me)->name, "the second");
    EXPECT_EQ(takeRecord(rest, me)->name, "3");
    EXPECT_TRUE(rest.empty());
    EXPECT_FALSE(takeRecord(rest, me));
}

TEST(AttributeRecord, ABufferThatEndsInTheRecordIsRefused) {
    for (const std::string& record : {packed({.name = "cut off"}), packed({.name = "cut off", .error = 2})})
        for (std::size_t size = 0; size < record.size(); ++size)
            EXPECT_TRUE(isRefused(record.substr(0, size))) << size;
}

TEST(AttributeRecord, ALengthThatEndsBeforeItsPartsIsRefused) {
    const std::string record = packed({.name = "short"});
    const std::size_t needed = record.find("short") + sizeof "short";
    for (std::uint32_t length = 0; length < needed; ++length)
        EXPECT_TRUE(isRefused(changed(record, 0, length))) << length;
    EXPECT_FALSE(isRefused(changed(record, 0, static_cast<std::uint32_t>(needed))));
    EXPECT_TRUE(isRefused(changed(record, 0, static_cast<std::uint32_t>(record.size() + 1))));
    EXPECT_TRUE(isRefused(changed(record, 0, UINT32_MAX)));
}

TEST(AttributeRecord, ANameOutsideOfItIsRefused) {
    const std::string record = packed({.name = "name"});
    const auto size = static_cast<std::int32_t>(record.size());
    for (const std::int32_t offset : {INT32_MIN, -25, size - 24, size, INT32_MAX})
        EXPECT_TRUE(isRefused(changed(record, placeOfNameReference, offset))) << offset;
    for (const std::uint32_t length : {0U, 2U, 100U, UINT32_MAX})
        EXPECT_TRUE(isRefused(changed(record, placeOfNameReference + 4, length))) << length;
}

TEST(AttributeRecord, ANameThatLeadsElsewhereIsNone) {
    for (const char* name : {".", "..", "a/b", "/", "../up", ""})
        EXPECT_EQ(taken(Exact(packed({.name = name})))->name, "") << name;
    for (const char* name : {"...", ".hidden", "..a", "a b", "\xC3\xA7"})
        EXPECT_EQ(taken(Exact(packed({.name = name})))->name.size(), std::string_view(name).size()) << name;
}

TEST(AttributeRecord, AttributesThatNobodyAskedForAreRefused) {
    const std::string record = packed({.name = "a", .type = VDIR});
    attribute_set_t held;
    std::memcpy(&held, record.data() + placeOfSet, sizeof held);
    for (std::uint32_t attribute_set_t::* group :
         {&attribute_set_t::commonattr, &attribute_set_t::volattr, &attribute_set_t::dirattr,
          &attribute_set_t::fileattr, &attribute_set_t::forkattr}) {
        attribute_set_t more = held;
        more.*group |= 0x40;
        EXPECT_TRUE(isRefused(changed(record, placeOfSet, more)));
    }
}

TEST(AttributeRecord, DamagedBytesNeverLeadOutOfTheBuffer) {
    std::mt19937 random(20'260'101);
    const std::string sound = packed({.name = "one"}) + packed({.name = "two", .type = VDIR}) +
                              packed({.name = "three", .error = 5});
    for (int round = 0; round < 50'000; ++round) {
        std::string damaged = sound;
        for (unsigned hits = 1 + random() % 6; hits > 0; --hits)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        const Exact exact(damaged);
        std::string_view rest = exact.view();
        for (std::size_t before = rest.size(); const auto entry = takeRecord(rest, me);
             before = rest.size()) {
            ASSERT_LT(rest.size(), before);
            if (entry->name.empty()) continue;
            ASSERT_GE(entry->name.data(), exact.view().data());
            ASSERT_LT(entry->name.data() + entry->name.size(), exact.view().data() + exact.size);
            ASSERT_EQ(entry->name.data()[entry->name.size()], '\0');
        }
    }
}

std::optional<std::int64_t> figure(std::uint64_t answer) {
    char bytes[quickAnswerBytes];
    std::memcpy(bytes, &answer, sizeof bytes);
    return quickFigure(bytes);
}

TEST(QuickFigure, TheLengthWordIsAPartOfTheNumber) {
    EXPECT_EQ(figure(12 + (std::uint64_t{1} << 32)), 0x1'0000'000C);
    EXPECT_EQ(figure(12 + (std::uint64_t{4096} << 32)), 12 + (std::int64_t{4096} << 32));
}

TEST(QuickFigure, OnlyWhatIsAboveOneBlockCounts) {
    EXPECT_EQ(figure(4097), 4097);
    for (const std::uint64_t answer :
         {std::uint64_t{0}, std::uint64_t{4}, std::uint64_t{12}, std::uint64_t{4096}})
        EXPECT_EQ(figure(answer), std::nullopt) << answer;
}

TEST(QuickFigure, ANegativeOneIsNone) {
    EXPECT_EQ(figure(UINT64_MAX), std::nullopt);
    EXPECT_EQ(figure(std::uint64_t{1} << 63), std::nullopt);
}

} // namespace
} // namespace vesko
