"""What a person was shown, kept without the program: tasks, texts, notes, appointments, and what is half typed.

The operations say what has to stand there afterwards; shown() and stored() are held against the screen and the
disk.
"""

from dataclasses import dataclass, field

COLUMNS = {"backlog": "Offen", "doing": "In Arbeit", "done": "Erledigt"}


@dataclass(eq=False)
class Task:
    title: str
    # Where it stands among the others, given once.
    order: int
    status: str = "backlog"


@dataclass(eq=False)
class Note:
    name: str
    body: str
    # What is typed and not saved.
    draft: str | None = None
    # Whether it is another program's, in its own kind of HTML.
    isForeign: bool = False

    @property
    def text(self):
        return self.body if self.draft is None else self.draft

    def type(self, text):
        self.draft = None if text == self.body else text


@dataclass(eq=False)
class Event:
    title: str
    # As the form showed it: "23.11.2026, 11:31".
    start: str


@dataclass
class EventForm:
    isOpen: bool = False
    title: str = ""
    # None: the program's own proposal.
    start: str | None = None
    isUnderstood: bool = True


@dataclass
class Editor:
    """The field in which a task's title is being changed."""

    task: Task
    text: str


@dataclass
class Composer:
    """The new note that is being written; kept while it is closed."""

    isOpen: bool = False
    title: str = ""
    body: str = ""

    @property
    def isEmpty(self):
        return not self.title and not self.body


