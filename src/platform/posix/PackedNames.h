#pragma once
#include <cstddef>
#include <string>
#include <string_view>

namespace vesko {

/// A stack of names with a mark each, in one block of memory: a folder of a million folders costs their names
/// and two bytes each.
class PackedNames {
public:
    bool empty() const noexcept { return bytes_.empty(); }
    std::size_t count() const noexcept { return count_; }

    /// Neither the name nor the mark holds a zero byte; no file name does.
    void push(std::string_view name, char mark);
    /// Takes the name that was pushed last; its mark is returned.
    char pop(std::string& name);
    /// Takes away the older half (of one name: nothing).
    PackedNames takeHalf();

private:
    std::string bytes_; ///< for each name: the mark, the name, a zero byte
    std::size_t count_ = 0;
};

} // namespace vesko
