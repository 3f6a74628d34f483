#pragma once
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

/// Ways to cut a tool's output apart. The pieces are views of the text, and no more of them are held than are
/// asked for: a tool may print anything, of any length.
namespace vesko {

/// Takes the next piece that is not empty, and the separator behind it, off the front of the text; nothing
/// when none is left.
std::optional<std::string_view> takePiece(std::string_view& text, std::string_view separator);
/// The first pieces that are not empty, at most so many.
std::vector<std::string_view> piecesOf(std::string_view text, std::string_view separator, std::size_t most);
/// The first words between white space, at most so many.
std::vector<std::string_view> wordsOf(std::string_view text, std::size_t most);
/// What stands behind the first separator, up to the second or the end; empty pieces count. Nothing without a
/// separator.
std::optional<std::string_view> secondField(std::string_view text, char separator);

} // namespace vesko
