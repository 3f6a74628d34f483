#include "Catalog.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

/// usage: compile-catalog CATALOG TABLE.cpp
/// Turns the string catalog into a constant table. Says why and ends with 1 when the catalog is not complete,
/// and writes nothing then.
int main(int count, char** words) {
    if (count != 3) {
        std::fputs("usage: compile-catalog CATALOG TABLE.cpp\n", stderr);
        return 2;
    }
    std::ifstream in(words[1], std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!in) {
        std::fprintf(stderr, "%s: cannot be read\n", words[1]);
        return 1;
    }
    try {
        const std::string source = vesko::catalog::tableSource(vesko::catalog::readCatalog(text));
        std::ofstream out(words[2], std::ios::binary | std::ios::trunc);
        out << source;
        if (out.flush()) return 0;
        std::fprintf(stderr, "%s: cannot be written\n", words[2]);
    } catch (const vesko::catalog::CatalogError& error) {
        std::fprintf(stderr, "%s: %s\n", words[1], error.what());
    }
    return 1;
}
