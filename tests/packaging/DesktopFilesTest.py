"""What a desktop reads about Vesko: the entry in its menu and the description in its software catalog."""
import configparser
import json
import os
import pathlib
import re
import shutil
import subprocess
import unittest
import xml.etree.ElementTree

SOURCE = pathlib.Path(os.environ["VESKO_SOURCE"])
LINUX = SOURCE / "packaging/linux"
ENTRY = LINUX / "vesko.desktop"
METADATA = LINUX / "org.vesko.Vesko.metainfo.xml"
LANGUAGE = "{http://www.w3.org/XML/1998/namespace}lang"
VERSION = re.search(r"project\(vesko VERSION (\S+)", (SOURCE / "CMakeLists.txt").read_text()).group(1)


def tagline(language):
    texts = json.loads((SOURCE / "resources/Localizable.xcstrings").read_text(encoding="utf-8"))["strings"]
    return texts["app.tagline"]["localizations"][language]["stringUnit"]["value"].removesuffix(".")


def said_in(file, pattern):
    """What the pattern's group is in a source."""
    return re.search(pattern, (SOURCE / file).read_text(encoding="utf-8")).group(1)


class DesktopFiles(unittest.TestCase):
    def run_clean(self, *command):
        """The command finds nothing to say against a file."""
        if not shutil.which(command[0]):
            self.skipTest(f"{command[0]} is not installed (./set-up installs it)")
        ended = subprocess.run([*map(str, command)], capture_output=True, text=True, check=False)
        self.assertEqual(ended.returncode, 0, ended.stdout + ended.stderr)
        return ended.stdout + ended.stderr

    def entry(self):
        parser = configparser.ConfigParser(interpolation=None)
        parser.optionxform = str
        parser.read(ENTRY, encoding="utf-8")
        return parser["Desktop Entry"]

    def metadata(self):
        return xml.etree.ElementTree.parse(METADATA).getroot()

    def testTheEntryIsValid(self):
        self.assertEqual(self.run_clean("desktop-file-validate", ENTRY), "")

    def testTheMetadataIsValid(self):
        self.assertNotRegex(self.run_clean("appstreamcli", "validate", "--no-net", METADATA), "[EWI]: ")

    def testTheEntrySpeaksBothLanguages(self):
        entry = self.entry()
        self.assertEqual(entry["Name"], "Vesko")
        for key in ("GenericName", "Comment", "Keywords"):
            portuguese = entry[f"{key}[pt_BR]"]
            self.assertEqual(entry[f"{key}[pt]"], portuguese, key)
            self.assertNotEqual(entry[key], portuguese, key)
        self.assertEqual((entry["Comment"], entry["Comment[pt_BR]"]), (tagline("en"), tagline("pt-BR")))

    def testTheMetadataSpeaksBothLanguages(self):
        root = self.metadata()
        summaries = {each.get(LANGUAGE, "en"): each.text for each in root.iter("summary")}
        self.assertEqual(summaries, {"en": tagline("en"), "pt_BR": tagline("pt-BR")})
        for tag in ("p", "li"):
            languages = [each.get(LANGUAGE, "en") for each in root.find("description").iter(tag)]
            self.assertTrue(languages)
            self.assertEqual(languages, ["en", "pt_BR"] * (len(languages) // 2), tag)

    def testTheWindowSaysWhichEntryIsIts(self):
        name = said_in("src/app/main.cpp", r'setDesktopFileName\(QStringLiteral\("([^"]+)"\)\)')
        self.assertEqual(ENTRY.name, f"{name}.desktop")
        entry = self.entry()
        self.assertEqual((entry["Exec"], entry["Icon"]), ("vesko", "vesko"))
        self.assertEqual(self.metadata().find("launchable").text, ENTRY.name)

    def testTheMetadataBearsTheNameOnTheBus(self):
        name = said_in("src/platform/qt/SingleInstance.cpp", r'QString name = QStringLiteral\("([^"]+)"\)')
        root = self.metadata()
        self.assertEqual(root.find("id").text, name)
        self.assertEqual(root.find("provides/dbus").text, name)
        self.assertEqual(METADATA.name, f"{name}.metainfo.xml")

    def testTheNewestReleaseIsThisVersion(self):
        self.assertEqual(self.metadata().find("releases/release").get("version"), VERSION)
        first = (SOURCE / "packaging/debian/changelog").read_text(encoding="utf-8").splitlines()[0]
        self.assertTrue(first.startswith(f"vesko ({VERSION}) "), first)

    def testTheLicenceIsTheRepositorys(self):
        words = (SOURCE / "LICENSE").read_text(encoding="utf-8").split()
        self.assertEqual(self.metadata().find("project_license").text, words[0])
        paragraph = (SOURCE / "packaging/debian/copyright").read_text(encoding="utf-8")
        packaged = paragraph.split("License: Expat\n")[1].replace("\n .\n", "\n").split()
        self.assertEqual(packaged, words[words.index("Permission"):])
