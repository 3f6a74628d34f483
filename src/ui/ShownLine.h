#pragma once
#include <QString>
#include <string_view>

namespace vesko {

/// A text that somebody else wrote, a model or whoever named a file, as one line to be shown: each line break
/// and control character becomes a blank, what turns the direction of writing around is left out, so that
/// nothing reads otherwise than it is written, and what is too long for any list ends in an ellipsis.
QString shownLine(std::string_view text);

} // namespace vesko
