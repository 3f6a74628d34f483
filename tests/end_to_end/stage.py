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
NETWORK = "VESKO_NETWORK"  # "own", or "shared" where none can be made


def program(name="vesko"):
    """The path of a built program."""
    return str(pathlib.Path(os.environ["VESKO_BUILD"]) / "src/app" / name)


def folder():
    """The folder of this test; everything in it goes at the end."""
    if STAGE not in os.environ:
        os.environ[STAGE] = tempfile.mkdtemp(prefix="vesko-test-")
    return pathlib.Path(os.environ[STAGE])


def enter(stand_ins=False):
    """Start this test again in its stage where needed; returns there. Where one can be made it has a network of its
    own, in which every port is free and no server of this machine is there to be asked. With `stand_ins`, inside a
    mount namespace in which the stand-ins stand at the tools' paths; returns whether they do."""
    if NETWORK not in os.environ:
        _start_in_own_network()
    if stand_ins and "VESKO_STAND_INS" not in os.environ:
        _start_again([str(_source() / "tools/with-stand-ins"), str(folder() / "home")], make_home=True)
    if os.getuid() == 0:
        _copy_for_nobody()
    return stand_ins and os.path.exists("/usr/bin/xcrun")


def has_own_network():
    return os.environ[NETWORK] == "own"


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
    # An ordinary user has to be root inside to be allowed to raise the interface, and is then turned back.
    enter, leave = ["unshare", "--net"], []
    if os.getuid() != 0:
        enter.append("--map-root-user")
        leave = ["unshare", "--user", f"--map-user={os.getuid()}", f"--map-group={os.getgid()}"]
    raising = f"import os, sys; sys.path.insert(0, {str(_source() / 'tests/support')!r}); import model_server; " \
              "model_server.raise_loopback(); os.execvp(sys.argv[1], sys.argv[1:])"
    inside = [*enter, sys.executable, "-B", "-c", raising, *leave]
    can = shutil.which("unshare") and \
        subprocess.run([*inside, "true"], capture_output=True, check=False).returncode == 0
    os.environ[NETWORK] = "own" if can else "shared"
    if can:
        os.execvp(inside[0], [*inside, sys.executable, "-B", *sys.argv])


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
