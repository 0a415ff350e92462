"""The sidebar as a person meets it: the built program on a virtual desktop, with pointer and keyboard."""

import json
import os
import re
import signal
import subprocess
import time
import unittest
from pathlib import Path

from virtual_desktop import VirtualDesktop, wait_for

QUILLBAR = os.environ["QUILLBAR"]
APPLICATION = ("--session", "--dest", "com.randblatt.Quillbar", "--object-path", "/com/randblatt/Quillbar",
               "--method")


class Sidebar:
    """The program on a desktop."""

    def __init__(self, desktop, env=None, prefix=()):
        self.desktop = desktop
        self.env = env
        self.program = desktop.start([*prefix, QUILLBAR], env=env)

    def panel(self):
        """The id of the visible panel, or None."""
        found = self.desktop.windows("^Quillbar$")
        return found[0] if found else None

    def frame(self):
        panel = self.panel()
        return self.desktop.geometry(panel) if panel else None

    def wait_shown(self, frame):
        wait_for(lambda: self.frame() == frame, message=lambda: f"{self.frame()} instead of {frame}\n{self.program.log}")

    def wait_hidden(self):
        # Twice: a search may find nothing because another window has just gone.
        wait_for(lambda: self.panel() is None and self.panel() is None,
                 message=lambda: f"still there: {self.frame()}\n{self.program.log}")

    def wait_peek_over(self):
        wait_for(self.panel, message=lambda: "no peek\n" + self.program.log)
        self.wait_hidden()

    def tasks(self):
        return json.loads(self.desktop.preferences().get("todoItems.v1", b"[]"))


