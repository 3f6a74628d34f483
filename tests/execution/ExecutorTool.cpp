// executor_tool PATH KEY: deletes that item with the real runner and prints "deleted" or what the error says:
// "docker COMMAND: CODE", "docker not available", "docker unsupported", "simulator UDID: CODE", "file CODE".
#include "execution/SystemCleanupExecutor.h"
#include "probes/SystemCommandRunner.h"
#include <cstdio>

using namespace vesko;

namespace {

void print(const DockerDeletionError& error) {
    if (error == DockerDeletionError::dockerNotAvailable()) return void(std::puts("docker not available"));
    if (error == DockerDeletionError::unsupportedOfflineTarget())
        return void(std::puts("docker unsupported"));
    const auto& failed = std::get<DockerDeletionError::DeleteFailed>(error.value());
    std::printf("docker");
    for (const std::string& word : failed.command) std::printf(" %s", word.c_str());
    std::printf(": %d\n", failed.exitCode);
}
void print(const SimulatorDeletionError& error) {
    std::printf("simulator %s: %d\n", error.udid.c_str(), error.exitCode);
}
void print(const RemovalFailure& failure) { std::printf("file %d\n", failure.code.value()); }

} // namespace

int main(int count, char** words) {
    if (count != 3) return 2;
    ScannableItem item;
    item.url = FileURL(words[1]);
    item.enrichmentKey = {words[2]};
    const auto outcome = SystemCleanupExecutor().deleteItem(item, SystemCommandRunner());
    if (outcome)
        std::puts("deleted");
    else
        std::visit([](const auto& error) { print(error); }, outcome.error().value());
    return outcome ? 0 : 1;
}
