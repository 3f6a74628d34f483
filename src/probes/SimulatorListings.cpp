#include "probes/SimulatorListings.h"

#include "base/Json.h"
#include <utility>

namespace vesko {
namespace {

std::optional<SimctlDevice> deviceOf(JsonValue value) {
    SimctlDevice device;
    if (!readMember(value, "udid", device.udid) || !readMember(value, "name", device.name) ||
        !readMember(value, "isAvailable", device.isAvailable) ||
        !readMember(value, "dataPath", device.dataPath))
        return std::nullopt;
    return device;
}

} // namespace

std::optional<std::vector<SimctlDevice>> parseSimctlDevices(std::string_view output) {
    const std::optional<JsonDocument> document = JsonDocument::parse(output);
    if (!document) return std::nullopt;
    const std::optional<JsonValue> runtimes = document->root().member("devices");
    if (!runtimes || !runtimes->isObject()) return std::nullopt;
    std::vector<SimctlDevice> devices;
    for (const JsonMember runtime : runtimes->members()) {
        if (!runtime.value.isArray()) return std::nullopt;
        for (const JsonValue value : runtime.value.elements()) {
            std::optional<SimctlDevice> device = deviceOf(value);
            if (!device) return std::nullopt;
            devices.push_back(std::move(*device));
        }
    }
    return devices;
}

std::optional<std::unordered_set<std::string>> parseSimctlRuntimes(std::string_view output) {
    const std::optional<JsonDocument> document = JsonDocument::parse(output);
    if (!document) return std::nullopt;
    const std::optional<JsonValue> runtimes = document->root().member("runtimes");
    if (!runtimes || !runtimes->isArray()) return std::nullopt;
    std::unordered_set<std::string> paths;
    for (const JsonValue runtime : runtimes->elements()) {
        std::optional<std::string> path;
        if (!runtime.isObject() || !readMember(runtime, "bundlePath", path)) return std::nullopt;
        if (path) paths.insert(std::move(*path));
    }
    return paths;
}

} // namespace vesko
