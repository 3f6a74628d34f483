"""The compile check for macOS lets right sources pass and catches the mistakes it is there for."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["VESKO_SOURCE"])
PROGRAM = SOURCE / "tools/macos-check/run"
TYPES = SOURCE / "tests/platform/macos/DeclaredTypes.cpp"
WATCHING = """#include <CoreServices/CoreServices.h>
static void changed(ConstFSEventStreamRef, void*, size_t, void*, const FSEventStreamEventFlags*,
                    const FSEventStreamEventId*) {}
FSEventStreamRef watch(CFArrayRef paths) {
    FSEventStreamContext context{0, nullptr, nullptr, nullptr, nullptr};
    return FSEventStreamCreate(kCFAllocatorDefault, &changed, &context, paths, kFSEventStreamEventIdSinceNow, 2.0,
                               kFSEventStreamCreateFlagWatchRoot);
}
"""


class MacosCheck(unittest.TestCase):
    def setUp(self):
        if not shutil.which("clang++-19"):
            self.skipTest("clang 19 is not installed; on macOS the build itself is the check")
        self.scratch = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.scratch)

    def check(self, text, name="Adapter.cpp"):
        source = self.scratch / name
        source.write_text(text)
        return subprocess.run([str(PROGRAM), str(source)], capture_output=True, text=True, check=False)

    def assertCaught(self, text, because, name="Adapter.cpp"):
        result = self.check(text, name)
        self.assertEqual(result.returncode, 1, result.stdout)
        self.assertIn(because, result.stderr)

    def testARightSourcePasses(self):
        result = self.check(WATCHING)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("1 of 1 compile", result.stdout)

    def testARightObjectiveSourcePasses(self):
        result = self.check("#import <AppKit/AppKit.h>\nvoid show(NSArray<NSURL*>* urls) "
                            "{ [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:urls]; }\n", "Show.mm")
        self.assertEqual(result.returncode, 0, result.stderr)

    def testAWrongArgumentIsCaught(self):
        self.assertCaught(WATCHING.replace("&context, paths", "paths, &context"), "no matching function")

    def testAnUnknownMethodIsCaught(self):
        self.assertCaught("#import <AppKit/AppKit.h>\nvoid show() { [NSWorkspace.sharedWorkspace revealEverything]; }\n",
                          "revealEverything", "Show.mm")

    def testACallThatLinuxAloneHasIsCaught(self):
        self.assertCaught("#include <fcntl.h>\nint reserve(int file) { return fallocate(file, 0, 0, 1); }\n", "poisoned")
        self.assertCaught("#include <fcntl.h>\nint look(const char* p) { return open(p, O_PATH); }\n", "poisoned")

    def testAHeaderThatLinuxAloneHasIsCaught(self):
        self.assertCaught("#include <sys/inotify.h>\n", "not there on macOS")
        self.assertCaught("#include <linux/fs.h>\n", "not found")

    def testTheLinuxNamesOfAFilesDatesAreCaught(self):
        self.assertCaught("#include <sys/stat.h>\nlong when(const struct stat& s) { return s.st_mtim.tv_sec; }\n", "st_mtim")
        right = self.check("#include <sys/stat.h>\nlong when(const struct stat& s) { return s.st_mtimespec.tv_sec; }\n")
        self.assertEqual(right.returncode, 0, right.stderr)

    def testWhatItsStandardLibraryLacksIsCaught(self):
        self.assertCaught("#include <thread>\nvoid wait() { std::jthread worker([] {}); }\n", "jthread")

    def testAWarningIsAFailure(self):
        self.assertCaught("int zero() { int unused = 1; return 0; }\n", "unused variable")

    def testEveryAdapterCompilesAndNeedsTheCallsThatAreListed(self):
        adapters = sorted((SOURCE / "src/platform/macos").glob("*.cpp")) + sorted((SOURCE / "src/platform/macos").glob("*.mm"))
        result = subprocess.run([str(PROGRAM), *map(str, adapters), str(TYPES)], capture_output=True, text=True,
                                check=False)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertIn(f"{len(adapters) + 1} of {len(adapters) + 1} compile", result.stdout)
        self.assertIn("OK   the adapters need the calls that symbols lists", result.stdout)

    def testACallThatIsNotListedIsCaught(self):
        copy = self.scratch / "tree"
        shutil.copytree(SOURCE / "tools/macos-check", copy / "tools/macos-check")
        shutil.copytree(SOURCE / "src/platform", copy / "src/platform")
        shutil.copytree(SOURCE / "src/probes", copy / "src/probes")
        source = copy / "src/platform/macos/ToolStandIns.cpp"
        source.write_text(source.read_text() + "#include <unistd.h>\nint planted() { return ::getppid(); }\n")
        result = subprocess.run([str(copy / "tools/macos-check/run"), str(source)], capture_output=True, text=True,
                                check=False)
        self.assertEqual(result.returncode, 1, result.stdout + result.stderr)
        self.assertIn("> ToolStandIns.cpp: getppid", result.stdout)

    def testEveryCallThatWeDeclareIsComparedWithTheRealOneOnAMac(self):
        listed = (SOURCE / "tools/macos-check/symbols").read_text()
        needed = {call for line in listed.splitlines() for call in line.split(":")[1].split()}
        declared = set()
        check = SOURCE / "tools/macos-check"
        for header in [*(check / "declarations").rglob("*.h"), *(check / "additions").rglob("*.h")]:
            declared |= set(re.findall(r"[A-Za-z_]\w*", header.read_text()))
        compared = set(re.findall(r"decltype\((\w+)\)", TYPES.read_text()))
        ours = needed & declared
        self.assertIn("FSEventStreamCreate", ours)
        self.assertEqual(ours - compared, set(), "these calls are missing in DeclaredTypes.cpp")

    def testAWrongDeclarationIsCaught(self):
        copy = self.scratch / "tree"
        shutil.copytree(SOURCE / "tools/macos-check", copy / "tools/macos-check")
        (copy / "src").mkdir()
        header = copy / "tools/macos-check/declarations/CoreServices/CoreServices.h"
        right = "Boolean FSEventStreamStart("
        self.assertIn(right, header.read_text())
        header.write_text(header.read_text().replace(right, "void FSEventStreamStart("))
        result = subprocess.run([str(copy / "tools/macos-check/run"), str(TYPES)], capture_output=True, text=True,
                                check=False)
        self.assertEqual(result.returncode, 1, result.stdout)
        self.assertIn("FSEventStreamStart", result.stderr)
