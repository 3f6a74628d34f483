"""From a scan to a deletion through the tools, with real child processes and stand-ins at the tools' paths."""
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import time
import unittest

SOURCE = pathlib.Path(os.environ["VESKO_SOURCE"])
BUILD = pathlib.Path(os.environ["VESKO_BUILD"])
SCAN = BUILD / "src/app/vesko-scan"
DELETE = BUILD / "tests/execution/executor_tool"
DATA = "Library/Containers/com.docker.docker/Data"
DEVICES = "Library/Developer/CoreSimulator/Devices"
# Names that a shell, or a tool that reads options, would take for something else.
ODD = ["--help", "-f", "$(touch planted); rm -rf .", "`touch planted`", "two words", "*", "ação", "a'b\"c"]


class ToolRoutes(unittest.TestCase):
    def setUp(self):
        self.scratch = pathlib.Path(tempfile.mkdtemp()).resolve()
        self.addCleanup(shutil.rmtree, self.scratch)
        self.home = self.scratch / "home"
        self.state = self.home / ".stand-ins"
        self.state.mkdir(parents=True)
        self.empty = self.scratch / "working folder"
        self.empty.mkdir()

    def run_inside(self, *words):
        ended = subprocess.run([str(SOURCE / "tools/with-stand-ins"), str(self.home), *map(str, words)],
                               capture_output=True, text=True, check=False, cwd=self.empty,
                               env={**os.environ, "LC_ALL": "C.UTF-8"})
        if "without the stand-ins" in ended.stderr:
            self.skipTest("this machine refuses mount namespaces, and so the tools can't be stood in for")
        return ended

    def events(self):
        ended = self.run_inside(SCAN)
        self.assertEqual(ended.returncode, 0, ended.stderr)
        return [json.loads(line) for line in ended.stdout.splitlines()]

    def items(self, group):
        return [item for found in self.events()[-1]["report"]["groups"] if found["id"] == group
                for item in found["items"]]

    def delete(self, item):
        return self.run_inside(DELETE, item["path"], item["enrichmentKey"]).stdout.strip()

    def write(self, name, state):
        (self.state / name).write_text(json.dumps(state), encoding="utf-8")

    def read(self, name):
        return json.loads((self.state / name).read_text(encoding="utf-8"))

    def calls(self, tool):
        lines = [json.loads(line) for line in (self.state / "calls.log").read_text(encoding="utf-8").splitlines()]
        return [line[1:] for line in lines if line[0] == tool]

    def docker(self, **changed):
        self.write("docker.json", {"images": [], "volumes": {}, "buildcache": "0B", **changed})

    def volume_folder(self, number):
        folder = self.state / f"docker/volumes/{number}/_data"
        folder.mkdir(parents=True)
        (folder / "data").write_bytes(os.urandom(20_000))
        return str(folder)

    def testAnImageWithAnOddNameIsDeletedByThatNameAlone(self):
        self.docker(images=[{"id": name, "reference": f"r:{name}", "size": "1MB"} for name in [*ODD, "kept"]])
        items = {item["enrichmentKey"].removeprefix("docker:image:"): item for item in self.items("docker.images")}
        self.assertEqual(sorted(items), sorted([*ODD, "kept"]))
        for name in ODD:
            self.assertEqual(self.delete(items[name]), "deleted", name)
            self.assertEqual(self.calls("docker")[-1], ["rmi", "-f", name])
        self.assertEqual([image["id"] for image in self.read("docker.json")["images"]], ["kept"])
        self.assertEqual(list(self.empty.iterdir()), [])

    def testAVolumeWithAnOddNameIsInspectedAndDeletedByThatNameAlone(self):
        folders = {name: self.volume_folder(number) for number, name in enumerate([*ODD, "kept"])}
        self.docker(volumes=folders)
        items = {item["enrichmentKey"].removeprefix("docker:volume:"): item for item in self.items("docker.volumes")}
        self.assertEqual({name: item["path"] for name, item in items.items()}, folders)
        for name in ODD:
            self.assertIn(["volume", "inspect", name, "--format", "{{.Mountpoint}}"], self.calls("docker"))
            self.assertEqual(self.delete(items[name]), "deleted", name)
            self.assertEqual(self.calls("docker")[-1], ["volume", "rm", "-f", name])
            self.assertFalse(os.path.exists(folders[name]))
        self.assertEqual(list(self.read("docker.json")["volumes"]), ["kept"])
        self.assertTrue(os.path.exists(folders["kept"]))
        self.assertEqual(list(self.empty.iterdir()), [])

    def testTheBuildCacheIsPruned(self):
        self.docker(buildcache="1.5GB")
        item, = self.items("docker.buildcache")
        self.assertEqual((item["size"], item["enrichmentKey"]), (1_500_000_000, "docker:prune:buildcache"))
        self.assertEqual(self.delete(item), "deleted")
        self.assertEqual(self.calls("docker")[-1], ["builder", "prune", "-a", "-f"])
        self.assertEqual(self.items("docker.buildcache"), [])

    def testAnImageThatIsInUseStays(self):
        self.docker(images=[{"id": "abc", "reference": "r:1", "size": "1MB"}], refuse=["abc"])
        item, = self.items("docker.images")
        self.assertEqual(self.delete(item), "docker /usr/local/bin/docker rmi -f abc: 1")
        self.assertEqual(len(self.items("docker.images")), 1)

    def testWithoutTheServiceWhatIsMeasuredCannotBeDeleted(self):
        for folder in ("vms/0/data/docker/volumes/one", "vms/0/data/docker/volumes/two"):
            (self.home / DATA / folder).mkdir(parents=True)
            (self.home / DATA / folder / "content").write_bytes(os.urandom(30_000))
        found = [item for event in self.events() if event["event"] == "probeFinished" and event["group"] and
                 event["group"]["id"].startswith("docker.") for item in event["group"]["items"]]
        self.assertEqual(sorted(item["path"].removeprefix(f"{self.home}/{DATA}") for item in found),
                         ["", "/vms/0/data/docker/volumes/one", "/vms/0/data/docker/volumes/two"])
        for item in found:
            self.assertEqual(item["enrichmentKey"], "docker:unsupported")
            self.assertEqual(self.delete(item), "docker unsupported")
            self.assertTrue(os.path.exists(item["path"]))

    def testAServiceThatEndsBeforeTheDeletionIsNotAvailable(self):
        folder = self.volume_folder(1)
        self.docker(volumes={"data": folder})
        item, = self.items("docker.volumes")
        (self.state / "docker.json").unlink()
        self.assertEqual(self.delete(item), "docker not available")
        self.assertTrue(os.path.exists(folder))

    def testADeviceWithAnOddIdentifierIsDeletedByItAlone(self):
        devices = []
        for number, name in enumerate([*ODD, "kept"]):
            folder = self.home / DEVICES / str(number)
            (folder / "data").mkdir(parents=True)
            (folder / "data/store").write_bytes(os.urandom(20_000))
            devices.append({"udid": name, "name": "n", "isAvailable": False, "dataPath": str(folder / "data")})
        self.write("simctl.json", {"devices": {"runtime": devices}, "runtimes": []})
        items = {item["enrichmentKey"].removeprefix("simulator:"): item
                 for item in self.items("xcode.simulators.unavailable")}
        self.assertEqual(sorted(items), sorted([*ODD, "kept"]))
        for name in ODD:
            self.assertEqual(self.delete(items[name]), "deleted", name)
            self.assertEqual(self.calls("xcrun")[-1], ["simctl", "delete", name])
        self.assertEqual([each["udid"] for each in self.read("simctl.json")["devices"]["runtime"]], ["kept"])
        self.assertEqual(self.delete(items["-f"]), "simulator -f: 148")
        self.assertTrue((self.home / DEVICES / str(len(ODD))).exists())
        self.assertEqual(list(self.empty.iterdir()), [])

    def testBrewIsAskedForItsFolder(self):
        elsewhere = self.home / "own brew/cache"
        elsewhere.mkdir(parents=True)
        (elsewhere / "bottle").write_bytes(os.urandom(20_000))
        self.write("brew.json", {"cache": f"{elsewhere}/"})
        self.assertEqual([item["path"] for item in self.items("cache.homebrew")], [str(elsewhere)])
        self.assertEqual(self.calls("brew"), [["--cache"]])

    def testAToolThatHangsHoldsUpItsOwnRowsAlone(self):
        (self.home / ".npm/_cacache").mkdir(parents=True)
        (self.home / ".npm/_cacache/content").write_bytes(os.urandom(20_000))
        self.docker(images=[{"id": "abc", "reference": "r:1", "size": "1MB"}], delay=1)
        begun = time.monotonic()
        groups = [event["group"] and event["group"]["id"] for event in self.events()
                  if event["event"] == "probeFinished"]
        self.assertGreaterEqual(time.monotonic() - begun, 2)
        # All three rows that ask it come last, whatever they found.
        self.assertIn("docker.images", groups[-3:])
        self.assertIn("cache.npm", groups[:-3])


if __name__ == "__main__":
    unittest.main()
