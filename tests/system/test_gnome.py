"""The sidebar on GNOME, as a guest through XWayland: its X server knows the pointer only over X windows."""

import itertools
import sys
import time
import unittest

from gnome_desktop import GnomeDesktop, missing_programs
from panel_probe import Probe
from test_sidebar import SHOWN, Sidebar, store
from virtual_desktop import wait_for

SKIPPED = 77


class GnomeTest(unittest.TestCase):
    def start(self, dock=0, **preferences):
        self.desktop = GnomeDesktop()
        self.addCleanup(self.desktop.close)
        self.typed = self.desktop.folder / "typed"
        # A window of the compositor's own kind that fills the screen.
        self.desktop.start(["foot", "--fullscreen", "sh", "-c", f"cat > {self.typed}"])
        wait_for(self.typed.exists, message="no terminal")
        if dock:
            self.reserve(dock)
        store(self.desktop, **preferences)
        self.sidebar = Sidebar(self.desktop)
        self.sidebar.wait_peek_over()

    def reserve(self, width):
        """Keeps room at the left as the desktop's own dock does, over which no X server knows the pointer."""
        dock = Probe(self.desktop, plain=True, env={"QT_QPA_PLATFORM": "xcb"})
        self.desktop.run("xprop", "-id", dock.window, "-f", "_NET_WM_WINDOW_TYPE", "32a", "-set", "_NET_WM_WINDOW_TYPE",
                         "_NET_WM_WINDOW_TYPE_DOCK")
        dock.ask("strut", width, 0, 0, 0, 0, 899, 0, 0, 0, 0, 0, 0)
        dock.show(720, 899, 1, 1)
        wait_for(lambda: dock.state("screens")[0]["visibleFrame"][0] == width, message=lambda: str(dock.state("screens")))

    def wait_until_the_terminal_has_the_keyboard(self):
        before = self.typed.stat().st_size
        wait_for(lambda: self.desktop.type("x\n") or self.typed.stat().st_size > before,
                 message="the keyboard is not given back")

    def stay_on_the_panel(self, seconds):
        """With a hand that is never quite still: that the panel slid below a pointer at rest goes unnoticed."""
        end = time.monotonic() + seconds
        for x in itertools.cycle((200, 201)):
            self.desktop.move(x, 400)
            if time.monotonic() > end:
                break
            time.sleep(0.05)

    def reveal(self, *place):
        self.desktop.move(*place)
        self.sidebar.wait_shown(SHOWN)

    def leave(self, *place):
        self.desktop.move(*place)
        self.sidebar.wait_hidden()

    def test_comes_and_goes_over_a_foreign_full_screen_window(self):
        self.start()
        for round in range(2):
            self.reveal(0, 400)
            self.stay_on_the_panel(seconds=0.6)
            # Not only mapped, but above: the pointer finds it.
            self.assertEqual(self.desktop.window_below_pointer(), self.sidebar.panel())
            wait_for(lambda: self.desktop.keyboard_window() == self.sidebar.panel(), message="no keyboard")
            self.desktop.type(f"Brot {round}\n")
            wait_for(lambda: len(self.sidebar.tasks()) == round + 1, message=lambda: self.sidebar.program.log)
            self.leave(900, 700)
            self.wait_until_the_terminal_has_the_keyboard()
        self.assertEqual(sorted(task["title"] for task in self.sidebar.tasks()), ["Brot 0", "Brot 1"])

    def test_is_reached_across_a_dock(self):
        self.start(dock=56)
        self.desktop.move(0, 400)
        wait_for(lambda: self.sidebar.frame() == (56, *SHOWN[1:]), message=lambda: str(self.sidebar.frame()))
        for x in range(1, 56, 6):
            self.desktop.move(x, 400)
            time.sleep(0.08)
        self.assertEqual(self.sidebar.frame(), (56, *SHOWN[1:]), self.sidebar.program.log)
        self.stay_on_the_panel(seconds=0.6)
        self.assertEqual(self.sidebar.frame(), (56, *SHOWN[1:]))
        self.leave(900, 700)

    def test_comes_when_the_pointer_is_pushed_into_a_corner(self):
        self.start(triggerMode="corners", sidebarSide="right")
        self.desktop.move(1439, 400)
        time.sleep(0.5)
        self.assertIsNone(self.sidebar.panel(), self.sidebar.program.log)
        self.desktop.move(1400, 899)
        wait_for(lambda: self.sidebar.frame() == (1020, *SHOWN[1:]), message=lambda: str(self.sidebar.frame()))
        self.leave(900, 700)
        self.wait_until_the_terminal_has_the_keyboard()


if __name__ == "__main__":
    if missing_programs():
        print("missing:", *missing_programs())
        sys.exit(SKIPPED)
    unittest.main()
