"""Closing the window ends the program at once, whatever a tool is doing."""
import json

import driver
import screens
import stage
from session_test import SessionTest

HAS_STAND_INS = stage.enter(stand_ins=True)

IMAGE = "3f57d9401f8d"


class Closing(SessionTest):
    missing = None if HAS_STAND_INS else "this machine refuses mount namespaces, so no tool can be made to hang"

    def setUp(self):
        super().setUp()
        screens.make_sample_home(self.session)
        self.state = self.session.home / ".stand-ins/docker.json"

    def begin(self, before_confirming=lambda: None):
        """The list with the image on it, the image selected and its deletion confirmed."""
        title = screens.leave_list_with_image(self.session, IMAGE, 431_000_000)
        screen = screens.Cleanup(self.session.start()).open().wait_for_scan()
        screen.search(title)
        screen.toggle(lambda: screen.box_of_group(title))
        screen.ask_to_delete()
        screen.type_word(screen.confirm_word())
        before_confirming()
        self.calls_before = len(self.calls())
        screen.confirm_button().press()
        return screen

    def calls(self):
        log = self.session.home / ".stand-ins/calls.log"
        return [json.loads(line) for line in log.read_text().splitlines()] if log.exists() else []

    def testTheProcessEndsWithinTwoSecondsWhileAToolHangs(self):
        def hang():
            self.state.write_text(json.dumps({**json.loads(self.state.read_text()), "delay": 30}))

        screen = self.begin(before_confirming=hang)
        driver.until(lambda: len(self.calls()) > self.calls_before, 30, "the tool to be asked")
        # The window answers while the tool hangs.
        screen.program.find("page tab", screen.texts.of("sidebar.home")).press()
        driver.until(lambda: screen.program.find("page tab", screen.texts.of("sidebar.home")).has_state("SELECTED"), 2,
                     "the other screen")
        screen.program.close_window()
        self.assertTrue(screen.program.ended(2))
        self.assertEqual(screen.program.child.returncode, 0)

    def testAnImageIsDeletedThroughItsTool(self):
        screen = self.begin()
        screen.message("cleanup.success %1$lld %2$@")
        self.assertIn(["docker", "rmi", "-f", IMAGE], self.calls())
        self.assertNotIn(IMAGE, self.state.read_text())

    def testAnImageInUseStaysWithTheToolsAnswer(self):
        state = json.loads(self.state.read_text())
        self.state.write_text(json.dumps({**state, "refuse": [IMAGE]}))
        screen = self.begin()
        self.assertIn(IMAGE, screen.failure_text())
        self.assertIn(IMAGE, self.state.read_text())
        title = screen.title("docker.images")
        self.assertTrue(screen.box_of_group(title).has_state("CHECKED"))
