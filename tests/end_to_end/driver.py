"""Drives the real program as a person would: through the accessibility tree, the keyboard and the window system.

A Session is a display, a session bus and a home of its own. A process has one Session at most, since the bindings of
the accessibility bus connect once.
"""
import ctypes
import os
import pathlib
import re
import signal
import subprocess
import time

import stage
from texts import Texts

LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
LANGUAGES = {"en": "en_US.UTF-8", "pt-BR": "pt_BR.UTF-8"}


class NotFound(AssertionError):
    """What a test waited for did not come; the message holds the tree as it was."""


def until(condition, seconds=10, what="a condition", pause=0.05):
    """Ask `condition` until it gives something true, and return that."""
    end = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise NotFound(f"waited {seconds} s in vain for {what}")
        time.sleep(pause)


class Session:
    """A private display and session bus, and the folders of a private home."""

    def __init__(self, language="en", scratch=None):
        self.language = language
        self.texts = Texts(language)
        self.scratch = pathlib.Path(scratch or stage.folder())
        self.home = self.scratch / "home"
        self._runtime = self.scratch / "runtime"
        self.home.mkdir(exist_ok=True)
        self._runtime.mkdir(mode=0o700, exist_ok=True)
        self._children = []
        self._log = open(self.scratch / "session.log", "ab")
        self._start_display()
        self._start_bus()
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi
        self.atspi = Atspi
        Atspi.init()

    def _start(self, command, **more):
        child = subprocess.Popen(command, stdin=subprocess.DEVNULL, stderr=self._log, **more)
        self._children.append(child)
        return child

    def _start_display(self):
        # Numbers that servers choose by themselves collide where several start at once. A process has its own.
        # Without -noreset a server begins anew, deaf meanwhile, whenever its last client goes.
        reading, writing = os.pipe()
        self._start(["Xvfb", f":{100 + os.getpid() % 59_000}", "-displayfd", str(writing), "-screen", "0", "1280x900x24",
                     "-noreset", "-nolisten", "tcp"], pass_fds=[writing], stdout=self._log)
        os.close(writing)
        with os.fdopen(reading) as answer:
            number = answer.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start")
        os.environ["DISPLAY"] = f":{number}"

    def _start_bus(self):
        os.environ["XDG_RUNTIME_DIR"] = str(self._runtime)
        for name in ("XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "AT_SPI_BUS_ADDRESS", "WAYLAND_DISPLAY",
                     "LC_ALL", "LC_MESSAGES", "QT_QPA_PLATFORM"):
            os.environ.pop(name, None)
        os.environ["HOME"] = str(self.home)
        bus = self._start(["dbus-daemon", "--session", "--nofork", "--print-address"], stdout=subprocess.PIPE,
                          text=True)
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        self._start([LAUNCHER, "--launch-immediately"], stdout=self._log)
        until(lambda: subprocess.run(
            ["dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
             "org.a11y.Bus.GetAddress"],
            capture_output=True, check=False).returncode == 0, what="the accessibility bus")

    def launch(self, program="vesko", arguments=(), environment=None):
        """Start the program and return its process at once."""
        locale = LANGUAGES[self.language]
        own = {
            **os.environ, "LANG": locale, "LANGUAGE": locale.split(".")[0], "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_QUICK_BACKEND": "software", "QT_QPA_PLATFORM": "xcb",
            # The display's client library copies bounded parts of buffers that no zero ends.
            "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":strict_string_checks=0",
            **(environment or {}),
        }
        path = program if os.sep in program else stage.program(program)
        return self._start([path, *arguments], stdout=self._log, env=own)

    def start(self, program="vesko", arguments=(), environment=None):
        """Start the program and wait for its window; returns a Program."""
        cached = self.cache_path()
        before = cached.stat().st_mtime_ns if cached.exists() else None
        return Program(self, self.launch(program, arguments, environment), before)

    def cache_path(self):
        return self.home / ".local/share/Vesko/scan-cache.json"

    def close(self):
        for child in reversed(self._children):
            if child.poll() is None:
                child.terminate()
                try:
                    child.wait(5)
                except subprocess.TimeoutExpired:
                    child.kill()
                    child.wait()
            if child.stdout:
                child.stdout.close()
        self._log.close()


