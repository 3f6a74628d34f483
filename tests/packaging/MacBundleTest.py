"""The macOS bundle, as far as it can be told without a Mac: its description, its texts, its layout."""
import json
import os
import pathlib
import plistlib
import re
import shutil
import struct
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["VESKO_SOURCE"])
BUILD = pathlib.Path(os.environ["VESKO_BUILD"])
MACOS = SOURCE / "packaging/macos"
LANGUAGES = ("en", "pt-BR")
# Leaves behind what it was given, in the place of the tool that only macOS has.
ICONUTIL = '#!/bin/sh\n[ "$1 $2 $3" = "--convert icns --output" ] && cp -r "$5" "$4.given" && ls "$5" >"$4"\n'


def texts(language):
    lines = (MACOS / f"{language}.lproj/InfoPlist.strings").read_text(encoding="utf-8")
    return dict(re.findall(r'^"([^"]+)" = "([^"]+)";$', lines, re.MULTILINE))


def preset(name):
    """The variables that a preset sets, whatever the build folder remembers."""
    presets = json.loads((SOURCE / "CMakePresets.json").read_text(encoding="utf-8"))["configurePresets"]
    return next(each for each in presets if each["name"] == name)["cacheVariables"]


class MacBundle(unittest.TestCase):
    def setUp(self):
        self.scratch = pathlib.Path(tempfile.mkdtemp()).resolve()
        self.addCleanup(shutil.rmtree, self.scratch)

    def configured(self):
        """The build folder of a small project that packs its program as Vesko's is packed."""
        drawer = BUILD / "tools/draw-icon/draw-icon"
        for needed in ("clang-19", "ninja"):
            if not shutil.which(needed):
                self.skipTest(f"{needed} is not installed; on macOS the build itself makes the bundle")
        tool = self.scratch / "bin/iconutil"
        tool.parent.mkdir()
        tool.write_text(ICONUTIL)
        tool.chmod(0o755)
        made = self.scratch / "made"
        ended = subprocess.run(
            ["cmake", "-G", "Ninja", "-S", SOURCE / "tests/packaging/bundle", "-B", made,
             "-DCMAKE_SYSTEM_NAME=Darwin", "-DCMAKE_C_COMPILER=clang-19", "-DCMAKE_C_COMPILER_WORKS=1",
             "-DCMAKE_C_COMPILER_TARGET=arm64-apple-macos13", "-DCMAKE_OSX_ARCHITECTURES=arm64",
             "-DCMAKE_OSX_SYSROOT=/", "-DCMAKE_OSX_DEPLOYMENT_TARGET=13.0", "-DCMAKE_INSTALL_NAME_TOOL=/bin/true",
             f"-DVESKO_SOURCE={SOURCE}", f"-DDRAW_ICON={drawer}"],
            capture_output=True, text=True, check=False,
            env={**os.environ, "PATH": f"{tool.parent}:{os.environ['PATH']}"})
        self.assertEqual(ended.returncode, 0, ended.stdout + ended.stderr)
        return made

    def testTheDescriptionIsFilledIn(self):
        with open(self.configured() / "Vesko.app/Contents/Info.plist", "rb") as file:
            said = plistlib.load(file)
        self.assertEqual(said["CFBundleIdentifier"], "com.vesko")
        self.assertEqual((said["CFBundleName"], said["CFBundleExecutable"]), ("Vesko", "Vesko"))
        self.assertEqual((said["CFBundleShortVersionString"], said["CFBundleVersion"]), ("1.2.3", "1.2.3"))
        self.assertEqual(said["CFBundleIconFile"], "Vesko.icns")
        self.assertEqual(said["LSMinimumSystemVersion"], "13.0")
        self.assertEqual(tuple(said["CFBundleLocalizations"]), LANGUAGES)
        for key, value in said.items():
            self.assertNotIn("${", str(value), key)
            self.assertNotEqual(value, "", key)

    def testTheIconAndTheTextsLieWhereTheSystemLooks(self):
        made = self.configured()
        resources = "Vesko.app/Contents/Resources"
        wanted = [f"{resources}/Vesko.icns", *(f"{resources}/{each}.lproj/InfoPlist.strings" for each in LANGUAGES)]
        ended = subprocess.run(["ninja", "-C", made, *wanted], capture_output=True, text=True, check=False)
        self.assertEqual(ended.returncode, 0, ended.stdout + ended.stderr)
        for language in LANGUAGES:
            self.assertEqual((made / resources / f"{language}.lproj/InfoPlist.strings").read_bytes(),
                             (MACOS / f"{language}.lproj/InfoPlist.strings").read_bytes())
        drawn = {}
        for picture in (made / "macos/Vesko.icns.given").iterdir():
            drawn[picture.name] = struct.unpack(">II", picture.read_bytes()[16:24])
        sizes = {f"icon_{points}x{points}{mark}.png": (points * times, points * times)
                 for points in (16, 32, 128, 256, 512) for mark, times in (("", 1), ("@2x", 2))}
        self.assertEqual(drawn, sizes)

    def testEveryQuestionOfTheSystemIsExplainedInBothLanguages(self):
        with open(MACOS / "Info.plist.in", "rb") as file:
            said = {key: value for key, value in plistlib.load(file).items() if key.endswith("UsageDescription")}
        self.assertEqual(len(said), 3)
        self.assertEqual(texts("en"), said)
        portuguese = texts("pt-BR")
        self.assertEqual(set(portuguese), set(said))
        for key, text in portuguese.items():
            self.assertNotEqual(text, said[key], key)

    def testTheEntitlementsAreTheseTwo(self):
        with open(MACOS / "Vesko.entitlements", "rb") as file:
            self.assertEqual(plistlib.load(file), {"com.apple.security.app-sandbox": False,
                                                   "com.apple.security.cs.allow-jit": True})

    def testThePresetBuildsForTheVersionThatTheDescriptionNames(self):
        self.assertEqual(preset("macos")["CMAKE_OSX_DEPLOYMENT_TARGET"], "13.0")

    def testThePresetHasTheTestsAgainWhereTheProgramWasBuiltWithout(self):
        self.assertIn('cmake --preset "$preset" -DVESKO_TESTS=OFF', (SOURCE / "run").read_text(encoding="utf-8"))
        self.assertEqual(preset("macos")["VESKO_TESTS"], "ON")
