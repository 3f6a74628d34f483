// How the time to judge a scan grows with its items: 1,000, 10,000 and 100,000 of them, half in discovery
// groups that overlap the others. Prints the times and what ten times the items cost; ends with 1 when that
// is above the limit.
//
// A large evaluation is compared with ten small ones right before it, so that both have the same machine, and
// the median of many such comparisons counts: a single small evaluation may fall between two disturbances,
// a large one never does.
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

/// Milliseconds of one evaluation.
double timeOf(const std::vector<CleanupGroup>& groups) {
    std::vector<CleanupGroup> snapshot = groups;
    const double begin = processorTime();
    const ScanReport report = SignificanceEngine().evaluate(std::move(snapshot), {});
    const double time = processorTime() - begin;
    if (report.groups.size() != 4) std::abort();
    return time;
}

double median(std::vector<double> values) {
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}

/// What ten times as many items cost.
double growth(const std::vector<CleanupGroup>& groups, const std::vector<CleanupGroup>& tenth) {
    constexpr int comparisons = 25;
    std::vector<double> times;
    std::vector<double> ratios;
    for (int comparison = 0; comparison < comparisons; ++comparison) {
        double small = 0;
        for (int run = 0; run < 10; ++run) small += timeOf(tenth);
        times.push_back(timeOf(groups));
        ratios.push_back(times.back() / small * 10);
    }
    std::printf("  %9.3f ms  %5.1f times that of a tenth", median(times), median(ratios));
    return median(ratios);
}

} // namespace

int main() {
    constexpr double limit = 13;
    bool holds = true;
    std::vector<CleanupGroup> before = sample(1'000);
    std::printf("%7d items  %9.3f ms\n", 1'000, timeOf(before));
    for (const int count : {10'000, 100'000}) {
        std::vector<CleanupGroup> groups = sample(count);
        std::printf("%7d items", count);
        holds = growth(groups, before) <= limit && holds;
        std::printf(" (limit %.0f)\n", limit);
        before = std::move(groups);
    }
    return holds ? 0 : 1;
}
