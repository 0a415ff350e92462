"""A working day by keyboard alone: wherever the keyboard is, it is seen."""

import json
import re
import unittest

from calendar_file import events
from test_accessibility import Session

# What shows where the keyboard is, on cards and in windows of the default palette.
RINGS = ((0xc4, 0xb8, 0xff), (0x8c, 0x73, 0xff), (0x30, 0x8c, 0xc6))
NEAR = 14


class KeyboardTest(Session):
    def is_seen(self, node):
        """Whether a ring or a lit frame is around the node."""
        x, y, width, height = self.tools.frames([node])[0]
        reach = 14 if node.role == "text" else 6
        picture = self.desktop.screenshot()
        box = (max(0, x - reach), max(0, y - reach), min(picture.width, x + width + reach),
               min(picture.height, y + height + reach))
        pixels = picture.crop(box).getdata()
        lit = sum(any(all(abs(part - wanted) <= NEAR for part, wanted in zip(pixel, ring)) for ring in RINGS)
                  for pixel in pixels)
        return lit >= 24

    def stop(self, role=None, name=None):
        """Waits until the keyboard is on something of this role and name, and is seen there."""
        node = self.wait(lambda: (found := self.focused()) and (role is None or found.role == role)
                         and (name is None or re.fullmatch(name, found.name)) and found,
                         lambda: f"the keyboard is on {self.focused()} and not on {role} {name}")
        self.wait(lambda: self.is_seen(node), f"it is not seen that the keyboard is on {node.role} {node.name!r}")
        return node

    def tab_to(self, name, key="Tab"):
        """Goes on until the keyboard is on what has this name; at each stop it is seen."""
        for _ in range(30):
            before = self.focused()
            self.desktop.key(key)
            self.wait(lambda: (now := self.focused()) and (not before or now.path != before.path), f"{key} leads nowhere")
            if re.fullmatch(name, self.stop().name):
                return
        self.fail(f"{key} does not lead to {name}")

    def titles(self):
        return [(task["title"], task["status"]) for task in json.loads(self.stored("todoItems.v1") or "[]")]

    def wait_tasks(self, *expected):
        self.wait(lambda: sorted(self.titles()) == sorted(expected), lambda: f"{self.titles()}")

    def test_works_through_a_day(self):
        self.start(notesMode="apple", todoViewMode="list")
        self.show()
        key, type_ = self.desktop.key, self.desktop.type

        # Tasks: add, rename, finish, undo, move on the board.
        key("F6")
        self.stop("text", "Neue Aufgabe…")
        for title in ("Milch", "Brot"):
            type_(title)
            key("Return")
        self.wait_tasks(("Milch", "backlog"), ("Brot", "backlog"))
        key("Tab")
        self.stop("list item", "Milch")
        key("F2")
        self.stop("text", "Titel")
        key("End")
        type_(" und Käse")
        key("Return")
        self.stop("list item", "Milch und Käse")
        key("Down")
        self.stop("list item", "Brot")
        key("space")
        self.wait_tasks(("Milch und Käse", "backlog"), ("Brot", "done"))
        self.stop("list item")
        key("ctrl+z")
        self.wait_tasks(("Milch und Käse", "backlog"), ("Brot", "backlog"))
        self.stop("list item", "Brot")
        key("shift+F10")
        self.stop("radio button")
        self.tab_to("Kanban-Tafel")
        key("Return")
        self.wait(lambda: self.stored("todoViewMode") == "kanban", "no board")
        # The keyboard stays in the options until they are closed.
        self.tab_to("Schließen")
        key("Escape")
        self.wait(lambda: not self.window("Quillbar").first("panel", "Optionen"), "the options stay")
        self.tab_to("Milch und Käse")
        key("F2")
        self.stop("text", "Titel")
        key("End")
        type_("!")
        key("Return")
        self.stop("list item", "Milch und Käse!")
        key("Return")
        self.wait(lambda: self.window("Quillbar").first("menu item", "In Arbeit"), "no menu")
        key("Down", "Return")
        self.wait_tasks(("Milch und Käse!", "doing"), ("Brot", "backlog"))
        self.stop("list item", "Brot")

        # An event.
        key("F6")
        self.stop("push button", "Neuer Termin")
        key("Return")
        self.stop("text", "Titel")
        type_("Zahnarzt")
        key("Return")
        self.wait(lambda: [event["SUMMARY"] for event in events(self.desktop.data_home / "quillbar/calendar.ics")]
                  == ["Zahnarzt"], "no event")

        # A note: written, and found again.
        key("F6")
        self.stop()
        self.tab_to("Neue Notiz")
        key("Return")
        self.stop("text", "Titel")
        type_("Garten")
        key("Return")
        type_("Tomaten")
        key("ctrl+s")
        notes = self.desktop.data_home / "quillbar/notes/Notizen"
        self.wait(lambda: [path for path in notes.glob("*.html") if "Tomaten" in path.read_text()], "no note")
        self.wait(lambda: (row := self.window("Quillbar").first("list item", "Garten")) and row.has("showing"), "no row")

        # A theme.
        key("ctrl+comma")
        self.wait(lambda: self.window("Einstellungen"), "no settings")
        self.wait(lambda: "Einstellungen" in self.desktop.title(self.desktop.active_window() or 0), "no keyboard there")
        key("ctrl+Tab", "ctrl+Tab")
        self.stop("page tab", "Design")
        self.tab_to("Abdunkeln .*")
        key("Right")
        self.wait(lambda: self.stored("globalTheme"), "no theme")
        self.stop("slider", "Abdunkeln .*")


if __name__ == "__main__":
    unittest.main()
