#include "support/MountNamespace.h"

#include <array>
#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <string_view>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vesko::testing {
namespace {

constexpr int refused = 77;

void writeText(const char* path, const std::string& text) {
    const int file = ::open(path, O_WRONLY | O_CLOEXEC);
    if (file < 0) return;
    [[maybe_unused]] const ssize_t count = ::write(file, text.data(), text.size());
    ::close(file);
}

/// The super-user takes a mount namespace at once, anybody else together with a user namespace.
bool enterNamespace() {
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    if (::unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0) return false;
    if (user != 0) {
        writeText("/proc/self/setgroups", "deny");
        writeText("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
        writeText("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
    }
    return ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

/// Runs `body` in a child and gives what it said, with its exit status.
std::pair<std::string, int> inChild(const std::function<std::string()>& prepare,
                                    const std::function<std::string()>& check) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) return {"no pipe", 0};
    const pid_t child = ::fork();
    if (child < 0) return {"no child process", 0};
    if (child == 0) {
        if (!prepare().empty()) ::_exit(refused);
        const std::string text = check();
        [[maybe_unused]] const ssize_t count = ::write(ends[1], text.data(), text.size());
        ::_exit(0);
    }
    ::close(ends[1]);
    std::string text;
    std::array<char, 4096> part;
    for (ssize_t count = 0; (count = ::read(ends[0], part.data(), part.size())) > 0;)
        text.append(part.data(), static_cast<std::size_t>(count));
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) return {"killed by signal " + std::to_string(WTERMSIG(status)), 0};
    return {text, WEXITSTATUS(status)};
}

} // namespace

std::optional<std::string> inMountNamespace(const std::function<std::string()>& check) {
    const auto [text, status] =
        inChild([] { return enterNamespace() ? std::string() : std::string("refused"); }, check);
    if (status == refused) return std::nullopt;
    return text;
}

std::string asOrdinaryUser(const std::function<std::string()>& check) {
    const auto drop = [] {
        constexpr uid_t nobody = 65534;
        if (::geteuid() != 0) return std::string();
        const bool done = ::setgroups(0, nullptr) == 0 && ::setresgid(nobody, nobody, nobody) == 0 &&
                          ::setresuid(nobody, nobody, nobody) == 0;
        return done ? std::string() : std::string("refused");
    };
    const auto [text, status] = inChild(drop, check);
    return status == refused ? "can't become an ordinary user" : text;
}

} // namespace vesko::testing
