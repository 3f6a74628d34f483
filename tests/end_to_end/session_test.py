"""What every test of the real program begins with."""
import unittest

import driver
import stage


class SessionTest(unittest.TestCase):
    """A test with a display, a session bus and a home of its own, which go at its end."""
    language = "en"
    missing = None  # why it can't run on this machine

    def setUp(self):
        self.addCleanup(stage.clean)
        if self.missing:
            self.skipTest(self.missing)
        self.session = driver.Session(self.language)
        self.addCleanup(self.session.close)
        self.home = self.session.home
        self.texts = self.session.texts
