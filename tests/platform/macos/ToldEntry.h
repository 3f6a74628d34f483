#pragma once
#include <cstdint>
#include <cstring>
#include <string>
#include <sys/attr.h>
#include <sys/vnode.h>
#include <time.h>

namespace vesko::testing {

/// An entry as getattrlistbulk(2) would tell it.
struct ToldEntry {
    std::string name;
    std::uint32_t type = VREG;
    std::int32_t device = 7;
    std::uint64_t inode = 42;
    timespec birth{1'000, 5};
    std::uint32_t owner = 501;
    std::uint32_t flags = 0;
    std::int64_t allocated = 8192;
    std::uint32_t links = 1;
    std::uint32_t mountStatus = 0;
    std::uint32_t error = 0; ///< nothing but the name is told then
};

/// Puts values one after the other.
class Packer {
public:
    template <class Value> std::size_t put(const Value& value) {
        const std::size_t at = bytes_.size();
        bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
        return at;
    }
    void putText(const std::string& text) { bytes_.append(text.c_str(), text.size() + 1); }
    template <class Value> void set(std::size_t at, const Value& value) {
        std::memcpy(bytes_.data() + at, &value, sizeof value);
    }
    std::size_t size() const { return bytes_.size(); }
    void alignTo(std::size_t step) { bytes_.resize((bytes_.size() + step - 1) / step * step); }
    const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_;
};

/// The record of an entry, by the manual page: its length, what it holds, the attributes in the order of
/// their bits with the error first, then the texts.
inline std::string packed(const ToldEntry& entry) {
    const bool isFolder = entry.type == VDIR;
    attribute_set_t held{};
    held.commonattr = ATTR_CMN_RETURNED_ATTRS | ATTR_CMN_NAME;
    if (entry.error) {
        held.commonattr |= ATTR_CMN_ERROR;
    } else {
        held.commonattr |= ATTR_CMN_DEVID | ATTR_CMN_OBJTYPE | ATTR_CMN_CRTIME | ATTR_CMN_OWNERID |
                           ATTR_CMN_FLAGS | ATTR_CMN_FILEID;
        if (isFolder)
            held.dirattr = ATTR_DIR_MOUNTSTATUS | ATTR_DIR_ALLOCSIZE;
        else
            held.fileattr = ATTR_FILE_LINKCOUNT | ATTR_FILE_ALLOCSIZE;
    }
    Packer record;
    record.put(std::uint32_t{0});
    record.put(held);
    if (entry.error) record.put(entry.error);
    const std::size_t reference = record.put(attrreference_t{});
    if (!entry.error) {
        record.put(entry.device);
        record.put(entry.type);
        record.put(entry.birth);
        record.put(entry.owner);
        record.put(entry.flags);
        record.put(entry.inode);
        record.put(isFolder ? entry.mountStatus : entry.links);
        record.put(entry.allocated);
    }
    record.set(reference, attrreference_t{static_cast<std::int32_t>(record.size() - reference),
                                          static_cast<std::uint32_t>(entry.name.size() + 1)});
    record.putText(entry.name);
    record.alignTo(8);
    record.set(0, static_cast<std::uint32_t>(record.size()));
    return record.bytes();
}

} // namespace vesko::testing
