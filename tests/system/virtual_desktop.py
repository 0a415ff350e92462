"""A desktop of its own for a program under test: X server, window manager, session bus, home folder.

Several may run at once. Everything that a desktop starts ends with it, and with this process at the latest.
"""

import ctypes
import json
import os
import re
import shutil
import signal
import sqlite3
import subprocess
import tempfile
import time
from pathlib import Path

from PIL import Image

POLL_INTERVAL = 0.02
DEFAULT_TIMEOUT = 10.0

# What a command begins with, so that file permissions hold for it as for a person. The superuser may read
# everything; without what sets him apart he is a user like any other.
AS_A_PERSON = ("setpriv", "--bounding-set=-all", "--inh-caps=-all") if os.geteuid() == 0 else ()

WINDOW_MANAGER_ARGUMENTS = {"openbox": ["--sm-disable"], "mutter": ["--x11", "--sm-disable"],
                            "xfwm4": ["--sm-client-disable"], "i3": ["-c", "{folder}/i3.conf"]}

# With none, i3 asks for one.
I3_CONFIGURATION = """# i3 config file (v4)
font pango:monospace 8
"""

BUS_CONFIGURATION = """<busconfig>
  <type>session</type>
  <listen>unix:dir={runtime}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


def wait_for(condition, timeout=DEFAULT_TIMEOUT, message="condition not met"):
    """Returns the first true value of condition(), or raises AssertionError after timeout seconds.

    The message may be a function, called at the end, to say what was there instead.
    """
    end = time.monotonic() + timeout
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(message() if callable(message) else message)
        time.sleep(POLL_INTERVAL)


def _end_with_parent():
    pr_set_pdeathsig = 1
    ctypes.CDLL(None).prctl(pr_set_pdeathsig, signal.SIGTERM)


class Program:
    """A started program, with what it wrote."""

    def __init__(self, arguments, environment, log_path, **popen):
        self.log_path = Path(log_path)
        self._log = open(self.log_path, "wb")
        popen.setdefault("stdout", self._log)
        self.process = subprocess.Popen(arguments, env=environment, stderr=self._log,
                                        preexec_fn=_end_with_parent, **popen)

    @property
    def pid(self):
        return self.process.pid

    @property
    def log(self):
        return self.log_path.read_text(encoding="utf-8", errors="replace")

    def is_running(self):
        return self.process.poll() is None

    def wait(self, timeout=DEFAULT_TIMEOUT):
        """Waits for the program to end by itself; returns its exit code."""
        return self.process.wait(timeout)

    def terminate(self, timeout=5.0):
        """Asks the program to end, and ends it if it does not. Returns its exit code."""
        if self.is_running():
            self.process.terminate()
            try:
                self.process.wait(timeout)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        for stream in (self.process.stdin, self.process.stdout, self._log):
            if stream:
                stream.close()
        return self.process.returncode


class VirtualDesktop:
    """Usable as a context manager.

    screens: (width, height) of each monitor, from left to right, upper edges aligned.
    window_manager: "openbox", another program on the path, or None.
    compositor: whether picom runs.
    wallpaper: a colour as hsetroot takes it.
    """

    def __init__(self, screens=((1440, 900),), window_manager="openbox", compositor=False,
                 wallpaper="#38506a"):
        self.screens = list(screens)
        self.folder = Path(tempfile.mkdtemp(prefix="desktop-"))
        self._programs = []
        self._count = 0
        self._window_manager = window_manager
        try:
            self._prepare_folders()
            self._start_bus()
            self._start_server()
            if window_manager:
                self.start_window_manager(window_manager)
            if compositor:
                self.start_compositor()
            self.set_wallpaper(wallpaper)
            # In the middle of the first monitor, away from every edge that might react.
            self.move(self.screens[0][0] // 2, self.screens[0][1] // 2)
        except BaseException:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        for program in reversed(self._programs):
            program.terminate()
        self._programs.clear()
        shutil.rmtree(self.folder, ignore_errors=True)

    # --- start

    def _prepare_folders(self):
        folders = {"HOME": "home", "XDG_DATA_HOME": "home/.local/share", "XDG_CONFIG_HOME": "home/.config",
                   "XDG_CACHE_HOME": "home/.cache", "XDG_STATE_HOME": "home/.local/state",
                   "XDG_RUNTIME_DIR": "run"}
        self.environment = {"PATH": os.environ.get("PATH", "/usr/bin:/bin"),
                            "LC_ALL": "C.UTF-8", "TZ": "Europe/Berlin", "QT_QPA_PLATFORM": "xcb",
                            "QT_FORCE_STDERR_LOGGING": "1", "LIBGL_ALWAYS_SOFTWARE": "1",
                            "NO_AT_BRIDGE": "1", "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "")}
        for variable, relative in folders.items():
            path = self.folder / relative
            path.mkdir(parents=True, exist_ok=True, mode=0o700)
            self.environment[variable] = str(path)
        self.home = self.folder / "home"
        self.data_home = Path(self.environment["XDG_DATA_HOME"])
        self.config_home = Path(self.environment["XDG_CONFIG_HOME"])

    def _start_server(self):
        width = sum(screen[0] for screen in self.screens)
        height = max(screen[1] for screen in self.screens)
        reading, writing = os.pipe()
        try:
            self._server = self.start(
                ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{width}x{height}x24", "-nolisten",
                 "tcp", "-noreset", "+extension", "GLX"], pass_fds=(writing,))
        finally:
            os.close(writing)
        with os.fdopen(reading) as stream:
            number = stream.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start: " + self._server.log)
        self.environment["DISPLAY"] = ":" + number
        # Letters with umlauts are keys of this layout: nothing has to be remapped while typing.
        self.run("setxkbmap", "de")
        if len(self.screens) > 1:
            self.set_monitors(self.screens)

    def set_monitors(self, screens):
        """Divides the X screen into monitors MON-1, MON-2, … of these sizes, from left to right."""
        for line in self.run("xrandr", "--listmonitors").splitlines()[1:]:
            name = line.split()[1].lstrip("+*")
            if name.startswith("MON-"):
                self.run("xrandr", "--delmonitor", name)
        left = 0
        for index, (width, height) in enumerate(screens):
            # The first takes over the server's only output; a monitor may have none.
            output = "screen" if index == 0 else "none"
            self.run("xrandr", "--setmonitor", f"MON-{index + 1}",
                     f"{width}/{width // 4}x{height}/{height // 4}+{left}+0", output)
            left += width
        self.screens = list(screens)

    def _start_bus(self):
        services = self.data_home / "dbus-1/services"
        services.mkdir(parents=True)
        configuration = self.folder / "bus.conf"
        configuration.write_text(BUS_CONFIGURATION.format(runtime=self.environment["XDG_RUNTIME_DIR"],
                                                          services=services))
        self._session_bus = self.start(["dbus-daemon", f"--config-file={configuration}", "--print-address", "--nofork",
                          "--nopidfile"], stdout=subprocess.PIPE)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._session_bus.process.stdout.readline().decode().strip()

    def end_bus(self):
        """Ends the session bus, as at the end of a session."""
        self._session_bus.terminate()

    def start_window_manager(self, name):
        (self.folder / "i3.conf").write_text(I3_CONFIGURATION)
        manager = self.start([name, *(argument.format(folder=self.folder)
                                      for argument in WINDOW_MANAGER_ARGUMENTS.get(name, ()))])
        wait_for(lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK")
                 and "_NET_ACTIVE_WINDOW" in self.run("xprop", "-root", "_NET_SUPPORTED"),
                 message=lambda: f"{name} did not start: {manager.log}")
        return manager

    def start_compositor(self):
        return self.start(["picom", "--backend", "xrender", "--config", "/dev/null"])

    def set_wallpaper(self, what):
        """A colour, or the path of a picture."""
        self.run("hsetroot", "-cover" if isinstance(what, Path) else "-solid", what)

    # --- programs

    def start(self, arguments, env=None, only=None, **popen):
        """Starts a program on this desktop; it ends with the desktop at the latest.

        env: variables beside those of the desktop; only: variables in their place.
        """
        if isinstance(arguments, (str, Path)):
            arguments = [str(arguments)]
        self._count += 1
        log_path = self.folder / f"{self._count}-{Path(arguments[0]).name}.log"
        program = Program(arguments, only or {**self.environment, **(env or {})}, log_path, **popen)
        self._programs.append(program)
        return program

    def run(self, *arguments, check=True, env=None):
        """Runs a command to its end and returns its standard output. env: other variables than the desktop's."""
        done = subprocess.run([str(argument) for argument in arguments], env=env or self.environment,
                              capture_output=True, timeout=30, check=False)
        if check and done.returncode != 0:
            raise RuntimeError(f"{' '.join(map(str, arguments))}: {done.stderr.decode(errors='replace')}")
        return done.stdout.decode(errors="replace")

    # --- windows

    def windows(self, pattern):
        """The ids of the visible windows whose title matches the regular expression; where a window manager
        runs, of those that it manages."""
        if not self._window_manager:
            found = self.run("xdotool", "search", "--onlyvisible", "--name", pattern, check=False)
            return [int(line) for line in found.split()]
        return [window for window in self.stacking()
                if re.search(pattern, self.title(window)) and self.is_mapped(window)]

    def title(self, window):
        """A window's title; empty if it has none, or if there is no such window."""
        text = self.run("xprop", "-id", window, "_NET_WM_NAME", "WM_NAME", check=False)
        found = re.search(r'= "(.+)"$', text, re.MULTILINE)
        return found.group(1) if found else ""

    def geometry(self, window):
        """(x, y, width, height) of a window without its frame, in pixels from the upper left corner."""
        text = self.run("xwininfo", "-id", window)
        return tuple(int(re.search(label + r":\s+(-?\d+)", text).group(1))
                     for label in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))

    def is_mapped(self, window):
        return "IsViewable" in self.run("xwininfo", "-id", window, check=False)

    def property(self, window, name):
        """A window property as xprop writes it, without its name; empty if there is none."""
        text = self.run("xprop", "-id", window, name)
        return text.split("=", 1)[1].strip() if "=" in text else ""

    def stacking(self):
        """The managed windows' ids, lowest first."""
        text = self.run("xprop", "-root", "_NET_CLIENT_LIST_STACKING")
        return [int(number, 16) for number in re.findall(r"0x[0-9a-f]+", text)]

    def active_window(self):
        """The id of the window that has the keyboard, or None."""
        text = self.run("xprop", "-root", "_NET_ACTIVE_WINDOW")
        found = re.search(r"0x[0-9a-f]+", text)
        return (int(found.group(), 16) or None) if found else None

    # --- pointer and keyboard

    def at_screen(self, *arguments):
        """Runs a tool on the X server whose screen a person would be in front of."""
        return self.run(*arguments)

    def move(self, x, y):
        self.at_screen("xdotool", "mousemove", x, y)

    def move_smoothly(self, x, y, seconds=0.25):
        """Moves the pointer on a straight line, as a hand does, at 60 steps a second."""
        start_x, start_y = self.pointer()
        steps = max(1, round(seconds * 60))
        arguments = []
        for step in range(1, steps + 1):
            arguments += ["mousemove", round(start_x + (x - start_x) * step / steps),
                          round(start_y + (y - start_y) * step / steps), "sleep", f"{seconds / steps:.4f}"]
        self.at_screen("xdotool", *arguments)

    def pointer(self):
        text = self.at_screen("xdotool", "getmouselocation")
        return tuple(int(number) for number in re.match(r"x:(\d+) y:(\d+)", text).groups())

    def click(self, x=None, y=None, button=1, repeat=1):
        if x is not None:
            self.move(x, y)
        self.at_screen("xdotool", "click", "--repeat", repeat, "--delay", 60, button)

    def right_click(self, x=None, y=None):
        self.click(x, y, button=3)

    def double_click(self, x=None, y=None):
        self.click(x, y, repeat=2)

    def scroll(self, notches):
        """Turns the wheel: downwards for positive numbers."""
        self.click(button=5 if notches > 0 else 4, repeat=abs(notches))

    def drag(self, start, end, seconds=0.3):
        self.move(*start)
        self.at_screen("xdotool", "mousedown", 1)
        self.move_smoothly(*end, seconds=seconds)
        self.at_screen("xdotool", "mouseup", 1)

    def key(self, *combinations):
        """Presses keys, one after another, as "Return" or "ctrl+comma"."""
        self.at_screen("xdotool", "key", "--delay", 20, *combinations)

    def type(self, text):
        self.type_slowly(text, 15)

    def type_slowly(self, text, milliseconds):
        """Types with this time after each character."""
        self.at_screen("xdotool", "type", "--delay", milliseconds, "--", text)

    # --- what there is to see

    def screenshot(self, path=None):
        """The whole X screen; kept at path, if one is given."""
        target = Path(path) if path else self.folder / "screenshot.png"
        self.at_screen("maim", "--hidecursor", target)
        with Image.open(target) as image:
            return image.convert("RGB")

    def pixel(self, x, y):
        """The colour at a place of the screen, as three numbers up to 255."""
        target = self.folder / "pixel.png"
        self.at_screen("maim", "--hidecursor", "-g", f"1x1+{x}+{y}", target)
        with Image.open(target) as image:
            return image.convert("RGB").getpixel((0, 0))

    def store(self, **preferences):
        """Writes preferences as an earlier run of the program would have left them."""
        folder = self.data_home / "quillbar"
        folder.mkdir(exist_ok=True)
        database = sqlite3.connect(folder / "preferences.sqlite")
        database.execute("CREATE TABLE IF NOT EXISTS preferences (key TEXT PRIMARY KEY NOT NULL, type TEXT NOT NULL, "
                         "value ANY NOT NULL) STRICT, WITHOUT ROWID")
        kinds = {str: ("string", str), bool: ("boolean", bool), float: ("double", float), bytes: ("data", bytes),
                 list: ("array", json.dumps), dict: ("data", lambda value: json.dumps(value).encode())}
        for key, value in preferences.items():
            kind, encode = ("dictionary", json.dumps) if key == "moduleHeights" else kinds[type(value)]
            database.execute("INSERT OR REPLACE INTO preferences VALUES (?, ?, ?)", (key, kind, encode(value)))
        database.execute("PRAGMA user_version = 1")
        database.commit()
        database.close()

    def preferences(self, data_home=None):
        """The stored preferences by key, with the values' types as they were stored."""
        return self._rows("preferences", data_home)

    def drafts(self):
        """What is being typed, by key."""
        return self._rows("drafts")

    def _rows(self, table, data_home=None):
        path = Path(data_home or self.data_home) / "quillbar/preferences.sqlite"
        if not path.exists():
            return {}
        decode = {"string": str, "boolean": bool, "double": float, "array": json.loads,
                  "dictionary": json.loads, "data": bytes}
        database = sqlite3.connect(f"file:{path}?mode=ro", uri=True, timeout=5)
        try:
            rows = database.execute(f"SELECT key, type, value FROM {table}").fetchall()
        finally:
            database.close()
        return {key: decode[kind](value) for key, kind, value in rows}
