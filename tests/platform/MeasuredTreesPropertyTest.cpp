#include "core/MeasuredTrees.h"

#include "platform/GrownTree.h"
#include "platform/ShellCommand.h"
#include "platform/posix/WalkCounts.h"
#include <atomic>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <set>
#include <sstream>
#include <thread>

namespace vesko {
namespace {

struct Asked {
    std::string place;
    bool followLinks;
};

/// Answers in the order of the questions, which so many threads ask side by side.
std::vector<std::optional<std::int64_t>> answers(const OddTree& tree, const std::vector<Asked>& questions,
                                                 unsigned threads) {
    MeasuredTrees trees;
    std::vector<std::optional<std::int64_t>> found(questions.size());
    std::atomic<std::size_t> next{0};
    const auto ask = [&] {
        for (std::size_t i = next++; i < questions.size(); i = next++)
            found[i] = trees.bytes(tree.url(questions[i].place), questions[i].followLinks);
    };
    std::vector<std::thread> others;
    for (unsigned i = 1; i < threads; ++i) others.emplace_back(ask);
    ask();
    for (std::thread& other : others) other.join();
    return found;
}

/// How many folders lie in at least one of the places.
std::int64_t foldersOfUnion(const OddTree& tree, const std::vector<Asked>& questions) {
    std::vector<std::string> words = {"find"};
    for (const Asked& asked : questions) words.push_back(tree.path(asked.place));
    for (const char* word : {"-type", "d", "-printf", "%i\n"}) words.emplace_back(word);
    std::istringstream lines(runProgram(words).output);
    std::set<std::string> inodes;
    for (std::string line; std::getline(lines, line);) inodes.insert(line);
    return static_cast<std::int64_t>(inodes.size());
}

RC_GTEST_PROP(MeasuredTreesProperty, EveryAnswerIsThatOfTheProgramAndNothingIsReadTwice, ()) {
    auto steps = *rc::gen::container<std::vector<GrowthStep>>(anyStep());
    const bool hasLinks = *rc::gen::arbitrary<bool>();
    if (!hasLinks)
        std::erase_if(steps, [](const GrowthStep& step) {
            return step.kind == GrowthStep::Kind::link || step.kind == GrowthStep::Kind::loop ||
                   step.kind == GrowthStep::Kind::dangling;
        });
    const OddTree tree;
    Gardener gardener(tree);
    for (const GrowthStep& step : steps) gardener.grow(step);

    const auto picks =
        *rc::gen::resize(12, rc::gen::nonEmpty(rc::gen::container<std::vector<std::pair<unsigned, bool>>>(
                                 rc::gen::pair(rc::gen::inRange(0U, 1'000U), rc::gen::arbitrary<bool>()))));
    std::vector<Asked> questions;
    for (const auto& [number, followLinks] : picks)
        questions.push_back({gardener.folders()[number % gardener.folders().size()], followLinks});
    std::vector<std::optional<std::int64_t>> expected;
    for (const Asked& asked : questions)
        expected.emplace_back(duBytes(tree.path(asked.place), asked.followLinks));
    const std::int64_t folders = foldersOfUnion(tree, questions);

    for (const unsigned threads : {1U, 2U, 4U}) {
        const std::int64_t before = walkCounts(WalkPurpose::measuring).foldersRead;
        RC_ASSERT(answers(tree, questions, threads) == expected);
        const std::int64_t read = walkCounts(WalkPurpose::measuring).foldersRead - before;
        if (!hasLinks) RC_ASSERT(read == folders);
    }
}

} // namespace
} // namespace vesko
