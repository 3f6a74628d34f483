"""The sample home and the stand-ins for the tools."""
import hashlib
import json
import os
import pathlib
import plistlib
import shutil
import subprocess
import tempfile
import unittest

TOOLS = pathlib.Path(os.environ["VESKO_SOURCE"]) / "tools"
NOW = 1_750_000_000
DAY = 86400


def make(folder, *options):
    return subprocess.run([str(TOOLS / "sample-home"), "--small", "--now", str(NOW), *options, str(folder)],
                          capture_output=True, text=True, check=False)


def picture(root):
    """Every path below `root` with its kind, size and dates, as one comparable value."""
    lines = []
    for folder, folders, files in os.walk(os.fsencode(root)):
        for name in sorted(folders + files):
            path = os.path.join(folder, name)
            facts = os.lstat(path)
            relative = os.path.relpath(path, os.fsencode(root))
            is_file = os.path.isfile(path)
            size = facts.st_size if is_file else 0
            date = int(facts.st_mtime) if is_file and b".made-by" not in name else 0
            lines.append((relative, facts.st_mode, size, date))
    return hashlib.sha256(repr(sorted(lines)).encode()).hexdigest()


class SampleHome(unittest.TestCase):
    def setUp(self):
        self.scratch = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.scratch)
        self.home = self.scratch / "home"

    def testTwoRunsMakeTheSameHome(self):
        self.assertEqual(make(self.home).returncode, 0)
        self.assertEqual(make(self.scratch / "other").returncode, 0)
        # The state of the stand-ins names the home's own path.
        shutil.rmtree(self.home / ".stand-ins")
        shutil.rmtree(self.scratch / "other" / ".stand-ins")
        self.assertEqual(picture(self.home), picture(self.scratch / "other"))

    def testEveryRowHasItsPlace(self):
        make(self.home)
        places = [
            ".npm/_cacache", "Library/pnpm/store", ".pnpm-store", "Library/Caches/Yarn", ".cargo/registry", ".cargo/git",
            "Library/Caches/go-build", "go/pkg/mod", ".gradle/caches", "Library/Caches/pip", ".cache/pypoetry",
            "Library/Caches/pypoetry", ".cache/uv", ".local/share/uv/cache", ".bun/install/cache", ".nuget/packages",
            ".rbenv/src", "Library/Caches/CocoaPods", "Library/Developer/Xcode/DerivedData",
            "Library/Developer/Xcode/Archives", "Library/Developer/Xcode/iOS DeviceSupport", "Downloads",
            "Library/Logs", ".Trash", "Library/Developer/CoreSimulator/Devices", "Projects/shop/node_modules",
            "Projects/travel-ios/Pods", "Projects/raytracer/target", "Projects/recipes-android/build",
            "Projects/landing-page/.next", "Projects/design-system/dist", "Projects/handbook/out",
            "Projects/intranet/build", "Library/Caches/com.example.player",
            "Library/Application Support/com.example.videocutter", "Compiler 15.4.xip", "Desktop/Office Suite 16.89.pkg",
            "Downloads/Printer Driver.pkg", "Applications/Paint Box.app", "Library/Caches/org.swift.swiftpm",
            "Library/Caches/Homebrew", "Library/Application Support/MobileSync/Backup", ".stand-ins/docker/volumes",
            ".m2/repository", "Library/Caches/JetBrains",
            "Library/Developer/Xcode/DerivedData/Weather-fkwqpzbmtrnvaxcd/Previews",
            "Library/Developer/CoreSimulator/Profiles/Runtimes",
        ]
        for place in places:
            used = int(subprocess.run(["du", "-sk", str(self.home / place)], capture_output=True, text=True,
                                      check=True).stdout.split()[0])
            self.assertGreater(used, 4, place)

    def testSizesAreAllocatedOnTheDisk(self):
        make(self.home)
        facts = (self.home / "Downloads/conference-recording.mov").stat()
        self.assertEqual(facts.st_size, 80_000_000)
        self.assertGreaterEqual(facts.st_blocks * 512, facts.st_size)

    def testDatesAreThoseTold(self):
        make(self.home)
        lecture = (self.home / "Downloads/lecture-07.mp4").stat()
        self.assertEqual((NOW - lecture.st_mtime) / DAY, 150)
        self.assertEqual((NOW - lecture.st_atime) / DAY, 1)
        self.assertEqual((NOW - (self.home / "Downloads/dataset-export").stat().st_mtime) / DAY, 400)
        self.assertEqual((NOW - (self.home / "Library/Logs/today.log").stat().st_mtime) / DAY, 0)

    def testAnApplicationIsAsOldAsTheLastRunOfItsProgram(self):
        make(self.home)
        for program, days in (("Paint Box.app/Contents/MacOS/Paint Box", 310), ("Notes.app/Contents/MacOS/Notes", 1),
                              ("Sculptor 1.8.AppImage", 200), ("Messenger 4.2.AppImage", 2)):
            facts = (self.home / "Applications" / program).stat()
            self.assertEqual((NOW - facts.st_atime) / DAY, days, program)
            self.assertEqual(facts.st_mode & 0o777, 0o755, program)

    def testInstalledApplicationsTellTheirIdentifiersInBothForms(self):
        make(self.home)
        heads = set()
        for name, identifier in (("Notes", "com.example.notes"), ("Calendar", "com.example.calendar")):
            content = (self.home / f"Applications/{name}.app/Contents/Info.plist").read_bytes()
            self.assertEqual(plistlib.loads(content)["CFBundleIdentifier"], identifier)
            self.assertTrue((self.home / "Library/Application Support" / identifier).is_dir())
            heads.add(content[:6])
        self.assertEqual(heads, {b"<?xml ", b"bplist"})

    def testWhatADiscoveryOffersIsLargeEnoughInASmallHomeToo(self):
        make(self.home)
        for place in ("Library/Caches/com.example.player", "Library/Caches/Chat Desktop",
                      "Library/Application Support/com.example.videocutter"):
            used = sum(entry.stat().st_blocks * 512 for entry in (self.home / place).iterdir())
            self.assertGreaterEqual(used, 10 * 1024 * 1024, place)

    def testOneNameIsNoUtf8(self):
        make(self.home)
        names = os.listdir(os.fsencode(self.home / ".Trash"))
        if b"Relat\xf3rio antigo.doc" not in names:
            self.skipTest("this file system takes UTF-8 names only")
        with self.assertRaises(UnicodeDecodeError):
            b"Relat\xf3rio antigo.doc".decode()

    def testAFolderThatItDidNotMakeIsRefusedAndStays(self):
        self.home.mkdir()
        (self.home / "diary.txt").write_text("mine")
        result = make(self.home)
        self.assertEqual(result.returncode, 1)
        self.assertIn("not empty", result.stderr)
        self.assertEqual(os.listdir(self.home), ["diary.txt"])

    def testALinkInThePlaceOfTheFolderIsRefused(self):
        (self.scratch / "target").mkdir()
        self.home.symlink_to(self.scratch / "target")
        self.assertEqual(make(self.home).returncode, 1)
        self.assertEqual(os.listdir(self.scratch / "target"), [])

    def testASecondRunGivesBackWhatWasDeletedAndKeepsTheRest(self):
        make(self.home)
        before = picture(self.home)
        shutil.rmtree(self.home / ".npm")
        (self.home / "Downloads/invoice-march.pdf").unlink()
        self.assertNotEqual(picture(self.home), before)
        self.assertEqual(make(self.home).returncode, 0)
        self.assertEqual(picture(self.home), before)


