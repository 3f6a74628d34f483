#pragma once
#include <map>
#include <stdexcept>
#include <string>

namespace vesko::catalog {

/// A text in one language: `one` is empty when it has a single form.
struct TextForm {
    std::string one;
    std::string other;
};

struct TextSubstitution {
    int argument = 0;
    TextForm form;
};

struct LocalizedText {
    TextForm form;
    std::map<std::string, TextSubstitution> substitutions;
};

struct CatalogText {
    LocalizedText english;
    LocalizedText portuguese;
};

/// Sorted by the bytes of the key, which is the order that lookups rely on.
using Catalog = std::map<std::string, CatalogText>;

/// Why a catalog is refused; the message names the key.
class CatalogError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads the xcstrings form and refuses what is not complete: a key that lacks a language, a text not marked
/// as translated, placeholders that differ between the key (where it carries any), its languages and its
/// forms, a plural without one of its two forms, a repeated key, a field that this reader does not know.
Catalog readCatalog(const std::string& json);

/// The table as C++ source.
std::string tableSource(const Catalog& catalog);

} // namespace vesko::catalog
