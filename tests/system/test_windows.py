"""The application's ordinary windows, in the built program: the welcome of a new user, and the settings."""

import os
import signal
import unittest

from test_sidebar import APPLICATION, SHOWN, Sidebar, store
from virtual_desktop import VirtualDesktop, wait_for

WELCOME = "^Willkommen bei Quillbar$"
SETTINGS = "^Einstellungen – Quillbar$"


class WindowsTest(unittest.TestCase):
    def start(self, desktop, **arguments):
        sidebar = Sidebar(desktop, **arguments)
        wait_for(sidebar.panel, message=lambda: "no peek\n" + sidebar.program.log)
        return sidebar

    def desktop(self):
        desktop = VirtualDesktop(compositor=True)
        self.addCleanup(desktop.close)
        return desktop

    def wait_window(self, desktop, sidebar, title):
        wait_for(lambda: desktop.windows(title), message=lambda: f"no window {title}\n{sidebar.program.log}")
        self.assertEqual(len(desktop.windows(title)), 1)
        window = desktop.windows(title)[0]
        wait_for(lambda: desktop.active_window() == window, message=f"{title} has no keyboard")
        return window

    def quit(self, sidebar):
        sidebar.program.process.send_signal(signal.SIGTERM)
        self.assertEqual(sidebar.program.wait(), 0)

    def test_welcomes_a_new_user_once(self):
        desktop = self.desktop()
        first = self.start(desktop)
        window = self.wait_window(desktop, first, WELCOME)
        first.wait_shown(SHOWN)

        # By keyboard: past the three modules to the mode of the first, and from there to the music's.
        desktop.key("Tab", "Tab", "Tab", "Tab", "Tab", "Left")
        wait_for(lambda: desktop.preferences().get("mediaSource") == "spotify", message=lambda: str(desktop.preferences()))
        desktop.key("Right")
        wait_for(lambda: desktop.preferences().get("mediaSource") == "system", message=lambda: str(desktop.preferences()))
        self.assertNotIn("hasOnboarded", desktop.preferences())
        desktop.key("Escape")
        wait_for(lambda: not desktop.windows(WELCOME), message="the welcome stays")
        self.quit(first)

        second = self.start(desktop)
        window = self.wait_window(desktop, second, WELCOME)
        left, top, width, height = desktop.geometry(window)
        desktop.click(left + width // 2, top + height - 51)
        wait_for(lambda: not desktop.windows(WELCOME), message="the welcome stays")
        self.assertTrue(desktop.preferences()["hasOnboarded"])
        self.assertTrue(second.program.is_running())
        self.quit(second)

        third = self.start(desktop)
        third.wait_hidden()
        self.assertEqual(desktop.windows(WELCOME), [])

    def test_has_one_settings_window_that_changes_the_panel(self):
        desktop = self.desktop()
        store(desktop, alwaysVisible=True)
        sidebar = self.start(desktop)
        sidebar.wait_shown(SHOWN)
        for _ in range(2):
            desktop.run("gdbus", "call", *APPLICATION, "org.freedesktop.Application.ActivateAction", "settings",
                        "@av []", "@a{sv} {}")
            window = self.wait_window(desktop, sidebar, SETTINGS)

        # Before the way out and the last slider is the panel's width: its end is 720 points.
        desktop.key("shift+Tab", "shift+Tab", "shift+Tab", "End")
        wait_for(lambda: desktop.preferences().get("panelWidth") == 720.0, message=lambda: str(desktop.preferences()))
        size = desktop.geometry(window)[2:]
        desktop.key("ctrl+w")
        wait_for(lambda: not desktop.windows(SETTINGS), message="the settings stay")
        sidebar.wait_shown((0, 0, 720, 886))

        desktop.run("gdbus", "call", *APPLICATION, "org.freedesktop.Application.ActivateAction", "settings", "@av []", "@a{sv} {}")
        self.assertEqual(desktop.geometry(self.wait_window(desktop, sidebar, SETTINGS))[2:], size)

    def test_records_a_key_that_works_everywhere(self):
        desktop = self.desktop()
        store(desktop)
        sidebar = self.start(desktop)
        sidebar.wait_hidden()
        desktop.run("gdbus", "call", *APPLICATION, "org.freedesktop.Application.ActivateAction", "settings", "@av []", "@a{sv} {}")
        self.wait_window(desktop, sidebar, SETTINGS)
        # Past the tab, two switches, side, trigger and three sliders.
        desktop.key(*["Tab"] * 9, "space", "ctrl+alt+j")
        wait_for(lambda: desktop.preferences().get("globalShortcut") == "Ctrl+Alt+J", message=lambda: str(desktop.preferences()))
        desktop.key("Escape")
        wait_for(lambda: not desktop.windows(SETTINGS), message="the settings stay")
        for _ in range(2):
            desktop.key("ctrl+alt+j")
            sidebar.wait_shown(SHOWN)
            desktop.key("ctrl+alt+j")
            sidebar.wait_hidden()
            # The choice survives, and is given back in between.
            self.quit(sidebar)
            sidebar = self.start(desktop)
            sidebar.wait_hidden()


if __name__ == "__main__":
    unittest.main()
