#include "base/FileSystem.h"

#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <random>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <utility>

#ifdef __APPLE__
#include <sys/mount.h>
#endif

namespace vesko {
namespace {

class Descriptor {
public:
    explicit Descriptor(int number) noexcept : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }

    int number() const noexcept { return number_; }
    bool open() const noexcept { return number_ >= 0; }
    int release() noexcept { return std::exchange(number_, -1); }
    /// Some file systems report a failed write only here.
    std::error_code close() noexcept {
        return ::close(release()) == 0 ? std::error_code() : std::error_code(errno, std::generic_category());
    }

private:
    int number_;
};

std::error_code lastError() noexcept { return {errno, std::generic_category()}; }

/// The path for a system call. A path with a NUL inside names no file, and handing on the part before it
/// would name another one.
const char* systemPath(const FileURL& url) noexcept {
    const std::string& path = url.path();
    if (path.empty() || path.find('\0') != std::string::npos) {
        errno = EINVAL;
        return nullptr;
    }
    return path.c_str();
}

bool statusOf(const FileURL& url, struct stat& status) noexcept {
    const char* path = systemPath(url);
    return path && ::lstat(path, &status) == 0;
}

#ifdef __APPLE__
Date modificationDate(const struct stat& status) {
    return dateFromUnixSeconds(status.st_mtimespec.tv_sec, status.st_mtimespec.tv_nsec);
}
Date accessDate(const struct stat& status) {
    return dateFromUnixSeconds(status.st_atimespec.tv_sec, status.st_atimespec.tv_nsec);
}
bool keepsAccessDates(const char* path) {
    struct statfs volume{};
    return ::statfs(path, &volume) != 0 || (volume.f_flags & MNT_NOATIME) == 0;
}
int openFolderQuietly(const char* path) { return ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC); }
#else
Date modificationDate(const struct stat& status) {
    return dateFromUnixSeconds(status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
}
Date accessDate(const struct stat& status) {
    return dateFromUnixSeconds(status.st_atim.tv_sec, status.st_atim.tv_nsec);
}
bool keepsAccessDates(const char* path) {
    struct statvfs volume{};
    return ::statvfs(path, &volume) != 0 || (volume.f_flag & ST_NOATIME) == 0;
}
/// O_NOATIME is refused for what another user owns; such a folder is listed all the same.
int openFolderQuietly(const char* path) {
    const int quiet = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOATIME);
    if (quiet >= 0 || errno != EPERM) return quiet;
    return ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}
#endif

