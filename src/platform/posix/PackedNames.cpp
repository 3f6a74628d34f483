#include "platform/posix/PackedNames.h"

#include <cstddef>

namespace vesko {

void PackedNames::push(std::string_view name, char mark, std::uint32_t number) {
    bytes_ += mark;
    bytes_ += name;
    bytes_ += '\0';
    numbers_.push_back(number);
}

char PackedNames::pop(std::string& name) {
    const std::size_t start = count() > 1 ? bytes_.rfind('\0', bytes_.size() - 2) + 1 : 0;
    const char mark = bytes_[start];
    name.assign(bytes_, start + 1, bytes_.size() - start - 2);
    bytes_.resize(start);
    numbers_.pop_back();
    return mark;
}

PackedNames PackedNames::takeHalf() {
    PackedNames older;
    if (count() < 2) return older;
    const std::size_t wanted = count() / 2;
    std::size_t end = 0;
    for (std::size_t taken = 0; taken < wanted; ++taken) end = bytes_.find('\0', end + 1) + 1;
    older.bytes_ = bytes_.substr(0, end);
    const auto numbersEnd = numbers_.begin() + static_cast<std::ptrdiff_t>(wanted);
    older.numbers_.assign(numbers_.begin(), numbersEnd);
    numbers_.erase(numbers_.begin(), numbersEnd);
    bytes_.erase(0, end);
    return older;
}

} // namespace vesko
