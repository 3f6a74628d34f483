#pragma once
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <sys/attr.h>

namespace vesko::testing {

/// getattrlist(2) and getattrlistbulk(2) of a test. Folders are read as they are on this machine, and told in
/// the records that macOS would make of them.
struct FakeAttributes {
    /// Marks of the entries of these names (UF_..., SF_...).
    std::map<std::string, std::uint32_t> flags;
    /// Entries of these names can't be asked, for the reason given.
    std::map<std::string, std::uint32_t> errors;
    /// Takes the place of reading a folder: fills the buffer, returns the number of records or -1 with errno.
    std::function<int(void* buffer, std::size_t size)> readInstead;

    /// What getattrlist was asked last, and what it answers.
    struct Question {
        std::string path;
        attrlist wanted{};
        std::size_t size = 0;
        unsigned options = 0;
    };
    Question asked;
    std::string answer; ///< copied into the buffer, as much as fits
    int failure = 0;    ///< an errno
    /// Takes the place of both: fills the buffer, returns 0, or -1 with errno.
    std::function<int(const char* path, void* buffer, std::size_t size)> answerInstead;
};

/// The one in force; a test begins with a fresh one.
FakeAttributes& fakeAttributes();

} // namespace vesko::testing
