"""The to-do card as a person meets it: what is typed stays, one press does one thing, and there is a way back."""

import json
import signal
import time
import unittest
import uuid

from test_sidebar import SHOWN, Sidebar, store
from virtual_desktop import VirtualDesktop, wait_for


def stored_tasks(*titles):
    """Tasks as an earlier run would have left them."""
    return json.dumps([{"id": str(uuid.uuid4()).upper(), "title": title, "status": "backlog", "createdAt": 784111777.5,
                        "order": number} for number, title in enumerate(titles, 1)]).encode()


class TodoTest(unittest.TestCase):
    def show(self, **preferences):
        self.desktop = VirtualDesktop(compositor=True)
        self.addCleanup(self.desktop.close)
        store(self.desktop, enabledModuleIDs=["todo"], todoViewMode="list", **preferences)
        return self.start()

    def start(self):
        """Starts the program and opens the panel."""
        self.desktop.move(720, 450)
        sidebar = Sidebar(self.desktop)
        sidebar.wait_peek_over()
        self.desktop.move(0, 400)
        sidebar.wait_shown(SHOWN)
        return sidebar

    def kill(self, sidebar):
        sidebar.program.process.send_signal(signal.SIGKILL)
        sidebar.program.wait()

    def titles(self, sidebar):
        return [task["title"] for task in sidebar.tasks()]

    def wait_titles(self, sidebar, *titles):
        wait_for(lambda: self.titles(sidebar) == list(titles),
                 message=lambda: f"{self.titles(sidebar)}\n{sidebar.program.log}")

    def wait_draft(self, key, text):
        wait_for(lambda: self.desktop.drafts().get(key, {}).get("text") == text,
                 message=lambda: str(self.desktop.drafts()))

    def go_to_first_row(self):
        """By the field for new tasks, which takes what is typed."""
        self.desktop.type("x")
        self.wait_draft("todo.add", "x")
        self.desktop.key("BackSpace", "Tab")

    def test_goes_on_with_what_was_typed_before_a_kill(self):
        sidebar = self.show()
        self.desktop.type("Halb")
        self.wait_draft("todo.add", "Halb")
        self.kill(sidebar)
        self.assertEqual(sidebar.tasks(), [])
        sidebar = self.start()
        self.desktop.type("zeit")
        self.desktop.key("Return")
        self.wait_titles(sidebar, "Halbzeit")
        self.assertEqual(self.desktop.drafts(), {})

        self.desktop.key("Tab", "F2")
        self.desktop.type("Spiel")
        self.wait_draft("todo.edit", "Spiel")
        self.kill(sidebar)
        self.assertEqual(self.titles(sidebar), ["Halbzeit"])
        sidebar = self.start()
        self.desktop.type("zeit")
        self.desktop.key("Return")
        self.wait_titles(sidebar, "Spielzeit")
        self.assertEqual(self.desktop.drafts(), {})

        self.desktop.key("ctrl+z")
        self.wait_titles(sidebar, "Halbzeit")

    def test_does_one_thing_for_a_key_that_is_held(self):
        names = [f"Aufgabe {number}" for number in range(1, 13)]
        sidebar = self.show(**{"todoItems.v1": stored_tasks(*names)})
        # Keys do repeat here.
        self.desktop.at_screen("xdotool", "keydown", "a")
        wait_for(lambda: len(self.desktop.drafts().get("todo.add", {}).get("text", "")) > 5, message="no repeats")
        self.desktop.at_screen("xdotool", "keyup", "a")
        self.desktop.key("ctrl+a", "BackSpace", "Tab")
        before = sidebar.tasks()
        for key in ("Delete", "space"):
            self.desktop.at_screen("xdotool", "keydown", key)
            wait_for(lambda: sidebar.tasks() != before, message=key + " does nothing")
            # As long as it takes to repeat a dozen times.
            time.sleep(1.2)
            self.desktop.at_screen("xdotool", "keyup", key)
            changed = [task for task in before if task not in sidebar.tasks()]
            self.assertEqual([task["title"] for task in changed], [before[0]["title"]])
            self.desktop.key("ctrl+z")
            wait_for(lambda: sidebar.tasks() == before, message=lambda: str(sidebar.tasks()))
            self.go_to_first_row()

    def test_takes_what_is_unreadable_out_of_the_way(self):
        damaged = stored_tasks("Milch")[:-9]
        sidebar = self.show(**{"todoItems.v1": damaged})
        self.assertEqual(self.desktop.preferences()["todoItems.v1"], damaged)
        self.desktop.type("Brot")
        self.desktop.key("Return")
        wait_for(lambda: self.desktop.preferences()["todoItems.v1"] != damaged, message="not stored")
        self.wait_titles(sidebar, "Brot")
        kept = [value for key, value in self.desktop.preferences().items() if key.startswith("todoItems.v1.unlesbar-")]
        self.assertEqual(kept, [damaged])
        self.assertIn("Aufgaben unlesbar, aufgehoben", sidebar.program.log)


if __name__ == "__main__":
    unittest.main()
