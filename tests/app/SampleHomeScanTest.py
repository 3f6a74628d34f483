"""A scan of the sample home: each row of the catalog finds just what was laid out for it."""
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

TOOLS = pathlib.Path(os.environ["VESKO_SOURCE"]) / "tools"
SCAN = pathlib.Path(os.environ["VESKO_BUILD"]) / "src/app/vesko-scan"

DERIVED_DATA = "Library/Developer/Xcode/DerivedData"
DEVICES = "Library/Developer/CoreSimulator/Devices"
DOCKER = "Library/Containers/com.docker.docker/Data"
SUPPORT = "Library/Application Support"
WEATHER, NOTES, ATLAS = "Weather-fkwqpzbmtrnvaxcd", "Notes-ahwbzmqkeyrtlpvs", "Atlas-czxnqoywulmdkehj"

# What each probe finds, in catalog order; a discovery's items that another row has taken are left to that row.
ROWS = {
    "cache.npm": [".npm/_cacache"],
    "cache.pnpm": ["Library/pnpm/store", ".pnpm-store"],
    "cache.yarn": ["Library/Caches/Yarn"],
    "cache.cargo": [".cargo/registry/cache", ".cargo/registry/src", ".cargo/git/db"],
    "cache.go": ["Library/Caches/go-build", "go/pkg/mod"],
    "cache.gradle": [".gradle/caches"],
    "cache.pip": ["Library/Caches/pip"],
    "cache.poetry": [".cache/pypoetry", "Library/Caches/pypoetry"],
    "cache.uv": [".cache/uv", ".local/share/uv/cache"],
    "cache.bun": [".bun/install/cache"],
    "cache.nuget": [".nuget/packages/newtonsoft.json", ".nuget/packages/serilog", ".nuget/packages/xunit"],
    "cache.rbenv": [".rbenv/src"],
    "cache.cocoapods": ["Library/Caches/CocoaPods"],
    "xcode.derivedData": [f"{DERIVED_DATA}/{project}" for project in (WEATHER, NOTES, ATLAS)],
    "xcode.archives": ["Library/Developer/Xcode/Archives/2025-03-04", "Library/Developer/Xcode/Archives/2025-06-18"],
    "xcode.deviceSupport": [f"Library/Developer/Xcode/iOS DeviceSupport/{version}"
                            for version in ("17.5.1 (21F90)", "18.1 (22B83)")],
    "downloads.stale": ["Downloads/conference-recording.mov", "Downloads/holiday-photos.zip", "Downloads/lecture-07.mp4"],
    "downloads.unopened": ["Downloads/conference-recording.mov", "Downloads/holiday-photos.zip",
                           "Downloads/dataset-export", "Downloads/invoice-march.pdf",
                           "Downloads/Relatório final (cópia).docx"],
    "logs.stale": ["Library/Logs/DiagnosticReports.old", "Library/Logs/backup.log", "Library/Logs/sync-2024.log",
                   "Library/Logs/" + "very-long-" * 20 + "name.log"],
    "trash": [".Trash/old-movie.mkv", ".Trash/Untitled project", ".Trash/notes.txt", ".Trash/Relat\\xF3rio antigo.doc"],
    "xcode.simulators.unavailable": [f"{DEVICES}/1B9D6BCD-BBFD-4B2D-9B5D-AB8DFBBD4BED",
                                     f"{DEVICES}/6EC0BD7F-11C0-43DA-975E-2A8AD9EBAE0B"],
    "xcode.simulators.all": [f"{DEVICES}/1B9D6BCD-BBFD-4B2D-9B5D-AB8DFBBD4BED",
                             f"{DEVICES}/6EC0BD7F-11C0-43DA-975E-2A8AD9EBAE0B",
                             f"{DEVICES}/9B1DEB4D-3B7D-4BAD-9BDD-2B0D7B3DCB6D"],
    "project.nodeModules": ["Projects/shop/node_modules", "Projects/Clientes/Padaria São João/site/node_modules"],
    "project.pods": ["Projects/travel-ios/Pods"],
    "project.cargoTarget": ["Projects/raytracer/target"],
    "project.gradleBuild": ["Projects/recipes-android/build"],
    "project.next": ["Projects/landing-page/.next"],
    "project.nodeDist": ["Projects/design-system/dist"],
    "project.nodeOut": ["Projects/handbook/out"],
    "project.nodeBuild": ["Projects/intranet/build"],
    "discover.caches": ["Library/Caches/com.example.player", "Library/Caches/com.example.notes",
                        "Library/Caches/Chat Desktop"],
    "discover.appSupport": [f"{SUPPORT}/com.example.videocutter", f"{SUPPORT}/org.example.mapmaker"],
    "installers.forgotten": ["Downloads/Editor-2.1.dmg", "Downloads/Editor-2.2.dmg", "Downloads/Editor_3.0-arm64.dmg",
                             "Downloads/Toolbox.PKG", "Downloads/Printer Driver.pkg",
                             "Desktop/Office Suite 16.89.pkg", "Compiler 15.4.xip"],
    "apps.unused": ["Applications/Paint Box.app", "Applications/Tape Deck.app",
                    "Applications/Sculptor 1.8.AppImage"],
    "cache.swiftpm": ["Library/Caches/org.swift.swiftpm"],
    "cache.homebrew": ["Library/Caches/Homebrew"],
    "backup.ios": [f"{SUPPORT}/MobileSync/Backup/00008110-000A4D2E1E38801E",
                   f"{SUPPORT}/MobileSync/Backup/00008110-000A4D2E1E38801E-20240218-091500"],
    "docker.images": [f"{DOCKER}/images/{image}" for image in ("3f57d9401f8d", "a6bd71f48f68", "b2f6f8a0c3d1")],
    "docker.volumes": [".stand-ins/docker/volumes/atlas_postgres-data/_data",
                       ".stand-ins/docker/volumes/weather_redis/_data"],
    "docker.buildcache": [f"{DOCKER}/buildcache"],
    "cache.maven": [".m2/repository"],
    "cache.jetbrains": ["Library/Caches/JetBrains/GoLand2023.3", "Library/Caches/JetBrains/GoLand2024.2"],
    "xcode.previews": [f"{DERIVED_DATA}/{project}/Previews" for project in (WEATHER, NOTES)],
    "xcode.simulator.runtime": [f"Library/Developer/CoreSimulator/Profiles/Runtimes/iOS {version}.simruntime"
                                for version in ("15.0", "14.5")],
}
# Items that both a discovery and another row find are the other row's: the discovery keeps what stands above.
DISCOVERIES = ("discover.caches", "discover.appSupport")
MERGED = "project.artifacts"

