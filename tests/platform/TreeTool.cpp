// tree_tool size PATH [links]     prints the quick figure, or "nothing"
// tree_tool usage PATH THREADS    prints the figure of a walk with so many threads
// tree_tool counts PATH [names]   walks with two threads and prints what was counted, one figure a line
// tree_tool shared PATH...        prints each place's figure, all measured together; -1 for none
// tree_tool visible PATH          prints what the last-resort walk gives
// tree_tool remove PATH           prints "gone BYTES ENTRIES", or "KIND CODE PATH" with the path's bytes as
// they are
#include "core/FastDirectorySize.h"
#include "core/MeasuredTrees.h"
#include "execution/Remover.h"
#include "platform/UsageSum.h"
#include "platform/posix/WalkCounts.h"
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

/// The leak check of the address sanitizer can't run under strace, which tests run this program under.
extern "C" const char* __asan_default_options() { return "detect_leaks=0"; }

namespace {

int size(const char* path, bool followLinks) {
    if (const auto bytes = vesko::fastDirectorySize(vesko::FileURL(path), followLinks))
        std::printf("%lld\n", static_cast<long long>(*bytes));
    else
        std::puts("nothing");
    return 0;
}

int usage(const char* path, const char* threads) {
    const auto bytes = vesko::usageByThreads(path, false, static_cast<unsigned>(std::atoi(threads)));
    std::printf("%lld\n", static_cast<long long>(bytes.value_or(-1)));
    return 0;
}

int counts(const char* path, bool namesOnly) {
    struct Everything final : vesko::TreeVisitor {
        Next visit(const vesko::TreeEntry&, unsigned) override { return Next::enter; }
    } everything;
    vesko::TreeWalkOptions options;
    options.threads = 2;
    options.largeTree = 100;
    if (namesOnly) options.details = vesko::TreeWalkOptions::Details::namesOnly;
    vesko::walkTree(vesko::FileURL(path), everything, options);
    for (const auto purpose : {vesko::WalkPurpose::measuring, vesko::WalkPurpose::searching}) {
        const vesko::WalkCounts counted = vesko::walkCounts(purpose);
        for (const std::int64_t figure : {counted.foldersRead, counted.foldersOpened, counted.entriesRead,
                                          counted.readingCalls, counted.statusCalls})
            std::printf("%lld\n", static_cast<long long>(figure));
    }
    return 0;
}

int shared(int count, char** paths) {
    vesko::MeasuredTrees trees;
    for (int i = 0; i < count; ++i) {
        const auto bytes = trees.bytes(vesko::FileURL(paths[i]), false);
        std::printf("%lld\n", static_cast<long long>(bytes.value_or(-1)));
    }
    return 0;
}

int visible(const char* path) {
    const vesko::VisibleAllocation found = vesko::visibleAllocatedSize(vesko::FileURL(path));
    if (const auto* bytes = std::get_if<std::int64_t>(&found))
        std::printf("%lld\n", static_cast<long long>(*bytes));
    else
        std::puts(std::holds_alternative<vesko::WalkCancelled>(found) ? "cancelled" : "unreadable");
    return 0;
}

int removeItem(const char* path) {
    constexpr std::array<const char*, 8> kinds = {"notFound", "permission", "readOnly",  "mounted",
                                                  "busy",     "changed",    "immutable", "other"};
    std::int64_t freed = 0;
    std::int64_t entries = 0;
    const auto failure =
        vesko::removeForGood(vesko::FileURL(path), [&](std::int64_t bytes, std::int64_t count) {
            freed = bytes;
            entries = count;
        });
    if (!failure) {
        std::printf("gone %lld %lld\n", static_cast<long long>(freed), static_cast<long long>(entries));
        return 0;
    }
    std::printf("%s %d %s\n", kinds[static_cast<std::size_t>(failure->kind)], failure->code.value(),
                failure->path.path().c_str());
    return 1;
}

} // namespace

int main(int count, char** words) {
    if (count >= 3 && std::strcmp(words[1], "size") == 0) return size(words[2], count > 3);
    if (count == 4 && std::strcmp(words[1], "usage") == 0) return usage(words[2], words[3]);
    if (count >= 3 && std::strcmp(words[1], "counts") == 0) return counts(words[2], count > 3);
    if (count >= 3 && std::strcmp(words[1], "shared") == 0) return shared(count - 2, words + 2);
    if (count == 3 && std::strcmp(words[1], "visible") == 0) return visible(words[2]);
    if (count == 3 && std::strcmp(words[1], "remove") == 0) return removeItem(words[2]);
    std::fputs("tree_tool size PATH [links] | usage PATH THREADS | counts PATH [names] | shared PATH... | "
               "visible PATH | remove PATH\n",
               stderr);
    return 2;
}
