#include "platform/QuickSizeContract.h"
#include "platform/macos/FakeAttributes.h"
#include <algorithm>
#include <cstring>

namespace vesko::testing {
namespace {

std::int64_t allocatedBelow(const char* folder) {
    std::int64_t sum = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        struct stat facts{};
        if (::lstat(entry.path().c_str(), &facts) == 0 && !S_ISDIR(facts.st_mode))
            sum += facts.st_blocks * 512;
    }
    return sum;
}

/// A volume that keeps the attribute: its length word, and of a folder the figure right behind it.
class KeptFigures {
public:
    KeptFigures() {
        fakeAttributes() = {};
        fakeAttributes().answerInstead = [](const char* path, void* buffer, std::size_t size) {
            struct stat facts{};
            if (::stat(path, &facts) != 0) return -1;
            std::string answer(S_ISDIR(facts.st_mode) ? 12 : 4, '\0');
            const auto length = static_cast<std::uint32_t>(answer.size());
            std::memcpy(answer.data(), &length, sizeof length);
            if (S_ISDIR(facts.st_mode)) {
                const std::int64_t figure = allocatedBelow(path);
                std::memcpy(answer.data() + sizeof length, &figure, sizeof figure);
            }
            std::memcpy(buffer, answer.data(), std::min(size, answer.size()));
            return 0;
        };
    }
    KeptFigures(const KeptFigures&) = delete;
    KeptFigures& operator=(const KeptFigures&) = delete;
    ~KeptFigures() { fakeAttributes() = {}; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(OnMacos, QuickSizeContract, KeptFigures);

} // namespace
} // namespace vesko::testing
