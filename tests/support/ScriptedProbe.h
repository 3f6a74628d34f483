#pragma once
#include "core/ScanProbe.h"
#include "support/builders.h"
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace vesko::testing {

/// A probe that does what the test says; without a word it finds nothing.
class ScriptedProbe final : public ScanProbe {
public:
    using Body = std::function<ProbeResult(const ProbeContext&)>;

    explicit ScriptedProbe(const std::string& id, Body body = nullptr)
        : metadata_(testing::metadata(id)), body_(std::move(body)) {}

    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext& context) const override {
        return body_ ? body_(context) : ProbeResult();
    }

private:
    GroupMetadata metadata_;
    Body body_;
};

inline std::shared_ptr<const ScanProbe> probe(const std::string& id, ScriptedProbe::Body body = nullptr) {
    return std::make_shared<const ScriptedProbe>(id, std::move(body));
}

/// A probe that finds one group with these items.
inline std::shared_ptr<const ScanProbe> finder(const std::string& id, std::vector<ScannableItem> items) {
    return probe(
        id, [found = group(id, std::move(items))](const ProbeContext&) { return ProbeResult{found, {}}; });
}

} // namespace vesko::testing
