"""Everything that the Cleanup screen offers, by the keyboard alone: no action of the accessibility tree is used."""
import re

import driver
import screens
import stage
from session_test import SessionTest

stage.enter()


class Keyboard(SessionTest):
    def setUp(self):
        super().setUp()
        screens.make_sample_home(self.session)
        self.program = self.session.start()
        self.screen = screens.Cleanup(self.program)
        self.program.focus()

    def waits(self, condition, what):
        try:
            driver.until(condition, 10, what)
        except driver.NotFound as problem:
            raise driver.NotFound(f"{problem}; the tree:\n{self.program.tree()}") from None

    def focused_name(self):
        node = self.program.focused()
        return node.name if node else ""

    def go_to(self, wanted, key="Tab", presses=40):
        """Press a key until the node that has the keyboard bears this name."""
        pattern = wanted if isinstance(wanted, re.Pattern) else re.compile(re.escape(wanted))
        seen = []
        for _ in range(presses):
            if pattern.fullmatch(self.focused_name()):
                return
            self.program.key(key)
            try:
                driver.until(lambda: self.focused_name() not in seen[-1:], 1)
            except driver.NotFound:
                pass
            seen.append(self.focused_name())
        raise AssertionError(f"{key} does not lead to {wanted}, only to {seen}\n{self.program.tree()}")

    def testScanSearchExpandDeselectAndDelete(self):
        self.program.key("ctrl+2")
        self.screen.wait_for_scan()
        self.program.key("ctrl+r")
        self.screen.wait_for_scan()

        # Search, and clear the search by Escape.
        title = self.screen.title("xcode.derivedData")
        self.program.key("ctrl+f")
        self.program.type("zzzz")
        self.waits(lambda: self.program.has(None, self.texts.of("empty.noResults.title")), "the state without a hit")
        self.program.key("Escape")
        self.waits(lambda: not self.program.has(None, self.texts.of("empty.noResults.title")), "the list again")

        # Down to the group, Right opens it, Down and Space deselect its first item.
        self.program.key("ctrl+f")
        self.program.type(title)
        row = re.compile(re.escape(title) + ",.*")
        other = re.compile(re.escape(self.screen.title("trash")) + ",.*")
        self.waits(lambda: not self.program.has("push button", other), "the other groups to go")
        self.go_to(re.compile(re.escape(self.texts.of("sidebar.cleanup")) + "|" + row.pattern), "Tab")
        self.go_to(row, "Down", 6)
        self.program.key("Right")
        self.waits(lambda: self.screen.is_expanded(title), "the group to expand")
        name = self.screen.item_names()[0]
        self.program.key("Down", "space")
        self.waits(lambda: not self.screen.box_of_item(name).has_state("CHECKED"), "the item to be deselected")
        self.program.key("Left", "Left")
        self.waits(lambda: not self.screen.is_expanded(title), "the group to collapse")

        # To the one action, through the sheet with a wrong and the right word.
        self.go_to(re.compile(self.texts.pattern("action.recover %@")), "Tab")
        self.program.key("Return")
        sheet = ("dialog", self.texts.of("delete.confirm.title"))
        self.waits(lambda: self.program.has(*sheet), "the sheet")
        self.program.type("nonsense")
        self.program.key("Return")
        self.assertTrue(self.program.has(*sheet))
        self.program.key("Escape")
        self.waits(lambda: not self.program.has(*sheet), "the sheet to go")
        self.assertTrue((self.session.home / ".npm/_cacache").exists())
        self.go_to(re.compile(self.texts.pattern("action.recover %@")), "Tab")
        self.program.key("Return")
        self.waits(lambda: self.program.has(*sheet), "the sheet")
        self.program.type(self.screen.confirm_word())
        self.program.key("Return")
        self.screen.message("cleanup.success %1$lld %2$@")
        self.assertFalse((self.session.home / ".npm/_cacache").exists())
        left = [path.name for path in (self.session.home / "Library/Developer/Xcode/DerivedData").iterdir()]
        self.assertEqual(len(left), 1)

    def testTheScreensChangeByCtrlAndNumber(self):
        for key, label in (("ctrl+2", "sidebar.cleanup"), ("ctrl+1", "sidebar.home")):
            self.program.key(key)
            tab = self.program.find("page tab", self.texts.of(label))
            self.waits(lambda tab=tab: tab.has_state("SELECTED"), label)