struct CloseFolder {
    void operator()(DIR* folder) const noexcept { ::closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

OpenFolder openFolder(const FileURL& url) {
    const char* path = systemPath(url);
    Descriptor descriptor(path ? openFolderQuietly(path) : -1);
    if (!descriptor.open()) return nullptr;
    OpenFolder folder(::fdopendir(descriptor.number()));
    if (folder) descriptor.release();
    return folder;
}

/// Reads to the end; nothing on an error or beyond `limit`.
std::optional<std::string> readToEnd(int descriptor, std::uint64_t expected, std::uint64_t limit) {
    std::string bytes;
    std::size_t filled = 0;
    bytes.resize(static_cast<std::size_t>(expected) + 1);
    for (;;) {
        const ssize_t count = ::read(descriptor, bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
        if (filled > limit) return std::nullopt;
        if (filled == bytes.size()) bytes.resize(filled + filled / 2 + 4096);
    }
    bytes.resize(filled);
    return bytes;
}

/// Tells the files of this process from those of an earlier one that had the same process number, as happens
/// in containers, where every start gets the same.
const std::string& processMark() {
    // Never destroyed: a thread may still be reading ahead while the program ends.
    static const std::string& mark = *new std::string([] {
        std::random_device random;
        constexpr std::string_view digits = "0123456789abcdefghijklmnopqrstuv";
        std::string text;
        for (int count = 0; count < 12; ++count) text += digits[random() % digits.size()];
        return text;
    }());
    return mark;
}

constexpr std::string_view temporarySuffix = ".vesko-new";

/// ".name.PID.MARK.NUMBER.vesko-new" beside the file.
std::string temporaryName(const FileURL& url) {
    static std::atomic<unsigned> last{0};
    std::string name = ".";
    name += url.lastPathComponent();
    name += '.' + std::to_string(::getpid()) + '.' + processMark() + '.' + std::to_string(++last);
    name += temporarySuffix;
    return name;
}

/// Whether the name is that of a temporary file for `fileName` whose writer is gone.
bool isLitter(std::string_view name, std::string_view fileName) {
    if (!name.starts_with('.') || !name.ends_with(temporarySuffix)) return false;
    name.remove_prefix(1);
    name.remove_suffix(temporarySuffix.size());
    if (!name.starts_with(fileName) || name.substr(fileName.size(), 1) != ".") return false;
    name.remove_prefix(fileName.size() + 1);
    pid_t writer = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), writer);
    const std::string_view rest(end, static_cast<std::size_t>(name.data() + name.size() - end));
    if (error != std::errc() || writer <= 0 || rest.size() < processMark().size() + 3 || rest[0] != '.')
        return false;
    if (writer == ::getpid()) return !rest.substr(1).starts_with(processMark());
    return ::kill(writer, 0) != 0 && errno == ESRCH;
}

/// Writes all bytes and looks at what became of them: a full disk can cut a write short without an error.
std::error_code writeAll(int descriptor, std::string_view bytes) {
    const std::size_t length = bytes.size();
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return lastError();
        if (count == 0) return std::make_error_code(std::errc::no_space_on_device);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    struct stat status{};
    if (::fstat(descriptor, &status) != 0) return lastError();
    if (static_cast<std::uint64_t>(status.st_size) != length)
        return std::make_error_code(std::errc::io_error);
    while (::fsync(descriptor) != 0)
        if (errno != EINTR) return lastError();
    return {};
}

/// A file with these bytes and nothing else; on failure no file.
std::error_code writeNewFile(const char* path, std::string_view bytes) {
    Descriptor file(::open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file.open()) return lastError();
    std::error_code error = writeAll(file.number(), bytes);
    const std::error_code closing = file.close();
    if (!error) error = closing;
    if (error) ::unlink(path);
    return error;
}

/// Makes the rename durable. The file is in place already, so a folder that can't be flushed is no failure.
void flushFolder(const FileURL& url) {
    const Descriptor folder(::open(url.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.open()) ::fsync(folder.number());
}

std::error_code createFolder(const std::string& path) {
    if (::mkdir(path.c_str(), 0700) == 0) return {};
    const std::error_code error = lastError();
    struct stat status{};
    if (::stat(path.c_str(), &status) != 0) return error;
    return S_ISDIR(status.st_mode) ? std::error_code() : std::make_error_code(std::errc::not_a_directory);
}

} // namespace

bool fileExists(const FileURL& url) noexcept {
    const char* path = systemPath(url);
    return path && ::access(path, F_OK) == 0;
}

bool isReadable(const FileURL& url) noexcept {
    const char* path = systemPath(url);
    return path && ::faccessat(AT_FDCWD, path, R_OK, AT_EACCESS) == 0;
}

std::optional<bool> isDirectory(const FileURL& url) noexcept {
    struct stat status{};
    if (!statusOf(url, status)) return std::nullopt;
    return S_ISDIR(status.st_mode);
}

std::optional<Date> contentModificationDate(const FileURL& url) noexcept {
    struct stat status{};
    if (!statusOf(url, status)) return std::nullopt;
    return modificationDate(status);
}

std::optional<Date> contentAccessDate(const FileURL& url) noexcept {
    struct stat status{};
    if (!statusOf(url, status)) return std::nullopt;
    // Asking for a link's volume would ask for its target's, and would count as a use of the link.
    const FileURL where = S_ISLNK(status.st_mode) ? url.parent() : url;
    if (!keepsAccessDates(where.path().c_str())) return std::nullopt;
    return accessDate(status);
}

std::optional<std::vector<FileURL>> directChildren(const FileURL& folder, Hidden hidden) {
    const OpenFolder open = openFolder(folder);
    if (!open) return std::nullopt;
    std::vector<FileURL> children;
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(open.get());
        if (!entry) break;
        const std::string_view name = entry->d_name;
        if (name == "." || name == ".." || (hidden == Hidden::skip && name.starts_with('.'))) continue;
        children.push_back(folder.appending(name));
    }
    if (errno != 0) return std::nullopt;
    return children;
}

std::optional<std::string> readFile(const FileURL& url, std::uint64_t limit) {
    // The question before the opening keeps devices closed; the one after it holds for what was opened. Not
    // blocking matters for a pipe that takes the file's place in between.
    const char* path = systemPath(url);
    struct stat status{};
    if (!path || ::stat(path, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    const Descriptor file(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.open() || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    const auto length = static_cast<std::uint64_t>(status.st_size);
    if (length > limit) return std::nullopt;
    return readToEnd(file.number(), length, limit);
}

std::error_code createFolders(const FileURL& folder) {
    if (!systemPath(folder)) return lastError();
    const std::string& path = folder.path();
    // From the far end, so that folders above which can't be looked into are no obstacle.
    std::error_code error = createFolder(path);
    if (error != std::errc::no_such_file_or_directory) return error;
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        createFolder(path.substr(0, slash));
    return createFolder(path);
}

std::error_code replaceFile(const FileURL& url, std::string_view bytes) {
    const char* path = systemPath(url);
    if (!path) return lastError();
    const FileURL folder = url.parent();
    const FileURL temporary = folder.appending(temporaryName(url));
    if (const std::error_code error = writeNewFile(temporary.path().c_str(), bytes)) return error;
    if (::rename(temporary.path().c_str(), path) != 0) {
        const std::error_code error = lastError();
        ::unlink(temporary.path().c_str());
        return error;
    }
    flushFolder(folder);
    return {};
}

void removeReplacementLitter(const FileURL& url) {
    const auto children = directChildren(url.parent(), Hidden::include);
    if (!children) return;
    for (const FileURL& child : *children)
        if (isLitter(child.lastPathComponent(), url.lastPathComponent())) removeFile(child);
}

std::error_code removeFile(const FileURL& url) {
    const char* path = systemPath(url);
    if (!path || ::unlink(path) != 0) return lastError();
    return {};
}

} // namespace vesko
