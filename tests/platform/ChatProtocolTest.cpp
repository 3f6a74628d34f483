#include "platform/qt/ChatProtocol.h"
#include "AskedModel.h"
#include "base/Json.h"
#include "base/Paths.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

using testing::sampleRequest;
using testing::sampleSchema;

std::string textAt(JsonValue message, std::string_view key) {
    std::string text;
    EXPECT_TRUE(readMember(message, key, text)) << key;
    return text;
}

/// The messages of a question, as role and content.
std::vector<std::pair<std::string, std::string>> messagesOf(const std::string& question) {
    std::vector<std::pair<std::string, std::string>> messages;
    const std::optional<JsonDocument> document = JsonDocument::parse(question);
    if (!document) return messages;
    for (const JsonValue message : document->root().member("messages")->elements())
        messages.emplace_back(textAt(message, "role"), textAt(message, "content"));
    return messages;
}

TEST(ChatProtocol, AQuestionHoldsInstructionsPromptAndSchema) {
    ModelRequest request = sampleRequest("0 | name | /path");
    request.includeSchemaInPrompt = false;
    request.options.maximumResponseTokens = 300;
    const std::string schema = jsonSchema(sampleSchema);
    EXPECT_EQ(chatQuestion("the \"model\"", "Be brief.", request),
              R"({"model":"the \"model\"","messages":[{"role":"system","content":"Be brief."},)"
              R"({"role":"user","content":"0 | name | /path"}],"temperature":0,"max_tokens":300,)"
              R"("stream":false,"response_format":{"type":"json_schema","json_schema":{"name":"Sample",)"
              R"("strict":true,"schema":)" +
                  schema + "}}}");
}

TEST(ChatProtocol, WhatIsNotGivenIsLeftToTheServer) {
    ModelRequest request;
    request.prompt = "Who?";
    EXPECT_EQ(chatQuestion("m", "", request),
              R"({"model":"m","messages":[{"role":"system","content":""},{"role":"user","content":"Who?"}],)"
              R"("stream":false})");
}

TEST(ChatProtocol, TheSchemaStandsBehindThePromptWhereTheRequestWantsIt) {
    const auto messages = messagesOf(chatQuestion("m", "i", sampleRequest("Who?")));
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_TRUE(messages[1].second.starts_with("Who?\n\n"));
    EXPECT_TRUE(messages[1].second.ends_with("\n" + jsonSchema(sampleSchema)));
    EXPECT_NE(messages[1].second.find("null stands for a value that is not there"), std::string::npos);
    EXPECT_NE(messages[1].second.find("Perhaps a kind."), std::string::npos);
}

TEST(ChatProtocol, AQuestionIsValidJsonWhateverBytesANameHolds) {
    std::string every;
    for (int byte = 1; byte < 256; ++byte) every += static_cast<char>(byte);
    // A surrogate, an overlong form, a code point beyond the last, a sequence that is cut off.
    const std::string odd = every + "\xed\xa0\x80 \xc0\xaf \xf4\x90\x80\x80 \xe2\x82";
    const std::string question = chatQuestion("m", odd, sampleRequest(odd));
    EXPECT_TRUE(isUtf8(question));
    ASSERT_EQ(messagesOf(question).size(), 2u);
}

TEST(ChatProtocol, TheFirstModelOfTheListIsTaken) {
    EXPECT_EQ(firstModel(R"({"data":[{"id":"one"},{"id":"two"}]})"), "one");
    EXPECT_EQ(firstModel(R"({"object":"list","data":[{"object":"model","id":"one","n":1}]})"), "one");
}

TEST(ChatProtocol, AnyOtherListHasNoModel) {
    for (const char* list :
         {"", "[", "null", "[]", "{}", R"({"data":null})", R"({"data":[]})", R"({"data":{"id":"one"}})",
          R"({"data":["one"]})", R"({"data":[{}]})", R"({"data":[{"id":7}]})", R"({"data":[{"id":""}]})",
          R"({"data":[{"id":null},{"id":"two"}]})", "{\"data\":[{\"id\":\"\xff\"}]}",
          R"({"data":[{"id":"\ud800"}]})"})
        EXPECT_EQ(firstModel(list), std::nullopt) << list;
}

TEST(ChatProtocol, TheAnswerIsWhatTheFirstChoiceSays) {
    EXPECT_EQ(chatAnswer(R"({"choices":[{"message":{"role":"assistant","content":"{\"a\":1}"}},)"
                         R"({"message":{"content":"no"}}]})"),
              "{\"a\":1}");
}

TEST(ChatProtocol, ADocumentOfAnotherFormIsNoAnswer) {
    for (const char* completion :
         {"", "hello", "null", "{}", R"({"choices":[]})", R"({"choices":[{}]})",
          R"({"choices":[{"message":"x"}]})", R"({"choices":[{"message":{"content":null}}]})",
          R"({"choices":[{"message":{"content":["x"]}}]})", R"({"choices":{"message":{"content":"x"}}})",
          R"({"error":{"message":"no"}})", "{\"choices\":[{\"message\":{\"content\":\"\xc3\"}}]}",
          R"({"choices":[{"message":{"content":"\udc00"}}]})",
          R"({"choices":[{"message":{"content":"x"}}]} x)"})
        EXPECT_EQ(chatAnswer(completion), std::nullopt) << completion;
}

} // namespace
} // namespace vesko
