"""set-up, run and test as a person or a machine starts them."""
import os
import pathlib
import shutil
import stat
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["VESKO_SOURCE"])


class SetUp(unittest.TestCase):
    def setUp(self):
        if not shutil.which("dpkg-query"):
            self.skipTest("this system has no Debian packages")
        self.scratch = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.scratch)
        self.record = self.scratch / "calls"

    def program(self, name, script):
        path = self.scratch / name
        path.write_text(f"#!/bin/sh\n{script}\n")
        path.chmod(path.stat().st_mode | stat.S_IXUSR)

    def set_up(self, *arguments):
        """Run set-up with the programs of the scratch folder before the system's."""
        return subprocess.run([str(SOURCE / "set-up"), *arguments], stdin=subprocess.DEVNULL, capture_output=True,
                              text=True, check=False, timeout=60,
                              env={**os.environ, "PATH": f"{self.scratch}:{os.environ['PATH']}"})

    def everything_but(self, *missing):
        names = subprocess.run([str(SOURCE / "set-up"), "--list"], capture_output=True, text=True, check=True).stdout
        lines = [f"ii |{name}|" for name in names.split() if name not in missing]
        self.program("dpkg-query", "cat <<'END'\n" + "\n".join(lines) + "\nEND")
        self.program("apt-get", f'echo "$@" >>{self.record}')

    def testTheListHoldsTheCompilerAndChangesNothing(self):
        self.everything_but("ninja-build")
        result = self.set_up("--list")
        self.assertEqual(result.returncode, 0)
        self.assertIn("clang-19", result.stdout.split())
        self.assertIn("libgtest-dev", result.stdout.split())
        self.assertNotIn("libgtest-dev", self.set_up("--list", "run").stdout.split())
        self.assertFalse(self.record.exists())

    def testNothingIsDoneWhereNothingIsMissing(self):
        self.everything_but()
        result = self.set_up()
        self.assertEqual((result.returncode, result.stdout), (0, ""))
        self.assertFalse(self.record.exists())

    def testRootInstallsWhatIsMissingWithoutATerminal(self):
        self.everything_but("ninja-build", "xvfb")
        self.program("id", "echo 0")
        self.assertEqual(self.set_up().returncode, 0)
        self.assertIn("install --no-install-recommends ninja-build xvfb", self.record.read_text())

    def testWhatRunningDoesNotNeedIsLeftOut(self):
        self.everything_but("ninja-build", "xvfb")
        self.program("id", "echo 0")
        self.assertEqual(self.set_up("run").returncode, 0)
        self.assertNotIn("xvfb", self.record.read_text())

    def testAUserWithoutRightsIsToldWhatIsMissing(self):
        self.everything_but("ninja-build")
        self.program("id", "echo 1000")
        self.program("sudo", "exit 1")
        result = self.set_up()
        self.assertEqual(result.returncode, 1)
        self.assertIn("apt-get install ninja-build", result.stdout)
        self.assertFalse(self.record.exists())

    def testASudoThatAsksForNothingIsUsed(self):
        self.everything_but("ninja-build")
        self.program("id", "echo 1000")
        self.program("sudo", f'echo sudo >>{self.record}; [ "$1" = -n ] && shift; exec "$@"')
        self.assertEqual(self.set_up().returncode, 0)
        self.assertIn("sudo", self.record.read_text())
        self.assertIn("ninja-build", self.record.read_text())

    def testAFailedInstallationIsAFailure(self):
        self.everything_but("ninja-build")
        self.program("id", "echo 0")
        self.program("apt-get", 'case "$*" in *install*) exit 100 ;; esac')
        self.assertNotEqual(self.set_up().returncode, 0)

    def testUnknownArgumentsAreRefused(self):
        self.everything_but()
        self.assertEqual(self.set_up("--everything").returncode, 2)
        for script in ("run", "test"):
            refused = subprocess.run([str(SOURCE / script), "--nonsense"], stdin=subprocess.DEVNULL, capture_output=True,
                                     text=True, check=False)
            self.assertEqual(refused.returncode, 2, script)
            self.assertIn("--help", refused.stderr)

    def testEveryScriptIsValidShell(self):
        for script in ("set-up", "run", "test", ".ci/run", "tools/with-stand-ins"):
            checked = subprocess.run(["bash", "-n", str(SOURCE / script)], capture_output=True, text=True, check=False)
            self.assertEqual((checked.returncode, checked.stderr), (0, ""), script)
            self.assertTrue(os.access(SOURCE / script, os.X_OK), script)
