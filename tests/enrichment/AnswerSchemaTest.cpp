#include "enrichment/AnswerSchema.h"

#include "enrichment/EnrichmentBatch.h"
#include "enrichment/ReviewBatch.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

constexpr std::string_view goodEntry =
    R"({"id":"0","friendlyName":"N","safety":"seguro","reason":"R","kind":"cache"})";

std::string answer(std::string_view entry) { return R"({"entries":[)" + std::string(entry) + "]}"; }

std::string failure(std::string_view json) {
    const auto decoded = EnrichmentBatch::decoded(json);
    return decoded ? "none" : decoded.error();
}

TEST(AnswerSchema, TheFormOfTheEnrichmentAnswerIsToldWordForWord) {
    EXPECT_EQ(
        jsonSchema(EnrichmentBatch::schema()),
        R"({"type":"object","properties":{"entries":{"type":"array","items":{"type":"object","properties":{)"
        R"("id":{"type":"string","description":"The same id received in the input, used to match the response."},)"
        R"("friendlyName":{"type":"string","description":"Short human-readable name."},)"
        R"("safety":{"type":"string","enum":["seguro","revisar"],)"
        R"("description":"seguro = rebuildable junk; revisar = may contain user data."},)"
        R"("reason":{"type":"string",)"
        R"("description":"Short reason in the user's language (English or Brazilian Portuguese)."},)"
        R"("kind":{"type":["string","null"],"description":"Optional category (e.g. cache, app, log)."}},)"
        R"("required":["id","friendlyName","safety","reason","kind"],"additionalProperties":false}}},)"
        R"("required":["entries"],"additionalProperties":false})");
}

TEST(AnswerSchema, TheFormOfTheReviewAnswerIsToldWordForWord) {
    EXPECT_EQ(
        jsonSchema(ReviewBatch::schema()),
        R"({"type":"object","properties":{"entries":{"type":"array","items":{"type":"object","properties":{)"
        R"("id":{"type":"string","description":"O mesmo id recebido na entrada."},)"
        R"("action":{"type":"string","enum":["promote","demote","reclassify"]},)"
        R"("targetGroupID":{"type":["string","null"],)"
        R"("description":"ID do grupo alvo para promote/reclassify; vazio para demote."},)"
        R"("friendlyName":{"type":["string","null"],"description":"Nome amigavel opcional."},)"
        R"("safety":{"type":"string","enum":["seguro","revisar"],"description":"seguro ou revisar."},)"
        R"("reason":{"type":"string","description":"Motivo curto em portugues."}},)"
        R"("required":["id","action","targetGroupID","friendlyName","safety","reason"],)"
        R"("additionalProperties":false}}},"required":["entries"],"additionalProperties":false})");
}

TEST(AnswerSchema, TheSchemasAndTheirRecordsAreNamed) {
    EXPECT_EQ(EnrichmentBatch::schema().name, "EnrichmentBatch");
    EXPECT_EQ(EnrichmentBatch::schema().entryName, "EnrichedEntry");
    EXPECT_EQ(ReviewBatch::schema().name, "ReviewBatch");
    EXPECT_EQ(ReviewBatch::schema().entryName, "ReviewEntry");
}

TEST(AnswerSchema, AnAnswerInTheFormIsRead) {
    const auto batch = EnrichmentBatch::decoded(
        answer(std::string(goodEntry) +
               R"(, {"kind":null,"reason":"","safety":"revisar","friendlyName":"ação","id":"\u0031"})"));
    ASSERT_TRUE(batch.has_value()) << batch.error();
    EXPECT_EQ(batch->entries,
              (std::vector<EnrichedEntry>{{"0", "N", DraftSafety::seguro, "R", "cache"},
                                          {"1", "ação", DraftSafety::revisar, "", std::nullopt}}));
}

TEST(AnswerSchema, AReviewInTheFormIsRead) {
    const auto batch = ReviewBatch::decoded(
        answer(R"({"id":"4","action":"promote","targetGroupID":"trash","friendlyName":"N","safety":"seguro",)"
               R"("reason":"R"},{"id":"5","action":"demote","safety":"revisar","reason":"S"},)"
               R"({"id":"6","action":"reclassify","targetGroupID":"","friendlyName":null,"safety":"revisar",)"
               R"("reason":"T"})"));
    ASSERT_TRUE(batch.has_value()) << batch.error();
    const std::vector<ReviewEntry> expected{
        {"4", ReviewActionKind::promote, "trash", "N", DraftSafety::seguro, "R"},
        {"5", ReviewActionKind::demote, std::nullopt, std::nullopt, DraftSafety::revisar, "S"},
        {"6", ReviewActionKind::reclassify, "", std::nullopt, DraftSafety::revisar, "T"}};
    EXPECT_EQ(batch->entries, expected);
}