class StandIns(unittest.TestCase):
    def setUp(self):
        self.scratch = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.scratch)
        self.home = self.scratch / "home"
        make(self.home)

    def run_inside(self, script):
        return subprocess.run([str(TOOLS / "with-stand-ins"), str(self.home), "sh", "-c", script],
                              capture_output=True, text=True, check=False)

    def needs_namespaces(self):
        if "without the stand-ins" in self.run_inside("true").stderr:
            self.skipTest("this machine refuses mount namespaces")

    def testTheToolsStandAtTheirOwnPathsForThatProcessAlone(self):
        self.needs_namespaces()
        result = self.run_inside(
            "/usr/local/bin/docker info && /usr/bin/xcrun simctl list devices -j && /usr/local/bin/brew --cache")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("Server Version", result.stdout)
        self.assertIn(str(self.home / "Library/Caches/Homebrew"), result.stdout)
        outside = pathlib.Path("/usr/bin/xcrun")
        self.assertFalse(outside.exists() and "Stands in" in outside.read_text(errors="replace"))

    def testHomeIsTheGivenOneAndTheSystemIsReadOnly(self):
        self.needs_namespaces()
        result = self.run_inside('echo "$HOME"; id -u; touch /usr/bin/planted')
        self.assertEqual(result.stdout.split(), [str(self.home), str(os.getuid())])
        self.assertNotEqual(result.returncode, 0)
        self.assertFalse(os.path.exists("/usr/bin/planted"))

    def testTheStatusOfTheCommandComesThrough(self):
        self.assertEqual(self.run_inside("exit 7").returncode, 7)

    def stand_in(self, tool, *words):
        path = next((TOOLS / "stand-ins").rglob(tool))
        environment = {**os.environ, "HOME": str(self.home)}
        environment.pop("VESKO_STAND_INS", None)
        return subprocess.run([str(path), *words], capture_output=True, text=True, check=False, env=environment)

    def testTheListingsOfTheToolsAgreeWithTheFolders(self):
        devices = json.loads(self.stand_in("xcrun", "simctl", "list", "devices", "-j").stdout)["devices"]
        folders = [pathlib.Path(device["dataPath"]).parent for listed in devices.values() for device in listed]
        known = [pathlib.Path(runtime["bundlePath"]) for runtime in json.loads(
            self.stand_in("xcrun", "simctl", "list", "runtimes", "-j").stdout)["runtimes"] if "bundlePath" in runtime]
        simulators = self.home / "Library/Developer/CoreSimulator"
        self.assertEqual(sorted(folders), sorted((simulators / "Devices").iterdir()))
        left_over = set((simulators / "Profiles/Runtimes").iterdir()) - set(known)
        self.assertEqual({each.name for each in left_over}, {"iOS 15.0.simruntime", "iOS 14.5.simruntime"})
        self.assertTrue(all(each.is_dir() for each in known))

        volumes = self.stand_in("docker", "volume", "ls", "-q").stdout.split("\n")[:-1]
        mount_points = [pathlib.Path(self.stand_in("docker", "volume", "inspect", name, "--format", "{{.Mountpoint}}")
                                     .stdout.rstrip("\n")) for name in volumes]
        self.assertEqual(sorted(mount_points),
                         sorted((self.home / ".stand-ins/docker/volumes").glob("*/_data")))
        self.assertTrue(pathlib.Path(self.stand_in("brew", "--cache").stdout.strip()).is_dir())

    def testWhatDockerDeletesIsGoneFromItsListing(self):
        listing = ("image", "ls", "--format", "{{.ID}}  {{.Repository}}:{{.Tag}}  {{.Size}}")
        self.assertIn("a6bd71f48f68  node:20  1.1GB\n", self.stand_in("docker", *listing).stdout)
        self.assertEqual(self.stand_in("docker", "rmi", "-f", "a6bd71f48f68").returncode, 0)
        self.assertNotIn("a6bd71f48f68", self.stand_in("docker", *listing).stdout)
        self.assertEqual(self.stand_in("docker", "rmi", "-f", "a6bd71f48f68").returncode, 1)

    def testAVolumeGoesWithItsFolder(self):
        folder = pathlib.Path(self.stand_in("docker", "volume", "inspect", "weather_redis", "--format", "x").stdout.strip())
        self.assertTrue(folder.is_dir())
        self.assertEqual(self.stand_in("docker", "volume", "rm", "-f", "weather_redis").returncode, 0)
        self.assertFalse(folder.exists())

    def testASimulatorGoesWithItsFolder(self):
        devices = json.loads(self.stand_in("xcrun", "simctl", "list", "devices", "-j").stdout)["devices"]
        device = devices["com.apple.CoreSimulator.SimRuntime.iOS-15-0"][0]
        self.assertFalse(device["isAvailable"])
        self.assertEqual(self.stand_in("xcrun", "simctl", "delete", device["udid"]).returncode, 0)
        self.assertFalse(pathlib.Path(device["dataPath"]).parent.exists())
        self.assertNotEqual(self.stand_in("xcrun", "simctl", "delete", device["udid"]).returncode, 0)

    def testEveryCallIsRecorded(self):
        self.stand_in("docker", "info")
        self.stand_in("brew", "--cache")
        calls = [json.loads(line) for line in (self.home / ".stand-ins/calls.log").read_text().splitlines()]
        self.assertEqual(calls, [["docker", "info"], ["brew", "--cache"]])

    def testWithoutStateTheToolsFailAsTheRealOnesDo(self):
        shutil.rmtree(self.home / ".stand-ins")
        for tool, words in (("docker", ["info"]), ("xcrun", ["simctl", "list", "devices", "-j"]), ("brew", ["--cache"])):
            self.assertNotEqual(self.stand_in(tool, *words).returncode, 0, tool)
