"""The calendar card in the built program, over the desktop's real calendar server, which is stopped and killed."""

import json
import os
import re
import shutil
import signal
import sqlite3
import threading
import time
import unittest
from datetime import datetime, timedelta
from pathlib import Path

import accessibility
from calendar_file import events
from test_calendar import FORM_SWITCH, calendar
from test_sidebar import SHOWN, Sidebar, store
from virtual_desktop import VirtualDesktop, wait_for

SERVICES = Path("/usr/share/dbus-1/services")
SERVER = "org.gnome.evolution.dataserver."
SOURCE = """[Data Source]
DisplayName={name}
Enabled={enabled}
Parent=local-stub

[Calendar]
BackendName=local
Color=#62a0ea
Selected={selected}
"""
# No call to the server may be felt. It ends after eight seconds and more; what is less is the machine's.
LONGEST_ANSWER = 4.0


class Answers:
    """How long the program's main thread takes to answer assistive tools, asked all the time."""

    def __init__(self, bus, pid):
        self._application = accessibility.Application(bus, pid)
        self._ends = threading.Event()
        self.longest = 0.0
        self.count = 0
        self._thread = threading.Thread(target=self._ask)
        self._thread.start()

    def _ask(self):
        while not self._ends.wait(0.02):
            started = time.monotonic()
            self._application.ping()
            self.longest = max(self.longest, time.monotonic() - started)
            self.count += 1

    def end(self):
        self._ends.set()
        self._thread.join()
        self._application.close()
        return self.longest


