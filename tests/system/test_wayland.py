"""The sidebar on a Wayland compositor with the layer shell: the built program on a headless sway."""

import re
import sys
import time
import unittest
from pathlib import Path

from panel_probe import Probe
from test_sidebar import APPLICATION, Sidebar, store
from virtual_desktop import wait_for
from wayland_desktop import WaylandDesktop, missing_programs

SKIPPED = 77
REPORT_CLICKS = r"stty raw -echo; printf '\033[?1000h\033[?1006h';"
WALLPAPER = (0x38, 0x50, 0x6a)
# A point in the second card of a panel at the left edge, where there is nothing to click.
ON_CARD = (200, 600)


class WaylandSidebar(Sidebar):
    """The program on a Wayland desktop. Nobody tells where its surfaces are: they are seen in the picture."""

    background = WALLPAPER

    def panel(self):
        return self.is_up_at(*ON_CARD)

    def is_up_at(self, x, y):
        return self.desktop.pixel(x, y) != self.background or None

    def wait_up(self, x=ON_CARD[0], y=ON_CARD[1]):
        wait_for(lambda: self.is_up_at(x, y), message=lambda: "no panel\n" + self.program.log)
        # The slide is over when two pictures in a row are the same.
        pictures = [None]

        def rests():
            pictures.append(self.desktop.screenshot().tobytes())
            return pictures[-1] == pictures[-2]
        wait_for(rests, message="the panel does not come to rest")

    def wait_hidden(self):
        wait_for(lambda: not self.panel(), message=lambda: "still there\n" + self.program.log)


class Terminal:
    """A terminal over the whole output, in the wallpaper's colour, that writes down what it is given."""

    def __init__(self, desktop, mode="", *options):
        self.path = desktop.folder / "typed"
        self.program = desktop.start(["foot", "-o", "colors.background=38506a", "-o", "pad=0x0", *options,
                                      "sh", "-c", f"{mode} exec cat > {self.path}"])
        wait_for(self.path.exists, message=lambda: "no terminal\n" + self.program.log)
        desktop.wait_window_has_keyboard()

    def text(self):
        return self.path.read_text(errors="replace")

    def wait_text(self, text):
        wait_for(lambda: self.text() == text, message=lambda: f"{self.text()!r} instead of {text!r}")


