#include "platform/ShellCommand.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

extern char** environ;

namespace vesko {

namespace {

/// Reads both ends until they are closed.
void drain(std::array<int, 2> ends, std::array<std::string*, 2> texts) {
    std::array<pollfd, 2> waits{{{ends[0], POLLIN, 0}, {ends[1], POLLIN, 0}}};
    std::array<char, 65536> buffer;
    for (int open = 2; open > 0;) {
        if (::poll(waits.data(), waits.size(), -1) < 0 && errno != EINTR) break;
        for (std::size_t i = 0; i < waits.size(); ++i) {
            if (waits[i].fd < 0 || waits[i].revents == 0) continue;
            const ssize_t got = ::read(waits[i].fd, buffer.data(), buffer.size());
            if (got > 0) {
                texts[i]->append(buffer.data(), static_cast<std::size_t>(got));
            } else {
                ::close(waits[i].fd);
                waits[i].fd = -1;
                --open;
            }
        }
    }
}

} // namespace

ShellResult runProgram(const std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    std::array<int, 2> output{};
    std::array<int, 2> errors{};
    if (::pipe2(output.data(), O_CLOEXEC) != 0 || ::pipe2(errors.data(), O_CLOEXEC) != 0)
        throw std::system_error(errno, std::system_category(), "pipe2");
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, output[1], 1);
    ::posix_spawn_file_actions_adddup2(&actions, errors[1], 2);
    pid_t child = 0;
    const int failed = ::posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(output[1]);
    ::close(errors[1]);
    ShellResult result;
    drain({output[0], errors[0]}, {&result.output, &result.errors});
    if (failed != 0) return result;
    int status = 0;
    ::waitpid(child, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

std::int64_t duBytes(const std::string& path, bool followLinks) {
    const ShellResult result = runProgram({"du", followLinks ? "-skL" : "-sk", "--", path});
    char* end = nullptr;
    const long long kibibytes = std::strtoll(result.output.c_str(), &end, 10);
    if (end == result.output.c_str()) throw std::runtime_error("du: " + result.errors);
    return kibibytes * 1024;
}

bool hasProgram(const std::string& name) {
    return runProgram({"sh", "-c", "command -v \"$1\"", "sh", name}).status == 0;
}

} // namespace vesko
