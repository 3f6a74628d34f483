#include "core/FastDirectorySize.h"

#include "platform/GrownTree.h"
#include "platform/ShellCommand.h"
#include "platform/UsageSum.h"
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace vesko {
namespace {

RC_GTEST_PROP(MeasuringProperty, AnyTreeEqualsDuToTheKibibyte, ()) {
    const auto steps = *rc::gen::container<std::vector<GrowthStep>>(anyStep());
    const OddTree tree;
    Gardener gardener(tree);
    for (const GrowthStep& step : steps) gardener.grow(step);
    const std::string root = tree.path("t");
    for (const bool followLinks : {false, true}) {
        const std::int64_t expected = duBytes(root, followLinks);
        const auto quick = fastDirectorySize(tree.url("t"), followLinks);
        if (expected > 4096)
            RC_ASSERT(quick == std::optional(expected));
        else
            RC_ASSERT(quick == std::nullopt);
        for (const unsigned threads : {1U, 2U, 8U})
            RC_ASSERT(usageByThreads(root, followLinks, threads) == std::optional(expected));
    }
}

} // namespace
} // namespace vesko
