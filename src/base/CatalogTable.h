#pragma once
#include <cstdint>
#include <span>
#include <string_view>

/// The string catalog as the build compiles it: constants only, so that the first lookup costs no parsing.
/// Known to StringCatalog.cpp and to the generated table, to nobody else.
namespace vesko::catalog {

/// One text; `one` is empty when the text has a single form.
struct Form {
    std::string_view one;
    std::string_view other;
};

/// A piece of a text, standing there as "%#@name@", whose form is chosen by the number `argument` (counted
/// from 1). The number itself stands in it as "%arg".
struct Substitution {
    std::string_view name;
    int argument = 0;
    Form form;
};

struct Localization {
    Form form;
    std::span<const Substitution> substitutions;
};

struct Entry {
    std::string_view key;
    Localization english;
    Localization portuguese;
};

/// Sorted by the bytes of the key.
extern const std::span<const Entry> entries;

} // namespace vesko::catalog
