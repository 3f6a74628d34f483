"""One window a session: what a second start does, by the real program on a real session bus."""
import subprocess

import driver
import screens
import stage
from session_test import SessionTest

stage.enter()


def focused_window():
    """The window that has the keyboard; without a window manager there may be none."""
    return subprocess.run(["xdotool", "getwindowfocus"], capture_output=True, text=True, check=False).stdout.strip()


class SingleInstance(SessionTest):
    def setUp(self):
        super().setUp()
        screens.make_sample_home(self.session)

    def testASecondStartRaisesTheFirstWindowAndEnds(self):
        first = self.session.start()
        cover = driver.Cover()
        self.addCleanup(cover.close)
        self.assertTrue(cover.is_above(first.window))
        self.assertNotEqual(focused_window(), first.window)
        second = self.session.launch()
        self.assertEqual(second.wait(5), 0)
        driver.until(lambda: not cover.is_above(first.window), 5, "the first window to come up")
        driver.until(lambda: focused_window() == first.window, 5, "the first window to get the keyboard")
        self.assertIsNone(first.child.poll())
        # The first is none the worse for it.
        screens.Cleanup(first).open().wait_for_scan()

    def testAFirstStartThatWasKilledDoesNotBlockTheNext(self):
        self.session.start().stop()
        again = self.session.start()
        screens.Cleanup(again).open().wait_for_scan()

    def testAfterTheFirstHasEndedTheNextIsTheFirst(self):
        first = self.session.start()
        first.close_window()
        self.assertTrue(first.ended(5))
        self.session.start()

    def testWithoutASessionBusEveryStartShowsItsWindow(self):
        nowhere = {"DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.session.scratch}/no-bus"}
        children = [self.session.launch(environment=nowhere) for _ in range(2)]
        for child in children:
            window = driver.until(lambda child=child: driver.window_of(child), 20, "the window")
            driver.send_close_request(int(window))
        for child in children:
            self.assertEqual(child.wait(5), 0)
