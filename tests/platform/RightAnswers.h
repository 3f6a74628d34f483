#pragma once
#include "HostileServer.h"
#include "base/Json.h"
#include "base/JsonWriter.h"
#include "enrichment/ModelAnswers.h"
#include "enrichment/PassSamples.h"
#include <sstream>
#include <string>
#include <vector>

/// A server's right answers to the questions of both passes.
namespace vesko::testing {

/// The user's message of a question.
inline std::string promptOf(const HeardRequest& request) {
    const std::optional<JsonDocument> document = JsonDocument::parse(request.body.toStdString());
    std::string prompt;
    if (!document) return prompt;
    for (const JsonValue message : document->root().member("messages")->elements())
        readMember(message, "content", prompt);
    return prompt;
}

/// The lines of a prompt that hold items: those that begin with an id.
inline std::vector<std::string> itemLines(const std::string& prompt) {
    std::vector<std::string> lines;
    std::istringstream stream(prompt);
    for (std::string line; std::getline(stream, line);)
        if (line[0] >= '0' && line[0] <= '9') lines.push_back(line);
    return lines;
}

/// Names for each item of a question for names, a move for each of a review.
inline QByteArray rightAnswer(const HeardRequest& request) {
    const std::string prompt = promptOf(request);
    const bool isReview = prompt.contains(groupsAnnounced);
    std::vector<Record> entries;
    for (const std::string& id : idsOf(itemLines(prompt)))
        entries.push_back(isReview ? reviewed(id, "reclassify", "cache.npm")
                                   : Record{{"id", id},
                                            {"friendlyName", "name " + id},
                                            {"safety", "seguro"},
                                            {"reason", "reason"},
                                            {"kind", std::nullopt}});
    JsonWriter content;
    content.string(answerOf(entries));
    return QByteArray::fromStdString(R"({"choices":[{"message":{"role":"assistant","content":)" +
                                     content.take() + "}}]}");
}

/// Items in one group of discoveries, all large enough to be reviewed.
inline std::vector<CleanupGroup> manyItems(int count) {
    std::vector<ScannableItem> made;
    for (int i = 0; i < count; ++i)
        made.push_back(item("/c/thing" + std::to_string(1000 + i), hundredMebibytes));
    return {discovered("discover.caches", made)};
}

} // namespace vesko::testing
