#pragma once
#include "core/ScanProbe.h"
#include "support/ScriptedSizes.h"
#include "support/TempTree.h"
#include "support/ToolScript.h"
#include <gtest/gtest.h>
#include <memory>

namespace vesko::testing {

/// For probes that ask a tool: a fresh home folder, tools that answer by a script, sizes that are made up.
class ToolProbeTest : public ::testing::Test {
protected:
    /// With a measurement of its own, or with the made-up sizes.
    ProbeResult run(const ScanProbe& probe, std::shared_ptr<const SizeCalculating> size = nullptr) {
        runner = script.runner();
        ProbeContext context;
        context.home = tree.root();
        context.size = size ? std::move(size) : sizes;
        context.runner = runner;
        return probe.run(context);
    }

    TempTree tree;
    ToolScript script;
    std::shared_ptr<FakeRunner> runner; ///< of the last run
    std::shared_ptr<ScriptedSizes> sizes = std::make_shared<ScriptedSizes>();
};

} // namespace vesko::testing
