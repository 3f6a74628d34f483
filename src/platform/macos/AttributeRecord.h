#pragma once
#include "platform/posix/EntryStatus.h"
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

struct attrlist;

namespace vesko {

/// What getattrlistbulk(2) says of one entry.
struct AttributeRecord {
    std::string_view
        name; ///< lies in the buffer; a zero byte follows; empty when the record has no usable one
    EntryStatus status;
    bool hasKind = false;
    int error = 0; ///< why the entry could not be asked; 0 when it could
};

/// The attributes that a record is asked for, and that it may therefore hold.
attrlist recordAttributes() noexcept;

/// Takes the first record off `rest`, which begins with it. It holds its length, the set of attributes that
/// it has, and these in the order of their bits, the error in front of all others, each at a multiple of four
/// bytes. Nothing when the bytes can't be that: a length beyond them or below its own parts, a name outside
/// of the record. `user` is whose entries count as owned.
std::optional<AttributeRecord> takeRecord(std::string_view& rest, std::uint32_t user) noexcept;

/// The quick figure in the answer of getattrlist(2) to a question for ATTR_DIR_ALLOCSIZE alone with a buffer
/// of eight bytes: those bytes as one signed number, the length word that every answer begins with among
/// them. Nothing unless it is above quickFigureFloor, which it is not on a volume that does not keep the
/// attribute.
inline constexpr std::size_t quickAnswerBytes = 8;
std::optional<std::int64_t> quickFigure(const char (&answer)[quickAnswerBytes]) noexcept;

} // namespace vesko
