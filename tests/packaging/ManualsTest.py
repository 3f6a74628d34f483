"""The manuals can be read, and say what the programs take."""
import os
import pathlib
import re
import shutil
import subprocess
import unittest

SOURCE = pathlib.Path(os.environ["VESKO_SOURCE"])
BUILD = pathlib.Path(os.environ["VESKO_BUILD"])
# As they are installed: with the places of this build in them.
PAGES = BUILD / "packaging/linux/plain"


class Manuals(unittest.TestCase):
    def said(self, *command):
        if not shutil.which(command[0]):
            self.skipTest(f"{command[0]} is not installed (./set-up installs it)")
        return subprocess.run([*map(str, command)], capture_output=True, text=True, check=False,
                              env={**os.environ, "LC_ALL": "C.UTF-8", "MANWIDTH": "80"})

    def pages(self):
        found = sorted(PAGES.rglob("*.1"))
        self.assertEqual([str(page.relative_to(PAGES)) for page in found],
                         ["pt_BR/vesko.1", "vesko-mdfind.1", "vesko-scan.1", "vesko.1"])
        return found

    def testBothReadersUnderstandEveryPage(self):
        for page in self.pages():
            lint = self.said("mandoc", "-T", "lint", "-W", "warning", page)
            self.assertEqual((lint.returncode, lint.stdout, lint.stderr), (0, "", ""), page)
            troff = self.said("man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", page)
            self.assertEqual((troff.returncode, troff.stderr), (0, ""), page)

    def testEveryPageHasAnEntryInTheIndex(self):
        for page in self.pages():
            index = self.said("lexgrog", page)
            self.assertEqual(index.returncode, 0, index.stdout)
            self.assertRegex(index.stdout, f'"{page.stem} - .+"')

    def testNoPlaceholderIsLeft(self):
        for page in self.pages():
            self.assertNotRegex(page.read_text(encoding="utf-8"), "@[A-Z_]+@")

    def testThePageNamesEveryOptionAndNoOther(self):
        text = re.sub(r".\x08", "", self.said("mandoc", "-T", "utf8", PAGES / "vesko-scan.1").stdout)
        help_text = subprocess.run([BUILD / "src/app/vesko-scan", "--help"], capture_output=True, text=True,
                                   check=True).stdout
        options = set(re.findall(r"--[a-z]+", help_text))
        self.assertIn("--home", options)
        self.assertEqual(set(re.findall(r"--[a-z]+", text)), options)

    def testTheQueriesOfThePageAreUnderstood(self):
        text = re.sub(r".\x08", "", self.said("mandoc", "-O", "width=200", "-T", "utf8", PAGES / "vesko-mdfind.1").stdout)
        queries = re.findall(r"^ *(kMDItem.*)$", text, re.MULTILINE)
        self.assertEqual(len(queries), 3)
        for query in queries:
            query = query.replace("'name'", "'some'").replace("(seconds)", "(12)")
            ended = subprocess.run([BUILD / "src/app/vesko-mdfind", "-onlyin", PAGES.resolve(), query],
                                   capture_output=True, text=True, check=False)
            self.assertEqual((ended.returncode, ended.stderr), (0, ""), query)
