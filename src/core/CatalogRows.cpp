#include "core/CatalogRows.h"

#include "base/ProgrammingError.h"
#include <algorithm>
#include <utility>

namespace vesko {

const std::array<std::string_view, 44> catalogOrder{
    "cache.npm",
    "cache.pnpm",
    "cache.yarn",
    "cache.cargo",
    "cache.go",
    "cache.gradle",
    "cache.pip",
    "cache.poetry",
    "cache.uv",
    "cache.bun",
    "cache.nuget",
    "cache.rbenv",
    "cache.cocoapods",
    "xcode.derivedData",
    "xcode.archives",
    "xcode.deviceSupport",
    "downloads.stale",
    "downloads.unopened",
    "logs.stale",
    "trash",
    "xcode.simulators.unavailable",
    "xcode.simulators.all",
    "project.nodeModules",
    "project.pods",
    "project.cargoTarget",
    "project.gradleBuild",
    "project.next",
    "project.nodeDist",
    "project.nodeOut",
    "project.nodeBuild",
    "discover.caches",
    "discover.appSupport",
    "installers.forgotten",
    "apps.unused",
    "cache.swiftpm",
    "cache.homebrew",
    "backup.ios",
    "docker.images",
    "docker.volumes",
    "docker.buildcache",
    "cache.maven",
    "cache.jetbrains",
    "xcode.previews",
    "xcode.simulator.runtime",
};

namespace {

constexpr std::int64_t mebibyte = 1 << 20;

GroupMetadata metadata(std::string id, std::string icon, CleanupSection section, std::string provider,
                       Safety safety) {
    GroupMetadata made;
    made.id = std::move(id);
    made.icon = std::move(icon);
    made.section = std::move(section);
    made.providerID = {std::move(provider)};
    made.baselineSafety = safety;
    return made;
}

GroupMetadata fixedMetadata(std::string id, std::string icon, CleanupSection section, Safety safety) {
    std::string provider = id.starts_with("cache") ? "cache" : "fixed";
    return metadata(std::move(id), std::move(icon), std::move(section), std::move(provider), safety);
}

/// The path itself is the one candidate.
FixedPathRow whole(GroupMetadata about, std::vector<std::string> paths) {
    FixedPathRow row;
    row.metadata = std::move(about);
    row.relativePaths = std::move(paths);
    row.preferDiskUsage = true;
    return row;
}

/// Every visible child of the path is a candidate.
FixedPathRow children(GroupMetadata about, std::vector<std::string> paths) {
    FixedPathRow row = whole(std::move(about), std::move(paths));
    row.expandChildren = true;
    return row;
}

/// Children that a person left behind: measured as they lie, links not followed.
FixedPathRow leftovers(GroupMetadata about, std::string path) {
    FixedPathRow row = children(std::move(about), {std::move(path)});
    row.preferDiskUsage = false;
    return row;
}

FixedPathRow toolCache(std::string id, Safety safety, std::vector<std::string> paths) {
    return whole(fixedMetadata(std::move(id), "shippingbox", sections::caches(), safety), std::move(paths));
}

FixedPathRow toolCacheParts(std::string id, std::vector<std::string> paths) {
    return children(fixedMetadata(std::move(id), "shippingbox", sections::caches(), Safety::seguro),
                    std::move(paths));
}

FixedPathRow xcodeParts(std::string id, std::string icon, Safety safety, std::string folder) {
    return children(fixedMetadata(std::move(id), std::move(icon), sections::development(), safety),
                    {"Library/Developer/Xcode/" + std::move(folder)});
}

/// Two rows look at the same folder by different dates, and one file may be in both.
FixedPathRow downloads(std::string id, AgeMetric age, std::int64_t minBytes) {
    FixedPathRow row =
        leftovers(fixedMetadata(std::move(id), "arrow.down.circle", sections::downloads(), Safety::revisar),
                  "Downloads");
    row.minBytes = minBytes;
    row.olderThanDays = 90;
    row.ageMetric = age;
    row.excludedExtensions = {"dmg", "pkg", "xip"}; // installers have a group of their own
    return row;
}

} // namespace

std::vector<FixedPathRow> fixedPathRows() {
    using enum Safety;
    std::vector<FixedPathRow> rows{
        toolCache("cache.npm", seguro, {".npm/_cacache"}),
        toolCache("cache.pnpm", seguro, {"Library/pnpm/store", ".pnpm-store"}),
        toolCache("cache.yarn", seguro, {"Library/Caches/Yarn"}),
        toolCacheParts("cache.cargo", {".cargo/registry", ".cargo/git"}),
        toolCache("cache.go", revisar, {"Library/Caches/go-build", "go/pkg/mod"}),
        toolCache("cache.gradle", seguro, {".gradle/caches"}),
        toolCache("cache.pip", seguro, {"Library/Caches/pip"}),
        toolCache("cache.poetry", seguro, {".cache/pypoetry", "Library/Caches/pypoetry"}),
        toolCache("cache.uv", seguro, {".cache/uv", ".local/share/uv/cache"}),
        toolCache("cache.bun", seguro, {".bun/install/cache"}),
        toolCacheParts("cache.nuget", {".nuget/packages"}),
        toolCache("cache.rbenv", revisar, {".rbenv/src"}),
        toolCache("cache.cocoapods", seguro, {"Library/Caches/CocoaPods"}),
        xcodeParts("xcode.derivedData", "hammer", seguro, "DerivedData"),
        xcodeParts("xcode.archives", "archivebox", revisar, "Archives"),
        xcodeParts("xcode.deviceSupport", "iphone", revisar, "iOS DeviceSupport"),
        downloads("downloads.stale", AgeMetric::modification, 50 * mebibyte),
        downloads("downloads.unopened", AgeMetric::lastAccess, 0),
        leftovers(fixedMetadata("logs.stale", "doc.text", sections::system(), seguro), "Library/Logs"),
        leftovers(fixedMetadata("trash", "trash", sections::system(), revisar), ".Trash"),
    };
    for (FixedPathRow& row : rows) {
        if (row.metadata.id == "xcode.derivedData")
            row.metadata.relevancePolicy = RelevancePolicy::alwaysRelevant;
        if (row.metadata.id == "logs.stale") row.olderThanDays = 30;
    }
    return rows;
}

std::vector<GroupMetadata> otherRowsMetadata() {
    using enum Safety;
    const auto development = [](std::string id, std::string icon, std::string provider, Safety safety) {
        return metadata(std::move(id), std::move(icon), sections::development(), std::move(provider), safety);
    };
    const auto project = [&](std::string id) {
        return development(std::move(id), "shippingbox", "project", revisar);
    };
    const auto toolCacheMetadata = [](std::string id, std::string icon) {
        return metadata(std::move(id), std::move(icon), sections::caches(), "cache", seguro);
    };
    return {
        development("xcode.simulators.unavailable", "iphone.slash", "simulator", seguro),
        development("xcode.simulators.all", "iphone", "simulator", revisar),
        project("project.nodeModules"),
        project("project.pods"),
        project("project.cargoTarget"),
        project("project.gradleBuild"),
        project("project.next"),
        project("project.nodeDist"),
        project("project.nodeOut"),
        project("project.nodeBuild"),
        metadata("discover.caches", "questionmark.folder.fill", sections::caches(), "discover", revisar),
        metadata("discover.appSupport", "app.dashed", sections::apps(), "discover", revisar),
        metadata("installers.forgotten", "opticaldiscdrive", sections::installers(), "installer", revisar),
        metadata("apps.unused", "app.badge.minus", sections::apps(), "uninstaller", revisar),
        toolCacheMetadata("cache.swiftpm", "swift"),
        toolCacheMetadata("cache.homebrew", "mug"),
        metadata("backup.ios", "iphone.and.arrow.forward", sections::apps(), "fixed", revisar),
        development("docker.images", "shippingbox.fill", "docker", revisar),
        development("docker.volumes", "externaldrive", "docker", revisar),
        development("docker.buildcache", "hammer.fill", "docker", revisar),
        toolCacheMetadata("cache.maven", "shippingbox"),
        toolCacheMetadata("cache.jetbrains", "laptopcomputer"),
        development("xcode.previews", "eye", "xcode", seguro),
        development("xcode.simulator.runtime", "iphone.circle", "simulator", revisar),
    };
}

GroupMetadata rowMetadata(std::string_view id) {
    std::vector<GroupMetadata> rows = otherRowsMetadata();
    const auto found = std::ranges::find(rows, id, &GroupMetadata::id);
    if (found == rows.end()) programmingError("the catalog has no row " + std::string(id));
    return std::move(*found);
}

std::vector<ProjectArtifactRow> projectArtifactRows() {
    const auto row = [](std::string_view id, std::string folder, std::optional<std::string> beside = {},
                        std::vector<std::string> notBeside = {}) {
        return ProjectArtifactRow{rowMetadata(id), std::move(folder), std::move(beside),
                                  std::move(notBeside)};
    };
    return {
        row("project.nodeModules", "node_modules"),
        row("project.pods", "Pods"),
        row("project.cargoTarget", "target", "Cargo.toml"),
        row("project.gradleBuild", "build", "build.gradle"),
        row("project.next", ".next", "package.json"),
        row("project.nodeDist", "dist", "package.json"),
        row("project.nodeOut", "out", "package.json"),
        // A "build" beside a file of Gradle's belongs to that, whichever of its two languages it is written
        // in.
        row("project.nodeBuild", "build", "package.json", {"build.gradle", "build.gradle.kts"}),
    };
}

std::vector<ShallowScanRow> shallowScanRows() {
    // A library folder has hundreds of small entries, which nobody would go through.
    constexpr std::int64_t worthALook = 10 * mebibyte;
    return {
        {rowMetadata("discover.caches"), "Library/Caches", worthALook, false},
        {rowMetadata("discover.appSupport"), "Library/Application Support", worthALook, true},
    };
}

} // namespace vesko