# A person's own, beside what is found.
BYSTANDERS = [
    "Documents/Thesis/chapter-1.md", "Documents/Software/Ledger-1.0.dmg", "Desktop/course/Setup-2.0.dmg",
    "Desktop/disk-of-2009.iso", "Downloads/slides-draft.key", "Downloads/reading-list.epub", "Library/Logs/today.log",
    "Applications/Notes.app", "Applications/Calendar.app", "Applications/com.apple.Sketch.app",
    "Applications/Messenger 4.2.AppImage", f"{SUPPORT}/com.example.notes", f"{SUPPORT}/com.example.calendar",
    f"{SUPPORT}/com.example.clock", f"{SUPPORT}/Family Tree", f"{SUPPORT}/example.ledger",
    f"{SUPPORT}/JetBrains", f"{SUPPORT}/MobileSync/Backup/README.txt", f"{SUPPORT}/MobileSync/Backup/.in-progress",
    "Library/Caches/com.example.clock", ".m2/settings.xml", ".cargo/config.toml", ".npmrc", ".ssh/config",
    "Projects/shop/package.json", "Projects/shop/src", "Projects/raytracer/Cargo.toml", "Projects/wallet/build",
    "Projects/weather/Package.swift", "Documents/Company/target", "Documents/Company/build", "Music/Mixes/out",
    "Music/Mixes/dist", "Work/.pnpm/lodash@4.17.21/node_modules", "Work/3f786850e387550fdab836ed7e6dc881/node_modules",
    "Library/Developer/CoreSimulator/Profiles/Runtimes/iOS 18.1.simruntime",
    "Library/Developer/Xcode/UserData/settings.xcsettings",
]