TEST(AnswerSchema, AnAnswerMayBeEmpty) {
    const auto batch = EnrichmentBatch::decoded(R"({"entries":[]})");
    ASSERT_TRUE(batch.has_value());
    EXPECT_TRUE(batch->entries.empty());
}

TEST(AnswerSchema, AWordOutsideTheChoicesFailsTheWhole) {
    EXPECT_EQ(failure(answer(std::string(goodEntry) +
                             R"(,{"id":"1","friendlyName":"N","safety":"risco","reason":"R"})")),
              R"(Unexpected value "risco" for DraftSafety)");
    EXPECT_EQ(failure(answer(R"({"id":"1","friendlyName":"N","safety":"Seguro","reason":"R"})")),
              R"(Unexpected value "Seguro" for DraftSafety)");
    const auto review =
        ReviewBatch::decoded(answer(R"({"id":"1","action":"delete","safety":"seguro","reason":"R"})"));
    ASSERT_FALSE(review.has_value());
    EXPECT_EQ(review.error(), R"(Unexpected value "delete" for ReviewActionKind)");
}

TEST(AnswerSchema, WhatIsNoSuchDocumentIsRefused) {
    for (const std::string& text : {
             std::string(),
             std::string("null"),
             std::string("[]"),
             std::string("{}"),
             std::string(R"("entries")"),
             std::string(R"({"entries":null})"),
             std::string(R"({"entries":{}})"),
             std::string(R"({"entries":[null]})"),
             std::string(R"({"entries":["0"]})"),
             std::string(R"({"entries":[[]]})"),
             std::string(R"({"entries":[],"more":1})"),
             std::string(R"({"entries":[],"entries":[]})"),
             std::string(R"({"entries":[]} )") + "x",
             std::string("```json\n{\"entries\":[]}\n```"),
             std::string(R"({"Entries":[]})"),
             std::string(R"({"entries":[)"),
             answer(goodEntry).substr(0, 40),
             answer(std::string(goodEntry) + ","),
             "\xff" + answer(goodEntry),
             std::string(100'000, '['),
         })
        EXPECT_NE(failure(text), "none") << text.substr(0, 60);
    EXPECT_EQ(failure(answer(goodEntry)), "none");
}

TEST(AnswerSchema, ARecordWithAMemberMissingBesidesTwiceOrOfAnotherTypeIsRefused) {
    for (const std::string_view record : {
             R"({"friendlyName":"N","safety":"seguro","reason":"R"})",
             R"({"id":"0","safety":"seguro","reason":"R"})",
             R"({"id":"0","friendlyName":"N","reason":"R"})",
             R"({"id":"0","friendlyName":"N","safety":"seguro"})",
             R"({"id":0,"friendlyName":"N","safety":"seguro","reason":"R"})",
             R"({"id":null,"friendlyName":"N","safety":"seguro","reason":"R"})",
             R"({"id":"0","friendlyName":["N"],"safety":"seguro","reason":"R"})",
             R"({"id":"0","friendlyName":"N","safety":null,"reason":"R"})",
             R"({"id":"0","friendlyName":"N","safety":"seguro","reason":true})",
             R"({"id":"0","friendlyName":"N","safety":"seguro","reason":"R","kind":7})",
             R"({"id":"0","friendlyName":"N","safety":"seguro","reason":"R","path":"/"})",
             R"({"id":"0","id":"1","friendlyName":"N","safety":"seguro","reason":"R"})",
         })
        EXPECT_NE(failure(answer(record)), "none") << record;
}

TEST(AnswerSchema, AnAnswerAboveOneMebibyteIsRefused) {
    std::string padded = answer(goodEntry);
    padded.resize(1 << 20, ' ');
    EXPECT_EQ(failure(padded), "none");
    EXPECT_EQ(failure(padded + ' '), "An answer of 1048577 bytes");
}

} // namespace
} // namespace vesko
