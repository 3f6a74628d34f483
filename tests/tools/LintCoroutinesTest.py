"""The lint of coroutine spellings lets the safe ones pass and finds each planted mistake."""
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["VESKO_SOURCE"])
PROGRAM = SOURCE / "tools/lint-coroutines"
FRAME = """#include "concurrency/Concurrency.h"
#include <string>
#include <vector>
namespace vesko {
struct Pair { int first; int second; };
Task<bool> yes() { co_return true; }
Task<int> number() { co_return 1; }
Task<int> number(Pair) { co_return 1; }
Task<int> longest(std::vector<int>) { co_return 1; }
Task<int> flow(int value) {
    %s
    co_return value;
}
}
"""
RIGHT = """const bool told = co_await yes();
    if (told) value = co_await number();
    auto work = offload([value] { return value + 1; });
    value = co_await work;
    auto body = [value](TaskGroup<int>& children) -> Task<int> {
        children.add([value] { return value; });
        auto child = co_await children.next();
        if (!child) co_return 0;
        co_return child->take();
    };
    auto group = withTaskGroup<int>(body);
    value = co_await group;
    co_await sleepFor(std::chrono::seconds(1));"""
MISTAKES = {
    "an if": "if (co_await yes()) ++value;",
    "a negated if": "if (!co_await yes()) ++value;",
    "a while": "while (co_await yes()) ++value;",
    "a do": "do { ++value; } while (co_await yes());",
    "a for": "for (; co_await yes();) ++value;",
    "a switch": "switch (co_await number()) { default: break; }",
    "a choice": "value = co_await yes() ? 1 : 2;",
    "a conjunction": "const bool both = value > 1 && co_await yes(); value += both;",
    "a closure": "value = co_await offload([value] { return value; });",
    "a closure of a group": "co_await withTaskGroup<int>([&value](TaskGroup<int>&) -> Task<void> "
                            "{ ++value; co_return; });",
    "an aggregate": "value = co_await number(Pair{1, 2});",
    "a braced list": "value = co_await longest({1, 2, 3});",
}


class LintCoroutines(unittest.TestCase):
    def setUp(self):
        if not shutil.which("clang-query-19"):
            self.skipTest("clang-query-19 is not installed")
        self.scratch = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.scratch)

    def lint(self, texts):
        files = []
        for number, text in enumerate(texts):
            files.append(self.scratch / f"Flow{number}.cpp")
            files[-1].write_text(text)
        (self.scratch / "compile_commands.json").write_text(json.dumps([
            {"directory": str(self.scratch), "file": str(file),
             "command": f"clang++-19 -std=c++2b -I{SOURCE}/src -c {file}"} for file in files]))
        return subprocess.run([str(PROGRAM), str(self.scratch), *map(str, files)],
                              capture_output=True, text=True, check=False)

    def testSafeSpellingsPass(self):
        result = self.lint([FRAME % RIGHT])
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertEqual(result.stdout.split()[0], "OK")

    def testEachPlantedMistakeIsFound(self):
        result = self.lint([FRAME % text for text in MISTAKES.values()])
        self.assertEqual(result.returncode, 1)
        verdicts = [line.split()[0] for line in result.stdout.splitlines() if not line.startswith(" ")]
        self.assertEqual(dict(zip(MISTAKES, verdicts)), dict.fromkeys(MISTAKES, "FAIL"), result.stdout)
        self.assertNotIn("does not compile", result.stdout)

    def testAFileThatDoesNotCompileIsNoPass(self):
        result = self.lint([FRAME % "nonsense;"])
        self.assertEqual(result.returncode, 1)
        self.assertIn("does not compile", result.stdout)

    def testNothingToGoByIsNoPass(self):
        result = subprocess.run([str(PROGRAM), str(self.scratch)], capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode, 2)


if __name__ == "__main__":
    unittest.main()
