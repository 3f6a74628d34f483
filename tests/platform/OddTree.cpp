#include "platform/OddTree.h"

#include "platform/ShellCommand.h"
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

extern char** environ;

namespace vesko {

namespace {

void check(bool succeeded, const std::string& what) {
    if (!succeeded) throw std::system_error(errno, std::system_category(), what);
}

void makeParents(const std::string& path) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
}

} // namespace

OddTree::OddTree(Place place) {
    const bool inMemory = place == Place::memory && ::access("/dev/shm", W_OK | X_OK) == 0;
    const std::filesystem::path above = inMemory ? "/dev/shm" : std::filesystem::temp_directory_path();
    std::string pattern = above / "vesko-test-XXXXXX";
    check(::mkdtemp(pattern.data()) != nullptr, pattern);
    path_ = std::filesystem::canonical(pattern);
    // Tests that give up their rights must be able to get in.
    check(::chmod(path_.c_str(), 0755) == 0, path_);
}

OddTree::~OddTree() {
    const char* program = "/bin/rm";
    const char* arguments[] = {program, "-rf", "--", path_.c_str(), nullptr};
    pid_t child = 0;
    if (::posix_spawn(&child, program, nullptr, nullptr, const_cast<char**>(arguments), environ) == 0)
        ::waitpid(child, nullptr, 0);
}

std::string OddTree::path(std::string_view relative) const {
    if (relative.empty()) return path_;
    std::string joined = path_;
    joined += '/';
    joined += relative;
    return joined;
}

std::string OddTree::folder(std::string_view relative) const {
    const std::string made = path(relative);
    std::filesystem::create_directories(made);
    return made;
}

std::string OddTree::file(std::string_view relative, std::size_t bytes) const {
    return text(relative, std::string(bytes, 'x'));
}

std::string OddTree::text(std::string_view relative, std::string_view content) const {
    const std::string made = path(relative);
    makeParents(made);
    std::ofstream stream(made, std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.flush();
    check(stream.good(), made);
    return made;
}

void OddTree::link(std::string_view relative, std::string_view target) const {
    const std::string made = path(relative);
    makeParents(made);
    check(::symlink(std::string(target).c_str(), made.c_str()) == 0, made);
}

void OddTree::hardLink(std::string_view relative, std::string_view existing) const {
    const std::string made = path(relative);
    makeParents(made);
    check(::link(path(existing).c_str(), made.c_str()) == 0, made);
}

void OddTree::sparse(std::string_view relative, std::int64_t bytes) const {
    const std::string made = file(relative, 0);
    check(::truncate(made.c_str(), bytes) == 0, made);
}

void OddTree::preallocated(std::string_view relative, std::int64_t bytes) const {
    const std::string made = file(relative, 0);
    const int descriptor = ::open(made.c_str(), O_WRONLY | O_CLOEXEC);
    check(descriptor >= 0, made);
    const int failed = ::posix_fallocate(descriptor, 0, bytes);
    ::close(descriptor);
    if (failed != 0) throw std::system_error(failed, std::system_category(), made);
}

void OddTree::pipe(std::string_view relative) const {
    const std::string made = path(relative);
    makeParents(made);
    check(::mkfifo(made.c_str(), 0600) == 0, made);
}

void OddTree::socket(std::string_view relative) const {
    const std::string made = path(relative);
    makeParents(made);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (made.size() >= sizeof address.sun_path) throw std::length_error(made);
    made.copy(address.sun_path, made.size());
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    check(descriptor >= 0, made);
    const int bound = ::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::close(descriptor);
    check(bound == 0, made);
}

void OddTree::mode(std::string_view relative, mode_t mode) const {
    check(::chmod(path(relative).c_str(), mode) == 0, path(relative));
}

void OddTree::chain(std::string_view relative, const std::string& name, std::size_t depth, std::size_t bytes,
                    std::size_t every) const {
    int current = ::open(folder(relative).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    check(current >= 0, path(relative));
    const std::string content(bytes, 'x');
    for (std::size_t level = 1; level <= depth; ++level) {
        check(::mkdirat(current, name.c_str(), 0755) == 0, name);
        const int next = ::openat(current, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        check(next >= 0, name);
        ::close(std::exchange(current, next));
        if (level != depth && level % every != 0) continue;
        check(::mkdirat(current, "beside", 0755) == 0, "beside");
        const int file = ::openat(current, "beside/content", O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
        check(file >= 0 && ::write(file, content.data(), content.size()) == static_cast<ssize_t>(bytes),
              name);
        ::close(file);
    }
    ::close(current);
}

void OddTree::giveAway() const {
    if (::geteuid() != 0) return;
    const ShellResult given = runProgram({"chown", "-Rh", "65534:65534", path_});
    if (given.status != 0) throw std::runtime_error(given.errors);
}

bool OddTree::has(std::string_view relative) const {
    struct stat status;
    return ::lstat(path(relative).c_str(), &status) == 0;
}

std::string OddTree::read(std::string_view relative) const {
    std::ifstream stream(path(relative), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::uint64_t OddTree::inode(std::string_view relative) const {
    struct stat status;
    check(::lstat(path(relative).c_str(), &status) == 0, path(relative));
    return status.st_ino;
}

} // namespace vesko
