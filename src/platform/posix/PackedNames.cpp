#include "platform/posix/PackedNames.h"

namespace vesko {

void PackedNames::push(std::string_view name, char mark) {
    bytes_ += mark;
    bytes_ += name;
    bytes_ += '\0';
    ++count_;
}

char PackedNames::pop(std::string& name) {
    const std::size_t start = count_ > 1 ? bytes_.rfind('\0', bytes_.size() - 2) + 1 : 0;
    const char mark = bytes_[start];
    name.assign(bytes_, start + 1, bytes_.size() - start - 2);
    bytes_.resize(start);
    --count_;
    return mark;
}

PackedNames PackedNames::takeHalf() {
    PackedNames older;
    if (count_ < 2) return older;
    const std::size_t wanted = count_ / 2;
    std::size_t end = 0;
    for (std::size_t taken = 0; taken < wanted; ++taken) end = bytes_.find('\0', end + 1) + 1;
    older.bytes_ = bytes_.substr(0, end);
    older.count_ = wanted;
    bytes_.erase(0, end);
    count_ -= wanted;
    return older;
}

} // namespace vesko
