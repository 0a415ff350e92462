"""The sidebar on KDE's Wayland desktop: the built program on a KWin in a window."""

import sys
import time
import unittest

from nested_desktop import NestedDesktop, missing_programs
from panel_probe import Probe
from test_sidebar import APPLICATION, store
from test_wayland import ON_CARD, WaylandSidebar
from virtual_desktop import wait_for

SKIPPED = 77
BLUE = (0, 0, 255)
EDGE = (0, 400)
CORNER = (60, 50)
AWAY = (1000, 700)
ON_OTHER = (1300, 450)


class KdeTest(unittest.TestCase):
    def setUp(self):
        self.desktop = NestedDesktop("kwin_wayland")
        self.addCleanup(self.desktop.close)
        # In the middle of the screen, where the compositor puts it, wider than the settings.
        self.other = Probe(self.desktop, plain=True, env={"QT_QPA_PLATFORM": "wayland"})
        self.other.show(0, 0, 1300, 240)
        self.other.wait_until_active()

    def launch(self, **preferences):
        store(self.desktop, triggerMode="both", **preferences)
        self.sidebar = WaylandSidebar(self.desktop)

    def launch_over_full_screen(self):
        self.other.ask("fullscreen")
        wait_for(lambda: self.desktop.pixel(*ON_CARD) == BLUE, message="not on the full screen")
        self.launch()
        self.sidebar.background = BLUE
        self.sidebar.wait_peek_over()

    def reveal(self, *place):
        self.desktop.move(*place)
        self.sidebar.wait_up()
        wait_for(lambda: not self.other.state("active"), message="the panel has no keyboard")

    def leave(self):
        self.desktop.move(*AWAY)
        self.sidebar.wait_hidden()
        self.other.wait_until_active()

    def test_comes_at_the_edge_takes_what_is_typed_and_gives_the_keyboard_back(self):
        self.launch()
        self.sidebar.wait_peek_over()
        self.reveal(*EDGE)
        self.desktop.type("Brötchen für Jürgen")
        self.desktop.key("Return")
        wait_for(self.sidebar.tasks, message=lambda: "nothing stored\n" + self.sidebar.program.log)
        self.assertEqual(self.sidebar.tasks()[0]["title"], "Brötchen für Jürgen")
        for inside in ((300, 870), (434, 400)):
            self.desktop.move(*inside)
            time.sleep(0.5)
            self.assertTrue(self.sidebar.panel(), f"hidden with the pointer at {inside}")
        self.leave()
        self.reveal(*CORNER)
        self.leave()
        self.desktop.type("ä")
        wait_for(lambda: self.other.state("typed") == "ä", message=lambda: self.other.state("typed"))

    def test_comes_over_a_full_screen_window_and_leaves_its_clicks_alone(self):
        self.launch_over_full_screen()
        for place in (EDGE, CORNER):
            self.reveal(*place)
            self.desktop.click(*ON_CARD)
            self.leave()
        self.assertEqual(self.other.state("clicks"), 0)
        # Beside the zone of 3 points, over what was the panel, and in the corner, which is only watched.
        for number, place in enumerate(((16, 400), ON_CARD, AWAY), 1):
            self.desktop.click(*place)
            wait_for(lambda: self.other.state("clicks") == number, message=f"the click at {place} is lost")

    def test_takes_the_keyboard_only_where_it_is_always_visible(self):
        self.launch(alwaysVisible=True)
        self.sidebar.wait_up()
        self.desktop.type("dort")
        wait_for(lambda: self.other.state("typed") == "dort", message="the panel takes the keyboard by itself")
        # Into the field of the to-do card.
        self.desktop.click(200, 341)
        self.desktop.type("hier")
        self.desktop.key("Return")
        wait_for(self.sidebar.tasks, message=lambda: "nothing stored\n" + self.sidebar.program.log)
        self.desktop.click(*ON_OTHER)
        self.other.wait_until_active()
        self.desktop.type("wieder dort")
        wait_for(lambda: self.other.state("typed") == "dortwieder dort", message=lambda: self.other.state("typed"))

    def test_brings_open_settings_to_the_front(self):
        self.launch()
        self.sidebar.wait_peek_over()
        for _ in range(2):
            self.desktop.run("gdbus", "call", *APPLICATION, "org.freedesktop.Application.ActivateAction", "settings",
                             "@av []", "@a{sv} {}")
            wait_for(lambda: not self.other.state("active"), message="the settings have no keyboard")
            self.desktop.click(*ON_OTHER)
            self.other.wait_until_active()


if __name__ == "__main__":
    if missing_programs("kwin_wayland"):
        print("missing:", *missing_programs("kwin_wayland"))
        sys.exit(SKIPPED)
    unittest.main()
