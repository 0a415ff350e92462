"""The same walk through the built program with each window manager: test_window_managers.py <program>."""

import shutil
import sys
import unittest

from panel_probe import Probe
from test_sidebar import APPLICATION, SHOWN, Sidebar, store
from virtual_desktop import VirtualDesktop, wait_for

SKIPPED = 77
BLUE = (0, 0, 255)
SETTINGS = "^Einstellungen – Quillbar$"
EDGE = (0, 400)
CORNER = (60, 50)
AWAY = (1000, 700)


class Walk(unittest.TestCase):
    manager = "openbox"

    def setUp(self):
        self.desktop = VirtualDesktop(window_manager=self.manager)
        self.addCleanup(self.desktop.close)
        self.other = Probe(self.desktop, plain=True)
        self.other.show(1160, 100, 240, 300)
        self.other.wait_until_active()
        store(self.desktop, triggerMode="both")
        self.sidebar = Sidebar(self.desktop)
        self.addCleanup(lambda: self.assertNotIn(".qml:", self.sidebar.program.log))
        self.sidebar.wait_peek_over()

    def reveal(self, *place):
        self.desktop.move(*place)
        self.sidebar.wait_shown(SHOWN)
        wait_for(lambda: self.desktop.active_window() == self.sidebar.panel(),
                 message="the panel has no keyboard")

    def leave(self):
        self.desktop.move(*AWAY)
        self.sidebar.wait_hidden()
        self.other.wait_until_active()

    def wait_seen(self, x, y, is_other):
        wait_for(lambda: (self.desktop.screenshot().getpixel((x, y)) == BLUE) == is_other,
                 message=lambda: f"{self.desktop.screenshot().getpixel((x, y))} at {x}, {y}")

    def test_comes_at_the_edge_takes_what_is_typed_and_gives_the_keyboard_back(self):
        self.reveal(*EDGE)
        self.desktop.type("Brot")
        self.desktop.key("Return")
        wait_for(self.sidebar.tasks, message=lambda: "nothing stored\n" + self.sidebar.program.log)
        self.assertEqual(self.sidebar.tasks()[0]["title"], "Brot")
        self.leave()
        self.reveal(*CORNER)
        self.leave()
        self.desktop.type("a")
        wait_for(lambda: self.other.state("typed") == "a", message=lambda: self.other.state("typed"))

    def test_comes_up_over_a_full_screen_window(self):
        self.other.ask("fullscreen")
        self.other.wait_for_geometry(0, 0, 1440, 900)
        self.wait_seen(210, 200, is_other=True)
        for place in (EDGE, CORNER):
            self.reveal(*place)
            self.wait_seen(210, 200, is_other=False)
            self.wait_seen(900, 700, is_other=True)
            self.leave()
            self.wait_seen(210, 200, is_other=True)

    def test_brings_open_settings_to_the_front(self):
        for _ in range(2):
            self.desktop.run("gdbus", "call", *APPLICATION, "org.freedesktop.Application.ActivateAction", "settings",
                             "@av []", "@a{sv} {}")
            window = wait_for(lambda: self.desktop.windows(SETTINGS), message=lambda: self.sidebar.program.log)[0]
            wait_for(lambda: self.desktop.active_window() == window, message="the settings have no keyboard")
            stacking = self.desktop.stacking()
            self.assertGreater(stacking.index(window), stacking.index(self.other.window))
            # The user goes on to the other window and does something there, of which Quillbar knows nothing.
            left, top, width, height = self.desktop.geometry(self.other.window)
            self.desktop.click(left + width // 2, top + height // 2)
            self.other.wait_until_active()
            typed = self.other.state("typed") + "a"
            self.desktop.type("a")
            wait_for(lambda: self.other.state("typed") == typed)


if __name__ == "__main__":
    if len(sys.argv) > 1:
        Walk.manager = sys.argv.pop(1)
    if not shutil.which(Walk.manager):
        print(f"{Walk.manager} is not installed")
        sys.exit(SKIPPED)
    unittest.main()
