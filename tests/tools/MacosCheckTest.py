"""The compile check for macOS lets right sources pass and catches the mistakes it is there for."""
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

PROGRAM = pathlib.Path(os.environ["VESKO_SOURCE"]) / "tools/macos-check/run"
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
