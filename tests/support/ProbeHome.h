#pragma once
#include "core/ScanProbe.h"
#include "support/FakeRunner.h"
#include "support/ScriptedSizes.h"
#include "support/TempTree.h"
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace vesko::testing {

/// A fresh home folder with a context around it: scripted sizes, tools that fail, the calling thread
/// measures.
class ProbeHome {
public:
    ProbeHome() {
        context.home = tree.root();
        context.now = dateFromUnixSeconds(1'700'000'000);
        context.size = sizes;
        context.runner = runner;
    }

    void answerSizes(ScriptedSizes::Answer answer) {
        sizes = std::make_shared<ScriptedSizes>(std::move(answer));
        context.size = sizes;
    }
    /// The path below the home folder.
    std::string relative(const FileURL& url) const {
        return url.path().substr(tree.root().path().size() + 1);
    }
    /// The paths of a result's items below the home folder, by name, since equal sizes have no order.
    std::vector<std::string> paths(const ProbeResult& result) const {
        std::vector<std::string> list;
        if (result.group)
            for (const ScannableItem& item : result.group->items) list.push_back(relative(item.url));
        std::sort(list.begin(), list.end());
        return list;
    }

    TempTree tree;
    std::shared_ptr<ScriptedSizes> sizes = std::make_shared<ScriptedSizes>();
    std::shared_ptr<FakeRunner> runner = std::make_shared<FakeRunner>();
    ProbeContext context;
};

} // namespace vesko::testing