def window_of(child):
    """The window that a process shows, by the window system's number for it; None while it shows none."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(child.pid)],
                           capture_output=True, text=True, check=False).stdout.split()
    return found[-1] if found else None


class Program:
    """A running program with a window."""

    def __init__(self, session, child, cache_before=None):
        self.session = session
        self.texts = session.texts
        self.child = child
        self.cache_before = cache_before  # the date of the scan cache before the program started
        self.root = until(self._application, 20, "the program on the accessibility bus")
        self.window = until(self._window, 20, "the program's window")

    def _application(self):
        if self.child.poll() is not None:
            said = (self.session.scratch / "session.log").read_text(errors="replace")[-2000:]
            raise RuntimeError(f"the program ended with status {self.child.returncode}; the log ends:\n{said}")
        desktop = self.session.atspi.get_desktop(0)
        desktop.clear_cache()
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            if application and application.get_process_id() == self.child.pid and application.get_child_count():
                application.set_cache_mask(self.session.atspi.Cache.NONE)
                return Node(application, self)
        return None

    def _window(self):
        return window_of(self.child)

    # --- looking

    def find(self, role=None, name=None, seconds=10, within=None):
        """The first node with this role and name (a text, or a compiled pattern), waited for."""
        place = within or self.root
        try:
            return until(lambda: next(place.all(role, name), None), seconds, f"{role} {name!r}")
        except NotFound as problem:
            raise NotFound(f"{problem}; the tree:\n{self.tree()}") from None

    def has(self, role=None, name=None, within=None):
        return next((within or self.root).all(role, name), None) is not None

    def gone(self, role=None, name=None, seconds=10):
        try:
            until(lambda: not self.has(role, name), seconds, f"{role} {name!r} to go")
        except NotFound as problem:
            raise NotFound(f"{problem}; the tree:\n{self.tree()}") from None

    def tree(self):
        """The tree by role, name and the states that matter, one node a line."""
        lines = []
        self.root.describe(lines, 0)
        return "\n".join(lines)

    # --- acting

    def focus(self):
        """Give the window the keyboard, as a window manager would."""
        subprocess.run(["xdotool", "windowfocus", "--sync", self.window], check=True, timeout=10)

    def key(self, *keys):
        subprocess.run(["xdotool", "key", "--delay", "30", *keys], check=True, timeout=20)

    def type(self, text):
        subprocess.run(["xdotool", "type", "--delay", "30", text], check=True, timeout=30)

    def focused(self):
        """The node that has the keyboard's focus, if one says so; in a list that is its row."""
        return next((node for node in reversed(list(self.root.all())) if node.has_state("FOCUSED")), None)

    def close_window(self):
        """Ask the window to close, as the button in its frame does."""
        send_close_request(int(self.window))

    def ended(self, seconds):
        """Whether the process ends within this time."""
        try:
            self.child.wait(seconds)
            return True
        except subprocess.TimeoutExpired:
            return False

    def stop(self):
        if self.child.poll() is None:
            self.child.send_signal(signal.SIGKILL)
            self.child.wait()

    def picture(self, path):
        subprocess.run(["import", "-window", self.window, str(path)], check=True, timeout=30)


