"""The built program as assistive tools meet it, in an AT-SPI session of its own: what it is made of, what can be
done with it from there, and what it says."""

import json
import os
import unittest
import uuid

import accessibility
from settings_portal import SettingsPortal
from virtual_desktop import VirtualDesktop, wait_for

PROGRAM = os.environ["QUILLBAR"]
SCREEN = (1440, 1300)
# What can be worked, in the protocol's words.
INTERACTIVE = {"push button", "check box", "radio button", "page tab", "combo box", "slider", "text", "list item",
               "menu item"}
# What only shows or holds.
PASSIVE = {"frame", "panel", "dialog", "heading", "label", "list", "notification", "animation", "page tab list",
           "alert message", "filler", "grouping", "separator", "popup menu", "table", "scroll pane", "viewport", "window"}


def tasks(*rows):
    return json.dumps([{"id": str(uuid.uuid4()).upper(), "title": title, "status": status, "createdAt": 784111777.5,
                        "order": number} for number, (title, status) in enumerate(rows, 1)]).encode()


class Session(unittest.TestCase):
    """A desktop with a bus for assistive tools, and the program on it."""

    def start(self, wishes=None, screen=SCREEN, environment=None, **preferences):
        """wishes: what the desktop's settings portal says; None for no portal."""
        self.desktop = VirtualDesktop(screens=(screen,), compositor=True)
        self.addCleanup(self.desktop.close)
        self.desktop.store(**{"hasOnboarded": True, "launchAtLogin": False, "todoViewMode": "list",
                              "notesMode": "scratch", "mediaSource": "system",
                              "enabledModuleIDs": ["todo", "calendar", "notes", "spotify"],
                              "moduleOrder": ["todo", "calendar", "notes", "spotify"], **preferences})
        bus = accessibility.start_bus(self.desktop)
        if wishes is not None:
            self.portal = SettingsPortal(self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"], wishes)
            self.addCleanup(self.portal.close)
        self.program = self.desktop.start([PROGRAM], env={**accessibility.ENVIRONMENT, **(environment or {})})
        self.tools = accessibility.Application(bus, self.program.pid)
        self.addCleanup(self.tools.close)
        self.wait(lambda: self.window("Quillbar"), "no panel")

    def wait(self, condition, message):
        def reached():
            try:
                return condition()
            except accessibility.Unreachable:
                return None
        return wait_for(reached, timeout=30, message=lambda: f"{message() if callable(message) else message}\n{self.program.log}\n{self.dump()}")

    def dump(self):
        try:
            return "\n".join(str(window) for window in self.tools.windows())
        except accessibility.Unreachable as error:
            return str(error)

    def call(self, action):
        self.desktop.run("gdbus", "call", "--session", "--dest", "com.randblatt.Quillbar", "--object-path",
                         "/com/randblatt/Quillbar", "--method", "org.freedesktop.Application.ActivateAction", action,
                         "@av []", "@a{sv} {}")

    def window(self, title):
        return next((window for window in self.tools.windows()
                     if window.name.startswith(title) and window.has("showing")), None)

    def show(self):
        self.call("show")
        panel = self.wait(lambda: self.desktop.windows("^Quillbar$"), "the panel does not come")[0]
        self.wait(lambda: self.desktop.active_window() == panel, "the panel has no keyboard")
        self.wait(lambda: self.window("Quillbar").first("panel", "To-Do"), "no cards")

    def find(self, window, role, name):
        return self.wait(lambda: (found := self.window(window)) and found.first(role, name), f"no {role} {name}")

    def focused(self):
        """What has the keyboard, of all windows."""
        found = [node for window in self.tools.windows() for node in window.all() if node.has("focused")]
        return found[-1] if found else None

    def stored(self, key):
        return self.desktop.preferences().get(key)


class AccessibilityTest(Session):
    def check_tree(self, window):
        """Every thing that can be worked has a name and a role that says what it is, and what it is set to."""
        tree = self.window(window)
        faults = []
        for node in tree.all():
            if not node.has("visible"):
                continue
            actions = self.tools.actions(node)
            if node.role not in INTERACTIVE | PASSIVE:
                faults.append(f"role {node.role!r}: {node.name!r}")
            if node.role in INTERACTIVE and not node.name:
                faults.append(f"{node.role} without a name: {node.path}")
            if node.role in PASSIVE and {"Press", "Toggle"} & set(actions):
                faults.append(f"{node.role} {node.name!r} can be pressed")
            if node.role in {"push button", "check box", "radio button", "page tab", "combo box"} \
                    and not {"Press", "Toggle"} & set(actions):
                faults.append(f"{node.role} {node.name!r} cannot be pressed: {actions}")
            if node.role == "slider":
                lowest, present, highest = self.tools.value(node)
                if not lowest < highest or not lowest <= present <= highest:
                    faults.append(f"slider {node.name!r}: {lowest} {present} {highest}")
        self.assertEqual(faults, [], str(tree))

    def press(self, window, role, name, action="Press"):
        self.tools.act(self.find(window, role, name), action)

    def toggles(self, window, role, name, read):
        """Toggled and toggled back, the state says what is stored."""
        node = self.find(window, role, name)
        before, stored = node.has("checked"), read()
        for expected in (not before, before):
            self.tools.act(self.find(window, role, name), "Toggle")
            self.wait(lambda: self.find(window, role, name).has("checked") == expected, f"{name} is not {expected}")
            self.assertEqual(read() == stored, expected == before, name)

    def test_panel_is_told_whole_and_can_be_worked(self):
        self.start(**{"todoItems.v1": tasks(("Milch", "backlog"), ("Brot", "doing"), ("Käse", "done"))})
        self.show()
        self.check_tree("Quillbar")
        panel = self.window("Quillbar")
        labels = {node.name for node in panel.all() if node.role in {"label", "heading"} and node.has("visible")}
        self.assertLessEqual({"To-Do", "Kalender", "Notizen", "Erledigt", "Mediensteuerung", "Termine",
                              "Steuert die App, die gerade abspielt"}, labels, str(panel))
        statuses = lambda: [task["status"] for task in json.loads(self.stored("todoItems.v1"))]  # noqa: E731
        self.assertTrue(self.find("Quillbar", "check box", "Erledigt: Käse").has("checked"))
        self.press("Quillbar", "check box", "Erledigt: Milch", "Toggle")
        self.wait(lambda: statuses() == ["done", "doing", "done"], "not stored")
        self.wait(lambda: self.find("Quillbar", "check box", "Erledigt: Milch").has("checked"), "not told")

        # The quick settings, and the board with its menu.
        self.desktop.key("F6", "shift+F10")
        self.find("Quillbar", "panel", "Optionen")
        self.check_tree("Quillbar")
        self.press("Quillbar", "radio button", "XL")
        self.wait(lambda: self.find("Quillbar", "radio button", "XL").has("checked"), "XL is not told")
        self.press("Quillbar", "radio button", "Kanban-Tafel")
        self.wait(lambda: self.stored("todoViewMode") == "kanban", "no board")
        self.wait(lambda: self.find("Quillbar", "radio button", "Kanban-Tafel").has("checked"), "not told")
        self.wait(lambda: not self.find("Quillbar", "radio button", "Liste").has("checked"), "both are told")
        self.press("Quillbar", "push button", "Schließen")
        self.wait(lambda: not self.window("Quillbar").first("panel", "Optionen"), "stays open")
        self.check_tree("Quillbar")
        self.press("Quillbar", "push button", "Aktionen: Brot")
        self.press("Quillbar", "menu item", "Offen")
        self.wait(lambda: "doing" not in statuses(), "not moved")

    def test_settings_are_told_whole_and_can_be_worked(self):
        self.start()
        self.call("settings")
        window = "Einstellungen"
        self.find(window, "check box", "Leiste immer sichtbar")
        self.check_tree(window)
        self.toggles(window, "check box", "Leiste immer sichtbar", lambda: self.stored("alwaysVisible") or False)
        self.press(window, "radio button", "Rechts")
        self.wait(lambda: self.stored("sidebarSide") == "right", "not stored")
        self.wait(lambda: self.find(window, "radio button", "Rechts").has("checked")
                  and not self.find(window, "radio button", "Links").has("checked"), "not told")
        slider = self.find(window, "slider", "Größe der Eck-Zone: .*")
        self.assertEqual(self.tools.value(slider), (30, 90, 200))
        self.tools.act(slider, "Increase")
        self.wait(lambda: self.stored("cornerSize") == 95, "not stored")
        self.tools.set_value(slider, 120)
        self.wait(lambda: self.stored("cornerSize") == 120, "not stored")
        self.find(window, "slider", "Größe der Eck-Zone: 120")
        for tab, name in (("Module", "Kalender verschieben"), ("Design", "Tönungsfarbe"), ("Spotify", "Verbinden")):
            self.press(window, "page tab", tab)
            self.wait(lambda: (node := self.window(window).first("push button", name)) and node.has("visible"),
                      f"{tab} does not come")
            self.check_tree(window)
            if tab == "Module":
                self.toggles(window, "check box", "Kalender", lambda: "calendar" in self.stored("enabledModuleIDs"))
        self.press(window, "page tab", "Design")
        self.press(window, "push button", "Tönungsfarbe")
        self.check_tree("Tönungsfarbe")
        self.tools.set_value(self.find("Tönungsfarbe", "slider", "Farbton: .*"), 120)
        self.wait(lambda: self.stored("globalTheme"), "the colour is not shown while it is chosen")

    def test_first_run_window_is_told_whole_and_can_be_worked(self):
        self.start(hasOnboarded=False)
        window = "Willkommen"
        self.find(window, "push button", "Los geht's")
        self.check_tree(window)
        self.toggles(window, "check box", "Musik", lambda: "spotify" in (self.stored("enabledModuleIDs") or []))
        self.press(window, "radio button", "Medienwiedergabe")
        self.press(window, "radio button", "Apple Notizen")
        self.wait(lambda: self.stored("notesMode") == "apple", "not stored")
        self.press(window, "push button", "Los geht's")
        self.wait(lambda: self.stored("hasOnboarded") is True, "not stored")

    def test_says_what_happens(self):
        self.start()
        said = []
        self.tools.hear("Announcement", lambda signal: said.append(signal[3]))
        self.show()

        def hears(text):
            def heard():
                self.tools.follow()
                return any(text in line for line in said)
            self.wait(heard, lambda: f"{text!r} is not said, but {said}")
        self.desktop.key("F6")
        self.desktop.type("Milch")
        self.desktop.key("Return")
        hears("Milch: hinzugefügt")
        self.desktop.key("Tab", "Delete")
        hears("Gelöscht")
        self.desktop.key("ctrl+z")
        hears("Rückgängig gemacht")


if __name__ == "__main__":
    unittest.main()
