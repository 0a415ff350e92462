"""What is being typed into notes, in the built program, which is killed without a word meanwhile."""

import os
import signal
import time
import unittest

from test_notes import BACK, COMPOSE, FIRST_ROW, TEXT
from test_sidebar import SHOWN, Sidebar, store
from virtual_desktop import AS_A_PERSON, VirtualDesktop, wait_for

SAVE = (305, 491)


class DraftsTest(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop(compositor=True)
        self.addCleanup(self.desktop.close)
        store(self.desktop, alwaysVisible=True, notesMode="apple", enabledModuleIDs=["notes"])
        self.start()

    def start(self):
        self.sidebar = Sidebar(self.desktop, prefix=AS_A_PERSON)
        self.sidebar.wait_shown(SHOWN)

    def has_editor(self):
        """Whether the button that saves is seen."""
        red, green, blue = self.desktop.pixel(*SAVE)
        return blue > 150 and blue > 2 * green and blue > red

    def wait_editor(self, is_open=True):
        wait_for(lambda: self.has_editor() == is_open,
                 message=lambda: f"editor open: {self.has_editor()}\n{self.sidebar.program.log}")

    def kill_and_start(self, typed):
        wait_for(lambda: any(typed in str(draft) for draft in self.desktop.drafts().values()),
                 message=lambda: f"no {typed} in {self.desktop.drafts()}\n{self.sidebar.program.log}")
        os.kill(self.sidebar.program.pid, signal.SIGKILL)
        self.sidebar.program.wait()
        self.sidebar.wait_hidden()
        self.start()

    def wait_note(self, text):
        library = self.desktop.data_home / "quillbar/notes/Notizen"

        def texts():
            return [file.read_text(encoding="utf-8") for file in library.glob("*.html")]

        wait_for(lambda: any(text in note for note in texts()),
                 message=lambda: f"no {text} in {texts()}\n{self.sidebar.program.log}")
        return texts()

    def test_a_killed_program_loses_no_word(self):
        desktop = self.desktop
        # The panel's contents come with its second frame.
        time.sleep(0.5)
        desktop.click(*COMPOSE)
        desktop.type("Umzug")
        desktop.key("Return")
        desktop.type("Kartons")
        self.kill_and_start("Kartons")
        # The composer is open again, with all that was typed.
        self.wait_editor()
        desktop.click(*TEXT)
        desktop.key("ctrl+End")
        desktop.type(", Decken")
        desktop.key("ctrl+s")
        self.wait_note("Kartons, Decken")
        self.wait_editor(is_open=False)

        # Once the list has it.
        wait_for(lambda: desktop.click(*FIRST_ROW) or self.has_editor())
        desktop.click(*TEXT)
        desktop.key("ctrl+End")
        desktop.type(" und Stifte")
        # No key turns the page of a note, and Return would choose a folder there.
        desktop.key("Right")
        desktop.key("Right")
        desktop.key("Return")
        desktop.type("Klebeband")
        self.kill_and_start("Klebeband")
        # So is the note.
        self.wait_editor()
        desktop.click(*TEXT)
        desktop.key("ctrl+s")
        notes = self.wait_note("Kartons, Decken und Stifte<br>Klebeband")
        self.assertEqual(len(notes), 1)
        wait_for(lambda: not desktop.drafts(), message=lambda: f"still there: {desktop.drafts()}")
        desktop.click(*BACK)
        self.wait_editor(is_open=False)
        # What was saved last can be taken back from the list as well.
        desktop.key("ctrl+z")
        wait_for(lambda: "Klebeband" not in self.wait_note("Kartons, Decken")[0])


if __name__ == "__main__":
    unittest.main()
