"""The calendar card in the built program: what is typed into the form, and the calendar's file."""

import json
import os
import signal
import sqlite3
import stat
import time
import unittest
from datetime import datetime, timedelta, timezone
from zoneinfo import ZoneInfo

from calendar_file import events
from test_sidebar import SHOWN, Sidebar, store
from virtual_desktop import VirtualDesktop, wait_for

# The plus sign of the first card, and where its form's parts are.
FORM_SWITCH = (385, 83)
START_FIELD = (290, 154)
ADD_BUTTON = (343, 235)
BERLIN = ZoneInfo("Europe/Berlin")


def moment(text):
    return datetime.strptime(text, "%Y%m%dT%H%M%SZ").replace(tzinfo=timezone.utc)


def event(uid, title, start="20260101"):
    return (f"BEGIN:VEVENT\r\nUID:{uid}\r\nDTSTAMP:20260101T000000Z\r\nDTSTART;VALUE=DATE:{start}\r\n"
            f"SUMMARY:{title}\r\nX-EIGEN:bleibt\r\nEND:VEVENT\r\n")


def calendar(*components):
    return "".join(["BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Anderes//Programm//DE\r\n", *components,
                    "END:VCALENDAR\r\n"]).encode()


class CalendarTest(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop(compositor=True)
        self.addCleanup(self.desktop.close)
        store(self.desktop, alwaysVisible=True, enabledModuleIDs=["calendar"])
        self.file = self.desktop.data_home / "quillbar/calendar.ics"

    def start(self, name=None, env=None):
        sidebar = Sidebar(self.desktop, env=env)
        sidebar.wait_shown(SHOWN)
        wait_for(lambda: f"Kalender: {name or self.file}" in sidebar.program.log, message=lambda: sidebar.program.log)
        return sidebar

    def open_form(self):
        self.desktop.click(*FORM_SWITCH)
        wait_for(lambda: self.draft().get("open"), message="the form does not open")
        time.sleep(0.4)

    def type_title(self, text):
        wait_for(lambda: self.desktop.active_window() in self.desktop.windows("^Quillbar$"),
                 message="the panel has no keyboard")
        self.desktop.type(text)
        wait_for(lambda: self.draft().get("title") == text, message=lambda: f"{self.draft()}")

    def type_start(self, text):
        self.desktop.click(*START_FIELD)
        self.desktop.key("ctrl+a")
        self.desktop.type(text)

    def draft(self):
        database = sqlite3.connect(f"file:{self.file.parent}/preferences.sqlite?mode=ro", uri=True, timeout=5)
        try:
            row = database.execute("SELECT value FROM drafts WHERE key = 'calendar.event'").fetchone()
        finally:
            database.close()
        return json.loads(row[0]) if row else {}

    def wait_events(self, count):
        wait_for(lambda: len(events(self.file)) == count, message=lambda: f"{events(self.file)}")

    def test_adds_an_event_and_takes_it_back(self):
        theirs = calendar(event("x", "Neujahr"))
        self.file.write_bytes(theirs)
        sidebar = self.start()
        self.open_form()
        self.type_title("Zahnarzt; Größe")
        self.type_start("24.12. 18:00")
        # The button takes no keyboard from the field.
        self.desktop.click(*ADD_BUTTON)
        self.wait_events(2)

        added = events(self.file)[1]
        self.assertEqual(added["SUMMARY"], "Zahnarzt\\; Größe")
        self.assertEqual(moment(added["DTEND"]) - moment(added["DTSTART"]), timedelta(hours=1))
        today = datetime.now(BERLIN).date()
        christmas = today.replace(month=12, day=24)
        if christmas < today:
            christmas = christmas.replace(year=today.year + 1)
        self.assertEqual(moment(added["DTSTART"]).astimezone(BERLIN).replace(tzinfo=None),
                         datetime.combine(christmas, datetime.min.time()).replace(hour=18))
        self.assertTrue(self.file.read_bytes().startswith(theirs[:-len("END:VCALENDAR\r\n")]))
        self.assertEqual(stat.S_IMODE(os.stat(self.file).st_mode) & 0o022, 0)
        self.assertTrue(sidebar.program.is_running())

        self.desktop.key("ctrl+z")
        wait_for(lambda: self.file.read_bytes() == theirs, message=lambda: self.file.read_text())

    def test_keeps_a_draft_over_a_kill(self):
        sidebar = self.start()
        self.open_form()
        self.type_title("Theater")
        self.type_start("bald")
        self.desktop.click(*ADD_BUTTON)
        wait_for(lambda: self.draft().get("startText") == "bald", message=lambda: str(self.draft()))
        sidebar.program.process.send_signal(signal.SIGKILL)
        sidebar.program.wait()
        self.assertFalse(self.file.exists())

        again = self.start()
        draft = self.draft()
        self.assertEqual((draft["open"], draft["title"], draft["startText"]), (True, "Theater", "bald"))
        self.type_start("24.12.2027 18:00")
        # The mark goes, and the form has its usual height again.
        time.sleep(0.4)
        self.desktop.click(*ADD_BUTTON)
        self.wait_events(1)
        self.assertEqual((events(self.file)[0]["SUMMARY"], events(self.file)[0]["DTSTART"]),
                         ("Theater", "20271224T170000Z"))
        wait_for(lambda: self.draft() == {}, message=lambda: str(self.draft()))
        self.assertTrue(again.program.is_running())

    def test_comes_back_from_a_rule_that_never_matches(self):
        self.file.write_bytes(calendar(event("x", "Nie", f"{datetime.now(BERLIN):%Y%m%d}").replace(
            "X-EIGEN:bleibt", "RRULE:FREQ=MINUTELY;BYMONTH=2;BYMONTHDAY=30"),
            event("y", "Auch nie").replace(";VALUE=DATE:20260101", ":20260101T080000Z").replace(
                "X-EIGEN:bleibt", "RRULE:FREQ=MINUTELY;BYMONTH=2;BYMONTHDAY=30")))
        sidebar = self.start()
        self.open_form()
        self.type_title("Zahnarzt")
        self.desktop.key("Return")
        # It is saved once the events have been loaded, on the same thread.
        self.wait_events(3)
        wait_for(lambda: self.draft() == {}, message=lambda: str(self.draft()))
        sidebar.program.process.terminate()
        self.assertEqual(sidebar.program.wait(5), 0, sidebar.program.log)
        self.assertNotIn("wartet nicht auf ihn", sidebar.program.log)

    def test_leaves_a_file_alone_that_it_cannot_read(self):
        elsewhere = self.desktop.home / "termine.ics"
        today = datetime.now(BERLIN)
        whole = calendar(*(event(str(day), f"Tag {day}", f"{today + timedelta(days=day):%Y%m%d}")
                           for day in range(6)))
        elsewhere.write_bytes(whole)
        self.file.symlink_to(elsewhere)
        before = sorted(self.file.parent.iterdir())
        sidebar = self.start()
        half = whole[:-30]
        elsewhere.write_bytes(half)
        wait_for(lambda: "unvollständig" in sidebar.program.log, message=lambda: sidebar.program.log)
        time.sleep(0.4)
        # The message moves nothing out of sight.
        self.open_form()
        self.type_title("Zahnarzt")
        self.desktop.key("Return")
        wait_for(lambda: self.draft().get("uid"), message=lambda: str(self.draft()))
        self.assertEqual(elsewhere.read_bytes(), half)
        # Whole again, it is read and written to; nothing has to be typed a second time.
        elsewhere.write_bytes(whole)

        def tried():
            self.desktop.key("Return")
            return len(events(elsewhere)) == 7
        wait_for(tried, message=lambda: elsewhere.read_text())
        self.assertTrue(self.file.is_symlink())
        self.assertEqual([path for path in sorted(self.file.parent.iterdir()) if "calendar" in path.name],
                         [path for path in before if "calendar" in path.name])
        self.assertEqual(list(self.desktop.home.glob("termine*")), [elsewhere])


if __name__ == "__main__":
    unittest.main()
