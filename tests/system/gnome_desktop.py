"""GNOME's compositor as a desktop of its own for a program under test: Mutter without a screen, with an X server
for those who do not speak Wayland as GNOME does. Its pointer and keyboard are those of a remote desktop."""

import re
import shutil
import time

from virtual_desktop import VirtualDesktop, wait_for

try:
    import dbus
    import dbus.bus
except ImportError:
    dbus = None

REMOTE_DESKTOP = "org.gnome.Mutter.RemoteDesktop"
RETURN = 0xff0d
SHIFT = 0xffe1


def missing_programs():
    """What such a desktop needs and what is not there."""
    missing = [name for name in ("mutter", "Xwayland", "foot") if shutil.which(name) is None]
    return missing + ([] if dbus else ["python3-dbus"])


class GnomeDesktop(VirtualDesktop):
    """Usable as a context manager. There are no screenshots: the compositor gives none to strangers."""

    def __init__(self):
        self._position = None
        super().__init__(window_manager=None)

    # --- start

    def _start_server(self):
        del self.environment["QT_QPA_PLATFORM"]
        width, height = self.screens[0]
        self._server = self.start(["mutter", "--headless", "--wayland", "--virtual-monitor", f"{width}x{height}",
                                   "--wayland-display", "wayland-test"], env={"GSETTINGS_BACKEND": "memory"})
        runtime = self.folder / "run"
        number = wait_for(lambda: re.search(r"public X11 display (:\d+)", self._server.log),
                          message=lambda: self._server.log)
        wait_for((runtime / "wayland-test").exists, message=lambda: self._server.log)
        authority = wait_for(lambda: next(runtime.glob(".mutter-Xwaylandauth*"), None))
        self.environment |= {"DISPLAY": number.group(1), "WAYLAND_DISPLAY": "wayland-test",
                             "XAUTHORITY": str(authority)}
        self._start_seat()

    def _start_seat(self):
        bus = dbus.bus.BusConnection(self.environment["DBUS_SESSION_BUS_ADDRESS"])

        def interface(path, name):
            return dbus.Interface(bus.get_object(REMOTE_DESKTOP, path), name)

        wait_for(lambda: bus.name_has_owner(REMOTE_DESKTOP), message=lambda: self._server.log)
        desktop = interface("/org/gnome/Mutter/RemoteDesktop", REMOTE_DESKTOP)
        self._seat = interface(desktop.CreateSession(), REMOTE_DESKTOP + ".Session")
        self._seat.Start()

    def set_wallpaper(self, colour):
        """There is none."""

    # --- pointer and keyboard

    def move(self, x, y):
        if self._position is None:
            self._seat.NotifyPointerMotionRelative(-10000.0, -10000.0)
            self._position = (0, 0)
        self._seat.NotifyPointerMotionRelative(float(x - self._position[0]), float(y - self._position[1]))
        self._position = (x, y)

    def type(self, text):
        """Letters of the first 256 characters, and line breaks."""
        # XWayland swallows the first key that it gets from this keyboard.
        symbols = [SHIFT] + [RETURN if letter == "\n" else ord(letter) for letter in text]
        for symbol in symbols:
            for pressed in (True, False):
                self._seat.NotifyKeyboardKeysym(dbus.UInt32(symbol), pressed)
                time.sleep(0.015)

    def window_below_pointer(self):
        """The id of the X window that the pointer is over: the root window over what is none."""
        return int(re.search(r"window:(\d+)", self.run("xdotool", "getmouselocation")).group(1))

    def keyboard_window(self):
        """The id of the X window that has the keyboard."""
        return int(self.run("xdotool", "getwindowfocus"))
