#include "base/Json.h"
#include "support/ProcessorTime.h"
#include <chrono>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace vesko {
namespace {

/// The only value of `[value]`, read by `read`.
template <class Read> auto inDocument(std::string_view value, Read read) {
    const auto document = JsonDocument::parse("[" + std::string(value) + "]");
    EXPECT_TRUE(document) << value;
    return read(*document->root().elements().begin());
}
std::optional<std::int64_t> integerIn(std::string_view value) {
    return inDocument(value, [](JsonValue json) { return json.integer(); });
}
std::optional<double> numberIn(std::string_view value) {
    return inDocument(value, [](JsonValue json) { return json.number(); });
}

TEST(Json, EveryTypeIsReadAsItselfAlone) {
    const auto document = JsonDocument::parse(R"(["text", 12, 1.5, true, null, [7], {"key": 8}])");
    ASSERT_TRUE(document);
    const std::vector<std::string> expected{"string", "integer number", "number", "boolean",
                                            "null",   "array",          "object"};
    std::vector<std::string> kinds;
    for (const JsonValue value : document->root().elements()) {
        std::string kind;
        if (value.string()) kind += "string ";
        if (value.integer()) kind += "integer ";
        if (value.number()) kind += "number ";
        if (value.boolean()) kind += "boolean ";
        if (value.isNull()) kind += "null ";
        if (value.isArray()) kind += "array ";
        if (value.isObject()) kind += "object ";
        kind.pop_back();
        kinds.push_back(kind);
    }
    EXPECT_EQ(kinds, expected);
}

TEST(Json, OnlyContainersHaveContents) {
    const auto document = JsonDocument::parse(R"(["text", {"a": 1, "b": [2, [3]], "c": 4}, [], {}, 5])");
    ASSERT_TRUE(document);
    std::vector<std::size_t> elements;
    std::vector<std::size_t> members;
    for (const JsonValue value : document->root().elements()) {
        elements.push_back(value.elements().size());
        members.push_back(value.members().size());
        std::size_t walked = 0;
        for ([[maybe_unused]] const JsonMember member : value.members()) ++walked;
        for ([[maybe_unused]] const JsonValue element : value.elements()) ++walked;
        EXPECT_EQ(walked, elements.back() + members.back());
        EXPECT_FALSE(value.member("absent"));
    }
    EXPECT_EQ(elements, (std::vector<std::size_t>{0, 0, 0, 0, 0}));
    EXPECT_EQ(members, (std::vector<std::size_t>{0, 3, 0, 0, 0}));
    EXPECT_EQ(document->root().elements().size(), 5u);
}

TEST(Json, MembersKeepTheirOrder) {
    const auto document = JsonDocument::parse(R"({"z": 1, "a": {"inner": 2}, "m": 3})");
    ASSERT_TRUE(document);
    std::string keys;
    for (const JsonMember member : document->root().members()) keys += member.key;
    EXPECT_EQ(keys, "zam");
    EXPECT_EQ(document->root().member("a")->member("inner")->integer(), 2);
    EXPECT_EQ(document->root().member("m")->integer(), 3);
    EXPECT_FALSE(document->root().member("inner"));
}

TEST(Json, OfARepeatedKeyTheLastCounts) {
    const auto document = JsonDocument::parse(R"({"a": 1, "b": 2, "a": 3})");
    ASSERT_TRUE(document);
    EXPECT_EQ(document->root().member("a")->integer(), 3);
    EXPECT_EQ(document->root().members().size(), 3u);
}

TEST(Json, AnIntegerIsOfIntegralValueAndInRange) {
    EXPECT_EQ(integerIn("0"), 0);
    EXPECT_EQ(integerIn("-0"), 0);
    EXPECT_EQ(integerIn("1.0"), 1);
    EXPECT_EQ(integerIn("1e3"), 1000);
    EXPECT_EQ(integerIn("-25e-1"), std::nullopt);
    EXPECT_EQ(integerIn("1.5"), std::nullopt);
    EXPECT_EQ(integerIn("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(integerIn("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
}

TEST(Json, AnIntegerThatDoesNotFitIsANumberAlone) {
    for (const char* text : {"9223372036854775808", "-9223372036854775809", "18446744073709551616", "1e19",
                             "1e300", "9007199254740994.0"}) {
        EXPECT_EQ(integerIn(text), std::nullopt) << text;
        EXPECT_TRUE(numberIn(text)) << text;
    }
}

TEST(Json, ABooleanIsNoNumber) {
    EXPECT_EQ(integerIn("true"), std::nullopt);
    EXPECT_EQ(inDocument("1", [](JsonValue json) { return json.boolean(); }), std::nullopt);
    EXPECT_EQ(inDocument("\"1\"", [](JsonValue json) { return json.integer(); }), std::nullopt);
}

TEST(Json, EscapesAreUndone) {
    const auto document = JsonDocument::parse(R"(["a\/b\"\\\n\u0041\u00e7\ud83d\ude00"])");
    ASSERT_TRUE(document);
    EXPECT_EQ((*document->root().elements().begin()).string(), "a/b\"\\\nAç😀");
}

TEST(Json, WhatIsNotOneWellFormedDocumentGivesNothing) {
    for (const char* text :
         {"",         " ",          "{",       "}",      "[1,]",     "[1 2]",     "{\"a\"}",
          "{\"a\":}", "{\"a\":1,}", "{a:1}",   "nul",    "tru",      "01",        "1.",
          ".5",       "+1",         "0x10",    "NaN",    "Infinity", "1e999",     "[] []",
          "[]x",      "// c\n[]",   "[/*c*/]", "\"open", "'a'",      "[\"\\x\"]", "[\"\\ud800\"]",
          "[\"\t\"]", "[\"a\nb\"]"})
        EXPECT_FALSE(JsonDocument::parse(text)) << text;
    EXPECT_FALSE(JsonDocument::parse(std::string_view("[]\0", 3)));
    EXPECT_FALSE(JsonDocument::parse(std::string_view("[]\0[", 4)));
}

TEST(Json, BytesThatAreNoUtf8GiveNothing) {
    for (const char* text :
         {"[\"\xFF\"]", "[\"caf\xE9\"]", "[\"\xC0\xAF\"]", "[\"\xED\xA0\x80\"]", "{\"\x80\":1}"})
        EXPECT_FALSE(JsonDocument::parse(text)) << text;
}

TEST(Json, DepthIsBounded) {
    const auto nested = [](std::size_t levels) {
        return std::string(levels, '[') + std::string(levels, ']');
    };
    EXPECT_TRUE(JsonDocument::parse(nested(512)));
    EXPECT_FALSE(JsonDocument::parse(nested(513)));
    EXPECT_FALSE(JsonDocument::parse(std::string(100'000, '[')));
    std::string objects;
    for (int level = 0; level < 100'000; ++level) objects += "{\"a\":";
    EXPECT_FALSE(JsonDocument::parse(objects));
}

TEST(Json, AStringIsBounded) {
    const auto quoted = [](std::size_t length) { return '"' + std::string(length, 'x') + '"'; };
    EXPECT_TRUE(JsonDocument::parse(quoted((1 << 20) - 1)));
    EXPECT_FALSE(JsonDocument::parse(quoted((1 << 20) + 1)));
    EXPECT_FALSE(JsonDocument::parse("[\"\\\"\", " + quoted((1 << 20) + 1) + "]"));
    EXPECT_TRUE(JsonDocument::parse("[\"a\\\\\", " + quoted(1000) + ", \"b\"]"));
}

TEST(Json, AnEndlessStringIsRefusedAtOnce) {
    std::string text(200'000'000, 'x');
    text.front() = '"';
    const auto began = testing::processorTime();
    EXPECT_FALSE(JsonDocument::parse(text));
    text.back() = '"';
    EXPECT_FALSE(JsonDocument::parse(text));
    EXPECT_LT(testing::processorTime() - began, std::chrono::seconds(2) * testing::slowness);
}

TEST(Json, NothingAbove256MebibytesIsParsed) {
    std::string text((256 << 20) + 1, ' ');
    text[0] = '1';
    EXPECT_FALSE(JsonDocument::parse(text));
}

TEST(Json, ARequiredMemberMustBeThereWithItsType) {
    const auto document =
        JsonDocument::parse(R"({"text": "x", "size": 5, "flag": false, "when": 1.25, "none": null})");
    ASSERT_TRUE(document);
    const JsonValue root = document->root();
    std::string text = "before";
    std::int64_t size = -1;
    bool flag = true;
    double when = -1;
    EXPECT_TRUE(readMember(root, "text", text) && readMember(root, "size", size) &&
                readMember(root, "flag", flag) && readMember(root, "when", when));
    EXPECT_EQ(text, "x");
    EXPECT_EQ(size, 5);
    EXPECT_FALSE(flag);
    EXPECT_EQ(when, 1.25);
    EXPECT_FALSE(readMember(root, "size", text));
    EXPECT_FALSE(readMember(root, "none", text));
    EXPECT_FALSE(readMember(root, "missing", text));
    EXPECT_EQ(text, "x");
    EXPECT_FALSE(readMember(root, "when", size));
    EXPECT_FALSE(readMember(root, "text", flag));
    EXPECT_FALSE(readMember(root, "text", when));
}

TEST(Json, AnOptionalMemberMayBeMissingOrNullButNotOfAnotherType) {
    const auto document = JsonDocument::parse(R"({"text": "x", "size": 5, "none": null})");
    ASSERT_TRUE(document);
    const JsonValue root = document->root();
    std::optional<std::string> text = "before";
    EXPECT_TRUE(readMember(root, "missing", text));
    EXPECT_EQ(text, std::nullopt);
    text = "before";
    EXPECT_TRUE(readMember(root, "none", text));
    EXPECT_EQ(text, std::nullopt);
    EXPECT_TRUE(readMember(root, "text", text));
    EXPECT_EQ(text, "x");
    EXPECT_FALSE(readMember(root, "size", text));
}

TEST(Json, AMemberOfWhatIsNoObjectIsMissing) {
    const auto document = JsonDocument::parse("[1]");
    ASSERT_TRUE(document);
    std::int64_t value = 0;
    EXPECT_FALSE(readMember(document->root(), "a", value));
}

} // namespace
} // namespace vesko
