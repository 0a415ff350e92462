"""The tray's icon and its menu, as a tray sees them: hosts that are there, come late, come again, or never."""

import subprocess
import sys
import unittest
from pathlib import Path

from test_sidebar import SHOWN, Sidebar, store
from test_windows import SETTINGS
from virtual_desktop import VirtualDesktop, wait_for

try:
    from tray_host import Tray
except ImportError:
    Tray = None

SKIPPED = 77
HOST = Path(__file__).with_name("tray_host.py")
ICONS = Path(__file__).resolve().parents[2] / "resources/icons"
NAME = "com.randblatt.Quillbar-symbolic"


def luminance(colour):
    def linear(part):
        part /= 255
        return part / 12.92 if part <= 0.03928 else ((part + 0.055) / 1.055) ** 2.4
    return sum(weight * linear(part) for weight, part in zip((0.2126, 0.7152, 0.0722), colour))


def contrast(one, other):
    light, dark = sorted((luminance(one), luminance(other)), reverse=True)
    return (light + 0.05) / (dark + 0.05)


def strongest_contrast(pixmap, panel):
    """Of what is painted solidly, with the panel that it lies on."""
    return max(contrast(colour, panel) for row in pixmap for alpha, *colour in row if alpha > 230)


class TrayTest(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop(screens=[(1440, 900), (1280, 800)])
        self.addCleanup(self.desktop.close)
        store(self.desktop)

    def start_host(self):
        host = self.desktop.start([sys.executable, "-B", str(HOST)], stdout=subprocess.PIPE)
        self.assertEqual(host.process.stdout.readline(), b"ready\n", host.log)
        return host

    def start(self, **arguments):
        self.sidebar = Sidebar(self.desktop, **arguments)
        self.sidebar.wait_peek_over()

    def wait_item(self):
        wait_for(lambda: len(self.tray.items()) == 1, message=lambda: f"{self.tray.items()}\n{self.sidebar.program.log}")

    def test_has_the_menu_that_it_promises(self):
        self.start_host()
        self.tray = Tray(self.desktop)
        self.start()
        self.wait_item()
        self.assertEqual(self.tray.property("Title"), "Quillbar")
        menu = [properties for _, properties in self.tray.menu()]
        self.assertEqual([entry.get("label") for entry in menu],
                         ["Seitenleiste anzeigen", "Einstellungen…", None, "Randblatt beenden"])
        self.assertEqual(menu[2].get("type"), "separator")
        self.assertEqual([[list(map(str, keys)) for keys in entry.get("shortcut", [])] for entry in menu],
                         [[], [["Control", ","]], [], [["Control", "Q"]]])

        # On the main screen, wherever the pointer is.
        self.desktop.move(2000, 400)
        for show in (lambda: self.tray.choose("Seitenleiste anzeigen"), self.tray.click):
            show()
            self.sidebar.wait_shown(SHOWN)
            self.desktop.key("Escape")
            self.sidebar.wait_hidden()
        for _ in range(2):
            self.tray.choose("Einstellungen…")
            wait_for(lambda: len(self.desktop.windows(SETTINGS)) == 1, message=lambda: self.sidebar.program.log)
        self.tray.choose("Randblatt beenden")
        self.assertEqual(self.sidebar.program.wait(), 0)

    def test_comes_to_a_host_that_is_late_and_to_one_that_comes_again(self):
        self.tray = Tray(self.desktop)
        self.start()
        for _ in range(3):
            host = self.start_host()
            self.wait_item()
            self.tray.choose("Seitenleiste anzeigen")
            self.sidebar.wait_shown(SHOWN)
            self.desktop.key("Escape")
            self.sidebar.wait_hidden()
            host.terminate()
        self.assertTrue(self.sidebar.program.is_running(), self.sidebar.program.log)

    def test_names_its_icon_and_can_be_seen_where_no_names_are_known(self):
        self.start_host()
        self.tray = Tray(self.desktop)
        self.start()
        self.wait_item()
        # Not installed, there is no name that a tray could find.
        self.assertNotEqual(self.tray.property("IconName"), NAME)
        for panel in ((255, 255, 255), (239, 240, 241), (0, 0, 0), (0x20, 0x24, 0x2b), (0x1e, 0x66, 0xd0)):
            self.assertGreater(strongest_contrast(self.tray.pixmap(22), panel), 3.0, f"on {panel}")
        self.sidebar.program.terminate()

        icons = self.desktop.data_home / "icons/hicolor"
        (icons / "symbolic/apps").mkdir(parents=True)
        (icons / "index.theme").write_text("[Icon Theme]\nName=Hicolor\nComment=test\nDirectories=symbolic/apps\n\n"
                                           "[symbolic/apps]\nSize=16\nMinSize=8\nMaxSize=512\nType=Scalable\n")
        (icons / f"symbolic/apps/{NAME}.svg").write_bytes((ICONS / f"{NAME}.svg").read_bytes())
        self.start()
        self.wait_item()
        self.assertEqual(self.tray.property("IconName"), NAME)


if __name__ == "__main__":
    if Tray is None:
        print("missing: python3-dbus, python3-gi")
        sys.exit(SKIPPED)
    unittest.main(verbosity=2)
