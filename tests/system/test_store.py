"""What becomes of typed words where the store is damaged, or held by another program."""

import json
import sqlite3
import time
import unittest

from test_sidebar import SHOWN, Sidebar, store
from virtual_desktop import VirtualDesktop, wait_for


class StoreTest(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop(compositor=True)
        self.addCleanup(self.desktop.close)
        self.folder = self.desktop.data_home / "quillbar"
        self.path = self.folder / "preferences.sqlite"

    def shown_sidebar(self):
        self.desktop.move(720, 450)
        sidebar = Sidebar(self.desktop)
        sidebar.wait_peek_over()
        self.desktop.move(0, 400)
        sidebar.wait_shown(SHOWN)
        return sidebar

    def add(self, title):
        self.desktop.type(title)
        self.desktop.key("Return")

    def test_tasks_outlive_damage_elsewhere_in_the_file(self):
        desktop = self.desktop
        tasks = [{"id": "6F9619FF-8B86-D011-B42D-00CF4FC964FF", "title": "Brot", "status": "backlog",
                  "createdAt": 1.0, "order": 1}]
        store(desktop, **{"todoItems.v1": json.dumps(tasks).encode(), "notesScratch": "x" * 40_000})
        content = bytearray(self.path.read_bytes())
        # A part of the long text, and with it the chain of its pages.
        content[-3 * 4096:-2 * 4096] = b"\xff" * 4096
        self.path.write_bytes(content)

        sidebar = self.shown_sidebar()
        kept = wait_for(lambda: list(self.folder.glob("preferences.sqlite.unlesbar-*")),
                        message=lambda: "nothing put aside\n" + sidebar.program.log)
        self.assertEqual(kept[0].read_bytes(), bytes(content))
        self.add("Milch")
        wait_for(lambda: [task["title"] for task in sidebar.tasks()] == ["Brot", "Milch"],
                 message=lambda: str(sidebar.tasks()))

    def test_what_is_typed_during_a_foreign_lock_is_stored_after_it(self):
        store(self.desktop)
        sidebar = self.shown_sidebar()
        other = sqlite3.connect(self.path, isolation_level=None)
        self.addCleanup(other.close)
        other.execute("BEGIN IMMEDIATE")
        self.add("Unter Verschluss")
        self.add("Noch etwas")
        wait_for(lambda: "nicht gespeichert" in sidebar.program.log, message="the lock was not met")
        self.assertEqual(sidebar.tasks(), [])
        other.execute("ROLLBACK")
        wait_for(lambda: [task["title"] for task in sidebar.tasks()] == ["Unter Verschluss", "Noch etwas"],
                 message=lambda: str(sidebar.tasks()) + sidebar.program.log)

    def test_leaves_soon_while_the_store_is_locked(self):
        store(self.desktop)
        sidebar = self.shown_sidebar()
        other = sqlite3.connect(self.path, isolation_level=None)
        self.addCleanup(other.close)
        other.execute("BEGIN IMMEDIATE")
        self.add("Unter Verschluss")
        wait_for(lambda: "nicht gespeichert" in sidebar.program.log, message="the lock was not met")
        begin = time.monotonic()
        self.assertEqual(sidebar.program.terminate(), 0)
        self.assertLess(time.monotonic() - begin, 4.0)


if __name__ == "__main__":
    unittest.main()
