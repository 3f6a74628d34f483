#include "concurrency/Concurrency.h"
#include "enrichment/UnavailableEnrichment.h"
#include "enrichment/UnavailableReview.h"
#include "support/ManualLoop.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

TEST(UnavailableModel, AnswersNothingAndEndsAtOnce) {
    ManualLoop loop;
    WorkerPool workers;
    const TaskContext context{&loop, &workers, &loop, {}, nullptr};
    UnavailableEnrichment enrichment;
    UnavailableReview reviewing;
    bool hasEnded = false;
    std::optional<std::size_t> patches;
    const auto task = spawn(context, [&]() -> Task<void> {
        AsyncStream<EnrichmentPatch> stream = enrichment.enrich({CleanupGroup{}});
        const std::optional<EnrichmentPatch> patch = co_await stream.next();
        hasEnded = !patch.has_value();
        const std::vector<ReviewPatch> answer =
            co_await reviewing.review({CleanupGroup{}}, {ScanReviewCandidate{}});
        patches = answer.size();
    });
    loop.drain();
    ASSERT_TRUE(task.done());
    EXPECT_TRUE(hasEnded);
    EXPECT_EQ(patches, 0u);
}

} // namespace
} // namespace vesko
