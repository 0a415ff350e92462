"""The panel window and the desktop's geometry on a real X server with a real window manager."""

import shutil
import unittest

from panel_probe import Probe
from virtual_desktop import VirtualDesktop, wait_for

RED = (255, 0, 0)
BLUE = (0, 0, 255)
ALL_DESKTOPS = "4294967295"


class OnOneMonitor(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop(screens=[(1440, 900)])
        self.addCleanup(self.desktop.close)

    def plain(self, *frame):
        window = Probe(self.desktop, plain=True)
        window.show(*frame)
        window.wait_until_active()
        return window

    def test_is_no_ordinary_window_also_when_shown_again(self):
        panel = Probe(self.desktop)
        for _ in range(2):
            panel.show(0, 39, 420, 836)
            wait_for(lambda: all(state in self.desktop.property(panel.window, "_NET_WM_STATE")
                                 for state in ("SKIP_TASKBAR", "SKIP_PAGER", "ABOVE")),
                     message=lambda: self.desktop.property(panel.window, "_NET_WM_STATE"))
            wait_for(lambda: self.desktop.property(panel.window, "_NET_WM_DESKTOP") == ALL_DESKTOPS)
            self.assertEqual(self.desktop.property(panel.window, "_NET_FRAME_EXTENTS"), "0, 0, 0, 0")
            self.assertTrue(self.desktop.property(panel.window, "_NET_WM_WINDOW_TYPE").startswith(
                "_KDE_NET_WM_WINDOW_TYPE_CRITICAL_NOTIFICATION, _NET_WM_WINDOW_TYPE_UTILITY"))
            self.assertEqual(self.desktop.property(panel.window, "_COMPTON_SHADOW"), "0")
            panel.ask("out")
            wait_for(lambda: not self.desktop.is_mapped(panel.window))

    def test_stays_on_screen_when_the_desktop_is_switched(self):
        panel = Probe(self.desktop)
        panel.show(0, 39, 420, 836)
        other = self.plain(600, 200, 300, 300)
        self.desktop.run("xdotool", "set_desktop", 1)
        wait_for(lambda: not self.desktop.is_mapped(other.window))
        self.assertTrue(self.desktop.is_mapped(panel.window))

    def test_lies_above_a_window_that_comes_later(self):
        panel = Probe(self.desktop)
        panel.show(0, 39, 420, 836)
        other = self.plain(100, 100, 600, 600)
        # The pixel beside the panel shows that the other window is there.
        wait_for(lambda: self.desktop.screenshot().getpixel((500, 400)) == BLUE)
        self.assertEqual(self.desktop.screenshot().getpixel((300, 400)), RED)
        stacking = self.desktop.stacking()
        self.assertGreater(stacking.index(panel.window), stacking.index(other.window))

    def test_takes_the_keyboard_only_when_asked_and_gives_it_back(self):
        other = self.plain(600, 200, 300, 300)
        panel = Probe(self.desktop)
        panel.show(0, 39, 420, 836)
        self.desktop.type("a")
        wait_for(lambda: other.state("typed") == "a", message="showing the panel took the keyboard")
        self.assertEqual(self.desktop.active_window(), other.window)

        panel.ask("key")
        panel.wait_until_active()
        self.desktop.type("Größe, Äpfel")
        wait_for(lambda: panel.state("typed") == "Größe, Äpfel", message=lambda: panel.state("typed"))

        panel.ask("out")
        other.wait_until_active()
        self.desktop.type("b")
        wait_for(lambda: other.state("typed") == "ab")

    def test_shown_and_asked_in_one_go(self):
        other = self.plain(600, 200, 300, 300)
        panel = Probe(self.desktop)
        for _ in range(3):
            panel.ask("frame", -444, 39, 420, 836)
            panel.ask("front")
            panel.ask("key")
            panel.wait_until_active()
            panel.ask("out")
            other.wait_until_active()

    def test_a_click_gives_it_the_keyboard_and_hiding_gives_it_back(self):
        first = self.plain(600, 200, 300, 300)
        second = self.plain(1000, 200, 300, 300)
        panel = Probe(self.desktop)
        panel.show(0, 39, 420, 836)
        # The user goes on to another window while the panel is open.
        self.desktop.click(700, 400)
        first.wait_until_active()
        self.desktop.click(200, 400)
        panel.wait_until_active()
        panel.ask("out")
        first.wait_until_active()
        self.assertFalse(second.state("active"))

    def test_hidden_without_the_keyboard_leaves_it_where_it_is(self):
        first = self.plain(600, 200, 300, 300)
        panel = Probe(self.desktop)
        panel.show(0, 39, 420, 836)
        panel.ask("key")
        panel.wait_until_active()
        second = self.plain(1000, 200, 300, 300)
        panel.ask("out")
        wait_for(lambda: not self.desktop.is_mapped(panel.window))
        self.desktop.type("c")
        wait_for(lambda: second.state("typed") == "c")
        self.assertEqual(first.state("typed"), "")

    def test_hiding_does_not_switch_the_desktop(self):
        first = self.plain(600, 200, 300, 300)
        panel = Probe(self.desktop)
        panel.show(0, 39, 420, 836)
        panel.ask("key")
        panel.wait_until_active()
        self.desktop.run("xdotool", "set_desktop", 1)
        wait_for(lambda: not self.desktop.is_mapped(first.window))
        panel.ask("key")
        panel.wait_until_active()
        panel.ask("out")
        wait_for(lambda: not self.desktop.is_mapped(panel.window))
        self.assertEqual(self.desktop.run("xdotool", "get_desktop").strip(), "1")

    def test_asks_for_a_blur_of_its_cards_alone(self):
        panel = Probe(self.desktop, env={"QT_SCALE_FACTOR": "2"})
        panel.show(0, 20, 210, 400)
        self.assertNotIn("=", self.blur(panel))
        panel.ask("blur", 14, 36, 182, 300)
        wait_for(lambda: self.blur(panel).endswith("= 28, 72, 364, 600"), message=lambda: self.blur(panel))
        # An empty list would stand for the whole window.
        panel.ask("blur", 0, 0, 0, 0)
        wait_for(lambda: "=" not in self.blur(panel), message=lambda: self.blur(panel))

    def blur(self, panel):
        return self.desktop.run("xprop", "-id", panel.window, "_KDE_NET_WM_BLUR_BEHIND_REGION").strip()

    def test_frames_are_exact_also_beyond_the_edges(self):
        panel = Probe(self.desktop)
        # Before it is shown, as the slide begins …
        panel.show(-444, 39, 420, 836)
        panel.wait_for_geometry(-444, 25, 420, 836)
        # … and while it is on screen.
        for frame, native in (((0, 39, 420, 836), (0, 25, 420, 836)),
                              ((-434, 39, 420, 836), (-434, 25, 420, 836)),
                              ((1034, 39, 420, 836), (1034, 25, 420, 836)),
                              ((1464, 39, 420, 836), (1464, 25, 420, 836)),
                              ((1020, 300, 420, 200), (1020, 400, 420, 200))):
            panel.ask("frame", *frame)
            panel.wait_for_geometry(*native)
        # Hidden where it was, it comes back where it was put meanwhile.
        panel.ask("out")
        panel.ask("frame", -444, 39, 420, 836)
        panel.ask("front")
        panel.wait_for_geometry(-444, 25, 420, 836)
        self.assertEqual(panel.state("screens")[0]["visibleFrame"], [0, 0, 1440, 900])

    def test_hidden_it_swallows_no_clicks(self):
        other = self.plain(100, 100, 600, 600)
        panel = Probe(self.desktop)
        panel.show(0, 39, 420, 836)
        self.desktop.click(300, 400)
        wait_for(lambda: panel.state("clicks") == 1)
        panel.ask("out")
        wait_for(lambda: not self.desktop.is_mapped(panel.window))
        self.desktop.click(300, 400)
        wait_for(lambda: other.state("clicks") == 1)
        self.assertEqual(panel.state("clicks"), 1)

    def test_alpha_reaches_the_compositor(self):
        panel = Probe(self.desktop)
        self.assertFalse(panel.state("composited"))
        compositor = self.desktop.start_compositor()
        wait_for(lambda: panel.state("composited"))
        panel.show(0, 39, 420, 836)
        wait_for(lambda: self.desktop.screenshot().getpixel((200, 400)) == RED)
        panel.ask("alpha", 0)
        wait_for(lambda: self.desktop.screenshot().getpixel((200, 400)) == (0x38, 0x50, 0x6a))
        compositor.terminate()
        wait_for(lambda: not panel.state("composited"))
        self.assertEqual([event["composited"] for event in panel.events if event["event"] == "composited"],
                         [True, False])

    def test_pointer_reaches_every_edge(self):
        panel = Probe(self.desktop)
        for pixel, point in (((0, 0), [0, 899]), ((1439, 0), [1439, 899]), ((0, 899), [0, 0]),
                             ((1439, 899), [1439, 0])):
            self.desktop.move(*pixel)
            self.assertEqual(panel.state("pointer"), point)

    def test_work_area_follows_a_dock(self):
        panel = Probe(self.desktop)
        dock = Probe(self.desktop, plain=True)
        dock.ask("strut", 0, 0, 30, 0, 0, 0, 0, 0, 0, 1439, 0, 0)
        dock.show(0, 0, 1440, 30)
        wait_for(lambda: panel.state("screens")[0]["visibleFrame"] == [0, 0, 1440, 870],
                 message=lambda: panel.state("screens"))
        self.assertEqual(panel.state("screens")[0]["frame"], [0, 0, 1440, 900])
        dock.ask("strut", 0, 0, 50, 0, 0, 0, 0, 0, 0, 1439, 0, 0)
        wait_for(lambda: panel.state("screens")[0]["visibleFrame"] == [0, 0, 1440, 850])
        dock.quit()
        wait_for(lambda: panel.state("screens")[0]["visibleFrame"] == [0, 0, 1440, 900])
        self.assertEqual(len(panel.events), 3, panel.events)


class WithI3(unittest.TestCase):
    @unittest.skipUnless(shutil.which("i3"), "i3 is not installed")
    def test_work_area_follows_a_dock_that_no_list_names(self):
        desktop = VirtualDesktop(window_manager="i3")
        self.addCleanup(desktop.close)
        panel = Probe(desktop)
        dock = Probe(desktop, plain=True)
        desktop.run("xprop", "-id", dock.window, "-f", "_NET_WM_WINDOW_TYPE", "32a", "-set", "_NET_WM_WINDOW_TYPE",
                    "_NET_WM_WINDOW_TYPE_DOCK")
        dock.ask("strut", 0, 0, 30, 0, 0, 0, 0, 0, 0, 1439, 0, 0)
        dock.show(0, 0, 1440, 30)
        self.assertNotIn(dock.window, desktop.stacking())
        # The next change of the windows is soon enough.
        panel.show(0, 14, 420, 856)
        wait_for(lambda: panel.state("screens")[0]["visibleFrame"] == [0, 0, 1440, 870],
                 message=lambda: panel.state("screens"))


class OnTwoMonitors(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop(screens=[(1440, 900), (1920, 1080)])
        self.addCleanup(self.desktop.close)

    def test_monitors_and_their_work_areas(self):
        panel = Probe(self.desktop)
        self.assertEqual([screen["frame"] for screen in panel.state("screens")],
                         [[0, 0, 1440, 900], [1440, -180, 1920, 1080]])
        # A dock on the edge between the monitors, and a panel below the left one.
        dock = Probe(self.desktop, plain=True)
        dock.ask("strut", 1500, 0, 0, 0, 0, 1079, 0, 0, 0, 0, 0, 0)
        dock.show(1440, 0, 60, 1080)
        bar = Probe(self.desktop, plain=True)
        bar.ask("strut", 0, 0, 0, 210, 0, 0, 0, 0, 0, 0, 0, 1439)
        bar.show(0, 870, 1440, 30)
        wait_for(lambda: [screen["visibleFrame"] for screen in panel.state("screens")]
                 == [[0, 30, 1440, 870], [1500, -180, 1860, 1080]],
                 message=lambda: panel.state("screens"))

    def test_a_dock_grows_without_telling_the_root_window(self):
        panel = Probe(self.desktop)
        dock = Probe(self.desktop, plain=True)
        dock.ask("strut", 1500, 0, 0, 0, 0, 1079, 0, 0, 0, 0, 0, 0)
        dock.show(1440, 0, 60, 1080)
        wait_for(lambda: panel.state("screens")[1]["visibleFrame"][0] == 1500)
        dock.ask("strut", 1540, 0, 0, 0, 0, 1079, 0, 0, 0, 0, 0, 0)
        wait_for(lambda: panel.state("screens")[1]["visibleFrame"] == [1540, -180, 1820, 1080])

    def test_moves_across(self):
        panel = Probe(self.desktop)
        panel.show(0, 39, 420, 836)
        panel.ask("frame", 2940, -166, 420, 1066)
        panel.wait_for_geometry(2940, 0, 420, 1066)
        panel.ask("frame", 3384, -166, 420, 1066)
        panel.wait_for_geometry(3384, 0, 420, 1066)

    def test_a_monitor_goes(self):
        panel = Probe(self.desktop)
        self.desktop.set_monitors([(1440, 900)])
        wait_for(lambda: [screen["id"] for screen in panel.state("screens")] == ["MON-1"])
        self.assertEqual(panel.events[-1], {"event": "screens", "screens": panel.state("screens")})


class WithScaleFactors(unittest.TestCase):
    def test_one_and_a_half(self):
        with VirtualDesktop(screens=[(1920, 1080)]) as desktop:
            panel = Probe(desktop, env={"QT_SCALE_FACTOR": "1.5"})
            self.assertEqual(panel.state("screens")[0]["frame"], [0, 0, 1280, 720])
            desktop.move(1919, 1079)
            x, y = panel.state("pointer")
            self.assertAlmostEqual(x, 1280 - 1 / 1.5)
            self.assertAlmostEqual(y, 0)
            # Flush with the right edge, to the pixel, at a width that is no whole number of pixels.
            panel.show(1280 - 401, 14, 401, 706)
            panel.wait_for_geometry(1319, 0, 602, 1059)
            panel.ask("frame", -424, 14, 401, 706)
            panel.wait_for_geometry(-636, 0, 602, 1059)
            wait_for(lambda: panel.state("size") == [401, 706], message=lambda: panel.state("size"))

    def test_mixed(self):
        with VirtualDesktop(screens=[(1440, 900), (2880, 1800)]) as desktop:
            panel = Probe(desktop, env={"QT_SCREEN_SCALE_FACTORS": "MON-1=1;MON-2=2"})
            self.assertEqual([screen["frame"] for screen in panel.state("screens")],
                             [[0, 0, 1440, 900], [1440, 0, 1440, 900]])
            desktop.move(1440 + 2879, 1799)
            self.assertEqual(panel.state("pointer"), [2879.5, 0])
            desktop.move(1439, 899)
            self.assertEqual(panel.state("pointer"), [1439, 0])
            panel.show(0, 14, 420, 886)
            panel.wait_for_geometry(0, 0, 420, 886)
            panel.ask("frame", 2460, 14, 420, 886)
            panel.wait_for_geometry(3480, 0, 840, 1772)
            wait_for(lambda: panel.state("size") == [420, 886], message=lambda: panel.state("size"))


class WithoutWindowManager(unittest.TestCase):
    def test_shows_takes_the_keyboard_and_gives_it_back(self):
        with VirtualDesktop(screens=[(1440, 900)], window_manager=None) as desktop:
            other = Probe(desktop, plain=True)
            other.show(100, 100, 600, 600)
            desktop.run("xdotool", "windowfocus", "--sync", other.window)
            other.wait_until_active()
            panel = Probe(desktop)
            panel.show(0, 39, 420, 836)
            wait_for(lambda: desktop.screenshot().getpixel((300, 400)) == RED)
            panel.ask("key")
            panel.wait_until_active()
            panel.ask("out")
            other.wait_until_active()


if __name__ == "__main__":
    unittest.main(verbosity=2)
