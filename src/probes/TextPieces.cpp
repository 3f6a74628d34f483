#include "probes/TextPieces.h"

namespace vesko {

std::optional<std::string_view> takePiece(std::string_view& text, std::string_view separator) {
    while (text.starts_with(separator)) text.remove_prefix(separator.size());
    if (text.empty()) return std::nullopt;
    const std::string_view piece = text.substr(0, text.find(separator));
    text.remove_prefix(piece.size());
    return piece;
}

std::vector<std::string_view> piecesOf(std::string_view text, std::string_view separator, std::size_t most) {
    std::vector<std::string_view> pieces;
    while (pieces.size() < most) {
        const std::optional<std::string_view> piece = takePiece(text, separator);
        if (!piece) break;
        pieces.push_back(*piece);
    }
    return pieces;
}

std::vector<std::string_view> wordsOf(std::string_view text, std::size_t most) {
    constexpr std::string_view blanks = " \t\n\v\f\r";
    std::vector<std::string_view> words;
    while (words.size() < most) {
        const std::size_t begin = text.find_first_not_of(blanks);
        if (begin == std::string_view::npos) break;
        text.remove_prefix(begin);
        words.push_back(text.substr(0, text.find_first_of(blanks)));
        text.remove_prefix(words.back().size());
    }
    return words;
}

std::optional<std::string_view> secondField(std::string_view text, char separator) {
    const std::size_t first = text.find(separator);
    if (first == std::string_view::npos) return std::nullopt;
    text.remove_prefix(first + 1);
    return text.substr(0, text.find(separator));
}

} // namespace vesko
