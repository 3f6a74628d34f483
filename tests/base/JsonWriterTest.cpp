#include "base/JsonWriter.h"
#include <gtest/gtest.h>
#include <limits>

namespace vesko {
namespace {

template <class Write> std::string written(Write write) {
    JsonWriter writer;
    write(writer);
    return writer.take();
}

TEST(JsonWriter, TheDocumentIsCompactAndInTheOrderOfTheCalls) {
    JsonWriter json;
    json.beginObject();
    json.key("z");
    json.integer(-1);
    json.key("a");
    json.beginArray();
    json.string("x");
    json.beginObject();
    json.endObject();
    json.boolean(true);
    json.beginArray();
    json.endArray();
    json.null();
    json.endArray();
    json.key("b");
    json.boolean(false);
    json.endObject();
    EXPECT_EQ(json.take(), R"({"z":-1,"a":["x",{},true,[],null],"b":false})");
    json.beginArray();
    json.endArray();
    EXPECT_EQ(json.take(), "[]");
}

TEST(JsonWriter, TextsAreEscapedOnlyWhereTheyMust) {
    EXPECT_EQ(written([](JsonWriter& json) { json.string("a\"b\\c/d\n\r\t\x01\x1f\x7fé"); }),
              "\"a\\\"b\\\\c/d\\n\\r\\t\\u0001\\u001f\x7fé\"");
    EXPECT_EQ(written([](JsonWriter& json) { json.string(std::string_view("\0", 1)); }), "\"\\u0000\"");
    EXPECT_EQ(written([](JsonWriter& json) { json.string(""); }), "\"\"");
}

TEST(JsonWriter, NumbersAreWrittenInTheirShortestForm) {
    EXPECT_EQ(written([](JsonWriter& json) { json.number(816948900.0); }), "816948900");
    EXPECT_EQ(written([](JsonWriter& json) { json.number(816948900.25); }), "816948900.25");
    EXPECT_EQ(written([](JsonWriter& json) { json.number(-0.1); }), "-0.1");
    EXPECT_EQ(written([](JsonWriter& json) { json.number(0); }), "0");
    EXPECT_EQ(written([](JsonWriter& json) { json.number(785000000.0); }), "785000000");
    EXPECT_EQ(written([](JsonWriter& json) { json.number(-18014398509481982.0); }), "-18014398509481982");
    EXPECT_EQ(written([](JsonWriter& json) { json.number(18014398509481984.0); }), "1.8014398509481984e+16");
    EXPECT_EQ(written([](JsonWriter& json) { json.number(1e300); }), "1e+300");
    EXPECT_EQ(written([](JsonWriter& json) { json.number(0.0001); }), "0.0001");
    EXPECT_EQ(written([](JsonWriter& json) { json.number(0.00001); }), "1e-05");
    EXPECT_EQ(written([](JsonWriter& json) { json.integer(std::numeric_limits<std::int64_t>::min()); }),
              "-9223372036854775808");
}

} // namespace
} // namespace vesko
