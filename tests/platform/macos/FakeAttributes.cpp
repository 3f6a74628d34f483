#include "platform/macos/FakeAttributes.h"

#include "platform/macos/StatOnMacos.h"
#include "platform/macos/ToldEntry.h"
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace vesko::testing {

FakeAttributes& fakeAttributes() {
    static FakeAttributes fake;
    return fake;
}

namespace {

/// A record of getdents64(2); the name follows.
struct ListedName {
    std::uint64_t inode;
    std::int64_t next;
    unsigned short length;
    unsigned char type;
    const char* name() const { return reinterpret_cast<const char*>(&type) + 1; }
};

std::uint32_t typeOf(mode_t mode) {
    if (S_ISDIR(mode)) return VDIR;
    if (S_ISREG(mode)) return VREG;
    return S_ISLNK(mode) ? std::uint32_t{VLNK} : 0U;
}

template <class Map> std::uint32_t valueOf(const Map& map, const std::string& name) {
    const auto found = map.find(name);
    return found == map.end() ? 0 : found->second;
}

ToldEntry told(int folder, const std::string& name) {
    ToldEntry entry{.name = name, .error = valueOf(fakeAttributes().errors, name)};
    StatOnMacos raw;
    StatOnMacos above;
    if (statOnMacos(folder, name.c_str(), &raw, AT_SYMLINK_NOFOLLOW) != 0 ||
        statOnMacos(folder, "", &above, AT_EMPTY_PATH) != 0)
        entry.error = static_cast<std::uint32_t>(errno);
    if (entry.error) return entry;
    entry.type = typeOf(raw.st_mode);
    entry.device = static_cast<std::int32_t>(raw.st_dev);
    entry.inode = raw.st_ino;
    entry.birth = raw.st_birthtimespec;
    entry.owner = raw.st_uid;
    entry.flags = raw.st_flags;
    entry.allocated = raw.st_blocks * 512;
    entry.links = static_cast<std::uint32_t>(raw.st_nlink);
    entry.mountStatus = raw.st_dev != above.st_dev ? DIR_MNTSTATUS_MNTPOINT : 0;
    return entry;
}

int readFolder(int folder, char* buffer, std::size_t size) {
    int count = 0;
    std::size_t filled = 0;
    std::array<char, 4096> list{};
    off_t here = ::lseek(folder, 0, SEEK_CUR);
    for (;;) {
        const long got = ::syscall(SYS_getdents64, folder, list.data(), list.size());
        if (got < 0) return -1;
        if (got == 0) return count;
        for (long at = 0; at < got;) {
            const auto* listed = reinterpret_cast<const ListedName*>(list.data() + at);
            at += listed->length;
            const std::string name = listed->name();
            if (name != "." && name != "..") {
                const std::string record = packed(told(folder, name));
                if (record.size() > size - filled) { // the next call begins here
                    ::lseek(folder, here, SEEK_SET);
                    if (count == 0) errno = ERANGE;
                    return count == 0 ? -1 : count;
                }
                std::memcpy(buffer + filled, record.data(), record.size());
                filled += record.size();
                ++count;
            }
            here = listed->next;
        }
    }
}

} // namespace
} // namespace vesko::testing

int statOnMacos(int folder, const char* name, StatOnMacos* into, int flags) {
    if (::fstatat(folder, name, into, flags) != 0) return -1;
    struct statx more{};
    if (::statx(folder, name, flags, STATX_BTIME, &more) != 0) return -1;
    into->st_birthtimespec = {more.stx_btime.tv_sec, more.stx_btime.tv_nsec};
    const auto& marks = vesko::testing::fakeAttributes().flags;
    const auto found = marks.find(name);
    into->st_flags = found == marks.end() ? 0 : found->second;
    return 0;
}

extern "C" {

int getattrlistbulk(int folder, void* /*attributes*/, void* buffer, size_t size, uint64_t /*options*/) {
    const auto& fake = vesko::testing::fakeAttributes();
    if (fake.readInstead) return fake.readInstead(buffer, size);
    return vesko::testing::readFolder(folder, static_cast<char*>(buffer), size);
}

int getattrlist(const char* path, void* attributes, void* buffer, size_t size, unsigned int options) {
    auto& fake = vesko::testing::fakeAttributes();
    fake.asked = {path, {}, size, options};
    std::memcpy(&fake.asked.wanted, attributes, sizeof fake.asked.wanted);
    if (fake.answerInstead) return fake.answerInstead(path, buffer, size);
    if (fake.failure != 0) {
        errno = fake.failure;
        return -1;
    }
    std::memcpy(buffer, fake.answer.data(), std::min(size, fake.answer.size()));
    return 0;
}
}
