#include "Fuzzing.h"
#include "platform/qt/Appcast.h"
#include <QString>

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto newest =
        newestInAppcast(QByteArray(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size)));
    if (!newest) return 0;
    require(!newest->version.empty(), "a newer version has a name");
    require(newest->version.find('\n') == std::string::npos, "a version is one line");
    require(newest->page.empty() || newest->page.starts_with("https://"),
            "a page is one of the web, or none");
    const QString notes = QString::fromStdString(newest->notes);
    require(notes.size() <= 4000, "notes are bounded");
    for (const QChar character : notes)
        require(character == u'\n' || character.unicode() >= 0x20, "notes have no control characters");
    return 0;
}