class Below:
    """A terminal in the middle of the screen that writes down what it is given."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.path = desktop.folder / "below"
        desktop.start(["xterm", "-T", "Schreibmaschine", "-geometry", "60x20+600+200", "-e",
                       "sh", "-c", f"exec cat > {self.path}"])
        self.window = wait_for(lambda: self.path.exists() and desktop.windows("Schreibmaschine"))[0]
        self.wait_keyboard()

    def text(self):
        return self.path.read_text()

    def wait_keyboard(self):
        wait_for(lambda: self.desktop.active_window() == self.window, message="the keyboard is lost")


def store(desktop, **preferences):
    """Writes preferences as an earlier run would have left them."""
    desktop.store(hasOnboarded=True, **preferences)


# The panel on a screen of 1440 × 900 pixels without docks.
SHOWN = (0, 0, 420, 886)


class SidebarTest(unittest.TestCase):
    def desktop(self, **arguments):
        desktop = VirtualDesktop(**arguments)
        self.addCleanup(desktop.close)
        return desktop

    def test_keeps_a_typed_task_over_a_kill(self):
        desktop = self.desktop(compositor=True)
        store(desktop)
        sidebar = Sidebar(desktop)
        sidebar.wait_peek_over()

        desktop.move(0, 400)
        sidebar.wait_shown(SHOWN)
        desktop.type("Brötchen für Jürgen")
        desktop.key("Return")
        wait_for(sidebar.tasks, message=lambda: "nothing stored\n" + sidebar.program.log)
        sidebar.program.process.send_signal(signal.SIGKILL)
        sidebar.program.wait()
        self.assertEqual([(task["title"], task["status"], task["order"]) for task in sidebar.tasks()],
                         [("Brötchen für Jürgen", "backlog", 1)])

        desktop.move(720, 450)
        again = Sidebar(desktop)
        again.wait_peek_over()
        desktop.move(0, 400)
        again.wait_shown(SHOWN)
        desktop.type("Zweitens")
        desktop.key("Return")
        wait_for(lambda: len(again.tasks()) == 2, message=lambda: str(again.tasks()))
        self.assertEqual(again.tasks()[0]["title"], "Brötchen für Jürgen")

        desktop.move(430, 400)
        time.sleep(0.4)
        self.assertIsNotNone(again.panel())
        desktop.move(600, 400)
        again.wait_hidden()

    def test_ignores_a_pointer_that_brushes_past(self):
        desktop = self.desktop()
        store(desktop, revealDelay=0.3)
        sidebar = Sidebar(desktop)
        sidebar.wait_peek_over()
        for y in (200, 500, 800):
            desktop.move_smoothly(0, y, seconds=0.1)
            desktop.move_smoothly(300, y, seconds=0.1)
        time.sleep(0.5)
        self.assertIsNone(sidebar.panel())

    def test_peeks_and_gives_the_keyboard_back(self):
        desktop = self.desktop()
        store(desktop)
        desktop.start(["xterm", "-T", "Schreibmaschine"])
        former = wait_for(lambda: desktop.windows("Schreibmaschine") and desktop.active_window())
        started = time.monotonic()
        sidebar = Sidebar(desktop)
        sidebar.wait_shown(SHOWN)
        wait_for(lambda: desktop.active_window() == sidebar.panel(), message="the panel has no keyboard")
        sidebar.wait_hidden()
        self.assertGreater(time.monotonic() - started, 2.5)
        wait_for(lambda: desktop.active_window() == former, message="the keyboard is lost")

    def test_is_one_instance_that_others_can_call(self):
        desktop = self.desktop()
        store(desktop)
        sidebar = Sidebar(desktop)
        sidebar.wait_peek_over()
        second = desktop.start([QUILLBAR])
        self.assertEqual(second.wait(), 0)
        sidebar.wait_shown(SHOWN)
        self.call(desktop, "toggle")
        sidebar.wait_hidden()
        self.call(desktop, "toggle")
        sidebar.wait_shown(SHOWN)
        self.call(desktop, "hide")
        sidebar.wait_hidden()
        sidebar.program.process.send_signal(signal.SIGTERM)
        self.assertEqual(sidebar.program.wait(), 0)

    def test_answers_on_the_command_line(self):
        desktop = self.desktop()

        def answer(*arguments, **variables):
            environment = {**desktop.environment, **variables}
            return subprocess.run([QUILLBAR, *arguments], env=environment, capture_output=True, text=True, timeout=20)
        version = answer("--version", DISPLAY=":4711")
        self.assertEqual((version.returncode, version.stderr), (0, ""))
        self.assertRegex(version.stdout, r"^Quillbar \d+\.\d+\.\d+\n$")
        self.assertIn("Aufruf: quillbar", answer("--help", DISPLAY=":4711").stdout)
        for argument in ("--versoin", "-x", "file:///etc/passwd", "Notizen"):
            wrong = answer(argument)
            self.assertEqual((wrong.returncode, wrong.stdout), (2, ""))
            self.assertIn(f"unbekannt: {argument} ", wrong.stderr)
        # The toolkit's own are none of ours.
        self.assertEqual(answer("-platform", "xcb", "--x").returncode, 2)

    def test_is_started_by_a_call_and_ended_by_one(self):
        desktop = self.desktop()
        store(desktop)
        (desktop.data_home / "dbus-1/services/com.randblatt.Quillbar.service").write_text(
            f"[D-BUS Service]\nName=com.randblatt.Quillbar\nExec={QUILLBAR}\n")
        variables = "{" + ", ".join(f"'{name}': '{value}'" for name, value in desktop.environment.items()) + "}"
        desktop.run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
                    "/org/freedesktop/DBus", "--method", "org.freedesktop.DBus.UpdateActivationEnvironment", variables)

        # The panel that comes with every start is not what was called for: this one stays.
        self.call(desktop, "toggle")
        panel = wait_for(lambda: desktop.windows("^Quillbar$"), message="not started")[0]
        wait_for(lambda: desktop.active_window() == panel, message="the panel has no keyboard")
        time.sleep(4)
        self.assertEqual(desktop.windows("^Quillbar$"), [panel])
        self.call(desktop, "toggle")
        wait_for(lambda: not desktop.windows("^Quillbar$"), message="not hidden")
        self.call(desktop, "quit")
        wait_for(lambda: "false" in desktop.run(
            "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus",
            "--method", "org.freedesktop.DBus.NameHasOwner", "com.randblatt.Quillbar"), message="still running")

    def test_ends_with_its_key_in_every_window(self):
        desktop = self.desktop()
        store(desktop)
        for window in ("panel", "settings"):
            sidebar = Sidebar(desktop)
            wait_for(sidebar.panel, message=lambda: "no peek\n" + sidebar.program.log)
            self.call(desktop, "show" if window == "panel" else "settings")
            title = "^Quillbar$" if window == "panel" else "^Einstellungen – Quillbar$"
            wait_for(lambda: desktop.active_window() in desktop.windows(title), message=f"no {window}")
            entry = (Path(__file__).resolve().parents[2] / "packaging/com.randblatt.Quillbar.desktop").read_text()
            name = re.search("^StartupWMClass=(.+)$", entry, re.MULTILINE).group(1)
            self.assertEqual(desktop.property(desktop.active_window(), "WM_CLASS"), f'"quillbar", "{name}"')
            if window == "settings":
                self.assertIn("Icon (", desktop.property(desktop.active_window(), "_NET_WM_ICON"))
            desktop.key("ctrl+q")
            self.assertEqual(sidebar.program.wait(), 0)

    def test_runs_where_the_bus_refuses_its_name(self):
        desktop = self.desktop()
        store(desktop)
        configuration = desktop.folder / "strict.conf"
        configuration.write_text((desktop.folder / "bus.conf").read_text().replace(
            "</policy>", '<deny own="com.randblatt.Quillbar"/></policy>'))
        bus = desktop.start(["dbus-daemon", f"--config-file={configuration}", "--print-address", "--nofork", "--nopidfile"],
                            stdout=subprocess.PIPE)
        sidebar = Sidebar(desktop, env={"DBUS_SESSION_BUS_ADDRESS": bus.process.stdout.readline().decode().strip()})
        sidebar.wait_shown(SHOWN)
        self.assertIn("von außen aber nicht erreichbar", sidebar.program.log)

    def test_loses_nothing_that_is_typed_into_a_called_panel(self):
        desktop = self.desktop()
        store(desktop)
        below = Below(desktop)
        sidebar = Sidebar(desktop)
        sidebar.wait_peek_over()
        self.call(desktop, "toggle")
        sidebar.wait_shown(SHOWN)
        wait_for(lambda: desktop.active_window() == sidebar.panel(), message="the panel has no keyboard")

        # The pointer rests far away, for longer than a panel stays for its own sake.
        sentence = "Den Vermieter anrufen wegen der Heizung, die seit gestern kalt bleibt"
        desktop.type_slowly(sentence, 90)
        # A moment of thinking.
        desktop.at_screen("xdotool", "sleep", 3.5, "type", "!?")
        desktop.key("Return")
        wait_for(sidebar.tasks, message=lambda: f"nothing stored, but below: {below.text()!r}")
        self.assertEqual([task["title"] for task in sidebar.tasks()], [sentence + "!?"])
        self.assertEqual(below.text(), "")
        self.assertEqual(sidebar.frame(), SHOWN)

        desktop.key("Escape")
        sidebar.wait_hidden()
        below.wait_keyboard()
        desktop.type("danach")
        desktop.key("Return")
        wait_for(lambda: below.text() == "danach\n", message=lambda: repr(below.text()))
        self.assertEqual(len(sidebar.tasks()), 1)

        # One that the user turns away from goes by itself.
        self.call(desktop, "show")
        sidebar.wait_shown(SHOWN)
        desktop.click(900, 450)
        sidebar.wait_hidden()

    def test_does_nothing_unseen_or_twice_to_a_task(self):
        desktop = self.desktop()
        store(desktop, todoViewMode="list")
        sidebar = Sidebar(desktop)
        sidebar.wait_peek_over()
        self.call(desktop, "show")
        sidebar.wait_shown(SHOWN)
        desktop.type("Eins")
        # From the field to the row of the new task.
        desktop.key("Return", "Tab", "Tab")
        wait_for(sidebar.tasks, message=lambda: "nothing stored\n" + sidebar.program.log)
        self.call(desktop, "hide")
        sidebar.wait_hidden()
        self.call(desktop, "show")
        sidebar.wait_shown(SHOWN)
        desktop.key("space", "Delete")
        for title in ("Zwei", "Drei", "Vier"):
            desktop.type(title)
            desktop.key("Return")
        wait_for(lambda: [(task["title"], task["status"]) for task in sidebar.tasks()]
                 == [(title, "backlog") for title in ("Eins", "Zwei", "Drei", "Vier")],
                 message=lambda: str(sidebar.tasks()))

        # A held key deletes one.
        desktop.key("Tab", "Tab")
        desktop.at_screen("xdotool", "keydown", "Delete", "sleep", 1.5, "keyup", "Delete")
        wait_for(lambda: [task["title"] for task in sidebar.tasks()] == ["Zwei", "Drei", "Vier"],
                 message=lambda: str(sidebar.tasks()))

    def test_gives_the_keyboard_back_from_where_it_is_always_visible(self):
        desktop = self.desktop()
        store(desktop, alwaysVisible=True)
        below = Below(desktop)
        sidebar = Sidebar(desktop)
        sidebar.wait_shown(SHOWN)
        desktop.click(200, 360)
        wait_for(lambda: desktop.active_window() == sidebar.panel(), message="the panel has no keyboard")
        desktop.key("Escape")
        below.wait_keyboard()
        self.assertEqual(sidebar.frame(), SHOWN)

    def call(self, desktop, action):
        desktop.run("gdbus", "call", *APPLICATION, "org.freedesktop.Application.ActivateAction", action, "@av []", "@a{sv} {}")

    def test_lives_on_the_right_of_two_screens(self):
        desktop = self.desktop(screens=[(1440, 900), (1280, 800)])
        store(desktop, sidebarSide="right", panelWidth=500.0, panelHeightFraction=0.5)
        sidebar = Sidebar(desktop)
        wait_for(lambda: sidebar.frame() == (940, 0, 500, 443), message=lambda: str(sidebar.frame()))
        sidebar.wait_hidden()
        desktop.move(1440 + 1279, 300)
        wait_for(lambda: sidebar.frame() == (1440 + 780, 0, 500, 393), message=lambda: str(sidebar.frame()))
        desktop.move(1440 + 100, 300)
        sidebar.wait_hidden()

    def test_shows_whole_cards_without_a_compositor(self):
        desktop = self.desktop(compositor=False, wallpaper="#ff00ff")
        store(desktop, alwaysVisible=True, enabledModuleIDs=["todo"])
        sidebar = Sidebar(desktop)
        sidebar.wait_shown(SHOWN)
        wallpaper = (255, 0, 255)
        wait_for(lambda: desktop.screenshot().getpixel((200, 370)) != wallpaper, message="no card")
        picture = desktop.screenshot()
        card = picture.getpixel((200, 370))
        self.assertGreater(sum(card), 20, "the card is black")
        self.assertLess(card[0] - card[1], 40, "the wallpaper shines through")
        self.assertEqual(picture.getpixel((6, 450)), wallpaper)
        self.assertEqual(picture.getpixel((200, 700)), wallpaper)

    def test_starts_over_damage_and_without_services(self):
        desktop = self.desktop(window_manager=None)
        folder = desktop.data_home / "quillbar"
        folder.mkdir()
        (folder / "preferences.sqlite").write_bytes(b"damaged " * 1000)
        sidebar = Sidebar(desktop, env={"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"})
        sidebar.wait_shown(SHOWN)
        self.assertEqual(len(list(folder.glob("preferences.sqlite.unlesbar-*"))), 1)
        self.assertIn("beiseitegelegt", sidebar.program.log)
        desktop.move(0, 400)
        desktop.type("Trotzdem")
        desktop.key("Return")
        wait_for(sidebar.tasks, message=lambda: "nothing stored\n" + sidebar.program.log)

    def test_registers_itself_for_the_login(self):
        desktop = self.desktop()
        store(desktop)
        sidebar = Sidebar(desktop)
        sidebar.wait_peek_over()
        entry = desktop.config_home / "autostart/com.randblatt.Quillbar.desktop"
        self.assertIn(f'Exec="{QUILLBAR}"', entry.read_text())
        # Switched off, nothing in its name starts, also not what an older one has left.
        sidebar.program.terminate()
        entry.write_text("[Desktop Entry]\nExec=/opt/old/quillbar\n")
        store(desktop, launchAtLogin=False)
        Sidebar(desktop).wait_peek_over()
        self.assertFalse(entry.exists())


if __name__ == "__main__":
    unittest.main()
