"""The window lives on while a scan waits for a tool that gives no answer."""
import json
import time

import driver
import screens
import stage
from session_test import SessionTest

HAS_STAND_INS = stage.enter(stand_ins=True)


class HangingTool(SessionTest):
    missing = None if HAS_STAND_INS else "this machine refuses mount namespaces, so no tool can be made to hang"

    def setUp(self):
        super().setUp()
        screens.make_sample_home(self.session)
        self.answer_after(10)

    def answer_after(self, seconds):
        state = self.session.home / ".stand-ins/docker.json"
        state.write_text(json.dumps({**json.loads(state.read_text()), "delay": seconds}))

    def asked(self):
        log = self.session.home / ".stand-ins/calls.log"
        return log.exists() and '["docker", "' in log.read_text()

    def begin(self):
        """The Cleanup screen with a scan that waits for the tool."""
        program = self.session.start()
        screen = screens.Cleanup(program).open()
        driver.until(self.asked, 30, "the tool to be asked")
        program.find("push button", screen.texts.of("action.cancel"))
        return screen

    def testTheCachedListStandsBeforeItsProbeHasAnswered(self):
        # An image that is no longer there.
        title = screens.leave_list_with_image(self.session, "0123456789ab", 777_000_000)
        screen = self.begin()
        screen.search(title)
        self.assertIn("777 MB", screen.row(title).name)
        # That was no answer of the scan: it still waits, and shows another figure once the tool has answered.
        self.assertTrue(screen.program.has("push button", screen.texts.of("action.cancel")))
        self.answer_after(0)
        screen.wait_for_scan()
        self.assertNotIn("777 MB", screen.row(title).name)

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

    def testClosingTheWindowEndsTheProcessWithinTwoSeconds(self):
        screen = self.begin()
        screen.program.close_window()
        self.assertTrue(screen.program.ended(2))
        self.assertEqual(screen.program.child.returncode, 0)
