"""The Home screen of the real program: what fills the disk, and that its figures stay true by themselves."""
import decimal
import json
import os
import re
import subprocess
import time

import driver
import stage
from session_test import SessionTest

stage.enter()

LARGE = 200_000_000
BUCKETS = {"applications": ["Applications"], "documents": ["Documents", "Desktop", "Downloads"],
           "media": ["Pictures", "Movies", "Music"], "library": ["Library"]}


def allocate(path, size):
    """A file whose blocks are really there."""
    with open(path, "wb") as file:
        os.posix_fallocate(file.fileno(), 0, size)


def amount(count):
    """An amount of bytes as the window writes it in English."""
    units = [("TB", 4, 2), ("GB", 3, 2), ("MB", 2, 1), ("KB", 1, 0)]
    for unit, power, digits in units:
        if count >= 1000 ** power or unit == "KB":
            value = decimal.Decimal(count) / 1000 ** power
            rounded = value.quantize(decimal.Decimal(1).scaleb(-digits), decimal.ROUND_HALF_EVEN)
            text = f"{rounded:,f}"
            return f"{text.rstrip('0').rstrip('.') if '.' in text else text} {unit}"
    return ""


class Dashboard(SessionTest):
    def setUp(self):
        super().setUp()
        self.make_home()

    def make_home(self):
        """Documents that take a moment to read, a part that can't be read, and media that lies elsewhere."""
        for number in range(800):
            folder = self.home / f"Documents/letters/{number}"
            folder.mkdir(parents=True)
            for letter in range(50):
                (folder / f"{letter}.txt").touch()
        closed = self.home / "Documents/closed"
        closed.mkdir()
        allocate(closed / "unseen", 3_000_000)
        closed.chmod(0)
        self.addCleanup(lambda: closed.exists() and closed.chmod(0o700))
        elsewhere = self.session.scratch / "elsewhere"
        elsewhere.mkdir()
        allocate(elsewhere / "film", 5_000_000)
        (self.home / "Movies").symlink_to(elsewhere)
        (self.home / "Downloads").mkdir()
        allocate(self.home / "Downloads/manual.pdf", 20_000_000)
        (self.home / "Library/Caches/player").mkdir(parents=True)
        allocate(self.home / "Library/Caches/player/data", 30_000_000)

    # --- what is right

    def inventory_path(self):
        return self.home / ".local/share/Vesko/storage-inventory.json"

    def inventory(self):
        """The figures that the program keeps, by bucket; none while there is no file."""
        try:
            kept = json.loads(self.inventory_path().read_text(encoding="utf-8"))
        except (OSError, ValueError):
            return None
        if kept.get("schemaVersion") != 1:
            return None
        return {bucket["id"]: bucket["bytes"] for bucket in kept["buckets"]} | {"used": kept["volumeUsedBytes"]}

    def measured(self, bucket):
        places = [self.home / place for place in BUCKETS[bucket]]
        told = [subprocess.run(["du", "-sk", str(place)], capture_output=True, text=True, check=False).stdout
                for place in places if place.exists()]
        return sum(int(line.split()[0]) for line in told) * 1024

    def row(self, bucket, figure):
        return self.texts.of("a11y.segment %1$@ %2$@", self.texts.of(f"home.storage.bucket.{bucket}"), amount(figure))

    def busy_row(self, bucket):
        return self.texts.of("a11y.measuring %@", self.texts.of(f"home.storage.bucket.{bucket}"))

    # --- what is shown

    def names(self, program):
        return [node.name for node in program.root.all("push button")]

    def begin(self):
        program = self.session.start()
        driver.until(self.inventory, 30, "the first measurement")
        driver.until(lambda: not any(self.busy_row(bucket) in self.names(program) for bucket in [*BUCKETS, "system"]),
                     10, "every row to be filled")
        return program

    def assertShows(self, program, kept):
        """Every bucket's figure is the one that was kept, and the system's is what they leave of the used space."""
        figures = {bucket: kept[bucket] for bucket in BUCKETS}
        figures["system"] = max(0, kept["used"] - sum(figures.values()))
        for bucket, figure in figures.items():
            program.find("push button", self.row(bucket, figure), 2)

    # --- the tests

    def testALargeFileThatAppearsIsSeenWithinTwelveSeconds(self):
        program = self.begin()
        before = self.inventory()
        self.assertEqual({bucket: before[bucket] for bucket in BUCKETS},
                         {bucket: self.measured(bucket) for bucket in BUCKETS})
        self.assertLess(before["media"], 5_000_000)
        self.assertShows(program, before)
        heard = self.hear_names()

        began = time.monotonic()
        allocate(self.home / "Documents/letters/recording.mov", LARGE)
        right = self.measured("documents")
        self.assertGreaterEqual(right, before["documents"] + LARGE)
        said = heard(self.row("documents", right), began + 12)

        after = self.inventory_after(before)
        self.assertEqual(after["documents"], right)
        self.assertEqual(*({bucket: figures[bucket] for bucket in ("applications", "media", "library")}
                           for figures in (before, after)))
        self.assertNotEqual(after["used"], before["used"])
        driver.until(lambda: self.busy_row("system") not in self.names(program), 2, "the system's row")
        self.assertShows(program, after)
        # First busy, then the figure; the others stood still.
        self.assertLess(said.index(self.busy_row("documents")), said.index(self.row("documents", right)))
        self.assertIn(self.busy_row("system"), said)
        for bucket in ("applications", "media", "library"):
            self.assertNotIn(self.busy_row(bucket), said)

    def testAKeptFileThatIsDamagedOrNewerIsNoErrorAndMeasuredAnew(self):
        trees = []
        for content in (None, b'{"schemaVersion":1,"capturedAt":"2026-', b'{"schemaVersion":2,"buckets":{}}'):
            folder = self.inventory_path().parent
            folder.mkdir(parents=True, exist_ok=True)
            for cached in folder.iterdir():
                cached.unlink()
            if content is not None:
                self.inventory_path().write_bytes(content)
            program = self.begin()
            kept = self.inventory()
            self.assertEqual({bucket: kept[bucket] for bucket in BUCKETS},
                             {bucket: self.measured(bucket) for bucket in BUCKETS})
            self.assertShows(program, kept)
            trees.append(self.settled_tree(program))
            program.close_window()
            self.assertTrue(program.ended(5))
            self.assertEqual(program.child.returncode, 0)
        # Nothing on the screen tells that there was anything wrong with the file.
        self.assertEqual(trees[1], trees[0])
        self.assertEqual(trees[2], trees[0])

    # --- helpers

    def hear_names(self):
        """Listens to names that change, and asks for each at once, since the event does not tell it. Gives a function
        that waits for a name until some time and tells all that were heard, in order."""
        from gi.repository import GLib
        names = []
        kind = "object:property-change:accessible-name"
        listener = self.session.atspi.EventListener.new(lambda event: names.append(event.source.get_name()))
        listener.register(kind)
        self.addCleanup(listener.deregister, kind)
        wake = GLib.timeout_add(100, lambda: True)
        self.addCleanup(GLib.source_remove, wake)

        def heard(name, end):
            while name not in names:
                GLib.MainContext.default().iteration(True)
                self.assertLess(time.monotonic(), end, f"{name} was not heard, only {names}")
            return names

        return heard

    def inventory_after(self, before):
        """The figures once the program has kept new ones."""
        return driver.until(lambda: (lambda kept: kept if kept and kept != before else None)(self.inventory()), 3,
                            "the figures to be kept")

    def settled_tree(self, program):
        """The tree without its figures, once the scan has ended."""
        driver.until(lambda: self.session.cache_path().exists(), 60, "the scan's cache")

        def without_figures():
            return re.sub(r"[\d.,]+ [KMGT]B", "an amount", program.tree())

        seen = [without_figures()]

        def is_steady():
            seen.append(without_figures())
            return seen[-1] == seen[-2]

        driver.until(is_steady, 20, "the screen to settle", 1)
        return seen[-1]
