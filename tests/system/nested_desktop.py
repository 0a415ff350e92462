"""A Wayland desktop in a window that fills an X server of its own, whose pointer and keyboard work it and whose picture
shows what the compositor made of everything. X programs are guests on it, through XWayland."""

import re
import shutil
from pathlib import Path

from virtual_desktop import VirtualDesktop, wait_for
from wayland_desktop import start_sway

NEEDED = {"sway": ("sway", "swaybg"), "kwin_wayland": ("kwin_wayland", "swaybg"), "mutter": ("mutter",)}

# The first program tells what others need to know.
SESSION = """#!/bin/sh
printenv >"$XDG_RUNTIME_DIR/session.new" && mv "$XDG_RUNTIME_DIR/session.new" "$XDG_RUNTIME_DIR/session"
"""


def missing_programs(compositor):
    """What such a desktop needs and what is not there."""
    return [name for name in (*NEEDED[compositor], "Xwayland") if shutil.which(name) is None]


class NestedDesktop(VirtualDesktop):
    """Usable as a context manager. There is one screen.

    compositor: "sway", "kwin_wayland" or "mutter"; the last has a wallpaper of its own.
    """

    def __init__(self, compositor, screen=(1440, 900), wallpaper="#38506a"):
        self._compositor = compositor
        self._wallpaper = None
        super().__init__(screens=[screen], window_manager=None, wallpaper=wallpaper)

    # --- start

    def _start_server(self):
        super()._start_server()
        del self.environment["QT_QPA_PLATFORM"]
        self._outside = dict(self.environment)
        session = self.folder / "session"
        session.write_text(SESSION)
        session.chmod(0o755)
        start = {"sway": self._start_sway, "kwin_wayland": self._start_kwin, "mutter": self._start_mutter}
        compositor, runtime = start[self._compositor](*self.screens[0], str(session))

        def told():
            assert compositor.is_running(), compositor.log
            return (runtime / "session").exists()
        wait_for(told, message=lambda: compositor.log)
        variables = dict(re.findall(r"^(DISPLAY|XAUTHORITY|WAYLAND_DISPLAY)=(.+)$", (runtime / "session").read_text(),
                                    re.MULTILINE))
        self.environment |= variables | {"WAYLAND_DISPLAY": str(runtime / variables["WAYLAND_DISPLAY"])}

    def _start_sway(self, width, height, session):
        lines = [f"output X11-1 resolution {width}x{height}", "input * xkb_layout de", "default_border none",
                 "for_window [title=.*] floating enable",
                 # Sway's user is another one, whom its X server would serve alone.
                 f"exec xhost +local: && {session}"]
        return start_sway(self, lines, {"WLR_BACKENDS": "x11", "DISPLAY": self.environment["DISPLAY"]})

    def _start_kwin(self, width, height, session):
        # A container cannot give what the installed file asks for, without which it works as well.
        program = self.folder / "kwin_wayland"
        shutil.copyfile(shutil.which("kwin_wayland"), program)
        program.chmod(0o755)
        return self.start([str(program), "--x11-display", self.environment["DISPLAY"], "--width", str(width),
                           "--height", str(height), "--xwayland", "--no-lockscreen", "--no-global-shortcuts", session],
                          env={"KWIN_COMPOSE": "Q", "KWIN_XKB_DEFAULT_KEYMAP": "1", "XKB_DEFAULT_LAYOUT": "de"}
                          ), self.folder / "run"

    def _start_mutter(self, width, height, session):
        # It ends with its first program, which in turn must not outlive it.
        return self.start(["mutter", "--nested", "--wayland", "--", "sh", "-c",
                           f"{session}; exec tail --pid=$PPID -f /dev/null"],
                          env={"MUTTER_DEBUG_DUMMY_MODE_SPECS": f"{width}x{height}", "GSETTINGS_BACKEND": "memory"}
                          ), self.folder / "run"

    def set_wallpaper(self, what):
        """A colour, or the path of a picture."""
        if self._compositor == "mutter":
            return
        before = self.screenshot()
        old = self._wallpaper
        self._wallpaper = self.start(["swaybg", "-m", "fill", "-i" if isinstance(what, Path) else "-c", str(what)])
        wait_for(lambda: self.screenshot() != before, message=lambda: "no wallpaper: " + self._wallpaper.log)
        if old:
            old.terminate()

    # --- pointer, keyboard and picture

    def at_screen(self, *arguments):
        return self.run(*arguments, env=self._outside)
