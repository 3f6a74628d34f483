#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vesko {

/// A stack of names with a mark and a number each, in two blocks of memory: a folder of a million folders
/// costs their names and six bytes each.
class PackedNames {
public:
    bool empty() const noexcept { return bytes_.empty(); }
    std::size_t count() const noexcept { return numbers_.size(); }

    /// Neither the name nor the mark holds a zero byte; no file name does.
    void push(std::string_view name, char mark, std::uint32_t number = 0);
    /// Of the name that was pushed last.
    std::uint32_t lastNumber() const noexcept { return numbers_.back(); }
    /// Takes the name that was pushed last; its mark is returned.
    char pop(std::string& name);
    /// Takes away the older half (of one name: nothing).
    PackedNames takeHalf();

private:
    std::string bytes_; ///< for each name: the mark, the name, a zero byte
    std::vector<std::uint32_t> numbers_;
};

} // namespace vesko
