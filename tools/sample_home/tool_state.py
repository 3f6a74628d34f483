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
        ("9B1DEB4D-3B7D-4BAD-9BDD-2B0D7B3DCB6D", "iPhone 15", True, 320),
        ("1B9D6BCD-BBFD-4B2D-9B5D-AB8DFBBD4BED", "iPhone 8", False, 140),
    ]
    entries = []
    for identifier, name, available, size in known:
        home.file(f"{devices}/{identifier}/data/Library/store.db", size * MB)
        entries.append({
            "udid": identifier, "name": name, "isAvailable": available, "state": "Shutdown",
            "dataPath": os.fsdecode(home.path(f"{devices}/{identifier}/data")),
        })
    registered = "Library/Developer/CoreSimulator/Profiles/Runtimes/iOS 18.1.simruntime"
    left_over = "Library/Developer/CoreSimulator/Profiles/Runtimes/iOS 15.0.simruntime"
    home.file(f"{registered}/Contents/Resources/root.img", 60 * MB)
    home.file(f"{left_over}/Contents/Resources/root.img", 45 * MB)
    _write(home, "simctl.json", {
        "devices": {
            "com.apple.CoreSimulator.SimRuntime.iOS-17-5": entries[:1],
            "com.apple.CoreSimulator.SimRuntime.iOS-15-0": entries[1:],
        },
        "runtimes": [{"name": "iOS 18.1", "bundlePath": os.fsdecode(home.path(registered))}],
    })


def _brew(home):
    cache = "Library/Caches/Homebrew"
    home.file(f"{cache}/downloads/ffmpeg--7.0.bottle.tar.gz", 48 * MB)
    home.file(f"{cache}/downloads/llvm--18.1.bottle.tar.gz", 160 * MB)
    _write(home, "brew.json", {"cache": os.fsdecode(home.path(cache))})
