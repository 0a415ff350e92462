"""How the panel gets along with what else is on the desktop: docks, windows below it, and buttons that are held."""

import time
import unittest

from panel_probe import Probe
from test_sidebar import SHOWN, Below, Sidebar, store
from virtual_desktop import VirtualDesktop, wait_for

WIDTH, HEIGHT, DOCK = 1440, 900, 56
BLUE = (0, 0, 255)
# Docks by the side at which they lie: their strut, their frame, and what they leave of the screen.
DOCKS = {
    "left": ((DOCK, 0, 0, 0, 0, HEIGHT - 1, 0, 0, 0, 0, 0, 0), (0, 0, DOCK, HEIGHT), (DOCK, 0, WIDTH, HEIGHT)),
    "right": ((0, DOCK, 0, 0, 0, 0, 0, HEIGHT - 1, 0, 0, 0, 0), (WIDTH - DOCK, 0, DOCK, HEIGHT),
              (0, 0, WIDTH - DOCK, HEIGHT)),
    "top": ((0, 0, DOCK, 0, 0, 0, 0, 0, 0, WIDTH - 1, 0, 0), (0, 0, WIDTH, DOCK), (0, DOCK, WIDTH, HEIGHT)),
    "bottom": ((0, 0, 0, DOCK, 0, 0, 0, 0, 0, 0, 0, WIDTH - 1), (0, HEIGHT - DOCK, WIDTH, DOCK),
               (0, 0, WIDTH, HEIGHT - DOCK)),
}


class MannersTest(unittest.TestCase):
    def desktop(self, **arguments):
        desktop = VirtualDesktop(**arguments)
        self.addCleanup(desktop.close)
        return desktop

    def start(self, desktop, **preferences):
        store(desktop, **preferences)
        return Sidebar(desktop)

    def dock(self, desktop, side):
        strut, frame, _ = DOCKS[side]
        dock = Probe(desktop, plain=True)
        desktop.run("xprop", "-id", dock.window, "-f", "_NET_WM_WINDOW_TYPE", "32a", "-set", "_NET_WM_WINDOW_TYPE",
                    "_NET_WM_WINDOW_TYPE_DOCK")
        dock.ask("strut", *strut)
        dock.show(*frame)

    # --- docks

    def test_is_reached_across_a_dock(self):
        for dock, side in (("left", "left"), ("right", "right"), ("top", "left"), ("bottom", "right")):
            with self.subTest(dock=dock, side=side):
                desktop = self.desktop()
                self.dock(desktop, dock)
                sidebar = self.start(desktop, sidebarSide=side)
                left, top, right, bottom = DOCKS[dock][2]
                shown = (left if side == "left" else right - 420, top, 420, bottom - top - 14)
                wait_for(lambda: sidebar.frame() == shown, message=lambda: f"{sidebar.frame()} instead of {shown}")
                sidebar.wait_hidden()
                desktop.move(0 if side == "left" else WIDTH - 1, 450)
                sidebar.wait_shown(shown)
                # Slowly, as a hand that does not know yet where it goes.
                desktop.move_smoothly(shown[0] + 210, 450, seconds=1.0)
                time.sleep(0.3)
                self.assertEqual(sidebar.frame(), shown)
                desktop.move(720, 450)
                sidebar.wait_hidden()
                desktop.close()

    # --- windows below

    def wait_click_arrives(self, desktop, below, *place):
        before = below.state("clicks")
        desktop.click(*place)
        wait_for(lambda: below.state("clicks") == before + 1, message=f"the click at {place} is lost")

    def test_leaves_clicks_and_keys_beside_its_cards_to_the_windows_below(self):
        for compositor in (False, True):
            with self.subTest(compositor=compositor):
                desktop = self.desktop(compositor=compositor)
                below = Probe(desktop, plain=True)
                below.show(0, 0, 1000, 900)
                below.wait_until_active()
                sidebar = self.start(desktop, alwaysVisible=True, enabledModuleIDs=["todo", "calendar"])
                sidebar.wait_shown(SHOWN)
                wait_for(lambda: desktop.pixel(200, 100) != BLUE, message="no card")
                for place in ((200, 760), (200, 402), (7, 100), (200, 20)):
                    self.wait_click_arrives(desktop, below, *place)
                    below.wait_until_active()
                desktop.type("unten")
                wait_for(lambda: below.state("typed") == "unten", message=lambda: below.state("typed"))
                clicks = below.state("clicks")
                desktop.click(200, 150)
                wait_for(lambda: desktop.active_window() == sidebar.panel(), message="the card takes no click")
                self.assertEqual(below.state("clicks"), clicks)
                desktop.close()

    # --- buttons

    def test_is_not_opened_by_what_is_moved_to_the_edge(self):
        desktop = self.desktop()
        below = Below(desktop)
        sidebar = self.start(desktop)
        sidebar.wait_peek_over()
        desktop.move(700, 300)
        desktop.at_screen("xdotool", "mousedown", 1)
        desktop.move_smoothly(0, 300)
        time.sleep(0.8)
        self.assertIsNone(sidebar.panel())
        self.assertEqual(desktop.active_window(), below.window)
        desktop.at_screen("xdotool", "mouseup", 1)
        sidebar.wait_shown(SHOWN)

    def test_stays_while_text_is_selected_beyond_it(self):
        desktop = self.desktop()
        sidebar = self.start(desktop)
        sidebar.wait_peek_over()
        desktop.move(0, 400)
        sidebar.wait_shown(SHOWN)
        desktop.move(200, 120)
        desktop.at_screen("xdotool", "mousedown", 1)
        desktop.move_smoothly(900, 120)
        time.sleep(0.8)
        self.assertEqual(sidebar.frame(), SHOWN)
        desktop.at_screen("xdotool", "mouseup", 1)
        sidebar.wait_hidden()


if __name__ == "__main__":
    unittest.main(verbosity=2)
