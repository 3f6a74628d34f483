#include "base/Json.h"
#include "base/JsonWriter.h"
#include "base/Paths.h"
#include "support/Utf8.h"
#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace vesko {
namespace {

RC_GTEST_PROP(JsonProperty, ATextComesBackAsItWasWritten, (const std::vector<std::uint32_t>& points)) {
    const std::string text = testing::utf8From(points);
    RC_ASSERT(isUtf8(text));
    JsonWriter writer;
    writer.string(text);
    const auto document = JsonDocument::parse(writer.take());
    RC_ASSERT(document.has_value());
    RC_ASSERT(document->root().string() == std::string_view(text));
}

RC_GTEST_PROP(JsonProperty, BytesThatAreNoUtf8NeverPass, (const std::string& bytes)) {
    JsonWriter writer;
    writer.string(bytes);
    RC_ASSERT(JsonDocument::parse(writer.take()).has_value() == isUtf8(bytes));
}

RC_GTEST_PROP(JsonProperty, AnIntegerComesBackAsItWasWritten, (std::int64_t value)) {
    JsonWriter writer;
    writer.integer(value);
    const auto document = JsonDocument::parse(writer.take());
    RC_ASSERT(document && document->root().integer() == value);
}

RC_GTEST_PROP(JsonProperty, ANumberComesBackAsItWasWritten, (std::uint64_t bits)) {
    const double value = std::bit_cast<double>(bits);
    RC_PRE(std::isfinite(value));
    JsonWriter writer;
    writer.number(value);
    const auto document = JsonDocument::parse(writer.take());
    RC_ASSERT(document && document->root().number() == value);
}

RC_GTEST_PROP(JsonProperty, NoBytesCrashTheParser, (const std::string& bytes)) {
    const auto document = JsonDocument::parse(bytes);
    if (!document) return;
    for (const JsonValue value : document->root().elements()) (void)value.string();
    for (const JsonMember member : document->root().members()) (void)member.value.number();
}

} // namespace
} // namespace vesko
