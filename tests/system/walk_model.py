"""What a person was shown, kept without the program: tasks, texts, notes, appointments and what is half typed.

The operations say what has to stand there afterwards; shown() and stored() are held against the screen and the
disk.
"""

from dataclasses import dataclass, field

COLUMNS = {"backlog": "Offen", "doing": "In Arbeit", "done": "Erledigt"}


@dataclass
class Task:
    title: str
    status: str = "backlog"


@dataclass
class Note:
    name: str
    body: str
    # Written by another program, in its own kind of HTML.
    foreign: bool = False


@dataclass
class Event:
    title: str
    # As the form showed it: "23.11.2026, 11:31".
    start: str


@dataclass
class History:
    """The ways back of one card."""

    entries: list = field(default_factory=list)

    def push(self, serial, back):
        self.entries.append((serial, back))

    def latest(self):
        return self.entries[-1][0] if self.entries else 0


class Model:
    def __init__(self):
        self.isShown = False
        self.side = "left"
        self.board = False
        self.scratch = True
        # In the order in which they were added; the columns and the list keep it.
        self.tasks = []
        self.pad = ""
        self.notes = []
        self.events = []
        # What is half typed.
        self.field = ""
        self.editor = None
        self.composer = None
        self.opened = None
        self.form = None
        self.clipboard = None
        self.histories = {"todo": History(), "notes": History(), "calendar": History()}
        self._serial = 0

    # --- undo

    def _remember(self, card, back):
        self._serial += 1
        self.histories[card].push(self._serial, back)

    def undo(self, card):
        """Takes the latest change of a card back."""
        self.histories[card].entries.pop()[1]()

    def latest_card(self):
        """The card with the latest change that can be taken back, or None."""
        card = max(self.histories, key=lambda name: self.histories[name].latest())
        return card if self.histories[card].entries else None

    # --- tasks

    def add_task(self):
        title = self.field.strip()
        self.field = ""
        if title:
            self.tasks.append(Task(title))

    def delete_tasks(self, gone):
        gone = list(gone)
        places = [(index, task) for index, task in enumerate(self.tasks) if any(task is other for other in gone)]
        self.tasks = [task for task in self.tasks if not any(task is other for other in gone)]

        def back():
            for index, task in places:
                self.tasks.insert(index, task)
        self._remember("todo", back)

    def rename_task(self, task, text):
        title = text.strip()
        if not title or title == task.title:
            return
        former = task.title
        task.title = title

        def back():
            task.title = former
        self._remember("todo", back)

    def toggle_task(self, task):
        task.status = "backlog" if task.status == "done" else "done"

    def listed(self):
        """The tasks as the list shows them: the open ones, then the done ones."""
        return sorted(self.tasks, key=lambda task: task.status == "done")

    def column(self, status):
        return [task for task in self.tasks if task.status == status]

    # --- what ends with a process

    def process_ended(self):
        self.isShown = False
        self.clipboard = None
        for history in self.histories.values():
            history.entries.clear()

    def lose_drafts(self):
        self.field = ""
        self.editor = self.composer = self.opened = self.form = None

    # --- what has to be seen

    def shown(self):
        return {"To-Do": self._todo(), "Notizen": self._notes(), "Kalender": self._calendar()}

    def _todo(self):
        shown = {"field": self.field}
        if self.board:
            shown["counts"] = {label: len(self.column(status)) for status, label in COLUMNS.items()}
            shown["columns"] = {label: [task.title for task in self.column(status)]
                                for status, label in COLUMNS.items()}
        else:
            shown["rows"] = [(task.title, task.status == "done") for task in self.listed()]
            shown["editor"] = self.editor[1] if self.editor else None
        return shown

    def _notes(self):
        if self.scratch:
            return {"pad": self.pad}
        if self.composer:
            return {"composer": tuple(self.composer)}
        if self.opened:
            return {"note": self.opened[0].name, "text": self.opened[1]}
        return {"names": sorted(note.name for note in self.notes)}

    def _calendar(self):
        return {"form": self.form, "titles": sorted(event.title for event in self.events)}

    # --- what has to be on the disk

    def stored(self):
        return {"tasks": [(task.title, task.status) for task in self.tasks],
                "pad": self.pad,
                "notes": sorted((note.name, note.body) for note in self.notes),
                "events": sorted((event.title, event.start) for event in self.events)}
