"""The notes card in the built program, with another program at the same library."""

import time
import unittest

from test_sidebar import SHOWN, Sidebar, store
from virtual_desktop import AS_A_PERSON, VirtualDesktop, wait_for

# Places in a card that is alone in the panel.
BACK, REFRESH, COMPOSE, DELETE = (36, 83), (357, 83), (383, 83), (36, 491)
FIRST_ROW = (200, 134)
TEXT = (200, 200)


class NotesTest(unittest.TestCase):
    def start(self, mode):
        desktop = VirtualDesktop(compositor=True)
        self.addCleanup(desktop.close)
        store(desktop, alwaysVisible=True, notesMode=mode, enabledModuleIDs=["notes"])
        sidebar = Sidebar(desktop, prefix=AS_A_PERSON)
        sidebar.wait_shown(SHOWN)
        time.sleep(0.5)
        return desktop, sidebar

    def test_shares_its_notes_with_an_editor(self):
        desktop, sidebar = self.start("apple")
        library = desktop.data_home / "quillbar/notes"

        def only_note(folder="Notizen"):
            files = list((library / folder).glob("*.html"))
            return files[0] if len(files) == 1 else None

        def note_with(text, folder="Notizen"):
            wait_for(lambda: only_note(folder) and text in only_note(folder).read_text(encoding="utf-8"),
                     message=lambda: f"no {text} in {folder}\n{sidebar.program.log}")
            return only_note(folder)

        desktop.click(*COMPOSE)
        desktop.type("Umzug")
        desktop.key("Return")
        desktop.type("Kartons & Klebeband")
        desktop.key("ctrl+s")
        file = note_with("Kartons &amp; Klebeband")
        self.assertIn("<title>Umzug</title>", file.read_text(encoding="utf-8"))

        file.write_text(file.read_text(encoding="utf-8").replace("Klebeband", "Decken"), encoding="utf-8")
        desktop.click(*REFRESH)
        time.sleep(0.5)
        desktop.click(*FIRST_ROW)
        time.sleep(0.5)
        desktop.click(*TEXT)
        desktop.key("ctrl+End")
        desktop.type(", Stifte")
        desktop.key("ctrl+s")
        # What the editor wrote was read, and is saved with what was typed.
        self.assertEqual(note_with("Kartons &amp; Decken, Stifte"), file)

        desktop.click(*DELETE)
        note_with("Kartons &amp; Decken, Stifte", "Zuletzt gelöscht")
        self.assertIsNone(only_note())
        self.assertTrue(sidebar.program.is_running())

    def test_lives_on_when_the_notes_cannot_be_read(self):
        desktop, sidebar = self.start("apple")
        library = desktop.data_home / "quillbar/notes"
        self.addCleanup(library.chmod, 0o700)

        def told():
            return sidebar.program.log.count("Keine Berechtigung: Der Notizordner lässt sich nicht lesen.")

        for attempt in range(1, 3):
            library.chmod(0)
            desktop.click(*REFRESH)
            wait_for(lambda: told() >= attempt or not sidebar.program.is_running(),
                     message=lambda: "nothing was told\n" + sidebar.program.log)
            self.assertTrue(sidebar.program.is_running(), sidebar.program.log)
            # It looks again when it is asked to.
            library.chmod(0o700)
            (library / f"Notizen/{attempt}.html").write_text("<title>Neu</title>x")
            desktop.click(*REFRESH)
            time.sleep(0.5)
        desktop.click(*FIRST_ROW)
        time.sleep(0.5)
        desktop.click(*DELETE)
        wait_for(lambda: len(list((library / "Notizen").glob("*.html"))) == 1,
                 message=lambda: "nothing was deleted\n" + sidebar.program.log)

        # And from the start on
        library.chmod(0)
        self.assertEqual(sidebar.program.terminate(), 0)
        sidebar = Sidebar(desktop, prefix=AS_A_PERSON)
        sidebar.wait_shown(SHOWN)
        wait_for(told, message=lambda: "nothing was told\n" + sidebar.program.log)
        self.assertTrue(sidebar.program.is_running())

    def test_keeps_the_scratch_pad(self):
        desktop, sidebar = self.start("scratch")
        # The panel is clicked, not the pad: what is typed finds its way there.
        desktop.click(200, 57)
        desktop.type("Größe 42")
        desktop.key("Return")
        desktop.type("x")
        # Without a word to the program: what was typed is on the disk already.
        wait_for(lambda: desktop.preferences().get("notesScratch") == "Größe 42\nx",
                 message=lambda: f"{desktop.preferences()}\n{sidebar.program.log}")


if __name__ == "__main__":
    unittest.main()