class WaylandTest(unittest.TestCase):
    def start(self, preferences=None, **arguments):
        desktop = WaylandDesktop(**arguments)
        self.addCleanup(desktop.close)
        store(desktop, **(preferences or {}))
        return desktop, lambda: WaylandSidebar(desktop)

    def test_takes_a_task_at_the_edge_and_gives_the_keyboard_back(self):
        desktop, launch = self.start()
        terminal = Terminal(desktop)
        sidebar = launch()
        sidebar.wait_peek_over()
        desktop.wait_window_has_keyboard()
        desktop.type("vorher")
        desktop.key("Return")
        terminal.wait_text("vorher\n")

        desktop.move(0, 400)
        sidebar.wait_up()
        desktop.wait_window_has_keyboard(False)
        desktop.type("Brötchen für Jürgen")
        desktop.key("Return")
        wait_for(sidebar.tasks, message=lambda: "nothing stored\n" + sidebar.program.log)
        self.assertEqual([task["title"] for task in sidebar.tasks()], ["Brötchen für Jürgen"])

        for inside in ((300, 890), (434, 400)):
            desktop.move(*inside)
            time.sleep(0.5)
            self.assertTrue(sidebar.panel(), f"hidden with the pointer at {inside}")
        desktop.move(435, 400)
        sidebar.wait_hidden()
        desktop.wait_window_has_keyboard()
        desktop.type("nachher")
        desktop.key("Return")
        terminal.wait_text("vorher\nnachher\n")

    def test_loses_nothing_that_is_typed_into_a_called_panel(self):
        desktop, launch = self.start()
        terminal = Terminal(desktop)
        sidebar = launch()
        sidebar.wait_peek_over()
        desktop.wait_window_has_keyboard()
        # Here nobody tells where the pointer is.
        desktop.run("gdbus", "call", *APPLICATION, "org.freedesktop.Application.ActivateAction", "toggle", "@av []", "@a{sv} {}")
        sidebar.wait_up()
        desktop.wait_window_has_keyboard(False)
        for word in ("Den ", "Vermieter ", "anrufen"):
            desktop.type(word)
            # A moment of thinking, longer than a panel stays for its own sake.
            time.sleep(3.5)
        desktop.key("Return")
        wait_for(sidebar.tasks, message=lambda: f"nothing stored, but below: {terminal.text()!r}")
        self.assertEqual([task["title"] for task in sidebar.tasks()], ["Den Vermieter anrufen"])
        self.assertTrue(sidebar.panel())
        desktop.key("Escape")
        sidebar.wait_hidden()
        desktop.wait_window_has_keyboard()
        desktop.type("danach")
        desktop.key("Return")
        terminal.wait_text("danach\n")

    def test_takes_no_clicks_beyond_the_zone(self):
        desktop, launch = self.start({"edgeThickness": 3.0})
        terminal = Terminal(desktop, REPORT_CLICKS)
        sidebar = launch()
        sidebar.wait_peek_over()
        desktop.wait_window_has_keyboard()
        for x, y in ((4, 400), (200, 400), (4, 880)):
            before = terminal.text()
            desktop.click(x, y)
            wait_for(lambda: len(terminal.text()) > len(before), message=f"the click at {x}, {y} is lost")
        desktop.move(0, 400)
        sidebar.wait_up()
        before = terminal.text()
        desktop.click(*ON_CARD)
        desktop.move(700, 400)
        sidebar.wait_hidden()
        desktop.wait_window_has_keyboard()
        self.assertEqual(terminal.text(), before)
        desktop.click(*ON_CARD)
        wait_for(lambda: len(terminal.text()) > len(before), message="the hidden panel swallows clicks")

        # Beside the panel, where the pointer still keeps it up, a click is meant for what lies there.
        desktop.move(0, 400)
        sidebar.wait_up()
        desktop.move(428, 400)
        time.sleep(0.3)
        self.assertTrue(sidebar.panel())
        before = terminal.text()
        desktop.click()
        sidebar.wait_hidden()
        desktop.click()
        wait_for(lambda: len(terminal.text()) > len(before), message="the band around the panel swallows clicks")

    def test_reveals_in_the_corners_alone(self):
        desktop, launch = self.start({"triggerMode": "corners", "sidebarSide": "right", "cornerSize": 60.0})
        sidebar = launch()
        on_card = (1240, 600)
        wait_for(lambda: sidebar.is_up_at(*on_card), message="no peek")
        wait_for(lambda: not sidebar.is_up_at(*on_card), message="the peek stays")
        for outside in ((1439, 450), (0, 0), (1370, 30), (1400, 70)):
            desktop.move(*outside)
            time.sleep(0.5)
            self.assertFalse(sidebar.is_up_at(*on_card), f"revealed by the pointer at {outside}")
        for inside in ((1390, 50), (1439, 899)):
            desktop.move(*inside)
            sidebar.wait_up(*on_card)
            desktop.move(500, 400)
            wait_for(lambda: not sidebar.is_up_at(*on_card), message="not hidden")

    def test_ignores_a_pointer_that_brushes_past(self):
        desktop, launch = self.start({"revealDelay": 0.4})
        sidebar = launch()
        sidebar.wait_peek_over()
        for y in (200, 500, 800):
            desktop.move(0, y)
            time.sleep(0.1)
            desktop.move(300, y)
            time.sleep(0.1)
        time.sleep(0.6)
        self.assertFalse(sidebar.panel())

    def test_rests_while_the_pointer_is_elsewhere(self):
        desktop, launch = self.start()
        sidebar = launch()
        sidebar.wait_peek_over()

        def wakeups():
            status = Path(f"/proc/{sidebar.program.pid}/status").read_text()
            return int(re.search(r"\nvoluntary_ctxt_switches:\s+(\d+)", status).group(1))

        def rests():
            before = wakeups()
            time.sleep(1)
            return wakeups() == before
        wait_for(rests, message="never at rest")
        before = wakeups()
        for step in range(40):
            desktop.move(300 + 10 * step, 400)
            time.sleep(0.05)
        # The tick of 80 ms would have woken it 25 times.
        self.assertLess(wakeups() - before, 5)
        desktop.move(0, 400)
        sidebar.wait_up()

    def test_follows_outputs_that_come_and_change(self):
        desktop, launch = self.start()
        sidebar = launch()
        sidebar.wait_peek_over()
        name = desktop.plug(1280, 800)
        second = (1440 + ON_CARD[0], ON_CARD[1])
        wait_for(lambda: desktop.pixel(*second) == WALLPAPER, message="no wallpaper on the new output")

        def revealed():
            # The zone of a new output is watched soon after.
            desktop.move(1500, 300)
            desktop.move(1440, 300)
            time.sleep(0.4)
            return sidebar.is_up_at(*second)
        wait_for(revealed, message=lambda: "no panel on the new output\n" + sidebar.program.log)
        self.assertFalse(sidebar.panel(), "the panel is on the first output")

        # On an output that becomes lower, the panel follows at once; what is longer than it is cut off.
        self.assertNotEqual(desktop.pixel(1440 + 200, 660), WALLPAPER)
        desktop.resize(name, 1280, 640)
        wait_for(lambda: desktop.pixel(1440 + 200, 634) == WALLPAPER, message="the panel ignores the new size")
        self.assertTrue(sidebar.is_up_at(*second))
        desktop.move(700, 400)
        wait_for(lambda: not sidebar.is_up_at(*second), message="the panel stays")
        desktop.move(0, 400)
        sidebar.wait_up()

    def test_survives_the_end_of_the_output_that_it_is_on(self):
        host = WaylandDesktop()
        self.addCleanup(host.close)
        desktop, launch = self.start(screens=((1280, 720), (1280, 720)), host=host)
        sidebar = launch()
        sidebar.wait_peek_over()
        rect = desktop.outputs()[1]["rect"]
        second = (rect["x"] + ON_CARD[0], ON_CARD[1])
        desktop.move(rect["x"], 300)
        sidebar.wait_up(*second)
        desktop.unplug("WL-2")
        desktop.move(700, 400)
        for _ in range(2):
            desktop.move(0, 400)
            sidebar.wait_up()
            desktop.move(700, 400)
            sidebar.wait_hidden()
        self.assertTrue(sidebar.program.is_running(), sidebar.program.log)

    def test_leaves_bars_their_room(self):
        for bar, top, bottom in (("top", 30, 900), ("bottom", 0, 870)):
            with self.subTest(bar=bar):
                desktop, launch = self.start({"alwaysVisible": True}, bar=bar)
                wait_for(lambda: desktop.pixel(700, 15 if top else 885) != WALLPAPER, message="no bar")
                before = desktop.screenshot()
                sidebar = launch()
                sidebar.wait_up()
                picture = desktop.screenshot()
                changed = [y for y in range(900) if picture.getpixel((200, y)) != before.getpixel((200, y))]
                # The first card with its shadow begins under the panel's margin.
                self.assertGreater(min(changed), top)
                self.assertLess(min(changed), top + 60)
                self.assertLess(max(changed), bottom)
                desktop.close()

    def test_shows_sharp_cards_at_a_fractional_scale(self):
        desktop, launch = self.start({"revealDelay": 0.0}, scale=1.5)
        sidebar = launch()
        sidebar.wait_peek_over()
        desktop.move(0, 400)
        sidebar.wait_up()
        picture = desktop.screenshot()
        self.assertEqual(picture.size, (2160, 1350))
        self.assertNotEqual(picture.getpixel((300, 900)), WALLPAPER)
        self.assertEqual(picture.getpixel((660, 900)), WALLPAPER)
        desktop.move(434, 400)
        time.sleep(0.5)
        self.assertTrue(sidebar.panel())
        desktop.move(436, 400)
        sidebar.wait_hidden()

    def test_comes_over_a_full_screen_window(self):
        desktop, launch = self.start()
        Terminal(desktop, "", "--fullscreen")
        sidebar = launch()
        sidebar.wait_peek_over()
        desktop.move(0, 400)
        sidebar.wait_up()
        desktop.move(700, 400)
        sidebar.wait_hidden()

    def test_takes_the_keyboard_only_where_it_is_always_visible(self):
        desktop, launch = self.start({"alwaysVisible": True})
        terminal = Terminal(desktop)
        sidebar = launch()
        sidebar.wait_up()
        desktop.type("dort")
        desktop.key("Return")
        terminal.wait_text("dort\n")
        # Into the field of the to-do card.
        desktop.click(200, 341)
        desktop.wait_window_has_keyboard(False)
        desktop.type("hier")
        desktop.key("Return")
        wait_for(sidebar.tasks, message=lambda: "nothing stored\n" + sidebar.program.log)
        self.assertEqual([task["title"] for task in sidebar.tasks()], ["hier"])
        desktop.move(700, 400)
        desktop.wait_window_has_keyboard()
        desktop.type("wieder dort")
        desktop.key("Return")
        terminal.wait_text("dort\nwieder dort\n")

        desktop.click(200, 341)
        desktop.wait_window_has_keyboard(False)
        desktop.key("Escape")
        desktop.wait_window_has_keyboard()
        self.assertTrue(sidebar.panel())

    def test_leaves_clicks_to_the_windows_below(self):
        # While the panel hides by the pointer, only those below its last card.
        for always_visible, places in ((False, ((200, 760),)), (True, ((200, 760), (200, 402), (7, 100)))):
            with self.subTest(always_visible=always_visible):
                desktop, launch = self.start({"alwaysVisible": always_visible, "enabledModuleIDs": ["todo", "calendar"]})
                terminal = Terminal(desktop, REPORT_CLICKS)
                sidebar = launch()
                if not always_visible:
                    sidebar.wait_peek_over()
                    desktop.wait_window_has_keyboard()
                for place in places:
                    if not always_visible:
                        desktop.move(0, 400)
                    sidebar.wait_up()
                    before = terminal.text()
                    desktop.click(*place)
                    wait_for(lambda: len(terminal.text()) > len(before), message=f"the click at {place} is lost")
                desktop.close()

    def test_closes_quick_settings_with_a_click_elsewhere(self):
        desktop, launch = self.start({"alwaysVisible": True, "enabledModuleIDs": ["todo", "calendar"]})
        terminal = Terminal(desktop, REPORT_CLICKS)
        sidebar = launch()
        sidebar.wait_up()
        # In the quick settings' ground, where there is nothing else.
        ground = (70, 240)
        before = desktop.pixel(*ground)
        desktop.click(200, 60, button=3)
        wait_for(lambda: desktop.pixel(*ground) != before, message="no quick settings")
        desktop.move(700, 400)
        time.sleep(0.5)
        self.assertNotEqual(desktop.pixel(*ground), before, "closed by the pointer alone")
        desktop.click()
        wait_for(lambda: desktop.pixel(*ground) == before, message="the quick settings stay")
        self.assertEqual(terminal.text(), "")
        desktop.click(710, 400)
        wait_for(terminal.text, message="the next click is lost as well")

    def test_takes_what_is_dropped_on_a_card(self):
        desktop, launch = self.start({"enabledModuleIDs": ["todo", "calendar"], "todoViewMode": "list"})
        source = Probe(desktop, plain=True, env={"QT_QPA_PLATFORM": "wayland"})
        source.ask("carry", "Brot%0AMilch")
        source.show(0, 0, 600, 400)
        sidebar = launch()
        # It fills the screen.
        sidebar.background = (0, 0, 255)
        sidebar.wait_peek_over()
        desktop.move(700, 400)
        desktop.hold(True)
        for x in (690, 660, 600, 400, 200, 20, 2, 0):
            desktop.move(x, 400)
            time.sleep(0.05)
        sidebar.wait_up()
        for x in (30, 120, 200, 201):
            desktop.move(x, 300)
            time.sleep(0.15)
        desktop.hold(False)
        wait_for(lambda: [task["title"] for task in sidebar.tasks()] == ["Brot", "Milch"],
                 message=lambda: f"{sidebar.tasks()}\n{sidebar.program.log}")


if __name__ == "__main__":
    if missing_programs():
        print("missing:", *missing_programs())
        sys.exit(SKIPPED)
    unittest.main()
