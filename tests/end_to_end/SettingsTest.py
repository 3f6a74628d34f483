"""The settings window of the real program, by keyboard and through the accessibility tree, and what reaches the disk."""
import base64
import json
import subprocess

import driver
import stage
from session_test import SessionTest

stage.enter()

KEY = "vesko.notificationPreferences"
DEFAULTS = ('{"lowSpaceEnabled":true,"lowSpaceThresholdBytes":10000000000,"largeOpportunityEnabled":true,'
            '"largeOpportunityDeltaBytes":5000000000,"scanCompletedEnabled":false}')


class Settings(SessionTest):
    def setUp(self):
        super().setUp()
        self.file = self.session.home / ".config/vesko/defaults.json"

    def begin(self):
        self.program = self.session.start()
        self.program.focus()

    def open(self):
        """Open the settings by their key and give their window the keyboard."""
        self.program.focus()
        self.program.key("ctrl+comma")
        self.program.find("page tab", self.texts.of("settings.tab.general"))
        found = driver.until(self.settings_window, 10, "the settings window")
        subprocess.run(["xdotool", "windowfocus", "--sync", found], check=True, timeout=10)
        driver.until(lambda: self.focused() == self.texts.of("settings.tab.general"), 10, "the keyboard in it")

    def settings_window(self):
        shown = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(self.program.child.pid)],
                               capture_output=True, text=True, check=False).stdout.split()
        return next((window for window in shown if window != self.program.window), None)

    def focused(self):
        node = self.program.focused()
        return node.name if node else ""

    def go_to(self, name):
        for _ in range(12):
            if self.focused() == name:
                return
            before = self.focused()
            self.program.key("Tab")
            driver.until(lambda before=before: self.focused() != before, 5, "the keyboard to go on")
        self.fail(f"Tab does not lead to {name}\n{self.program.tree()}")

    def kept(self):
        """The bytes that stand for the preferences in the file, as text; None while there are none."""
        try:
            members = json.loads(self.file.read_text(encoding="utf-8"))
        except (OSError, ValueError):
            return None
        return base64.b64decode(members[KEY]["data"]).decode() if KEY in members else None

    def wait_for(self, wanted):
        try:
            driver.until(lambda: self.kept() == wanted, 10, "the file")
        except driver.NotFound:
            self.assertEqual(self.kept(), wanted)

    def slider(self):
        return self.program.find("slider", self.texts.of("alert.preferences.lowSpace.slider"))

    def value(self):
        return self.slider().accessible.get_value_iface().get_current_value()

    def testWhatTheKeyboardSetsReachesTheFileAtOnce(self):
        self.begin()
        self.open()
        self.go_to(self.texts.of("alert.preferences.lowSpace.slider"))
        self.program.key("Right", "Right", "Right")
        self.wait_for(DEFAULTS.replace('"lowSpaceThresholdBytes":10', '"lowSpaceThresholdBytes":13'))
        self.program.find(None, self.texts.of("alert.preferences.lowSpace.threshold %lld", 13))
        self.go_to(self.texts.of("alert.preferences.scanCompleted.toggle"))
        self.program.key("space")
        wanted = (DEFAULTS.replace('"lowSpaceThresholdBytes":10', '"lowSpaceThresholdBytes":13')
                  .replace('"scanCompletedEnabled":false', '"scanCompletedEnabled":true'))
        self.wait_for(wanted)
        box = self.program.find("check box", self.texts.of("alert.preferences.lowSpace.toggle"))
        box.toggle()
        self.program.gone("slider", self.texts.of("alert.preferences.lowSpace.slider"))
        self.wait_for(wanted.replace('"lowSpaceEnabled":true', '"lowSpaceEnabled":false'))
        # Escape closes the settings, and the program goes on.
        self.program.key("Escape")
        self.program.gone("page tab", self.texts.of("settings.tab.general"))
        self.program.find("page tab", self.texts.of("sidebar.home"))
        # It is the same at the next start.
        self.program.close_window()
        self.assertTrue(self.program.ended(5))
        self.begin()
        self.open()
        driver.until(lambda: not self.program.find(
            "check box", self.texts.of("alert.preferences.lowSpace.toggle")).has_state("CHECKED"), 5, "the switch")

    def testAssistiveToolsSetTheSlider(self):
        self.begin()
        self.open()
        self.assertEqual(self.value(), 10)
        values = self.slider().accessible.get_value_iface()
        self.assertEqual((values.get_minimum_value(), values.get_maximum_value()), (5, 50))
        values.set_current_value(42)
        self.wait_for(DEFAULTS.replace('"lowSpaceThresholdBytes":10', '"lowSpaceThresholdBytes":42'))
        driver.until(lambda: self.value() == 42, 5, "the slider")

    def testADamagedFileShowsTheDefaultsAndIsWrittenAnewByTheNextChange(self):
        self.file.parent.mkdir(parents=True)
        self.file.write_bytes(b'{"vesko.notificationPreferences": {"data": "\xff\x00')
        self.begin()
        self.open()
        self.assertEqual(self.value(), 10)
        self.go_to(self.texts.of("alert.preferences.lowSpace.slider"))
        self.program.key("Left")
        self.wait_for(DEFAULTS.replace('"lowSpaceThresholdBytes":10', '"lowSpaceThresholdBytes":9'))

    def testPreferencesOfAnotherFormShowTheDefaultsAndStay(self):
        other = base64.b64encode(b'{"lowSpaceEnabled":false}').decode()
        for value in ({"data": other}, {"data": "no Base64!"}, "text", 7, None, [[]], {"data": {}}):
            self.file.parent.mkdir(parents=True, exist_ok=True)
            self.file.write_text(json.dumps({KEY: value}), encoding="utf-8")
            self.begin()
            self.open()
            self.assertEqual(self.value(), 10, value)
            self.assertTrue(self.program.find(
                "check box", self.texts.of("alert.preferences.lowSpace.toggle")).has_state("CHECKED"), value)
            self.program.key("Escape")
            self.program.gone("page tab", self.texts.of("settings.tab.general"))
            self.assertEqual(json.loads(self.file.read_text(encoding="utf-8"))[KEY], value)
            self.program.stop()

    def testAFileThatCannotBeReadShowsTheDefaultsAndAWindowThatAnswers(self):
        self.file.parent.mkdir(parents=True)
        self.file.write_text("{}", encoding="utf-8")
        self.file.chmod(0)
        self.begin()
        self.open()
        self.assertEqual(self.value(), 10)
        self.slider().accessible.get_value_iface().set_current_value(20)
        driver.until(lambda: self.value() == 20, 5, "the slider")
        self.program.close_window()
        self.assertTrue(self.program.ended(5))

    def testTheMainWindowComesBackAsItWasLeft(self):
        def size():
            shown = subprocess.run(["xdotool", "getwindowgeometry", "--shell", self.program.window],
                                   capture_output=True, text=True, check=True).stdout
            values = dict(line.split("=") for line in shown.split())
            return int(values["WIDTH"]), int(values["HEIGHT"])

        self.begin()
        subprocess.run(["xdotool", "windowsize", "--sync", self.program.window, "1013", "707"], check=True, timeout=10)
        driver.until(lambda: size() == (1013, 707), 5, "the window's size")
        # Closed while the change still waits to be kept.
        self.program.close_window()
        self.assertTrue(self.program.ended(5))
        members = json.loads(self.file.read_text(encoding="utf-8"))
        self.assertEqual((members["vesko.window.width"], members["vesko.window.height"]), (1013, 707))
        self.begin()
        driver.until(lambda: size() == (1013, 707), 5, "the size from before")
        self.program.stop()
        # What cannot be is passed over.
        members.update({"vesko.window.width": 12, "vesko.window.x": 100_000, "vesko.window.sidebarWidth": "wide"})
        self.file.write_text(json.dumps(members), encoding="utf-8")
        self.begin()
        driver.until(lambda: size() == (1100, 760), 5, "the usual size")

    def testTheMenuQuitsAndItsKeyToo(self):
        for act in (self.quit_by_menu, lambda: self.program.key("ctrl+q")):
            self.begin()
            act()
            self.assertTrue(self.program.ended(5))
            self.assertEqual(self.program.child.returncode, 0)

    def quit_by_menu(self):
        self.program.find("push button", self.texts.of("sidebar.menu")).press()
        self.program.find("menu item", self.texts.of("menu.quit")).press()
