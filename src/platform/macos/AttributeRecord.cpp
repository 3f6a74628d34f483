#include "AttributeRecord.h"

#include "core/FastDirectorySize.h"
#include <cstring>
#include <sys/attr.h>
#include <sys/stat.h>
#include <sys/vnode.h>
#include <time.h>

namespace vesko {

namespace {

EntryKind kindOf(std::uint32_t type) noexcept {
    switch (type) {
    case VDIR: return EntryKind::folder;
    case VREG: return EntryKind::file;
    case VLNK: return EntryKind::link;
    default: return EntryKind::other;
    }
}

/// Reads a record from its beginning to its end, and gives zeros for what lies beyond.
class RecordReader {
public:
    explicit RecordReader(std::string_view record) noexcept : record_(record) {}
    template <class Value> Value take() noexcept {
        Value value{};
        if (record_.size() - position_ < sizeof value) {
            isShort_ = true;
            return value;
        }
        std::memcpy(&value, record_.data() + position_, sizeof value);
        position_ += sizeof value;
        return value;
    }
    /// The text that a reference at the present position leads to, without its closing zero.
    std::string_view takeText() noexcept {
        const auto from = static_cast<std::int64_t>(position_);
        const auto reference = take<attrreference_t>();
        const std::int64_t begin = from + reference.attr_dataoffset;
        const auto size = static_cast<std::int64_t>(record_.size());
        if (isShort_ || begin < 0 || begin >= size || reference.attr_length > size - begin) {
            isShort_ = true;
            return {};
        }
        const std::string_view text = record_.substr(static_cast<std::size_t>(begin), reference.attr_length);
        const std::size_t end = text.find('\0');
        if (end == std::string_view::npos) isShort_ = true;
        return isShort_ ? std::string_view() : text.substr(0, end);
    }
    bool isShort() const noexcept { return isShort_; }

private:
    std::string_view record_;
    std::size_t position_ = 0;
    bool isShort_ = false;
};

/// What leads out of the folder is no name of an entry.
bool isUsableName(std::string_view name) noexcept {
    return name != "." && name != ".." && name.find('/') == std::string_view::npos;
}

void takeCommon(RecordReader& reader, const attribute_set_t& held, std::uint32_t user,
                AttributeRecord& entry) noexcept {
    constexpr std::uint32_t marks = UF_IMMUTABLE | UF_APPEND | SF_IMMUTABLE | SF_APPEND;
    EntryStatus& status = entry.status;
    if (held.commonattr & ATTR_CMN_ERROR) entry.error = static_cast<int>(reader.take<std::uint32_t>());
    if (held.commonattr & ATTR_CMN_NAME) entry.name = reader.takeText();
    if (held.commonattr & ATTR_CMN_DEVID)
        status.identity.device = static_cast<std::uint64_t>(reader.take<std::int32_t>());
    if (held.commonattr & ATTR_CMN_OBJTYPE) {
        status.kind = kindOf(reader.take<std::uint32_t>());
        entry.hasKind = true;
    }
    if (held.commonattr & ATTR_CMN_CRTIME) {
        // Told apart and no more, so that an absurd date may wrap around.
        const auto birth = reader.take<timespec>();
        status.identity.birth =
            static_cast<std::int64_t>(static_cast<std::uint64_t>(birth.tv_sec) * 1'000'000'000 +
                                      static_cast<std::uint64_t>(birth.tv_nsec));
    }
    if (held.commonattr & ATTR_CMN_OWNERID) status.isOwned = reader.take<std::uint32_t>() == user;
    if (held.commonattr & ATTR_CMN_FLAGS) {
        const auto flags = reader.take<std::uint32_t>();
        status.isImmutable = (flags & marks) != 0;
        status.isPlaceholder = (flags & SF_DATALESS) != 0;
    }
    if (held.commonattr & ATTR_CMN_FILEID) status.identity.inode = reader.take<std::uint64_t>();
}

bool holdsOnly(const attribute_set_t& held, const attrlist& asked) noexcept {
    return (held.commonattr & ~asked.commonattr) == 0 && held.volattr == 0 &&
           (held.dirattr & ~asked.dirattr) == 0 && (held.fileattr & ~asked.fileattr) == 0 &&
           held.forkattr == 0;
}

} // namespace

attrlist recordAttributes() noexcept {
    attrlist wanted{};
    wanted.bitmapcount = ATTR_BIT_MAP_COUNT;
    wanted.commonattr = ATTR_CMN_RETURNED_ATTRS | ATTR_CMN_ERROR | ATTR_CMN_NAME | ATTR_CMN_DEVID |
                        ATTR_CMN_OBJTYPE | ATTR_CMN_CRTIME | ATTR_CMN_OWNERID | ATTR_CMN_FLAGS |
                        ATTR_CMN_FILEID;
    wanted.dirattr = ATTR_DIR_MOUNTSTATUS | ATTR_DIR_ALLOCSIZE;
    wanted.fileattr = ATTR_FILE_LINKCOUNT | ATTR_FILE_ALLOCSIZE;
    return wanted;
}

std::optional<AttributeRecord> takeRecord(std::string_view& rest, std::uint32_t user) noexcept {
    std::uint32_t length = 0;
    if (rest.size() < sizeof length) return std::nullopt;
    std::memcpy(&length, rest.data(), sizeof length);
    if (length < sizeof length + sizeof(attribute_set_t) || length > rest.size()) return std::nullopt;
    RecordReader reader(rest.substr(0, length));
    reader.take<std::uint32_t>();
    const auto held = reader.take<attribute_set_t>();
    // The place of an attribute follows from those before it, so one that was not asked for hides the rest.
    if (!holdsOnly(held, recordAttributes())) return std::nullopt;
    AttributeRecord entry;
    takeCommon(reader, held, user, entry);
    EntryStatus& status = entry.status;
    if (held.dirattr & ATTR_DIR_MOUNTSTATUS)
        status.isMountRoot = (reader.take<std::uint32_t>() & DIR_MNTSTATUS_MNTPOINT) != 0;
    if (held.dirattr & ATTR_DIR_ALLOCSIZE) status.allocatedBytes = reader.take<std::int64_t>();
    if (held.fileattr & ATTR_FILE_LINKCOUNT) status.links = reader.take<std::uint32_t>();
    if (held.fileattr & ATTR_FILE_ALLOCSIZE) status.allocatedBytes = reader.take<std::int64_t>();
    if (reader.isShort()) return std::nullopt;
    if (!isUsableName(entry.name)) entry.name = {};
    rest.remove_prefix(length);
    return entry;
}

std::optional<std::int64_t> quickFigure(const char (&answer)[quickAnswerBytes]) noexcept {
    std::int64_t figure = 0;
    std::memcpy(&figure, answer, sizeof figure);
    if (figure <= quickFigureFloor) return std::nullopt;
    return figure;
}

} // namespace vesko
