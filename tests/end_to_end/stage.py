"""A place of its own for each test, as an ordinary user.

What a program may delete depends on who runs it, and people do not run theirs as root. Where the tests are run as
root (as in a container), the test is copied with the program into a folder of its own and started again as "nobody".
"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

NOBODY = 65534
STAGE = "VESKO_STAGE"
NETWORK = "VESKO_NETWORK"  # whose own network this is: "root", "user", or "shared" where none can be had


def program(name="vesko"):
    """The path of a built program."""
    return str(pathlib.Path(os.environ["VESKO_BUILD"]) / "src/app" / name)


def folder():
    """The folder of this test; everything in it goes at the end."""
    if STAGE not in os.environ:
        os.environ[STAGE] = tempfile.mkdtemp(prefix="vesko-test-")
    return pathlib.Path(os.environ[STAGE])


def enter(stand_ins=False, own_network=False):
    """Start this test again in its stage where needed; returns there. With `stand_ins`, inside a mount namespace in
    which the stand-ins stand at the tools' paths; returns whether they do. With `own_network`, where nobody else
    has a port; returns whether it is so."""
    if own_network and NETWORK not in os.environ:
        _start_in_own_network()
    if stand_ins and "VESKO_STAND_INS" not in os.environ:
        _start_again([str(_source() / "tools/with-stand-ins"), str(folder() / "home")], make_home=True)
    # An ordinary user whose network is their own only looks like root.
    if os.getuid() == 0 and os.environ.get(NETWORK) != "user":
        _copy_for_nobody()
    if own_network:
        return os.environ[NETWORK] in ("root", "user")
    return stand_ins and os.path.exists("/usr/bin/xcrun")


def clean():
    """Remove the stage, read-only folders in it included."""
    stage = os.environ.get(STAGE)
    if not stage:
        return
    for path, folders, _ in os.walk(stage):
        for name in folders:
            inner = os.path.join(path, name)
            if not os.path.islink(inner):
                os.chmod(inner, 0o700)
    shutil.rmtree(stage, ignore_errors=True)


def _source():
    return pathlib.Path(os.environ["VESKO_SOURCE"])


def _start_again(prefix, make_home=False):
    if make_home:
        (folder() / "home").mkdir(exist_ok=True)
    os.execv(prefix[0], [*prefix, sys.executable, "-B", *sys.argv])


def _start_in_own_network():
    kind = "root" if os.getuid() == 0 else "user"
    command = ["unshare", "--net", *(["--map-root-user"] if kind == "user" else [])]
    can = shutil.which("unshare") and subprocess.run([*command, "true"], capture_output=True, check=False).returncode == 0
    os.environ[NETWORK] = kind if can else "shared"
    if can:
        # The loopback interface has to be brought up before the rights to do so are given up.
        support = str(_source() / "tests/support")
        raising = f"import os, sys; sys.path.insert(0, {support!r}); import model_server; " \
                  "model_server.raise_loopback(); os.execv(sys.argv[1], sys.argv[1:])"
        os.execvp(command[0], [*command, sys.executable, "-B", "-c", raising, sys.executable, "-B", *sys.argv])


def _copy_for_nobody():
    stage = folder()
    source, build = _source(), pathlib.Path(os.environ["VESKO_BUILD"])
    copied_source, copied_build = stage / "source", stage / "build"
    for part in ("tests/end_to_end", "tests/support", "tools", "resources"):
        shutil.copytree(source / part, copied_source / part, ignore=shutil.ignore_patterns("__pycache__"))
    programs = copied_build / "src/app"
    programs.mkdir(parents=True)
    for entry in (build / "src/app").iterdir():
        if entry.is_file() and os.access(entry, os.X_OK):
            shutil.copy2(entry, programs)
    for place in [stage, *stage.rglob("*")]:
        os.chown(place, NOBODY, NOBODY, follow_symlinks=False)
    os.chmod(stage, 0o700)
    for name, value in list(os.environ.items()):
        if name != STAGE:
            os.environ[name] = value.replace(str(build), str(copied_build)).replace(str(source), str(copied_source))
    runner, test, *rest = sys.argv
    moved = [argument.replace(str(source), str(copied_source)) for argument in (runner, test)]
    os.chdir(stage)
    os.execv("/usr/bin/setpriv", [
        "setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups",
        sys.executable, "-B", *moved, *rest])
