"""What `cmake --install` and the Debian package put where."""
import gzip
import os
import pathlib
import shutil
import struct
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["VESKO_SOURCE"])
BUILD = pathlib.Path(os.environ["VESKO_BUILD"])
LIST = SOURCE / "tests/packaging/installed-files.txt"


def files_below(folder):
    return sorted(str(path.relative_to(folder)) for path in folder.rglob("*") if not path.is_dir())


class Install(unittest.TestCase):
    def setUp(self):
        self.scratch = pathlib.Path(tempfile.mkdtemp()).resolve()
        self.addCleanup(shutil.rmtree, self.scratch)

    def run_well(self, *command, **more):
        ended = subprocess.run([*map(str, command)], capture_output=True, text=True, check=False, **more)
        self.assertEqual(ended.returncode, 0, ended.stdout + ended.stderr)
        return ended.stdout

    def installed(self):
        """The folder below which everything was installed."""
        self.run_well("cmake", "--install", BUILD, "--prefix", "/usr",
                      env={**os.environ, "DESTDIR": str(self.scratch)})
        return self.scratch / "usr"

    def testExactlyTheseFilesAreInstalled(self):
        below = self.installed()
        self.assertEqual(files_below(below), LIST.read_text(encoding="utf-8").split())
        self.assertEqual([entry.name for entry in self.scratch.iterdir()], ["usr"])

    def testEverybodyCanReadThemAndTheOwnerAloneCanWrite(self):
        below = self.installed()
        programs = {"bin/vesko", "bin/vesko-scan", "libexec/vesko/vesko-mdfind"}
        for name in files_below(below):
            mode = (below / name).stat().st_mode & 0o7777
            self.assertEqual(oct(mode), oct(0o755 if name in programs else 0o644), name)

    def testThePicturesHaveTheSizesOfTheirFolders(self):
        pictures = sorted((self.installed() / "share/icons/hicolor").glob("*x*/apps/vesko.png"))
        self.assertEqual(len(pictures), 9)
        for picture in pictures:
            head = picture.read_bytes()[:24]
            self.assertEqual(head[:8], b"\x89PNG\r\n\x1a\n", picture)
            size = struct.unpack(">II", head[16:24])
            self.assertEqual("x".join(map(str, size)), picture.parent.parent.name)

    def testTheCompressedFilesHoldNoDateAndNoName(self):
        packed = sorted((self.installed() / "share").rglob("*.gz"))
        self.assertEqual(len(packed), 5)
        for file in packed:
            data = file.read_bytes()
            self.assertEqual((data[3] & 0x08, data[4:8]), (0, b"\0\0\0\0"), file)
            self.assertTrue(gzip.decompress(data), file)

    def testTheInstalledProgramsWork(self):
        below = self.installed()
        home = self.scratch / "home"
        (home / "app/node_modules/one").mkdir(parents=True)
        (home / "app/node_modules/one/code.js").write_bytes(os.urandom(50_000))
        (home / "app/package.json").write_text("{}")
        table = self.run_well(below / "bin/vesko-scan", "--home", home, "--summary")
        self.assertIn("1 item", table)
        # Where the tool table looks first in an installed program: ../libexec/vesko.
        search = below / "bin" / "../libexec/vesko/vesko-mdfind"
        found = self.run_well(search, "-onlyin", home, "kMDItemFSName == 'app'")
        self.assertEqual(found, f"{home}/app\n")

    def testThePackageHoldsNothingElseAndNobodyObjects(self):
        for needed in ("cpack", "dpkg-shlibdeps", "dpkg-deb", "lintian", "file"):
            if not shutil.which(needed):
                self.skipTest(f"{needed} is not installed (./set-up installs it)")
        self.run_well("cpack", "--config", BUILD / "CPackConfig.cmake", "-G", "DEB", "-B", self.scratch / "made",
                      env={**os.environ, "SOURCE_DATE_EPOCH": "1700000000"})
        package, = (self.scratch / "made").glob("*.deb")
        self.run_well("dpkg-deb", "-x", package, self.scratch / "held")
        self.assertEqual(files_below(self.scratch / "held/usr"), LIST.read_text(encoding="utf-8").split())
        self.assertEqual([entry.name for entry in (self.scratch / "held").iterdir()], ["usr"])
        owners = {line.split()[1] for line in self.run_well("dpkg-deb", "-c", package).splitlines()}
        self.assertEqual(owners, {"root/root"})
        needs = self.run_well("dpkg-deb", "-f", package, "Depends")
        for name in ("libqt6quick6", "libqt6svg6", "libplist3", "qml6-module-qtquick,", "qml6-module-qtqml,"):
            self.assertIn(name, needs + ",")
        words = self.run_well("lintian", "--fail-on", "error,warning", package)
        self.assertEqual(words, "")
