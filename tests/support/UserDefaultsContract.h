#pragma once
#include "base/UserDefaults.h"
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <memory>

namespace vesko::testing {

/// One kind of preferences, put to the tests that every kind must pass.
struct UserDefaultsSubject {
    std::string name;
    std::function<std::shared_ptr<UserDefaults>()> makeEmpty;
    std::function<void()> end = [] {}; ///< after the preferences are gone

    friend std::ostream& operator<<(std::ostream& stream, const UserDefaultsSubject& subject) {
        return stream << subject.name;
    }
};

class UserDefaultsContract : public ::testing::TestWithParam<UserDefaultsSubject> {
protected:
    ~UserDefaultsContract() override {
        defaults.reset();
        GetParam().end();
    }
    /// The types that the value under the key reads as.
    std::string types(std::string_view key) const {
        std::string found;
        if (defaults->boolean(key)) found += "boolean ";
        if (defaults->integer(key)) found += "integer ";
        if (defaults->number(key)) found += "number ";
        if (defaults->string(key)) found += "string ";
        if (defaults->data(key)) found += "data ";
        return found;
    }

    std::shared_ptr<UserDefaults> defaults = GetParam().makeEmpty();
};

inline std::string userDefaultsName(const ::testing::TestParamInfo<UserDefaultsSubject>& info) {
    return info.param.name;
}

TEST_P(UserDefaultsContract, AMissingKeyHasNoValueOfAnyType) { EXPECT_EQ(types("vesko.none"), ""); }

TEST_P(UserDefaultsContract, WhatWasSetCanBeReadAtOnce) {
    defaults->setBoolean("yes", true);
    defaults->setBoolean("no", false);
    defaults->setInteger("largest", std::numeric_limits<std::int64_t>::max());
    defaults->setInteger("smallest", std::numeric_limits<std::int64_t>::min());
    defaults->setNumber("number", -0.1);
    defaults->setString("text", "ação \"\\\n\x01 ∞");
    EXPECT_EQ(defaults->boolean("yes"), true);
    EXPECT_EQ(defaults->boolean("no"), false);
    EXPECT_EQ(defaults->integer("largest"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(defaults->integer("smallest"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(defaults->number("number"), -0.1);
    EXPECT_EQ(defaults->string("text"), "ação \"\\\n\x01 ∞");
}

TEST_P(UserDefaultsContract, DataComesBackByteForByte) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    for (std::size_t length = 0; length <= all.size(); ++length) {
        const std::string bytes = all.substr(all.size() - length);
        defaults->setData("bytes", bytes);
        ASSERT_EQ(defaults->data("bytes"), bytes) << length;
    }
}

TEST_P(UserDefaultsContract, AValueOfAnotherTypeCountsAsNone) {
    defaults->setBoolean("boolean", true);
    defaults->setInteger("integer", 1);
    defaults->setNumber("number", 1.5);
    defaults->setString("string", "true");
    defaults->setData("data", "true");
    EXPECT_EQ(types("boolean"), "boolean ");
    EXPECT_EQ(types("integer"), "integer number ");
    EXPECT_EQ(types("number"), "number ");
    EXPECT_EQ(types("string"), "string ");
    EXPECT_EQ(types("data"), "data ");
}

TEST_P(UserDefaultsContract, AnIntegerReadsAsTheNearestNumber) {
    defaults->setInteger("exact", 1LL << 53);
    defaults->setInteger("inexact", (1LL << 53) + 1);
    defaults->setInteger("largest", std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(defaults->number("exact"), 0x1p53);
    EXPECT_EQ(defaults->number("inexact"), 0x1p53);
    EXPECT_EQ(defaults->number("largest"), 0x1p63);
}

TEST_P(UserDefaultsContract, SettingReplacesAValueOfWhateverType) {
    defaults->setString("key", "text");
    defaults->setBoolean("key", true);
    EXPECT_EQ(types("key"), "boolean ");
    defaults->setData("key", "bytes");
    EXPECT_EQ(types("key"), "data ");
}

TEST_P(UserDefaultsContract, ARemovedValueIsGoneAndOthersStay) {
    defaults->setBoolean("gone", true);
    defaults->setBoolean("stays", true);
    defaults->remove("gone");
    defaults->remove("never was there");
    EXPECT_EQ(types("gone"), "");
    EXPECT_EQ(defaults->boolean("stays"), true);
}

TEST_P(UserDefaultsContract, WhatCanNotBeKeptLeavesTheValueAsItWas) {
    defaults->setNumber("number", 2.5);
    defaults->setNumber("number", std::nan(""));
    defaults->setNumber("number", std::numeric_limits<double>::infinity());
    EXPECT_EQ(defaults->number("number"), 2.5);
    defaults->setString("text", "before");
    defaults->setString("text", "\xff");
    defaults->setString("text", std::string(UserDefaults::longestValue + 1, 'x'));
    EXPECT_EQ(defaults->string("text"), "before");
    defaults->setData("data", "before");
    defaults->setData("data", std::string(UserDefaults::longestValue + 1, 'x'));
    EXPECT_EQ(defaults->data("data"), "before");
}

TEST_P(UserDefaultsContract, TheLongestValuesAreKept) {
    const std::string text(UserDefaults::longestValue, '\x01');
    defaults->setString("text", text);
    defaults->setData("data", text);
    EXPECT_EQ(defaults->string("text"), text);
    EXPECT_EQ(defaults->data("data"), text);
}

} // namespace vesko::testing
