"""What the stand-ins for docker, xcrun and brew answer from: small files below ".stand-ins"."""
import json
import os

MB = 1_000_000
FOLDER = ".stand-ins"


def fill(home):
    _docker(home)
    _simulators(home)
    _brew(home)


def _write(home, name, state):
    # A second run gives back what was deleted; the record of calls goes on.
    home.text(f"{FOLDER}/{name}", json.dumps(state, indent=1, ensure_ascii=False) + "\n")


def _docker(home):
    volumes = {}
    for name, size in (("atlas_postgres-data", 180), ("weather_redis", 12)):
        folder = f"{FOLDER}/docker/volumes/{name}/_data"
        home.file(f"{folder}/data.bin", size * MB)
        volumes[name] = os.fsdecode(home.path(folder))
    _write(home, "docker.json", {
        "images": [
            {"id": "3f57d9401f8d", "reference": "postgres:16", "size": "431MB"},
            {"id": "a6bd71f48f68", "reference": "node:20", "size": "1.1GB"},
            {"id": "b2f6f8a0c3d1", "reference": "<none>:<none>", "size": "212MB"},
        ],
        "volumes": volumes,
        "buildcache": "1.5GB",
    })


def _simulators(home):
    devices = "Library/Developer/CoreSimulator/Devices"
    known = [
        ("iOS-17-5", "9B1DEB4D-3B7D-4BAD-9BDD-2B0D7B3DCB6D", "iPhone 15", True, 320),
        ("iOS-15-0", "1B9D6BCD-BBFD-4B2D-9B5D-AB8DFBBD4BED", "iPhone 8", False, 140),
        ("iOS-14-5", "6EC0BD7F-11C0-43DA-975E-2A8AD9EBAE0B", "iPad Air", False, 95),
    ]
    listed = {}
    for version, identifier, name, available, size in known:
        home.file(f"{devices}/{identifier}/data/Library/store.db", size * MB)
        listed.setdefault(f"com.apple.CoreSimulator.SimRuntime.{version}", []).append({
            "udid": identifier, "name": name, "isAvailable": available, "state": "Shutdown",
            "dataPath": os.fsdecode(home.path(f"{devices}/{identifier}/data")),
        })
    runtimes = "Library/Developer/CoreSimulator/Profiles/Runtimes"
    registered = f"{runtimes}/iOS 18.1.simruntime"
    # The tool no longer knows the other two.
    for version, size in (("18.1", 60), ("15.0", 45), ("14.5", 38)):
        home.file(f"{runtimes}/iOS {version}.simruntime/Contents/Resources/root.img", size * MB)
    _write(home, "simctl.json", {
        "devices": listed,
        "runtimes": [{"name": "iOS 18.1", "bundlePath": os.fsdecode(home.path(registered))}],
    })


def _brew(home):
    cache = "Library/Caches/Homebrew"
    home.file(f"{cache}/downloads/ffmpeg--7.0.bottle.tar.gz", 48 * MB)
    home.file(f"{cache}/downloads/llvm--18.1.bottle.tar.gz", 160 * MB)
    _write(home, "brew.json", {"cache": os.fsdecode(home.path(cache))})
