"""The main job on the real program: scan, see, choose, confirm, delete."""
import os
import pathlib

import driver
import screens
import stage
from session_test import SessionTest

stage.enter()

# The groups of the sample home that are deleted when a person changes nothing, by one place of each.
SAFE = {
    "cache.npm": ".npm/_cacache", "cache.pnpm": "Library/pnpm/store", "cache.yarn": "Library/Caches/Yarn",
    "cache.cargo": ".cargo/registry/cache", "cache.gradle": ".gradle/caches", "cache.pip": "Library/Caches/pip",
    "cache.poetry": "Library/Caches/pypoetry", "cache.uv": ".cache/uv", "cache.bun": ".bun/install/cache",
    "cache.cocoapods": "Library/Caches/CocoaPods", "cache.swiftpm": "Library/Caches/org.swift.swiftpm",
    "cache.homebrew": "Library/Caches/Homebrew", "cache.maven": ".m2/repository",
    "cache.jetbrains": "Library/Caches/JetBrains/GoLand2024.2", "logs.stale": "Library/Logs/backup.log",
}
# Not ".rbenv/src": what is known of a cache is known by its folder's name, and Cargo has a "src" too, which is safe.
KEPT = [
    "Downloads/conference-recording.mov", "Downloads/reading-list.epub", "Library/Logs/today.log",
    "Library/Logs/.hidden.log", ".Trash/old-movie.mkv", "go/pkg/mod",
    "Library/Developer/Xcode/Archives/2025-03-04", "Documents/Thesis/chapter-1.md", ".ssh/config", ".npmrc",
    ".cargo/config.toml", "Projects/weather/Package.swift", "Library/Developer/Xcode/UserData/settings.xcsettings",
    ".m2/settings.xml", "Projects/shop/node_modules", "Projects/shop/package.json", "Projects/raytracer/target",
    "Applications/Paint Box.app", "Applications/Notes.app", "Library/Application Support/com.example.videocutter",
    "Library/Application Support/MobileSync/Backup/00008110-000A4D2E1E38801E", "Library/Caches/com.example.player",
    "Downloads/Editor-2.1.dmg", "Compiler 15.4.xip",
]
KEPT_PROJECT = "Atlas-czxnqoywulmdkehj"
DERIVED_DATA = "Library/Developer/Xcode/DerivedData"


class Cleanup(SessionTest):
    def begin(self):
        screens.make_sample_home(self.session)
        program = self.session.start()
        return screens.Cleanup(program).open().wait_for_scan()

    def contents(self):
        """The bytes of every file that must stay, and what lies in every folder."""
        found = {}
        for path in KEPT:
            place = self.home / path
            found[path] = sorted(os.walk(place)) if place.is_dir() else place.read_bytes()[:64]
        return found

    def testWhatIsConfirmedIsDeletedAndNothingElse(self):
        screen = self.begin()
        before = self.contents()

        screen.search(screen.title("xcode.derivedData"))
        screen.expand(screen.title("xcode.derivedData"))
        item = next(name for name in screen.item_names() if name.startswith("Atlas"))
        screen.toggle(lambda: screen.box_of_item(item))
        screen.search("")

        screen.ask_to_delete()
        for wrong in ("", screen.confirm_word().lower(), screen.confirm_word() + " "):
            screen.type_word(wrong)
            screen.confirm_button().press()
            screen.program.focus()
            screen.program.key("Return")
            self.assertTrue(screen.sheet_stands(), wrong)
        self.assertTrue((self.home / ".npm/_cacache").exists())
        screen.type_word(screen.confirm_word())
        deleted_paths = screen.cached_paths()
        screen.confirm_button().press()

        count, _ = screen.message("cleanup.success %1$lld %2$@")
        for group, place in SAFE.items():
            self.assertFalse((self.home / place).exists(), group)
        self.assertEqual([path.name for path in (self.home / DERIVED_DATA).iterdir()], [KEPT_PROJECT])
        self.assertEqual(self.contents(), before)

        # The cache now holds what the list holds: the rest, and what was freed.
        cache = driver.until(lambda: "lastCleanupFreedBytes" in screen.cache() and screen.cache(), what="the cache")
        left = screen.cached_paths()
        self.assertTrue(left)
        self.assertTrue(all(pathlib.Path(path).exists() for path in left))
        self.assertIn(str(self.home / DERIVED_DATA / KEPT_PROJECT), left)
        self.assertEqual(int(count), len(deleted_paths - left))
        self.assertGreater(cache["lastCleanupFreedBytes"], 50_000_000)

    def testWhatCouldNotBeDeletedStaysSelectedWithItsText(self):
        if os.getuid() == 0:
            self.skipTest("an administrator may delete everything")
        screens.make_sample_home(self.session)
        locked = self.home / ".npm/_cacache/locked"
        locked.mkdir()
        (locked / "held").write_bytes(b"x" * 8192)
        locked.chmod(0o500)
        screen = screens.Cleanup(self.session.start()).open().wait_for_scan()

        screen.ask_to_delete()
        screen.type_word(screen.confirm_word())
        screen.confirm_button().press()

        deleted, failed = screen.message("cleanup.partialFailure %1$lld %2$lld")
        self.assertEqual(failed, "1")
        self.assertGreater(int(deleted), 10)
        # The line names the item, and the reason names the path that stood in the way.
        failure = screen.failure_text()
        self.assertTrue(failure.startswith("_cacache: "), failure)
        self.assertIn("locked", failure)
        self.assertTrue((locked / "held").exists())
        self.assertFalse((self.home / ".npm/_cacache/content-v2").exists())
        self.assertFalse((self.home / "Library/Caches/pip").exists())
        title = screen.title("cache.npm")
        screen.search(title)
        self.assertTrue(screen.box_of_group(title).has_state("CHECKED"))

    def testAHomeWithoutAccessShowsOnlyTheAccessScreen(self):
        if os.getuid() == 0:
            self.skipTest("an administrator may read everything")
        screens.make_sample_home(self.session)
        self.home.chmod(0o500)
        program = self.session.start()
        program.find(name=program.texts.of("diskAccess.title"))
        self.assertFalse(program.has("page tab"))
        button = program.texts.of("diskAccess.alreadyGranted")
        program.find("push button", button).press()
        self.assertTrue(program.has("push button", button))
        self.home.chmod(0o700)
        program.find("push button", button).press()
        program.find("page tab", program.texts.of("sidebar.cleanup"))
        # The first scan starts with the grant.
        screens.Cleanup(program).open().wait_for_scan()

    def testASecondStartKeepsTheListOfTheFirst(self):
        screen = self.begin()
        paths = screen.cached_paths()
        screen.program.close_window()
        self.assertTrue(screen.program.ended(5))
        self.assertEqual(screen.program.child.returncode, 0)
        again = screens.Cleanup(self.session.start()).open()
        again.wait_for_scan()
        self.assertEqual(again.cached_paths(), paths)


class CleanupInPortuguese(Cleanup):
    language = "pt-BR"

    def testWhatIsConfirmedIsDeletedAndNothingElse(self):
        super().testWhatIsConfirmedIsDeletedAndNothingElse()
