"""The accessibility tree of every state, by role and name, is the stored one.

After a wanted change `tools/screenshots --trees` writes them anew; the difference is part of the change.
"""
import difflib
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["VESKO_SOURCE"])
STORED = SOURCE / "tests/end_to_end/trees"
# What the Cleanup screen, the shell and the Home screen can show.
STATES = {"access", "awaiting", "preparing", "scanning", "list", "expanded", "search", "search-none", "partial", "failed",
          "success", "confirm", "confirm-ready", "deleting", "home"}


class Trees(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        subprocess.run([str(SOURCE / "tools/screenshots"), "--trees", str(self.folder)], check=True)

    def testEachStateHasItsStoredTreeInBothLanguages(self):
        stored = {path.name: path.read_text(encoding="utf-8") for path in STORED.glob("*.txt")}
        present = {path.name: path.read_text(encoding="utf-8") for path in self.folder.glob("*.txt")}
        for language in ("en", "pt-BR"):
            self.assertLessEqual({f"{state}-{language}.txt" for state in STATES}, set(present))
        self.assertEqual(sorted(stored), sorted(present))
        differences = []
        for name in sorted(stored):
            differences += difflib.unified_diff(stored[name].splitlines(), present[name].splitlines(), f"stored/{name}",
                                                f"now/{name}", lineterm="")
        self.assertEqual(differences, [], "\n".join(differences))

    def testWhatActsHasAName(self):
        for path in self.folder.glob("*.txt"):
            for line in path.read_text(encoding="utf-8").splitlines():
                if line.split()[0] in ("Button", "CheckBox", "EditableText", "PageTab", "ListItem"):
                    self.assertIn('"', line, f"{path.name}: {line}")
