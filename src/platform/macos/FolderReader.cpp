#include "platform/posix/FolderReader.h"

#include "platform/posix/WalkCounts.h"
#include <cerrno>
#include <cstring>
#include <sys/attr.h>
#include <sys/stat.h>
#include <unistd.h>

/// getattrlistbulk(2) gives names and attributes of many entries with one call. Each record begins with its
/// length and the set of attributes that it holds; they follow in the order of their bits, the common ones
/// first, the error in front of all of them.
namespace vesko {

namespace {

attrlist wantedAttributes() noexcept {
    attrlist wanted{};
    wanted.bitmapcount = ATTR_BIT_MAP_COUNT;
    wanted.commonattr = ATTR_CMN_RETURNED_ATTRS | ATTR_CMN_ERROR | ATTR_CMN_NAME | ATTR_CMN_DEVID |
                        ATTR_CMN_OBJTYPE | ATTR_CMN_CRTIME | ATTR_CMN_OWNERID | ATTR_CMN_FLAGS |
                        ATTR_CMN_FILEID;
    wanted.dirattr = ATTR_DIR_MOUNTSTATUS | ATTR_DIR_ALLOCSIZE;
    wanted.fileattr = ATTR_FILE_LINKCOUNT | ATTR_FILE_ALLOCSIZE;
    return wanted;
}

EntryKind kindOf(std::uint32_t type) noexcept {
    switch (type) {
    case VDIR: return EntryKind::folder;
    case VREG: return EntryKind::file;
    case VLNK: return EntryKind::link;
    default: return EntryKind::other;
    }
}

/// Reads a record from its beginning to its end.
class RecordReader {
public:
    explicit RecordReader(const char* start) noexcept : at_(start) {}
    template <class Value> Value take() noexcept {
        Value value;
        std::memcpy(&value, at_, sizeof value);
        at_ += sizeof value;
        return value;
    }
    const char* position() const noexcept { return at_; }

private:
    const char* at_;
};

struct Entry {
    const char* name = nullptr;
    EntryStatus status;
    bool hasKind = false;
    int error = 0;
};

Entry entryOf(const char* record) noexcept {
    constexpr std::uint32_t marks = UF_IMMUTABLE | UF_APPEND | SF_IMMUTABLE | SF_APPEND;
    RecordReader reader(record + sizeof(std::uint32_t));
    Entry entry;
    const auto held = reader.take<attribute_set_t>();
    if (held.commonattr & ATTR_CMN_ERROR) entry.error = static_cast<int>(reader.take<std::uint32_t>());
    if (held.commonattr & ATTR_CMN_NAME) {
        const char* reference = reader.position();
        entry.name = reference + reader.take<attrreference_t>().attr_dataoffset;
    }
    EntryStatus& status = entry.status;
    if (held.commonattr & ATTR_CMN_DEVID)
        status.identity.device = static_cast<std::uint64_t>(reader.take<std::int32_t>());
    if (held.commonattr & ATTR_CMN_OBJTYPE) {
        status.kind = kindOf(reader.take<std::uint32_t>());
        entry.hasKind = true;
    }
    if (held.commonattr & ATTR_CMN_CRTIME) {
        const auto birth = reader.take<timespec>();
        status.identity.birth = birth.tv_sec * 1'000'000'000LL + birth.tv_nsec;
    }
    if (held.commonattr & ATTR_CMN_OWNERID) status.isOwned = reader.take<std::uint32_t>() == ::geteuid();
    if (held.commonattr & ATTR_CMN_FLAGS) status.isImmutable = (reader.take<std::uint32_t>() & marks) != 0;
    if (held.commonattr & ATTR_CMN_FILEID) status.identity.inode = reader.take<std::uint64_t>();
    if (held.dirattr & ATTR_DIR_MOUNTSTATUS)
        status.isMountRoot = (reader.take<std::uint32_t>() & DIR_MNTSTATUS_MNTPOINT) != 0;
    if (held.dirattr & ATTR_DIR_ALLOCSIZE) status.allocatedBytes = reader.take<std::int64_t>();
    if (held.fileattr & ATTR_FILE_LINKCOUNT) status.links = reader.take<std::uint32_t>();
    if (held.fileattr & ATTR_FILE_ALLOCSIZE) status.allocatedBytes = reader.take<std::int64_t>();
    return entry;
}

} // namespace

struct FolderReader::Buffer {
    explicit Buffer(std::size_t size) : capacity(size), bytes(new char[size]) {}
    std::size_t capacity;
    std::unique_ptr<char[]> bytes;
    const char* record = nullptr;
    int left = 0;
};

FolderReader::FolderReader(std::size_t bufferBytes) : buffer_(std::make_unique<Buffer>(bufferBytes)) {}
FolderReader::~FolderReader() = default;

void FolderReader::begin(const FolderHandle& folder, Details details) {
    folder_ = &folder;
    details_ = details;
    buffer_->left = 0;
}

FolderReader::Step FolderReader::next() {
    for (;;) {
        if (buffer_->left == 0) {
            attrlist wanted = wantedAttributes();
            const int got = ::getattrlistbulk(folder_->descriptor(), &wanted, buffer_->bytes.get(),
                                              buffer_->capacity, FSOPT_NOFOLLOW);
            if (got < 0) {
                error_ = {errno, std::system_category()};
                return Step::stopped;
            }
            ++callsOfThisThread.readingCalls;
            if (got == 0) return Step::end;
            buffer_->left = got;
            buffer_->record = buffer_->bytes.get();
        }
        const char* record = buffer_->record;
        std::uint32_t length = 0;
        std::memcpy(&length, record, sizeof length);
        buffer_->record += length;
        --buffer_->left;
        const Entry entry = entryOf(record);
        if (!entry.name) continue; // nothing can be said of it
        ++callsOfThisThread.entriesRead;
        name_ = entry.name;
        status_ = entry.status;
        isKindKnown_ = entry.hasKind;
        if (entry.error == 0) return Step::entry;
        error_ = {entry.error, std::system_category()};
        return Step::failed;
    }
}

} // namespace vesko
