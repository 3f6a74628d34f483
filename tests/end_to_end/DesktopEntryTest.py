"""A desktop tells by the window's class which entry of its menu a window belongs to."""
import os
import pathlib
import re
import subprocess

import stage

ENTRY = "VESKO_ENTRY_CLASS"
if ENTRY not in os.environ:
    text = (pathlib.Path(os.environ["VESKO_SOURCE"]) / "packaging/linux/vesko.desktop").read_text(encoding="utf-8")
    os.environ[ENTRY] = re.search("^StartupWMClass=(.*)$", text, re.MULTILINE).group(1)
stage.enter()

import screens
from session_test import SessionTest


class DesktopEntry(SessionTest):
    def testTheWindowsClassIsTheEntrys(self):
        screens.make_sample_home(self.session)
        program = self.session.start()
        said = subprocess.run(["xprop", "-id", program.window, "WM_CLASS"], capture_output=True, text=True,
                              check=True).stdout
        instance = re.search('= "([^"]*)"', said).group(1)
        self.assertEqual(instance, os.environ[ENTRY], said)