class SampleHomeScan(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = pathlib.Path(tempfile.mkdtemp()).resolve()
        cls.addClassCleanup(shutil.rmtree, cls.scratch)
        cls.home = cls.scratch / "home"
        subprocess.run([str(TOOLS / "sample-home"), "--small", str(cls.home)], check=True, capture_output=True)

    def scan(self, *options, language="C.UTF-8"):
        ended = subprocess.run([str(TOOLS / "with-stand-ins"), str(self.home), str(SCAN), *options],
                               capture_output=True, text=True, check=False, env={**os.environ, "LC_ALL": language})
        if "without the stand-ins" in ended.stderr:
            self.skipTest("this machine refuses mount namespaces, and so the tools can't be stood in for")
        self.assertEqual(ended.returncode, 0, ended.stderr)
        return ended.stdout

    def events(self):
        return [json.loads(line) for line in self.scan().splitlines()]

    def paths(self, group):
        prefix = str(self.home) + "/"
        for item in group["items"]:
            self.assertTrue(item["path"].startswith(prefix), item["path"])
        return sorted(item["path"].removeprefix(prefix) for item in group["items"])

    def testEveryRowFindsWhatWasLaidOutForIt(self):
        events = self.events()
        started = [event["id"] for event in events if event["event"] == "probeStarted"]
        found = {event["group"]["id"]: self.paths(event["group"]) for event in events
                 if event["event"] == "probeFinished" and event["group"]}
        self.assertEqual(started, list(ROWS))
        for row in ROWS:
            with self.subTest(row=row):
                # What else a discovery lists is settled in the report.
                kept = [path for path in found.get(row, []) if row not in DISCOVERIES or path in ROWS[row]]
                self.assertEqual(kept, sorted(ROWS[row]))

    def testTheReportHasEachThingOnceInItsGroup(self):
        report = self.events()[-1]["report"]
        self.assertEqual(report["errors"], [])
        expected = {}
        for row in ROWS:
            group = MERGED if row.startswith("project.") else row
            expected[group] = sorted(expected.get(group, []) + ROWS[row])
        self.assertEqual({group["id"]: self.paths(group) for group in report["groups"]}, expected)
        self.assertEqual({group["baselineSafety"] for group in report["groups"]}, {"seguro", "revisar"})
        self.assertEqual({group["section"]["id"] for group in report["groups"]},
                         {"system", "apps", "caches", "development", "downloads", "installers"})

    def testWhatLiesBesideIsNotOffered(self):
        found = [path for group in self.events()[-1]["report"]["groups"] for path in self.paths(group)]
        for bystander in BYSTANDERS:
            self.assertTrue((self.home / bystander).exists(), bystander)
            for path in found:
                self.assertFalse(f"{bystander}/".startswith(f"{path}/"), f"{path} takes {bystander}")
                self.assertFalse(path.startswith(f"{bystander}/"), f"{path} is a part of {bystander}")

    def testTheStatisticsCountTheCallsOfTheTools(self):
        log = self.home / ".stand-ins/calls.log"
        log.unlink(missing_ok=True)
        started = json.loads(self.scan("--statistics").splitlines()[-1])["childrenStarted"]
        calls = len(log.read_text(encoding="utf-8").splitlines())
        # The stand-ins log what reaches them; a few children are other programs.
        self.assertGreaterEqual(calls, 10)
        self.assertTrue(calls <= started <= calls + 5, f"{started} started, {calls} logged")

    def testTheSummaryNamesEveryGroupInBothLanguages(self):
        catalog = json.loads((TOOLS.parent / "resources/Localizable.xcstrings").read_text(encoding="utf-8"))["strings"]
        groups = {MERGED if row.startswith("project.") else row for row in ROWS}
        for locale, language in (("C.UTF-8", "en"), ("pt_BR.UTF-8", "pt-BR")):
            lines = self.scan("--summary", language=locale).splitlines()
            for group in groups:
                title = catalog[f"probe.{group}.title"]["localizations"][language]["stringUnit"]["value"]
                self.assertEqual(sum(f"  {title}  " in line for line in lines), 1, f"{title}: {lines}")


if __name__ == "__main__":
    unittest.main()
