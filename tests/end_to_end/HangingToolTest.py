"""The window lives on while a scan waits for a tool that gives no answer."""
import json
import re
import shutil
import time
import unittest

import driver
import screens
import stage

HANGS = stage.enter_with_a_tool_that_hangs("/usr/bin/du")

# An empty cache folder is smaller than what the quick measurement vouches for, so that tool is asked.
EMPTY = ".npm/_cacache"


def cached_list(home, title):
    """A list as an earlier scan left it, from before that folder was emptied."""
    path = str(home / EMPTY)
    return {
        "schemaVersion": 1, "localeIdentifier": "en", "scanDate": "2026-01-05T10:00:00Z", "foundTotalBytes": 431000000,
        "groups": [{
            "id": "cache.npm", "title": title, "icon": "shippingbox", "sectionID": "caches", "sectionSortIndex": 2,
            "providerID": "cache", "relevancePolicy": "standard", "subtitle": "", "baselineSafety": "seguro",
            "baselineReason": "npm downloads packages again when a project needs them.",
            "items": [{"path": path, "size": 431000000, "isDirectory": True, "enrichmentKey": f"url:{path}"}],
        }],
    }


class HangingTool(unittest.TestCase):
    def setUp(self):
        self.addCleanup(stage.clean)
        if not HANGS:
            self.skipTest("this machine refuses mount namespaces, so no tool can be made to hang")
        self.session = driver.Session()
        self.addCleanup(self.session.close)
        screens.make_sample_home(self.session)
        shutil.rmtree(self.session.home / EMPTY)
        (self.session.home / EMPTY).mkdir()

    def begin(self):
        """The Cleanup screen with a scan that waits for the tool."""
        program = self.session.start()
        screen = screens.Cleanup(program).open()
        driver.until(stage.asked_of_the_tool, 30, "the tool to be asked")
        program.find("push button", screen.texts.of("action.cancel"))
        return screen

    def testTheCachedListStandsBeforeItsProbeHasAnswered(self):
        folder = self.session.home / ".local/share/Vesko"
        folder.mkdir(parents=True)
        title = self.session.texts.of("probe.cache.npm.title")
        (folder / "scan-cache.json").write_text(json.dumps(cached_list(self.session.home, title)))
        screen = self.begin()
        screen.search(title)
        self.assertRegex(screen.row(title).name, re.escape(title) + ".*431 MB")
        # That was no answer of the scan: it still waits, and takes the row off once the tool has failed.
        self.assertTrue(screen.program.has("push button", screen.texts.of("action.cancel")))
        screen.wait_for_scan()
        self.assertFalse(screen.program.has("check box", screen.texts.of("a11y.selectGroup %@", title)))

    def testCancelTakesEffectWithin200Milliseconds(self):
        screen = self.begin()
        scan = screen.scan_button()
        cancel = screen.program.find("push button", screen.texts.of("action.cancel"))
        self.assertFalse(scan.has_state("SENSITIVE"))
        began = time.monotonic()
        cancel.press()
        driver.until(lambda: scan.has_state("SENSITIVE"), 2, "the scan to be over", pause=0.005)
        self.assertLessEqual(time.monotonic() - began, 0.2)
        screen.program.gone("push button", screen.texts.of("action.cancel"))
        self.assertTrue(stage.asked_of_the_tool())

    def testClosingTheWindowEndsTheProcessWithinTwoSeconds(self):
        screen = self.begin()
        screen.program.close_window()
        self.assertTrue(screen.program.ended(2))
        self.assertEqual(screen.program.child.returncode, 0)
