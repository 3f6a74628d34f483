#include "Catalog.h"

#include <cstdio>
#include <sstream>

namespace vesko::catalog {

namespace {

/// Bytes beyond ASCII are written in octal, which ends after three digits whatever follows.
std::string literal(const std::string& text) {
    std::string quoted = "\"";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte < 0x7f && character != '"' && character != '\\' && character != '?') {
            quoted += character;
            continue;
        }
        char octal[5];
        std::snprintf(octal, sizeof octal, "\\%03o", byte);
        quoted += octal;
    }
    return quoted + "\"sv";
}

std::string formSource(const TextForm& form) {
    return "{" + (form.one.empty() ? std::string("{}") : literal(form.one)) + ", " + literal(form.other) +
           "}";
}

std::string substitutionsName(std::size_t index, const char* language) {
    return "substitutions" + std::to_string(index) + language;
}

void writeSubstitutions(std::ostream& out, const LocalizedText& text, std::size_t index,
                        const char* language) {
    if (text.substitutions.empty()) return;
    out << "constexpr Substitution " << substitutionsName(index, language) << "[] = {\n";
    for (const auto& [name, item] : text.substitutions)
        out << "    {" << literal(name) << ", " << item.argument << ", " << formSource(item.form) << "},\n";
    out << "};\n";
}

std::string localizationSource(const LocalizedText& text, std::size_t index, const char* language) {
    const std::string list = text.substitutions.empty() ? "{}" : substitutionsName(index, language);
    return "{" + formSource(text.form) + ", " + list + "}";
}

} // namespace

std::string tableSource(const Catalog& catalog) {
    std::ostringstream out;
    out << "// Generated from the string catalog by the build.\n#include \"CatalogTable.h\"\n\n"
           "namespace vesko::catalog {\n\nnamespace {\n\nusing namespace std::string_view_literals;\n\n";
    std::size_t index = 0;
    for (const auto& [key, text] : catalog) {
        writeSubstitutions(out, text.english, index, "English");
        writeSubstitutions(out, text.portuguese, index, "Portuguese");
        ++index;
    }
    out << "constexpr Entry table[] = {\n";
    index = 0;
    for (const auto& [key, text] : catalog) {
        out << "    {" << literal(key) << ",\n     " << localizationSource(text.english, index, "English")
            << ",\n     " << localizationSource(text.portuguese, index, "Portuguese") << "},\n";
        ++index;
    }
    out << "};\n\n} // namespace\n\nconstinit const std::span<const Entry> entries = table;\n\n"
           "} // namespace vesko::catalog\n";
    return out.str();
}

} // namespace vesko::catalog
