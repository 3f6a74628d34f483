#pragma once
#include <QString>

namespace vesko {

/// The text of a version's notes without their markup (HTML, or plain text): tags are dropped, ends of
/// paragraphs, rows and lists become line breaks, the common named and all numbered characters are put in.
/// Nothing is loaded or run. At most 4,000 characters, without control characters.
QString plainNotes(const QString& notes);

} // namespace vesko
