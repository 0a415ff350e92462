"""What a walk does with notes."""

import html

from walk_actions import action, text, within
from walk_model import Note

MOST = 6


def shows(model, page):
    """Whether the browser shows the "list", a "note" or the "composer"."""
    if model.showsPad:
        return False
    return page == ("composer" if model.composer.isOpen else "note" if model.openNote else "list")


def press(walk, name):
    walk.desk.click(within(walk, "Notizen", "push button", name))


def is_offered(walk, name):
    node = walk.desk.card("Notizen").first("push button", name)
    return node is not None and node.has("showing")


# --- the composer

@action(6, when=lambda model: not model.showsPad and not model.composer.isOpen and len(model.notes) < MOST)
def open_composer(walk, _):
    press(walk, "Neue Notiz")
    walk.model.composer.isOpen = True


@action(9, when=lambda model: shows(model, "composer") and len(model.composer.body) < 100)
def compose(walk, rng):
    composer = walk.model.composer
    words = text(rng, 3)
    if rng.random() < 0.5 and len(composer.title) < 30:
        walk.detail(f"title {words!r}")
        walk.desk.click(within(walk, "Notizen", "text", "Titel"))
        walk.desk.desktop.key("End")
        composer.title += words
    else:
        words = "\n" * rng.randint(0, 2) + words
        walk.detail(repr(words))
        walk.desk.click(within(walk, "Notizen", "text", "Text der Notiz"))
        walk.desk.desktop.key("ctrl+End")
        composer.body += words
    walk.desk.type(words)


@action(2, when=lambda model: shows(model, "composer"))
def close_composer(walk, _):
    press(walk, "Zurück")
    walk.model.composer.isOpen = False


@action(2, when=lambda model: shows(model, "composer") and not model.composer.isEmpty)
def discard_composed(walk, _):
    press(walk, "Verwerfen")
    walk.model.discard_composed()


@action(8, when=lambda model: shows(model, "composer") and model.composer.title.strip())
def create_note(walk, rng):
    way = rng.choice(["button", "ctrl+s", "ctrl+s thrice"])
    walk.detail(way)
    if way == "button":
        press(walk, "Speichern")
    else:
        walk.desk.click(within(walk, "Notizen", "text", "Titel"))
        walk.desk.desktop.key(*["ctrl+s"] * (3 if way.endswith("thrice") else 1))
    walk.model.create_note()


@action(2, when=lambda model: shows(model, "composer") and model.composer.title.strip())
def kill_while_creating(walk, _):
    """Afterwards the note is there, or still in the composer, or both, but not nowhere."""
    model = walk.model
    name, body = model.composer.title, model.composer.body
    walk.desk.click(within(walk, "Notizen", "text", "Titel"))
    walk.desk.desktop.key("ctrl+s")
    walk.desk.kill()
    model.process_ended()
    there = walk.desk.stored()["notes"].count((name, body)) > model.stored()["notes"].count((name, body))
    if there:
        model.notes.append(Note(name, body))
    walk.judge_disk()
    walk.restart()
    walk.show()
    # From here on it is the same either way.
    if there and walk.desk.read_notes().get("composer") == (name, body):
        press(walk, "Verwerfen")
    elif not there:
        walk.agree()
        press(walk, "Speichern")
        model.notes.append(Note(name, body))
    model.composer.title = model.composer.body = ""
    model.composer.isOpen = False
    walk.agree()
    walk.kill_and_judge()
    walk.restart()
    walk.show()


# --- a note

@action(8, when=lambda model: shows(model, "list") and model.notes)
def open_note(walk, rng):
    note = rng.choice(walk.model.notes)
    walk.detail(repr(note.name))
    if walk.model.listed_notes().count(note.name) > 1:
        walk.detail("(one of several)")
        return
    walk.desk.click(lambda: walk.desk.note_row(note.name))
    walk.model.openNote = note


def into_note(walk):
    walk.desk.click(walk.desk.note_editor, at=0.9)
    walk.desk.desktop.key("ctrl+End")


@action(10, when=lambda model: shows(model, "note") and len(model.openNote.text) < 150)
def type_note(walk, rng):
    words = "\n" * rng.randint(0, 1) + text(rng, 3)
    # Keys that turn pages elsewhere.
    strays = rng.sample(["Right", "ctrl+Next", "ctrl+Prior"], rng.randint(0, 2))
    walk.detail(f"{words!r} {' '.join(strays)}")
    into_note(walk)
    walk.desk.type(words)
    walk.desk.desktop.key("ctrl+End", *strays)
    walk.model.openNote.type(walk.model.openNote.text + words)