class Node:
    """One object of the accessibility tree. Objects come and go: one that has gone answers with nothing."""

    def __init__(self, accessible, program):
        self.accessible = accessible
        self.program = program

    def _ask(self, question, otherwise):
        from gi.repository import GLib
        try:
            answer = question()
        except GLib.Error:
            return otherwise
        return otherwise if answer is None else answer

    @property
    def name(self):
        return self._ask(self.accessible.get_name, "")

    @property
    def role(self):
        return self._ask(self.accessible.get_role_name, "")

    @property
    def description(self):
        return self._ask(self.accessible.get_description, "")

    def has_state(self, name):
        states = self._ask(self.accessible.get_state_set, None)
        return states is not None and states.contains(getattr(self.program.session.atspi.StateType, name))

    @property
    def parent(self):
        above = self._ask(self.accessible.get_parent, None)
        return Node(above, self.program) if above is not None else None

    def children(self):
        for index in range(self._ask(self.accessible.get_child_count, 0)):
            child = self._ask(lambda index=index: self.accessible.get_child_at_index(index), None)
            if child is not None:
                yield Node(child, self.program)

    def all(self, role=None, name=None):
        """Every node below that matches and is to be seen, in the order of the tree."""
        for child in self.children():
            if not child.has_state("VISIBLE"):
                continue
            if (role is None or child.role == role) and (name is None or matches(child.name, name)):
                yield child
            yield from child.all(role, name)

    def top(self):
        """The upper edge on the screen, in pixels."""
        interface = self._ask(self.accessible.get_component_iface, None)
        return interface.get_extents(self.program.session.atspi.CoordType.SCREEN).y if interface else None

    def actions(self):
        interface = self._ask(self.accessible.get_action_iface, None)
        if interface is None:
            return []
        return [interface.get_action_name(index) for index in range(self._ask(interface.get_n_actions, 0))]

    def act(self, action):
        names = self.actions()
        if action not in names:
            raise AssertionError(f"{self.role} {self.name!r} has no action {action}, only {names}")
        assert self.accessible.get_action_iface().do_action(names.index(action))

    def press(self):
        self.act("Press")

    def toggle(self):
        self.act("Toggle" if "Toggle" in self.actions() else "Press")

    def give_focus(self):
        self.accessible.get_component_iface().grab_focus()

    @property
    def text(self):
        interface = self._ask(self.accessible.get_text_iface, None)
        if interface is None:
            return self.name
        return self._ask(lambda: interface.get_text(0, interface.get_character_count()), "")

    def describe(self, lines, depth):
        marks = [word for state, word in (("CHECKED", "checked"), ("INDETERMINATE", "mixed"), ("EXPANDED", "expanded"),
                                          ("FOCUSED", "focused"), ("SELECTED", "selected")) if self.has_state(state)]
        if not self.has_state("ENABLED"):
            marks.append("disabled")
        lines.append("  " * depth + f"{self.role} {self.name!r}" + "".join(f" [{mark}]" for mark in marks))
        for child in self.children():
            if child.has_state("VISIBLE"):
                child.describe(lines, depth + 1)


def matches(text, wanted):
    return wanted.fullmatch(text) is not None if isinstance(wanted, re.Pattern) else text == wanted


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5)]


class _Event(ctypes.Union):
    _fields_ = [("client", _ClientMessage), ("room", ctypes.c_long * 24)]


def _x_library():
    library = ctypes.CDLL("libX11.so.6")
    library.XOpenDisplay.restype = ctypes.c_void_p
    library.XDefaultRootWindow.restype = ctypes.c_ulong
    library.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
    library.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
    library.XCloseDisplay.argtypes = [ctypes.c_void_p]
    return library


class Cover:
    """Another program's window, over everything."""

    def __init__(self):
        self.x = _x_library()
        self.x.XCreateSimpleWindow.restype = ctypes.c_ulong
        self.x.XCreateSimpleWindow.argtypes = [ctypes.c_void_p, ctypes.c_ulong, *[ctypes.c_int] * 2,
                                               *[ctypes.c_uint] * 3, *[ctypes.c_ulong] * 2]
        self.x.XMapRaised.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
        self.x.XQueryTree.argtypes = [ctypes.c_void_p, ctypes.c_ulong, *[ctypes.POINTER(ctypes.c_ulong)] * 2,
                                      ctypes.POINTER(ctypes.POINTER(ctypes.c_ulong)), ctypes.POINTER(ctypes.c_uint)]
        self.display = self.x.XOpenDisplay(None)
        self.root = self.x.XDefaultRootWindow(self.display)
        self.window = self.x.XCreateSimpleWindow(self.display, self.root, 0, 0, 1280, 900, 0, 0, 0)
        self.x.XMapRaised(self.display, self.window)
        self.x.XSync(self.display, 0)

    def is_above(self, window):
        """Whether it lies over that window."""
        root, parent, count = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.c_uint()
        children = ctypes.POINTER(ctypes.c_ulong)()
        self.x.XQueryTree(self.display, self.root, ctypes.byref(root), ctypes.byref(parent), ctypes.byref(children),
                          ctypes.byref(count))
        from_below = children[:count.value]
        return from_below.index(self.window) > from_below.index(int(window))

    def close(self):
        self.x.XCloseDisplay(self.display)


def send_close_request(window):
    """Send WM_DELETE_WINDOW, which is what a window manager sends when a person closes a window."""
    library = _x_library()
    library.XInternAtom.restype = ctypes.c_ulong
    library.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    library.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long, ctypes.c_void_p]
    display = library.XOpenDisplay(None)
    event = _Event()
    event.client.type = 33  # ClientMessage
    event.client.window = window
    event.client.message_type = library.XInternAtom(display, b"WM_PROTOCOLS", 0)
    event.client.format = 32
    event.client.data[0] = library.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
    library.XSendEvent(display, window, 0, 0, ctypes.byref(event))
    library.XSync(display, 0)
    library.XCloseDisplay(display)
