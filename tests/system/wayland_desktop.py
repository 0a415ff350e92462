"""A Wayland desktop of its own for a program under test: a headless sway, with a pointer and a keyboard."""

import json
import os
import shutil
import subprocess

from PIL import Image

from virtual_desktop import VirtualDesktop, wait_for

VIRTUAL_SEAT = os.environ.get("VIRTUAL_SEAT", "")
NEEDED = ("sway", "swaybg", "swaymsg", "grim", "foot")

# Codes of linux/input-event-codes.h, by the numbers that buttons have elsewhere.
BUTTONS = {1: 0x110, 2: 0x112, 3: 0x111}


def missing_programs():
    """The programs that such a desktop needs and that are not there."""
    return [name for name in NEEDED if shutil.which(name) is None]


def start_sway(desktop, configuration, environment):
    """Starts sway with these lines of configuration; as another user if need be: it refuses the superuser.

    Returns the program, and the folder of that user, where sway's sockets are.
    """
    desktop.folder.chmod(0o711)
    home = desktop.folder / "compositor"
    home.mkdir(mode=0o700)
    file = home / "config"
    file.write_text("\n".join(configuration) + "\n")
    user = {}
    if os.geteuid() == 0:
        user = {"user": "nobody", "group": "nogroup", "extra_groups": []}
        shutil.chown(home, "nobody", "nogroup")
        shutil.chown(file, "nobody", "nogroup")
    needed = {"PATH": desktop.environment["PATH"], "LC_ALL": "C.UTF-8", "HOME": str(home),
              "XDG_RUNTIME_DIR": str(home), "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1"}
    return desktop.start(["sway", "-c", str(file)], only=needed | environment, **user), home


class WaylandDesktop(VirtualDesktop):
    """Usable as a context manager. The outputs are HEADLESS-1, HEADLESS-2, …, from left to right.

    host: another such desktop, in whose windows of 1280 × 720 points the outputs WL-1, WL-2, … then are; they
        can be unplugged.
    bar: "top" or "bottom" for a bar of 30 points there, on every output.
    scale: the outputs' scale factor; sizes are in points all the same.
    """

    def __init__(self, screens=((1440, 900),), bar=None, scale=1, wallpaper="#38506a", host=None):
        self._host = host
        self._bar = bar
        self._scale = scale
        super().__init__(screens=screens, window_manager=None, wallpaper=wallpaper)

    # --- start

    def _start_server(self):
        del self.environment["QT_QPA_PLATFORM"]
        if self._host:
            environment = {"WLR_BACKENDS": "wayland", "WLR_WL_OUTPUTS": str(len(self.screens)),
                           "WAYLAND_DISPLAY": self._host.environment["WAYLAND_DISPLAY"]}
        else:
            environment = {"WLR_BACKENDS": "headless", "WLR_HEADLESS_OUTPUTS": str(len(self.screens))}
        self._server, home = start_sway(self, self._configuration(), environment)

        def socket(pattern):
            assert self._server.is_running(), self._server.log
            return next(iter(home.glob(pattern)), None)

        self.environment["SWAYSOCK"] = str(wait_for(lambda: socket("sway-ipc.*.sock"), message="no sway"))
        self.environment["WAYLAND_DISPLAY"] = str(wait_for(lambda: socket("wayland-*[0-9]"), message="no socket"))
        wait_for(lambda: [(output["rect"]["width"], output["rect"]["height"]) for output in self.outputs()]
                 == self.screens, message=lambda: f"other outputs: {self.outputs()}")
        self._seat = self.start([VIRTUAL_SEAT], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        assert self._answer() == "ready", self._seat.log
        self._measure()

    def _configuration(self):
        lines = ["xwayland disable", "focus_follows_mouse no", "default_border none",
                 'for_window [title="wlroots"] floating enable']
        left = 0
        for index, (width, height) in enumerate(self.screens):
            lines.append(f"output HEADLESS-{index + 1} resolution {round(width * self._scale)}x"
                         f"{round(height * self._scale)} position {left} 0 scale {self._scale}")
            left += width
        if self._bar:
            lines.append(f"bar {{\n position {self._bar}\n height 30\n status_command sleep 1000\n}}")
        return lines

    def set_wallpaper(self, colour):
        self.swaymsg("output", "*", "bg", colour, "solid_color")
        wanted = tuple(bytes.fromhex(colour.lstrip("#")))
        width, height = self.screens[0]
        wait_for(lambda: self.pixel(width // 2, height // 2) == wanted, message="no wallpaper")

    def _measure(self):
        rects = [output["rect"] for output in self.outputs()]
        self._tell("extent", max(rect["x"] + rect["width"] for rect in rects),
                   max(rect["y"] + rect["height"] for rect in rects))

    # --- the compositor

    def swaymsg(self, *arguments):
        return self.run("swaymsg", *arguments)

    def outputs(self):
        return [output for output in json.loads(self.swaymsg("-r", "-t", "get_outputs")) if output["active"]]

    def wait_window_has_keyboard(self, has=True):
        """Waits until an ordinary window has the keyboard; or, if has is false, until none has."""
        wait_for(lambda: ('"focused": true' in self.swaymsg("-r", "-t", "get_tree")) == has,
                 message="nobody has the keyboard" if has else "a window keeps the keyboard")

    def plug(self, width, height):
        """Connects another output, right of the others."""
        before = len(self.outputs())
        self.swaymsg("create_output")
        wait_for(lambda: len(self.outputs()) == before + 1, message="no new output")
        name = self.outputs()[-1]["name"]
        self.swaymsg("output", name, "resolution", f"{width}x{height}")
        self._measure()
        return name

    def resize(self, name, width, height):
        """Gives an output another size."""
        self.swaymsg("output", name, "resolution", f"{width}x{height}")
        self._measure()

    def unplug(self, name):
        """Disconnects an output of a desktop that has a host."""
        self._host.swaymsg(f'[title="{name}"] kill')
        wait_for(lambda: name not in [output["name"] for output in self.outputs()], message="still plugged")
        self._measure()

    # --- pointer and keyboard

    def _answer(self):
        return self._seat.process.stdout.readline().decode().strip()

    def _tell(self, *words):
        self._seat.process.stdin.write((" ".join(map(str, words)) + "\n").encode())
        self._seat.process.stdin.flush()
        assert self._answer() == "done", self._seat.log

    def move(self, x, y):
        self._pointer = (x, y)
        self._tell("move", x, y)

    def pointer(self):
        return self._pointer

    def click(self, x=None, y=None, button=1, repeat=1):
        if x is not None:
            self.move(x, y)
        for _ in range(repeat):
            self._tell("button", BUTTONS[button], 1)
            self._tell("button", BUTTONS[button], 0)

    def hold(self, pressed, button=1):
        """Presses a button, or lets it go."""
        self._tell("button", BUTTONS[button], int(pressed))

    def key(self, *combinations):
        for combination in combinations:
            self._tell("key", *combination.split("+"))

    def type(self, text):
        self._tell("type", text)

    # --- what there is to see

    def screenshot(self, path=None):
        """All outputs; kept at path, if one is given."""
        target = path or self.folder / "screenshot.png"
        self.run("grim", target)
        with Image.open(target) as image:
            return image.convert("RGB")

    def pixel(self, x, y):
        target = self.folder / "pixel.png"
        self.run("grim", "-s", 1, "-g", f"{x},{y} 1x1", target)
        with Image.open(target) as image:
            return image.convert("RGB").getpixel((0, 0))