@action(2, when=lambda model: shows(model, "note") and model.openNote.text)
def empty_note(walk, rng):
    back = rng.random() < 0.5
    walk.detail("and back" if back else "")
    note, former = walk.model.openNote, walk.model.openNote.text
    into_note(walk)
    walk.desk.desktop.key("ctrl+a", "Delete")
    note.type("")
    if back:
        walk.agree()
        walk.desk.desktop.key("ctrl+z")
        note.type(former)


@action(7, when=lambda model: shows(model, "note"))
def save_note(walk, rng):
    note = walk.model.openNote
    former = note.body
    if rng.random() < 0.5:
        press(walk, "Speichern")
    else:
        into_note(walk)
        walk.desk.desktop.key("ctrl+s")
    if note.draft is None:
        return
    walk.model.save_note(note)
    walk.wait_stored()
    walk.desk.wait(lambda: not is_offered(walk, "Verwerfen"), "the text stays unsaved")
    if note.isForeign:
        note.isForeign = False
        walk.desk.wait(lambda: former in walk.desk.deleted_notes(), "what the other program wrote is not kept")


@action(3, when=lambda model: shows(model, "note") and model.openNote.draft is not None)
def kill_while_saving(walk, _):
    """Afterwards the text is saved or a draft."""
    note = walk.model.openNote
    into_note(walk)
    walk.desk.desktop.key("ctrl+s")
    walk.desk.kill()
    typed = note.draft
    if (note.name, typed) in walk.desk.stored()["notes"]:
        note.body, note.draft, note.isForeign = typed, None, False
    walk.judge_disk()
    note.type(typed)
    walk.model.process_ended()
    walk.restart()
    walk.show()
    # From here on it is the same either way. The note may be open again, the draft having been there still.
    seen = walk.desk.wait(lambda: walk.desk.read_notes(), "no notes")
    if "note" in seen:
        walk.model.openNote = note
        walk.agree()
        if note.draft is not None:
            press(walk, "Speichern")
            note.body, note.draft, note.isForeign = typed, None, False
            walk.wait_stored()
            walk.desk.wait(lambda: not is_offered(walk, "Verwerfen"), "the text stays unsaved")
        press(walk, "Zurück")
    walk.model.openNote = None
    walk.agree()
    walk.kill_and_judge()
    walk.restart()
    walk.show()


@action(2, when=lambda model: shows(model, "note") and model.openNote.draft is not None)
def discard_draft(walk, _):
    press(walk, "Verwerfen")
    walk.model.discard_draft(walk.model.openNote)


@action(4, when=lambda model: shows(model, "note"))
def close_note(walk, rng):
    if rng.random() < 0.5:
        press(walk, "Zurück")
    else:
        into_note(walk)
        walk.desk.desktop.key("Escape")
    walk.model.openNote = None


@action(3, when=lambda model: shows(model, "note"))
def delete_note(walk, _):
    press(walk, "Notiz löschen")
    walk.model.delete_open_note()


# --- the library

@action(3, when=lambda model: not model.showsPad)
def visit_folders(walk, rng):
    """To the folders' page, and back with or without another choice."""
    choice = rng.choice(["Zurück zu den Notizen", "Alle Notizen", "Notizen"])
    walk.detail(choice)
    press(walk, "← wischen für Ordner")
    walk.desk.wait(lambda: is_offered(walk, "Zurück zu den Notizen"), "the folders do not come")
    if choice == "Zurück zu den Notizen":
        press(walk, choice)
        return

    def row():
        folders = walk.desk.card("Notizen").first("list", "Ordner")
        return folders.first("list item", choice) if folders else None
    walk.desk.click(row)
    walk.model.openNote = None


@action(2, when=lambda model: not model.showsPad and len(model.notes) < MOST)
def note_from_elsewhere(walk, rng):
    """Another program leaves a note, in its own kind of HTML."""
    name, lines = text(rng, 2), [text(rng, 2) for _ in range(rng.randint(1, 3))]
    walk.detail(f"{name!r} {lines!r}")
    folder = walk.desk.folder / "notes/Notizen"
    folder.mkdir(parents=True, exist_ok=True)
    body = "".join(f"<div>{html.escape(line)}</div>\n" for line in lines)
    (folder / f"anderes-{walk.steps}.html").write_text(
        f"<html><head><title>{html.escape(name)}</title></head><body>\n{body}</body></html>\n", encoding="utf-8")
    press(walk, "Neu laden")
    walk.model.notes.append(Note(name, "\n".join(lines), isForeign=True))
