#include "platform/posix/FolderReader.h"

#include "platform/posix/WalkCounts.h"
#include <cerrno>
#include <cstddef>
#include <dirent.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace vesko {

namespace {

/// A record of getdents64(2); the name follows.
struct Record {
    std::uint64_t inode;
    std::int64_t offset;
    unsigned short length;
    unsigned char type;
};
constexpr std::size_t nameOffset = offsetof(Record, type) + 1;

bool isDots(const char* name) noexcept {
    return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
}

EntryKind kindOf(unsigned char type) noexcept {
    switch (type) {
    case DT_DIR: return EntryKind::folder;
    case DT_REG: return EntryKind::file;
    case DT_LNK: return EntryKind::link;
    default: return EntryKind::other;
    }
}

} // namespace

struct FolderReader::Buffer {
    explicit Buffer(std::size_t size) : capacity(size), bytes(new char[size]) {}
    std::size_t capacity;
    std::unique_ptr<char[]> bytes;
    std::size_t filled = 0;
    std::size_t position = 0;
};

FolderReader::FolderReader(std::size_t bufferBytes) : buffer_(std::make_unique<Buffer>(bufferBytes)) {}
FolderReader::~FolderReader() = default;

void FolderReader::begin(const FolderHandle& folder, Details details) {
    folder_ = &folder;
    details_ = details;
    buffer_->filled = buffer_->position = 0;
}

FolderReader::Step FolderReader::next() {
    for (;;) {
        if (buffer_->position == buffer_->filled) {
            const long got =
                ::syscall(SYS_getdents64, folder_->descriptor(), buffer_->bytes.get(), buffer_->capacity);
            if (got < 0) {
                error_ = {errno, std::system_category()};
                return Step::stopped;
            }
            ++callsOfThisThread.readingCalls;
            if (got == 0) return Step::end;
            buffer_->filled = static_cast<std::size_t>(got);
            buffer_->position = 0;
        }
        const char* start = buffer_->bytes.get() + buffer_->position;
        const auto* record = reinterpret_cast<const Record*>(start);
        buffer_->position += record->length;
        const char* name = start + nameOffset;
        if (isDots(name)) continue;
        ++callsOfThisThread.entriesRead;
        name_ = name;
        if (details_ == Details::namesOnly) {
            status_ = {};
            status_.identity.inode = record->inode;
            status_.kind = kindOf(record->type);
            isKindKnown_ = record->type != DT_UNKNOWN;
            return Step::entry;
        }
        const AskedStatus asked = entryStatus(*folder_, name);
        if (asked) {
            status_ = *asked;
            isKindKnown_ = true;
            return Step::entry;
        }
        error_ = asked.error();
        if (error_ == std::errc::no_such_file_or_directory) continue; // gone since the folder was read
        return Step::failed;
    }
}

} // namespace vesko
