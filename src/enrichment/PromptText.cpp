#include "enrichment/PromptText.h"

#include "base/Paths.h"
#include <cstddef>

namespace vesko {

std::string promptText(std::string_view bytes) {
    if (isUtf8(bytes)) return std::string(bytes);
    std::string text;
    text.reserve(bytes.size());
    for (;;) {
        const std::size_t end = bytes.find('\n');
        text += escapedForDisplay(bytes.substr(0, end));
        if (end == std::string_view::npos) return text;
        text += '\n';
        bytes.remove_prefix(end + 1);
    }
}

} // namespace vesko
