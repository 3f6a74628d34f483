// How the time to judge a scan grows with its items: 1,000, 10,000 and 100,000 of them, half in discovery
// groups that overlap the others. Prints the times and what ten times the items cost; ends with 1 when that
// is above the limit.
#include "core/SignificanceEngine.h"
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <time.h>
#include <utility>
#include <vector>

namespace {

using namespace vesko;

/// Milliseconds that this thread has worked, so that what else runs on the machine does not count.
double processorTime() {
    timespec used{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

ScannableItem item(const std::string& path, std::int64_t size) {
    ScannableItem made;
    made.url = FileURL(path);
    made.size = size;
    made.enrichmentKey = EnrichmentKey::forURL(made.url);
    return made;
}

CleanupGroup group(const std::string& id, std::vector<ScannableItem> items) {
    CleanupGroup made;
    made.id = id;
    made.items = ItemList(std::move(items));
    return made;
}

/// A group of `count` items, each made after the other as a probe makes them.
template <class Path> CleanupGroup filled(const std::string& id, int count, Path path) {
    std::vector<ScannableItem> items;
    for (int i = 0; i < count; ++i) items.push_back(item(path(i), i + 1));
    return group(id, std::move(items));
}

/// A quarter each: caches, project artifacts of which many are there twice, and two kinds of discoveries, of
/// which each second equals, contains or lies in one of the caches.
std::vector<CleanupGroup> sample(int count) {
    const std::string caches = "/Users/somebody/Library/Caches/com.example.";
    const auto tool = [&](int i) { return caches + "tool" + std::to_string(i) + "/versions"; };
    const auto project = [](int i) {
        return "/Users/somebody/code/p" + std::to_string(i - i % 2) + "/node_modules";
    };
    const auto plain = [&](int i) { return caches + (i % 2 ? "tool" : "other") + std::to_string(i); };
    const auto deep = [&](int i) { return plain(i) + "/versions/deep/in/the/tree"; };
    const int quarter = count / 4;
    return {filled("discover.caches", quarter, plain), filled("cache.tool", quarter, tool),
            filled("project.nodeModules", quarter / 2, project), filled("project.pods", quarter / 2, project),
            filled("discover.appSupport", quarter, deep)};
}

/// The best of many runs: what the work takes when the caches are not shared with something else.
double bestTime(const std::vector<CleanupGroup>& groups) {
    std::vector<double> times;
    for (int run = 0; run < 25; ++run) {
        std::vector<CleanupGroup> snapshot = groups;
        const double begin = processorTime();
        const ScanReport report = SignificanceEngine().evaluate(std::move(snapshot), {});
        times.push_back(processorTime() - begin);
        if (report.groups.size() != 4) std::abort();
    }
    return *std::min_element(times.begin(), times.end());
}

} // namespace

int main() {
    constexpr double limit = 13;
    bool holds = true;
    double before = 0;
    for (const int count : {1'000, 10'000, 100'000}) {
        const double time = bestTime(sample(count));
        std::printf("%7d items  %9.3f ms", count, time);
        if (before > 0) {
            std::printf("  %5.1f times that of a tenth (limit %.0f)", time / before, limit);
            holds = holds && time / before <= limit;
        }
        std::printf("\n");
        before = time;
    }
    return holds ? 0 : 1;
}
