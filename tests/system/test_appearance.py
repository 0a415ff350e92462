"""The desktop's wishes, as the built program takes them up while it runs: dark or light, contrast, the accent colour,
motion, size of text."""

import os
import shutil
import time
import unittest
from pathlib import Path

from gi.repository import GLib

from settings_portal import APPEARANCE, GNOME
from test_accessibility import Session, tasks

# Where pictures are kept, for whoever wants to look at them.
PICTURES = os.environ.get("QUILLBAR_PICTURES")


def luminance(color):
    parts = [part / 255 for part in color]
    linear = [part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4 for part in parts]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def uint(number):
    return GLib.Variant("u", number)


class AppearanceTest(Session):
    def keep(self, name):
        path = self.desktop.folder / f"{name}.png"
        picture = self.desktop.screenshot(path)
        if PICTURES:
            Path(PICTURES).mkdir(parents=True, exist_ok=True)
            shutil.copy(path, PICTURES)
        return picture

    def frame_of(self, window, role, name):
        return self.tools.frames([self.find(window, role, name)])[0]

    def ground(self, name="Einstellungen"):
        """The luminance of the settings window's ground."""
        x, y, width, height = self.tools.frames([self.window(name)])[0]
        return luminance(self.desktop.pixel(x + 6, y + height - 6))

    def test_follows_the_desktop_while_it_runs(self):
        self.start(wishes={(APPEARANCE, "color-scheme"): uint(1)})
        self.call("settings")
        self.find("Einstellungen", "check box", "Leiste immer sichtbar")
        self.wait(lambda: self.ground() < 0.05, lambda: f"not dark: {self.ground()}")
        self.keep("dark")
        self.portal.set(APPEARANCE, "color-scheme", uint(2))
        self.wait(lambda: self.ground() > 0.7, lambda: f"not light: {self.ground()}")

        height = self.frame_of("Einstellungen", "label", "Seite")[3]
        self.portal.set(GNOME, "text-scaling-factor", GLib.Variant("d", 1.5))
        self.wait(lambda: self.frame_of("Einstellungen", "label", "Seite")[3] >= 1.4 * height, "the texts do not grow")
        self.keep("large-settings")

        self.portal.set(APPEARANCE, "contrast", uint(1))
        self.wait(lambda: self.ground() > 0.99, lambda: f"the ground is not white: {self.ground()}")
        self.keep("contrast-settings")
        self.portal.set(APPEARANCE, "accent-color", GLib.Variant("(ddd)", (0.8, 0.0, 0.2)))
        x, y, width, height = self.frame_of("Einstellungen", "slider", "Größe der Eck-Zone: .*")
        self.wait(lambda: (color := self.desktop.pixel(x + 6, y + height // 2))[0] > 2 * max(color[1:]),
                  lambda: f"not the accent: {self.desktop.pixel(x + 6, y + height // 2)}")

    def test_texts_of_cards_grow(self):
        self.start(wishes={}, **{"todoItems.v1": tasks(("Milch", "backlog"), ("Käse", "done"))})
        self.show()
        before = {name: self.frame_of("Quillbar", "label", name)[3] for name in ("To-Do", "Kalender", "Mediensteuerung")}
        self.portal.set(GNOME, "text-scaling-factor", GLib.Variant("d", 1.5))
        for name, height in before.items():
            self.wait(lambda: self.frame_of("Quillbar", "label", name)[3] >= 1.4 * height, f"{name} does not grow")
        self.keep("large-cards")

    def test_nothing_slides_where_motion_is_reduced(self):
        self.start(wishes={(GNOME, "enable-animations"): GLib.Variant("b", False)})
        self.wait(lambda: not self.desktop.windows("^Quillbar$"), "the panel stays")
        for _ in range(3):
            self.call("show")
            places = set()
            self.wait(lambda: self.desktop.windows("^Quillbar$"), "the panel does not come")
            panel = self.desktop.windows("^Quillbar$")[0]
            end = time.monotonic() + 0.5
            while time.monotonic() < end:
                places.add(self.desktop.geometry(panel)[0])
            self.assertLessEqual(places - {0, -444}, set(), "it was seen on its way")
            self.assertIn(0, places)
            self.call("hide")
            self.wait(lambda: not self.desktop.windows("^Quillbar$"), "the panel does not go")


if __name__ == "__main__":
    unittest.main()
