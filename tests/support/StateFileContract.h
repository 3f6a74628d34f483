#pragma once
#include "support/LanguageScope.h"
#include "support/ProcessorTime.h"
#include "support/TempTree.h"
#include <chrono>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <unistd.h>

namespace vesko::testing {

/// One kind of state file, put to the tests that every kind must pass.
struct StateFileSubject {
    std::string name;
    std::string valid; ///< the bytes of a file with a state, written in English
    std::string schemaVersion;
    bool hasLanguage = true;
    /// What a fresh store finds in the file, in words: equal states give equal words.
    std::function<std::string(const FileURL&)> load;
    std::string empty; ///< those words where there is no file

    friend std::ostream& operator<<(std::ostream& stream, const StateFileSubject& subject) {
        return stream << subject.name;
    }
};

/// What must hold for a state file however it came to look as it does. Instantiate with
/// INSTANTIATE_TEST_SUITE_P(NAME, StateFileContract, ::testing::Values(...), subjectName).
class StateFileContract : public ::testing::TestWithParam<StateFileSubject> {
protected:
    using Milliseconds = std::chrono::milliseconds;
    static constexpr Milliseconds small{100};
    static constexpr Milliseconds large{2000};

    std::string stateOf(const FileURL& url, Milliseconds limit = small) {
        const auto began = processorTime();
        std::string state = GetParam().load(url);
        EXPECT_LT(processorTime() - began, limit * slowness);
        return state;
    }
    std::string stateOfBytes(std::string_view bytes, Milliseconds limit = small) {
        // A new file each time: some file systems flush one that is cut to nothing and written again.
        ::unlink(tree.path("state.json").c_str());
        return stateOf(tree.file("state.json", bytes), limit);
    }
    const std::string& empty() const { return GetParam().empty; }

    const LanguageScope english{Language::english};
    const TempTree tree;
};

inline std::string subjectName(const ::testing::TestParamInfo<StateFileSubject>& info) {
    return info.param.name;
}

TEST_P(StateFileContract, AValidFileHasAState) {
    EXPECT_NE(stateOfBytes(GetParam().valid), empty());
    EXPECT_EQ(stateOf(tree.url("missing.json")), empty());
    EXPECT_EQ(stateOf(tree.url("missing/state.json")), empty());
}

TEST_P(StateFileContract, EveryTruncationIsAsIfThereWereNoFile) {
    for (std::size_t length = 0; length < GetParam().valid.size(); ++length)
        ASSERT_EQ(stateOfBytes(GetParam().valid.substr(0, length)), empty()) << length;
}

TEST_P(StateFileContract, NoFlippedByteDoesHarm) {
    std::mt19937 random(7);
    std::size_t refused = 0;
    for (int count = 0; count < 10'000; ++count) {
        std::string bytes = GetParam().valid;
        bytes[random() % bytes.size()] ^= static_cast<char>(1 + random() % 255);
        if (stateOfBytes(bytes) == empty()) ++refused;
    }
    EXPECT_GT(refused, 2'000u);
    EXPECT_NE(stateOfBytes(GetParam().valid), empty());
}

TEST_P(StateFileContract, NestingWithoutEndIsAsIfThereWereNoFile) {
    std::string objects;
    for (int level = 0; level < 100'000; ++level) objects += "{\"a\":";
    EXPECT_EQ(stateOfBytes(std::string(100'000, '[')), empty());
    EXPECT_EQ(stateOfBytes(std::string(100'000, '[') + std::string(100'000, ']')), empty());
    EXPECT_EQ(stateOfBytes(objects), empty());
    const std::string head = GetParam().valid.substr(0, GetParam().valid.size() - 1);
    EXPECT_EQ(stateOfBytes(head + ",\"x\":" + std::string(100'000, '[')), empty());
}

TEST_P(StateFileContract, AnEndlessStringIsAsIfThereWereNoFile) {
    const std::string text(200'000'000, 'x');
    EXPECT_EQ(stateOfBytes('"' + text + '"', large), empty());
    EXPECT_EQ(stateOfBytes('"' + text, large), empty());
    const std::string head = GetParam().valid.substr(0, GetParam().valid.size() - 1);
    EXPECT_EQ(stateOfBytes(head + ",\"x\":\"" + text + "\"}", large), empty());
}

TEST_P(StateFileContract, AFileAbove256MebibytesIsAsIfThereWereNone) {
    const FileURL file = tree.file("state.json", GetParam().valid);
    ASSERT_EQ(::truncate(file.path().c_str(), (256 << 20) + 1), 0);
    EXPECT_EQ(stateOf(file), empty());
}

TEST_P(StateFileContract, WhatIsNoFileIsAsIfThereWereNone) {
    EXPECT_EQ(stateOf(tree.folder("folder")), empty());
    EXPECT_EQ(stateOf(tree.pipe("pipe")), empty());
    EXPECT_EQ(stateOf(tree.link("zero", "/dev/zero")), empty());
    EXPECT_EQ(stateOf(tree.link("dangling", "nowhere")), empty());
}

TEST_P(StateFileContract, OtherDocumentsAreAsIfThereWereNoFile) {
    for (const char* text :
         {"null", "[]", "{}", "true", "12", "\"text\"", "[[[]]]", "{\"schemaVersion\":1}", "\xEF\xBB\xBF{}"})
        EXPECT_EQ(stateOfBytes(text), empty()) << text;
    EXPECT_EQ(stateOfBytes(GetParam().valid + GetParam().valid), empty());
}

TEST_P(StateFileContract, AnotherVersionIsAsIfThereWereNoFileAndStays) {
    const std::string mark = "\"schemaVersion\":" + GetParam().schemaVersion;
    ASSERT_TRUE(GetParam().valid.contains(mark));
    for (const char* version : {"0", "3", "99", "-1", "1.5", "\"1\"", "null", "true"}) {
        std::string bytes = GetParam().valid;
        bytes.replace(bytes.find(mark), mark.size(), "\"schemaVersion\":" + std::string(version));
        const FileURL file = tree.file("state.json", bytes);
        EXPECT_EQ(stateOf(file), empty()) << version;
        EXPECT_EQ(bytesOf(file), bytes);
    }
}

TEST_P(StateFileContract, AnotherLanguageIsAsIfThereWereNoFileAndStays) {
    const FileURL file = tree.file("state.json", GetParam().valid);
    const LanguageScope portuguese(Language::portuguese);
    EXPECT_EQ(stateOf(file) == empty(), GetParam().hasLanguage);
    EXPECT_EQ(bytesOf(file), GetParam().valid);
}

} // namespace vesko::testing