@dataclass
class Model:
    isShown: bool = False
    side: str = "left"
    showsBoard: bool = False
    showsPad: bool = True
    # As they are stored, by which those of one order are shown.
    tasks: list = field(default_factory=list)
    pad: str = ""
    notes: list = field(default_factory=list)
    events: list = field(default_factory=list)
    # What is half typed.
    newTask: str = ""
    editor: Editor | None = None
    form: EventForm = field(default_factory=EventForm)
    composer: Composer = field(default_factory=Composer)
    openNote: Note | None = None
    # The music service's, as the list shows them: name and number of tracks.
    playlists: list = field(default_factory=lambda: [["Morgenkaffee", 9],
                                                     ["Regentage – leise Lieder für lange Abende", 12],
                                                     ["Unterwegs", 1]])
    isNaming: bool = False
    playlistName: str = ""
    clipboard: str = ""
    # The ways back of each card, the latest last: (serial, function, whether it is known what that gives).
    histories: dict = field(default_factory=lambda: {"To-Do": [], "Kalender": [], "Notizen": [],
                                                      "Spotify": []})
    serial: int = 0
    # The card in which a way back was just remembered, which its bar offers.
    fresh: str | None = None

    # --- undo

    def remember(self, card, back, may=lambda: True):
        self.serial += 1
        self.fresh = card
        self.histories[card].append((self.serial, back, may))

    def undo(self, card):
        """Takes the latest change of a card back."""
        self.histories[card].pop()[1]()

    def can_undo(self, card):
        return bool(card and self.histories[card] and self.histories[card][-1][2]())

    def undone_from(self, card):
        """The card whose latest change the key takes back while the keyboard is in `card`; None for none."""
        if self.histories[card]:
            return card
        last = max(self.histories, key=lambda name: self.histories[name][-1][0] if self.histories[name] else 0)
        return last if self.histories[last] else None

    # --- tasks

    def add_task(self):
        title = self.newTask.strip()
        self.newTask = ""
        if title:
            self.tasks.append(Task(title, 1 + max((task.order for task in self.tasks), default=0)))

    def delete_tasks(self, gone):
        places = [(index, task) for index, task in enumerate(self.tasks) if task in gone]
        self.tasks = [task for task in self.tasks if task not in gone]

        def back():
            for index, task in places:
                self.tasks.insert(index, task)
        self.remember("To-Do", back)

    def set_status(self, task, status):
        former = task.status
        if status == former:
            return
        task.status = status

        def back():
            if task in self.tasks and task.status == status:
                task.status = former
        self.remember("To-Do", back)

    def toggle_task(self, task):
        self.set_status(task, "backlog" if task.status == "done" else "done")

    def rename_task(self, task, text):
        title, former = text.strip(), task.title
        if not title or title == former:
            return
        task.title = title

        def back():
            if task in self.tasks and task.title == title:
                task.title = former
        self.remember("To-Do", back)

    def commit_edit(self):
        if self.editor:
            editor, self.editor = self.editor, None
            self.rename_task(editor.task, editor.text)

    def drop_edit(self):
        editor, self.editor = self.editor, None
        text = editor.text.strip()

        def back():
            self.commit_edit()
            self.editor = Editor(editor.task, editor.text)
        if text and text != editor.task.title:
            self.remember("To-Do", back)

    def ordered(self):
        return sorted(self.tasks, key=lambda task: task.order)

    def listed(self):
        """The tasks as the list shows them: the open ones, then the done ones."""
        return sorted(self.ordered(), key=lambda task: task.status == "done")

    def column(self, status):
        return [task for task in self.ordered() if task.status == status]

    # --- notes

    def create_note(self):
        self.notes.append(Note(self.composer.title, self.composer.body))
        self.composer = Composer()

    def discard_composed(self):
        former, self.composer = self.composer, Composer()

        def back():
            former.isOpen = True
            self.composer = former
        self.remember("Notizen", back, lambda: self.composer.isEmpty)

    def save_note(self, note):
        former, saved = note.body, note.draft
        note.body, note.draft = saved, None

        def back():
            note.body = former
        self.remember("Notizen", back, lambda: self._is_as_saved(note, saved))

    def discard_draft(self, note):
        typed, body = note.draft, note.body
        note.draft = None

        def back():
            note.draft = typed
        self.remember("Notizen", back, lambda: self._is_as_saved(note, body))

    def _is_as_saved(self, note, body):
        return note in self.notes and note.draft is None and note.body == body

    def delete_open_note(self):
        note, self.openNote = self.openNote, None
        self.notes.remove(note)
        self.remember("Notizen", lambda: self.notes.append(note))

    # --- appointments

    def add_event(self, start):
        event = Event(self.form.title.strip(), start)
        self.form = EventForm()
        self.events.append(event)
        self.remember("Kalender", lambda: self.events.remove(event), lambda: event in self.events)

    # --- music

    def create_playlist(self):
        self.playlists.insert(0, [self.playlistName.strip(), 0])
        self.playlistName = ""
        self.isNaming = False

    def remove_track(self, playlist):
        playlist[1] -= 1

        def back():
            playlist[1] += 1
        self.remember("Spotify", back)

    # --- what ends with a process

    def process_ended(self):
        self.isShown = False
        self.clipboard = ""
        # Open and untouched, a note is no draft.
        if self.openNote and self.openNote.draft is None:
            self.openNote = None
        # Closed and without a title, the form is no draft.
        if not self.form.isOpen and not self.form.title:
            self.form = EventForm()
        for history in self.histories.values():
            history.clear()

    # --- what has to be seen

    def shown(self):
        return {"To-Do": self._shown_tasks(), "Notizen": self._shown_notes(), "Kalender": self._shown_events(),
                "Spotify": self._shown_music()}

    def _shown_tasks(self):
        shown = {"field": self.newTask}
        if self.showsBoard:
            shown["counts"] = {label: len(self.column(status)) for status, label in COLUMNS.items()}
            shown["columns"] = {label: [task.title for task in self.column(status)]
                                for status, label in COLUMNS.items()}
        else:
            shown["rows"] = [(task.title, task.status == "done") for task in self.listed()]
            shown["editor"] = self.editor.text if self.editor else None
        return shown

    def _shown_notes(self):
        if self.showsPad:
            return {"pad": self.pad}
        if self.composer.isOpen:
            return {"composer": (self.composer.title, self.composer.body)}
        if self.openNote:
            return {"note": self.openNote.name, "text": self.openNote.text}
        return {"names": sorted(self.listed_notes())}

    def listed_notes(self):
        """The names in the list; what is being composed is one of them."""
        composed = [] if self.composer.isEmpty else [self.composer.title if self.composer.title.strip() else "Neue Notiz"]
        return composed + [note.name for note in self.notes]

    def _shown_events(self):
        form = self.form
        return {"form": (form.title, form.start) if form.isOpen else None,
                "titles": sorted(event.title for event in self.events)}

    def _shown_music(self):
        if self.isNaming:
            return {"naming": self.playlistName}
        return {"playlists": [f"{name}, {count} Titel" for name, count in self.playlists]}

    # --- what has to be on the disk

    def stored(self):
        return {"tasks": [(task.title, task.status) for task in self.ordered()],
                "pad": self.pad,
                "notes": sorted((note.name, note.body) for note in self.notes),
                "events": sorted((event.title, event.start) for event in self.events),
                # These are on the service's.
                "playlists": [tuple(playlist) for playlist in self.playlists]}
