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

/// A quarter each: caches, project artifacts with every tenth twice, and two kinds of discoveries, of which
/// each second equals, contains or lies in one of the caches.
std::vector<CleanupGroup> sample(int count) {
    const std::string library = "/Users/somebody/Library/";
    std::vector<ScannableItem> caches, projects, more, plain, deep;
    for (int i = 0; i < count / 4; ++i) {
        const std::string number = std::to_string(i);
        caches.push_back(item(library + "Caches/com.example.tool" + number + "/versions", i + 1));
        (i % 2 ? projects : more)
            .push_back(item("/Users/somebody/work/p" + std::to_string(i - i % 10) + "/node_modules", i + 1));
        plain.push_back(item(library + "Caches/com.example.tool" + (i % 2 ? number : "s" + number), i + 1));
        deep.push_back(item(library + "Caches/com.example.tool" + (i % 2 ? number : "s" + number) +
                                "/versions/deep/in/the/tree",
                            i + 1));
    }
    return {group("discover.caches", std::move(plain)), group("cache.tool", std::move(caches)),
            group("project.nodeModules", std::move(projects)), group("project.pods", std::move(more)),
            group("discover.appSupport", std::move(deep))};
}

double medianTime(const std::vector<CleanupGroup>& groups) {
    std::vector<double> times;
    for (int run = 0; run < 9; ++run) {
        std::vector<CleanupGroup> snapshot = groups;
        const double begin = processorTime();
        const ScanReport report = SignificanceEngine().evaluate(std::move(snapshot), {});
        times.push_back(processorTime() - begin);
        if (report.groups.size() != 4) std::abort();
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main() {
    constexpr double limit = 13;
    bool holds = true;
    double before = 0;
    for (const int count : {1'000, 10'000, 100'000}) {
        const double time = medianTime(sample(count));
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
