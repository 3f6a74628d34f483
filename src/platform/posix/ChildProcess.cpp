#include "base/ChildProcess.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

extern char** environ;

namespace vesko {
namespace {

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { close(); }

    void close() noexcept {
        if (number_ >= 0) ::close(std::exchange(number_, -1));
    }
    int number() const noexcept { return number_; }
    explicit operator bool() const noexcept { return number_ >= 0; }

private:
    int number_ = -1;
};

struct Pipe {
    Descriptor read;
    Descriptor write;
    explicit operator bool() const noexcept { return read && write; }
};

/// Above the three standard numbers, so that wiring one end to standard output can't overwrite another end in
/// a process that was started with closed standard files.
Descriptor movedAboveStandard(Descriptor given) {
    if (!given || given.number() > STDERR_FILENO) return given;
    return Descriptor(::fcntl(given.number(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

/// Both ends close on exec.
Pipe makePipe() {
    std::array<int, 2> ends{-1, -1};
#ifdef __APPLE__
    if (::pipe(ends.data()) != 0) return {};
    for (const int end : ends) ::fcntl(end, F_SETFD, FD_CLOEXEC);
#else
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
#endif
    Descriptor read(ends[0]);
    Descriptor write(ends[1]);
    return {movedAboveStandard(std::move(read)), movedAboveStandard(std::move(write))};
}

/// What happens between the start of the child and its program.
class SpawnPlan {
public:
    SpawnPlan() {
        ::posix_spawn_file_actions_init(&actions_);
        ::posix_spawnattr_init(&attributes_);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;
    ~SpawnPlan() {
        ::posix_spawnattr_destroy(&attributes_);
        ::posix_spawn_file_actions_destroy(&actions_);
    }

    bool connect(int end, int standard) {
        return ::posix_spawn_file_actions_adddup2(&actions_, end, standard) == 0;
    }
    /// A child can be ended by signals however the calling thread has masked them, sees a broken pipe as
    /// usual, and gets no file of ours but the three standard ones.
    bool isolate() {
        short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        sigset_t none;
        ::sigemptyset(&none);
        sigset_t restored;
        ::sigemptyset(&restored);
        ::sigaddset(&restored, SIGPIPE);
#ifdef __APPLE__
        flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
        if (::posix_spawn_file_actions_addinherit_np(&actions_, STDIN_FILENO) != 0) return false;
#elif defined(__GLIBC__)
        if (::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1) != 0) return false;
#endif
        return ::posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
               ::posix_spawnattr_setsigdefault(&attributes_, &restored) == 0 &&
               ::posix_spawnattr_setflags(&attributes_, flags) == 0;
    }
    std::optional<pid_t> start(const std::string& executable, char* const* arguments) {
        pid_t child = 0;
        // The C library starts the child without copying this process's memory and without running anything
        // of ours in between, so it may be done from any thread.
        if (::posix_spawn(&child, executable.c_str(), &actions_, &attributes_, arguments, environ) != 0)
            return std::nullopt;
        return child;
    }

private:
    posix_spawn_file_actions_t actions_;
    posix_spawnattr_t attributes_;
};

std::optional<pid_t> launch(const std::string& executable, const std::vector<std::string>& arguments,
                            const Pipe& output, const Pipe& errors) {
    std::vector<char*> words{const_cast<char*>(executable.c_str())};
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    SpawnPlan plan;
    if (!plan.connect(output.write.number(), STDOUT_FILENO) ||
        !plan.connect(errors.write.number(), STDERR_FILENO) || !plan.isolate())
        return std::nullopt;
    return plan.start(executable, words.data());
}

std::string readToEnd(const Descriptor& end) {
    std::string bytes;
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t count = ::read(end.number(), buffer.data(), buffer.size());
        if (count > 0) {
            bytes.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return bytes;
        }
    }
}

std::int32_t waitForExit(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        // Without a status (the process was set up to forget its children) the run counts as failed.
        if (errno != EINTR) return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status);
}

std::atomic<std::int64_t> started{0};

bool holdsNul(std::string_view word) { return word.find('\0') != std::string_view::npos; }

} // namespace

std::optional<ChildResult> runChild(const std::string& executable,
                                    const std::vector<std::string>& arguments) {
    // A word that holds a NUL would reach the child cut short and might name something else.
    if (holdsNul(executable)) return std::nullopt;
    for (const std::string& argument : arguments)
        if (holdsNul(argument)) return std::nullopt;

    Pipe output = makePipe();
    Pipe errors = makePipe();
    if (!output || !errors) return std::nullopt;
    const std::optional<pid_t> child = launch(executable, arguments, output, errors);
    if (!child) return std::nullopt;
    ++started;
    output.write.close();
    errors.write.close();

    // To the end before waiting: a child that writes much must not stall on a full pipe.
    ChildResult result;
    result.standardOutput = readToEnd(output.read);
    result.status = waitForExit(*child);
    return result;
}

std::int64_t childrenStarted() noexcept { return started; }

} // namespace vesko
