"""What people try a real model with: it asks the stand-in as the program would, and says what came of it."""
import os
import pathlib
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(os.environ["VESKO_SOURCE"]) / "tests/support"))
import model_server

PROGRAM = pathlib.Path(os.environ["VESKO_BUILD"]) / "tools/try-model/try-model"


class TryModel(unittest.TestCase):
    def setUp(self):
        if not PROGRAM.exists():
            self.skipTest("try-model is built with the window alone")

    def run_at(self, port, *more):
        return subprocess.run([str(PROGRAM), *more, f"http://127.0.0.1:{port}"], capture_output=True, text=True,
                              timeout=60, check=False)

    def testTenItemsAreAskedForAndTheirAnswersPrinted(self):
        answers = {"names": {"*/8f2c91d0": {"friendlyName": "Nobody's", "safety": "revisar", "reason": "Look first.",
                                           "kind": "cache"}},
                   "moves": {"*/.cache/pip": {"targetGroupID": "cache.pip"},
                             "*/thumbnails": {"action": "demote"}}}
        with model_server.ModelServer(answers=answers) as server:
            result = self.run_at(server.port)
            questions = server.questions()
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertEqual([len(question["items"]) for question in questions], [10, 10])
        self.assertEqual([question["schema"] for question in questions], ["EnrichmentBatch", "ReviewBatch"])
        self.assertEqual(result.stdout.count("   safety  "), 10)
        self.assertIn("   name    Nobody's\n   safety  revisar\n   reason  Look first.\n   kind    cache\n",
                      result.stdout)
        self.assertIn("/home/ana/.cache/pip\n   reclassify cache.pip\n", result.stdout)
        self.assertIn("/home/ana/.cache/thumbnails\n   demote - (no group: passed over)\n", result.stdout)

    def testWithoutAServerItSaysSo(self):
        with model_server.ModelServer() as server:
            port = server.port
        result = self.run_at(port)
        self.assertEqual(result.returncode, 1)
        self.assertIn("No model answers here", result.stderr)

    def testAServerWithoutAModelIsNone(self):
        for mode in ("no-models", "broken-models"):
            with model_server.ModelServer(mode=mode) as server:
                self.assertEqual(self.run_at(server.port).returncode, 1, mode)

    def testWrongAnswersAreTold(self):
        for mode, why in (("schema", "No EnrichmentBatch with its one list"), ("garbage", "Sure! Here are"),
                          ("damaged", "no answer of the protocol's form"), ("html", "no JSON document"),
                          ("error", "another status than 200"), ("redirect", "another status than 200"),
                          ("close", "no whole answer"), ("huge", "too long an answer"),
                          ("huge-chunked", "too long an answer"), ("forever", "too long an answer")):
            with model_server.ModelServer(mode=mode, elsewhere="http://127.0.0.1:1/") as server:
                result = self.run_at(server.port)
            self.assertEqual(result.returncode, 3, mode)
            self.assertIn(why, result.stdout, mode)

    def testAMissingItemIsTold(self):
        with model_server.ModelServer(answers={"others": False}) as server:
            result = self.run_at(server.port)
        self.assertEqual(result.returncode, 3)
        self.assertEqual(result.stdout.count("FAIL no entry with this id"), 10)

    def testPortugueseIsAskedForInPortuguese(self):
        with model_server.ModelServer() as server:
            self.run_at(server.port)
            self.run_at(server.port, "--portuguese")
            english, _, portuguese, _ = (question["body"]["messages"][0]["content"] for question in server.questions())
        self.assertNotEqual(english, portuguese)
        self.assertIn("português", portuguese)

    def testAWrongArgumentIsExplained(self):
        for words in (["--what"], ["https://127.0.0.1:1"], ["http://127.0.0.1:1", "--portuguese"], [""]):
            result = subprocess.run([str(PROGRAM), *words], capture_output=True, text=True, timeout=60, check=False)
            self.assertEqual(result.returncode, 2, words)
            self.assertIn("usage: try-model", result.stderr, words)
            self.assertEqual(result.stdout, "", words)


if __name__ == "__main__":
    unittest.main()