class CalendarServerTest(unittest.TestCase):
    def setUp(self):
        if not list(SERVICES.glob(f"{SERVER}Sources*")):
            self.fail("no calendar server is installed")
        self.desktop = VirtualDesktop(compositor=True)
        self.addCleanup(self.desktop.close)
        store(self.desktop, alwaysVisible=True, enabledModuleIDs=["calendar"])
        self.file = self.desktop.data_home / "quillbar/calendar.ics"
        self.assistive = accessibility.start_bus(self.desktop)
        for service in SERVICES.glob(f"{SERVER}*"):
            shutil.copy(service, self.desktop.data_home / "dbus-1/services")
        self.bus("UpdateActivationEnvironment", "{'GSETTINGS_BACKEND': 'memory'}")
        self.bus("ReloadConfig")
        self.processes = set()
        self.addCleanup(self.end_servers)

    # --- the server

    def bus(self, method, *arguments):
        return self.desktop.run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
                                "/org/freedesktop/DBus", "--method", f"org.freedesktop.DBus.{method}", *arguments,
                                check=False)

    def server(self, kind):
        """The process of the server for Sources or for Calendars; None if there is none."""
        name = re.search(rf"{re.escape(SERVER)}{kind}\d+", self.bus("ListNames"))
        answer = self.bus("GetConnectionUnixProcessID", name[0]) if name else ""
        found = re.search(r"uint32 (\d+)", answer)
        if found:
            self.processes.add(int(found[1]))
        return int(found[1]) if found else None

    def signal_server(self, kind, number):
        process = wait_for(lambda: self.server(kind), message=f"no server for {kind}")
        os.kill(process, number)
        return process

    def end_servers(self):
        for kind in ("Sources", "Calendar"):
            self.server(kind)
        for process in self.processes:
            try:
                os.kill(process, signal.SIGKILL)
            except ProcessLookupError:
                pass

    def write_source(self, uid, name, selected=True, enabled=True):
        """A calendar of the server's, as its other programs change it."""
        folder = self.desktop.config_home / "evolution/sources"
        folder.mkdir(parents=True, exist_ok=True)
        beside = folder / f"{uid}.new"
        beside.write_text(SOURCE.format(name=name, selected=str(selected).lower(), enabled=str(enabled).lower()))
        beside.rename(folder / f"{uid}.source")

    def server_file(self, uid):
        return self.desktop.data_home / "evolution/calendar" / uid / "calendar.ics"

    def write_events(self, uid, *titles):
        path = self.server_file(uid)
        path.parent.mkdir(parents=True, exist_ok=True)
        today = datetime.now()
        path.write_bytes(calendar(*(
            f"BEGIN:VEVENT\r\nUID:{title}\r\nDTSTAMP:20260101T000000Z\r\nSUMMARY:{title}\r\n"
            f"DTSTART;VALUE=DATE:{today + timedelta(days=1):%Y%m%d}\r\nEND:VEVENT\r\n" for title in titles)))

    # --- the program

    def start(self):
        self.sidebar = Sidebar(self.desktop, env=accessibility.ENVIRONMENT)
        # The servers start beside it.
        wait_for(lambda: self.sidebar.frame() == SHOWN, 40.0, message=lambda: "not shown\n" + self.sidebar.program.log)

    def shown(self):
        """The names of all that is shown, as assistive tools read it."""
        try:
            application = accessibility.Application(self.assistive, self.sidebar.program.pid)
            try:
                return [node.name for window in application.windows() for node in window.all() if node.has("showing")]
            finally:
                application.close()
        except accessibility.Unreachable:
            return []

    def wait_named(self, pattern, timeout=20.0):
        wait_for(lambda: any(re.fullmatch(pattern, name) for name in self.shown()), timeout,
                 message=lambda: f"{pattern} is not among {self.shown()}\n{self.sidebar.program.log}")

    def wait_unnamed(self, pattern, timeout=20.0):
        wait_for(lambda: not any(re.fullmatch(pattern, name) for name in self.shown()), timeout,
                 message=lambda: f"{pattern} is among {self.shown()}\n{self.sidebar.program.log}")

    def click_named(self, name):
        application = accessibility.Application(self.assistive, self.sidebar.program.pid)
        try:
            node = next(node for window in application.windows() for node in window.find(name=name)
                        if node.has("showing"))
            left, top, width, height = application.frames([node])[0]
        finally:
            application.close()
        self.desktop.click(left + width // 2, top + height // 2)

    def draft(self):
        database = sqlite3.connect(f"file:{self.file.parent}/preferences.sqlite?mode=ro", uri=True, timeout=5)
        try:
            row = database.execute("SELECT value FROM drafts WHERE key = 'calendar.event'").fetchone()
        finally:
            database.close()
        return json.loads(row[0]) if row else {}

    def type_title(self, text):
        if not self.draft().get("open"):
            self.desktop.click(*FORM_SWITCH)
            wait_for(lambda: self.draft().get("open"), message="the form does not open")
            time.sleep(0.4)
        wait_for(lambda: self.desktop.active_window() in self.desktop.windows("^Quillbar$"),
                 message="the panel has no keyboard")
        self.desktop.type(text)
        wait_for(lambda: self.draft().get("title") == text, message=lambda: f"{self.draft()}")

    # --- what it promises

    def test_waits_for_a_server_that_starts_slowly(self):
        self.bus("StartServiceByName", re.search(rf"{SERVER}Sources\d+", self.bus("ListActivatableNames"))[0], "0")
        process = self.signal_server("Sources", signal.SIGSTOP)
        self.start()
        self.wait_named("Lade…")
        answers = Answers(self.assistive, self.sidebar.program.pid)
        self.wait_named("Der Kalenderdienst antwortet nicht. Kein Kalenderzugriff.*", timeout=40.0)
        self.wait_named("Zugriff anfragen")
        os.kill(process, signal.SIGCONT)
        self.wait_named("Keine Termine in den nächsten 7 Tagen", timeout=40.0)
        self.type_title("Zahnarzt")
        self.desktop.key("Return")
        self.wait_named("Zahnarzt, .*")
        self.assertLess(answers.end(), LONGEST_ANSWER)
        self.assertIn("Kalender: Kalenderdienst des Desktops", self.sidebar.program.log)
        self.assertFalse(self.file.exists())

    def test_comes_back_when_the_server_has_hung_and_died(self):
        self.write_source("urlaub", "Urlaub")
        self.write_events("urlaub", "Wandern")
        self.start()
        self.wait_named("Wandern, Ganztägig")
        answers = Answers(self.assistive, self.sidebar.program.pid)
        stopped = self.signal_server("Calendar", signal.SIGSTOP)
        self.write_source("urlaub", "Ferien")
        self.wait_named("Der Kalenderdienst antwortet nicht. Konnte Termine nicht laden.*", timeout=40.0)
        self.wait_named("Neu laden")
        self.assertIn("Wandern, Ganztägig", self.shown())
        os.kill(stopped, signal.SIGKILL)
        self.click_named("Neu laden")
        self.wait_unnamed(".*Konnte Termine nicht laden.*", timeout=40.0)
        # Killed while nobody waits for it, it comes back as well, and so does the registry.
        for kind in ("Calendar", "Sources"):
            self.signal_server(kind, signal.SIGKILL)
            wait_for(lambda: self.server("Calendar"), 40.0, message="nobody has started the server again")
            self.wait_named("Wandern, Ganztägig", timeout=40.0)
            self.wait_unnamed(".*Konnte Termine nicht laden.*", timeout=40.0)
        self.type_title("Zahnarzt")
        self.desktop.key("Return")
        self.wait_named("Zahnarzt, .*", timeout=40.0)
        longest = answers.end()
        print(f"longest answer {longest * 1000:.0f} ms of {answers.count}")
        self.assertLess(longest, LONGEST_ANSWER)

    def test_adds_an_event_once_that_was_answered_late(self):
        self.start()
        self.wait_named("Keine Termine in den nächsten 7 Tagen", timeout=40.0)
        stopped = self.signal_server("Calendar", signal.SIGSTOP)
        self.type_title("Zahnarzt")
        self.desktop.key("Return")
        self.wait_named(".*Konnte Termin nicht speichern.*", timeout=60.0)
        os.kill(stopped, signal.SIGCONT)
        self.click_named("Hinzufügen")
        self.wait_named("Zahnarzt, .*", timeout=40.0)
        wait_for(lambda: self.draft() == {}, 20.0, message=lambda: str(self.draft()))
        wait_for(lambda: events(self.server_file("system")), message="nothing is stored")
        time.sleep(1)
        self.assertEqual([event["SUMMARY"] for event in events(self.server_file("system"))], ["Zahnarzt"])
        self.assertEqual(len([name for name in self.shown() if name.startswith("Zahnarzt, ")]), 1)

    def test_shows_the_calendars_that_are_ticked(self):
        self.write_source("urlaub", "Urlaub")
        self.write_events("urlaub", "Wandern")
        # The default one is hidden: what went there would not be seen.
        self.write_source("system-calendar", "Persönlich", enabled=False)
        self.start()
        self.wait_named("Wandern, Ganztägig", timeout=40.0)
        self.type_title("Zahnarzt")
        self.desktop.key("Return")
        self.wait_named("Zahnarzt, .*", timeout=40.0)
        wait_for(lambda: len(events(self.server_file("urlaub"))) == 2, message="not in the calendar that is shown")
        self.write_source("urlaub", "Urlaub", selected=False)
        self.wait_unnamed("Wandern, Ganztägig", timeout=40.0)
        self.type_title("Theater")
        self.desktop.key("Return")
        self.wait_named("(Kein Kalender, der gezeigt wird, lässt sich ändern|Der gewählte Kalender ist weg).*")
        self.write_source("urlaub", "Urlaub")
        self.wait_named("Wandern, Ganztägig", timeout=40.0)
        self.desktop.key("Return")
        self.wait_named("Theater, .*", timeout=40.0)
        self.assertEqual(len(events(self.server_file("urlaub"))), 3)
        # Taken away in the middle of an add, it is told or saved, and gone from the card.
        self.type_title("Zelten")
        self.desktop.key("Return")
        (self.desktop.config_home / "evolution/sources/urlaub.source").unlink()
        self.wait_unnamed("Wandern, Ganztägig", timeout=40.0)
        self.assertTrue(self.sidebar.program.is_running(), self.sidebar.program.log)

    def test_outlives_the_session_bus(self):
        self.start()
        self.wait_named("Keine Termine in den nächsten 7 Tagen", timeout=40.0)
        self.desktop.end_bus()
        # It is there, and does what it is told.
        self.type_title("Zahnarzt")
        self.assertTrue(self.sidebar.program.is_running(), self.sidebar.program.log)

    def test_ends_though_the_server_hangs(self):
        self.start()
        self.wait_named("Keine Termine in den nächsten 7 Tagen", timeout=40.0)
        for kind in ("Sources", "Calendar"):
            self.signal_server(kind, signal.SIGSTOP)
        self.type_title("Zahnarzt")
        self.desktop.key("Return")
        wait_for(lambda: self.draft().get("uid"), message=lambda: f"{self.draft()}\n{self.sidebar.program.log}")
        started = time.monotonic()
        self.sidebar.program.process.terminate()
        # The server's calls would take eight seconds and more.
        self.assertEqual(self.sidebar.program.wait(5), 0, self.sidebar.program.log)
        print(f"ended after {time.monotonic() - started:.2f} s")
        self.assertEqual(self.draft().get("title"), "Zahnarzt")


if __name__ == "__main__":
    unittest.main()
