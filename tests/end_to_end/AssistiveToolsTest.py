"""What the accessibility bus tells of the real program: rows in the screen's order, and what is disabled."""
import os

import driver
import screens
import stage
from session_test import SessionTest

stage.enter()


class AssistiveTools(SessionTest):
    def begin(self):
        self.program = self.session.start()
        self.screen = screens.Cleanup(self.program).open().wait_for_scan()

    def rows(self):
        """Name and upper edge of each row, in the order of the tree."""
        view = self.program.find("list", self.texts.of("sidebar.cleanup"))
        return [(node.name, node.top()) for node in view.children()
                if node.role in ("heading", "push button", "list item") and next(node.children(), None)]

    def assertScreenOrder(self, when):
        rows = self.rows()
        self.assertGreater(len(rows), 1, when)
        self.assertEqual(rows, sorted(rows, key=lambda row: row[1]), when)
        self.assertEqual(len({top for _, top in rows}), len(rows), when)

    def testTheRowsComeInTheOrderOfTheScreen(self):
        screens.make_sample_home(self.session)
        self.begin()
        self.assertScreenOrder("after a scan")
        title = self.screen.title("logs.stale")
        self.screen.expand(title)
        self.assertScreenOrder("after a group was expanded")
        self.program.focus()
        self.program.find("list", self.texts.of("sidebar.cleanup")).give_focus()
        for keys in (["End"], ["Prior", "Prior"], ["Home"]):
            before = self.rows()
            self.program.key(*keys)
            driver.until(lambda before=before: self.rows() != before, 5, f"{keys} to scroll")
            self.assertScreenOrder(f"after {keys}")
        before = self.rows()
        self.screen.search(title)
        driver.until(lambda: len(self.rows()) < len(before), 5, "the search")
        self.assertScreenOrder("in a search")
        self.screen.search("")
        driver.until(lambda: len(self.rows()) >= len(before), 5, "the whole list")
        self.assertScreenOrder("after the search")

    def testTheOneActionSaysThatItIsDisabledWhileNothingIsSelected(self):
        def is_enabled():
            button = self.screen.recover_button()
            said = {button.has_state("ENABLED"), button.has_state("SENSITIVE")}
            self.assertEqual(len(said), 1)
            return said.pop()

        cache = self.session.home / ".npm/_cacache"
        cache.mkdir(parents=True)
        with open(cache / "data", "wb") as file:
            os.posix_fallocate(file.fileno(), 0, 200_000_000)
        self.begin()
        title = self.screen.title("cache.npm")
        heard = self.hear("object:state-changed:sensitive")
        self.assertTrue(is_enabled())
        self.screen.toggle(lambda: self.screen.box_of_group(title))
        driver.until(lambda: not is_enabled(), 5, "the button to be disabled")
        driver.until(lambda: heard(self.screen.recover_button().name), 5, "the change to be announced")
        self.screen.toggle(lambda: self.screen.box_of_group(title))
        driver.until(is_enabled, 5, "the button to be enabled again")

    def hear(self, kind):
        """Listens to an event of the bus; gives a function that asks whether it came from a node of that name."""
        from gi.repository import GLib
        names = []
        listener = self.session.atspi.EventListener.new(lambda event: names.append(event.source.get_name()))
        listener.register(kind)
        self.addCleanup(listener.deregister, kind)

        def heard(name):
            while GLib.MainContext.default().iteration(False):
                pass
            return name in names

        return heard
