"""The calendar card in the built program: an event that is typed into the form lands in the calendar's file."""

import os
import stat
import time
import unittest
from datetime import datetime, timedelta, timezone

from calendar_file import events
from test_sidebar import SHOWN, Sidebar, store
from virtual_desktop import VirtualDesktop, wait_for

# The plus sign of the first card.
FORM_SWITCH = (385, 83)


def moment(text):
    return datetime.strptime(text, "%Y%m%dT%H%M%SZ").replace(tzinfo=timezone.utc)


class CalendarTest(unittest.TestCase):
    def test_adds_an_event_through_the_form(self):
        desktop = VirtualDesktop(compositor=True)
        self.addCleanup(desktop.close)
        store(desktop, alwaysVisible=True, enabledModuleIDs=["calendar"])
        file = desktop.data_home / "quillbar/calendar.ics"
        theirs = ("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Anderes//Programm//DE\r\n"
                  "BEGIN:VEVENT\r\nUID:x\r\nDTSTAMP:20260101T000000Z\r\nDTSTART;VALUE=DATE:20260101\r\n"
                  "SUMMARY:Neujahr\r\nX-EIGEN:bleibt\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n")
        file.write_bytes(theirs.encode())

        started = datetime.now(timezone.utc)
        sidebar = Sidebar(desktop)
        sidebar.wait_shown(SHOWN)
        wait_for(lambda: f"Kalender: {file}" in sidebar.program.log, message=lambda: sidebar.program.log)
        desktop.click(*FORM_SWITCH)
        time.sleep(0.4)
        desktop.type("Zahnarzt; Größe")
        desktop.key("Return")
        wait_for(lambda: len(events(file)) == 2, message=lambda: file.read_text() + sidebar.program.log)

        added = events(file)[1]
        self.assertEqual(added["SUMMARY"], "Zahnarzt\\; Größe")
        self.assertEqual(moment(added["DTEND"]) - moment(added["DTSTART"]), timedelta(hours=1))
        self.assertLess(abs(moment(added["DTSTART"]) - started), timedelta(minutes=2))
        self.assertTrue(file.read_bytes().startswith(theirs.encode()[:-len("END:VCALENDAR\r\n")]))
        self.assertEqual(stat.S_IMODE(os.stat(file).st_mode) & 0o022, 0)


if __name__ == "__main__":
    unittest.main()
