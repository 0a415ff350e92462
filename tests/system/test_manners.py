"""How the panel gets along with what else is on the desktop: docks, windows below it, and buttons that are held."""

import json
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

    # --- what is dropped

    def drop(self, desktop, sidebar, start, *place):
        desktop.move(*start)
        desktop.at_screen("xdotool", "mousedown", 1)
        desktop.move_smoothly(0, 450)
        sidebar.wait_shown(SHOWN)
        desktop.move_smoothly(*place, seconds=0.4)
        # What moves on gets an answer.
        desktop.at_screen("xdotool", "sleep", 0.3, "mousemove_relative", 1, 1, "sleep", 0.3, "mouseup", 1)

    def test_takes_what_is_dropped_on_its_cards(self):
        desktop = self.desktop()
        source = Probe(desktop, plain=True)
        source.show(700, 200, 300, 300)
        source.wait_until_active()
        sidebar = self.start(desktop, enabledModuleIDs=["todo", "notes"], todoViewMode="list")
        sidebar.wait_peek_over()
        for carried, kind, on_card, arrived in (
                ("Brot%0A%0A%20Milch", "carry", (200, 300), lambda: [task["title"] for task in sidebar.tasks()] == ["Brot", "Milch"]),
                ("https://example.org/a%20b", "carry-links", (200, 300),
                 lambda: sidebar.tasks()[-1]["title"] == "https://example.org/a%20b"),
                ("Wort", "carry", (200, 500), lambda: desktop.preferences().get("notesScratch") == "Wort"),
                ("file:///home/a%20b.pdf", "carry-links", (200, 500),
                 lambda: desktop.preferences().get("notesScratch") == "Wort\nfile:///home/a%20b.pdf")):
            with self.subTest(carried=carried):
                for command in ("carry", "carry-links"):
                    source.ask(command, *([carried] if command == kind else []))
                self.drop(desktop, sidebar, (850, 350), *on_card)
                wait_for(arrived, message=lambda: f"{sidebar.tasks()} {desktop.preferences()}\n{sidebar.program.log}")
                # Whoever drags keeps the keyboard.
                self.assertEqual(desktop.active_window(), source.window)
                desktop.move(1200, 700)
                sidebar.wait_hidden()
        self.assertEqual(len(sidebar.tasks()), 3)

    # --- what is open

    def test_closes_what_is_open_when_the_user_turns_elsewhere(self):
        task = {"id": "6F9619FF-8B86-D011-B42D-00C04FC964FF", "title": "Brot", "status": "backlog",
                "createdAt": 784111777.5, "order": 1}
        desktop = self.desktop(wallpaper="#ff00ff")
        below = Probe(desktop, plain=True)
        below.show(600, 100, 400, 400)
        sidebar = self.start(desktop, enabledModuleIDs=["todo", "calendar"], todoViewMode="kanban", alwaysVisible=True,
                             **{"todoItems.v1": json.dumps([task]).encode()})
        sidebar.wait_shown(SHOWN)
        # Between the cards, once the first one is low.
        gap = (330, 202)

        def wait_open(is_open, what):
            wait_for(lambda: (desktop.pixel(*gap) != (255, 0, 255)) == is_open,
                     message=f"the {what} {'is cut off' if is_open else 'stays'}")
        opened = {"quick settings": lambda: desktop.right_click(200, 60), "menu": lambda: desktop.click(377, 160)}
        turns = {"another window": lambda: desktop.click(800, 300), "the wallpaper": lambda: desktop.click(1200, 800),
                 "another card": lambda: desktop.click(200, 430), "escape": lambda: desktop.key("Escape")}
        wait_for(lambda: desktop.pixel(200, 60) != (255, 0, 255), message="no card")
        opened["quick settings"]()
        time.sleep(0.5)
        desktop.click(108, 140)
        wait_for(lambda: sidebar.tasks() and "moduleHeights" in desktop.preferences(), message="no low card")
        desktop.key("Escape")
        for what, open_it in opened.items():
            for where, turn in turns.items():
                with self.subTest(open=what, to=where):
                    wait_open(False, what)
                    open_it()
                    wait_open(True, what)
                    turn()
                    wait_open(False, what)


if __name__ == "__main__":
    unittest.main(verbosity=2)
