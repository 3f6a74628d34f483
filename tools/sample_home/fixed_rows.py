"""Rows 1 to 20 of the catalog: caches, Xcode's folders, downloads, logs, the trash.

Each row is one function; a further row is one more of them, or a module of its own beside this one.
"""
MB = 1_000_000


def fill(home):
    for row in ROWS.values():
        row(home)


def npm(home):
    home.many(".npm/_cacache/content-v2/sha512", 120, 310 * MB)
    home.many(".npm/_cacache/index-v5", 60, 2 * MB)


def pnpm(home):
    home.many("Library/pnpm/store/v3/files", 90, 240 * MB)
    home.many(".pnpm-store/v3/files", 20, 35 * MB)


def yarn(home):
    for package in ("react", "lodash", "typescript", "webpack"):
        home.file(f"Library/Caches/Yarn/v6/npm-{package}-integrity/node_modules/{package}/package.tgz", 24 * MB)


def cargo(home):
    home.many(".cargo/registry/cache/index.crates.io-6f17d22bba15001f", 40, 180 * MB, ".crate")
    home.many(".cargo/registry/src/index.crates.io-6f17d22bba15001f", 80, 260 * MB, ".rs")
    home.many(".cargo/git/db/serde-1a2b3c", 10, 45 * MB, ".pack")


def go(home):
    home.many("Library/Caches/go-build", 60, 150 * MB, "-d")
    home.many("go/pkg/mod/golang.org/x/tools@v0.21.0", 30, 90 * MB, ".go")


def gradle(home):
    home.many(".gradle/caches/modules-2/files-2.1", 70, 420 * MB, ".jar")


def pip(home):
    home.many("Library/Caches/pip/http-v2", 40, 130 * MB)


def poetry(home):
    home.many(".cache/pypoetry/cache/repositories", 10, 40 * MB)
    home.many("Library/Caches/pypoetry/artifacts", 12, 55 * MB, ".whl")


def uv(home):
    home.many(".cache/uv/archive-v0", 30, 95 * MB)
    home.many(".local/share/uv/cache/wheels-v1", 10, 20 * MB)


def bun(home):
    home.many(".bun/install/cache", 25, 70 * MB, ".npm")


def nuget(home):
    for package, size in (("newtonsoft.json", 12), ("serilog", 8), ("xunit", 20)):
        home.file(f".nuget/packages/{package}/13.0.1/{package}.nupkg", size * MB)


def rbenv(home):
    home.file(".rbenv/src/ruby-3.2.2.tar.gz", 60 * MB, days=210)


def cocoapods(home):
    home.many("Library/Caches/CocoaPods/Pods/Release", 20, 85 * MB)


def derived_data(home):
    for project, size in (("Weather-fkwqpzbmtrnvaxcd", 520), ("Notes-ahwbzmqkeyrtlpvs", 260), ("Atlas-czxnqoywulmdkehj", 90)):
        home.many(f"Library/Developer/Xcode/DerivedData/{project}/Build/Intermediates.noindex", 25, size * MB, ".o")
        home.text(f"Library/Developer/Xcode/DerivedData/{project}/info.plist", "<plist/>\n")


def archives(home):
    home.file("Library/Developer/Xcode/Archives/2025-03-04/Weather 04-03-2025.xcarchive/dSYMs/Weather.dSYM", 140 * MB, 260)
    home.file("Library/Developer/Xcode/Archives/2025-06-18/Notes 18-06-2025.xcarchive/dSYMs/Notes.dSYM", 95 * MB, 150)


def device_support(home):
    for version, size in (("17.5.1 (21F90)", 300), ("18.1 (22B83)", 350)):
        home.many(f"Library/Developer/Xcode/iOS DeviceSupport/{version}/Symbols/System/Library", 15, size * MB, ".dylib")


def downloads(home):
    # Old by its last change, and never opened since: both rows list it.
    home.file("Downloads/conference-recording.mov", 900 * MB if not home.small else 80 * MB, 200, fixed=True)
    home.file("Downloads/holiday-photos.zip", 110 * MB if not home.small else 60 * MB, 120, fixed=True)
    home.file("Downloads/dataset-export/rows.parquet", 150 * MB, 400)
    home.folder("Downloads/dataset-export", 400)
    # Old and large, but opened yesterday: only the row that goes by the last change.
    home.file("Downloads/lecture-07.mp4", 80 * MB if not home.small else 55 * MB, 150, opened_days=1, fixed=True)
    # Old and small: only the row that goes by the last opening.
    home.file("Downloads/invoice-march.pdf", 200_000, 300, fixed=True)
    home.file("Downloads/Relatório final (cópia).docx", 900_000, 180, fixed=True)
    # None of these may be offered: new, opened lately and small, an installer, hidden.
    home.file("Downloads/slides-draft.key", 60 * MB, 5)
    home.file("Downloads/reading-list.epub", 3 * MB, 200, opened_days=2)
    home.file("Downloads/Editor-2.1.dmg", 75 * MB, 130)
    home.file("Downloads/Toolbox.PKG", 20 * MB, 130)
    home.file("Downloads/.DS_Store", 6148, 400)


def logs(home):
    home.file("Library/Logs/DiagnosticReports.old/Weather-2025-02-11.crash", 3 * MB, 90)
    home.folder("Library/Logs/DiagnosticReports.old", 90)
    home.file("Library/Logs/backup.log", 22 * MB, 75)
    home.file("Library/Logs/sync-2024.log", 9 * MB, 320)
    home.file("Library/Logs/" + "very-long-" * 20 + "name.log", 1 * MB, 60)
    home.file("Library/Logs/today.log", 2 * MB, 0)
    home.file("Library/Logs/.hidden.log", 1 * MB, 200)


def trash(home):
    home.file(".Trash/old-movie.mkv", 240 * MB, 12)
    home.file(".Trash/Untitled project/assets/texture.psd", 65 * MB, 20)
    home.file(".Trash/notes.txt", 4096, 3, fixed=True)
    home.file(b".Trash/Relat\xf3rio antigo.doc", 2 * MB, 40)
    home.file(".Trash/.DS_Store", 6148, 3)


ROWS = {
    "cache.npm": npm,
    "cache.pnpm": pnpm,
    "cache.yarn": yarn,
    "cache.cargo": cargo,
    "cache.go": go,
    "cache.gradle": gradle,
    "cache.pip": pip,
    "cache.poetry": poetry,
    "cache.uv": uv,
    "cache.bun": bun,
    "cache.nuget": nuget,
    "cache.rbenv": rbenv,
    "cache.cocoapods": cocoapods,
    "xcode.derivedData": derived_data,
    "xcode.archives": archives,
    "xcode.deviceSupport": device_support,
    "downloads": downloads,  # both rows of the folder
    "logs.stale": logs,
    "trash": trash,
}
