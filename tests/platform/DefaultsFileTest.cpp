#include "DefaultsFile.h"
#include <gtest/gtest.h>
#include <random>

namespace vesko {
namespace {

std::string rewritten(std::string_view text) {
    const auto file = DefaultsFile::parse(text);
    return file ? file->text() : "unreadable";
}

TEST(DefaultsFile, EveryValueKeepsItsVeryCharacters) {
    EXPECT_EQ(rewritten("{\"a\" : 1.10 , \"b\":\t[1, {\"c\": \"]}\\\"\"}, []]\n,\"d\":{ },\"e\":1E400000"
                        "0000000000000000000000000000000000}"),
              "unreadable");
    EXPECT_EQ(rewritten("{\"a\" : 1.10 , \"b\":\t[1, {\"c\": \"]}\\\"\"}, []]\n,\"d\":{ },"
                        "\"e\":123456789012345678901234567890,\"f\":null, \"g\" : \"\\u0041\\\\\" }"),
              "{\n  \"a\": 1.10,\n  \"b\": [1, {\"c\": \"]}\\\"\"}, []],\n  \"d\": { },\n"
              "  \"e\": 123456789012345678901234567890,\n  \"f\": null,\n  \"g\": \"\\u0041\\\\\"\n}\n");
}

TEST(DefaultsFile, KeysAreThoseThatTheTextMeans) {
    const auto file = DefaultsFile::parse(R"({"caf\u00e9": 1, "a\"b": 2, "": 3})");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->value("café"), "1");
    EXPECT_EQ(file->value("a\"b"), "2");
    EXPECT_EQ(file->value(""), "3");
    EXPECT_EQ(rewritten(file->text()), file->text());
}

TEST(DefaultsFile, OfSeveralMembersOfOneNameTheLastCountsAndSettingLeavesOne) {
    auto file = DefaultsFile::parse(R"({"a": 1, "b": 2, "a": 3})");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->value("a"), "3");
    file->set("a", "4");
    EXPECT_EQ(file->text(), "{\n  \"a\": 4,\n  \"b\": 2\n}\n");
    file->remove("a");
    file->set("c", "true");
    EXPECT_EQ(file->text(), "{\n  \"b\": 2,\n  \"c\": true\n}\n");
}

TEST(DefaultsFile, AnObjectWithoutMembersIsAFile) {
    EXPECT_EQ(rewritten("{}"), "{}\n");
    EXPECT_EQ(rewritten(" {\n} "), "{}\n");
    EXPECT_EQ(DefaultsFile().text(), "{}\n");
}

TEST(DefaultsFile, AnythingButOneObjectIsUnreadable) {
    for (const char* text :
         {"", " ", "[]", "null", "1", "\"a\"", "{", "{\"a\":}", "{\"a\":1,}", "{\"a\":1}{}", "{a:1}",
          "{\"a\":'1'}", "{\"a\":NaN}", "{\"a\":1} // no", "{\"a\":\"\xff\"}"})
        EXPECT_EQ(rewritten(text), "unreadable") << text;
    EXPECT_EQ(rewritten(std::string("{\"a\":1\0}", 8)), "unreadable");
}

TEST(DefaultsFile, NoFlippedByteDoesHarm) {
    const std::string valid =
        R"({"a": true, "x": [1.5, {"y": "]}\""}, -0], "d": {"data": "W10="}, "": null})";
    std::mt19937 random(7);
    int refused = 0;
    for (int count = 0; count < 10'000; ++count) {
        std::string bytes = valid;
        bytes[random() % bytes.size()] ^= static_cast<char>(1 + random() % 255);
        const auto file = DefaultsFile::parse(bytes);
        if (!file) ++refused;
        if (file) ASSERT_EQ(rewritten(file->text()), file->text()) << bytes;
    }
    EXPECT_GT(refused, 2'000);
    EXPECT_LT(refused, 10'000);
}

TEST(DefaultsFile, DataIsAnObjectWithItsBase64) {
    EXPECT_EQ(dataJson(""), R"({"data": ""})");
    EXPECT_EQ(dataJson("f"), R"({"data": "Zg=="})");
    EXPECT_EQ(dataJson("fo"), R"({"data": "Zm8="})");
    EXPECT_EQ(dataJson("foobar"), R"({"data": "Zm9vYmFy"})");
    EXPECT_EQ(dataJson("\xfb\xff"), R"({"data": "+/8="})");
}

TEST(DefaultsFile, DataIsReadFromExactlyThatForm) {
    EXPECT_EQ(dataFromJson(R"({ "data":"Zm8=" })"), "fo");
    for (const char* json :
         {R"("Zm8=")", R"({})", R"({"data": 1})", R"({"data": "Zm8=", "x": 1})", R"({"Data": "Zm8="})",
          R"({"data": "Zm8"})", R"({"data": "Zm9="})", R"({"data": "Z==="})", R"({"data": "===="})",
          R"({"data": "Zg==Zg=="})", R"({"data": "Zm8-"})", R"({"data": "Zm 8="})", R"(["Zm8="])", "null"})
        EXPECT_EQ(dataFromJson(json), std::nullopt) << json;
}

} // namespace
} // namespace vesko
