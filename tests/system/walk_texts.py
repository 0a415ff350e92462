"""What a walk does with the pad and the appointments."""

import os
from datetime import date, timedelta

from walk_actions import action, choose_quickly, into_pad, text, within

MOST_EVENTS = 5


# --- the pad

@action(8, when=lambda model: model.showsPad and len(model.pad) < 300)
def write_on_pad(walk, rng):
    words = "\n" * rng.randint(0, 1) + text(rng, 5)
    above = rng.random() < 0.3
    walk.detail(f"{words!r} {'above' if above else 'below'}")
    into_pad(walk)
    if above:
        walk.desk.desktop.key("ctrl+Home")
    walk.desk.type(words)
    walk.model.pad = words + walk.model.pad if above else walk.model.pad + words


@action(3, when=lambda model: model.showsPad and 0 < len(model.pad) < 200)
def copy_pad(walk, rng):
    pastes = rng.random() < 0.5
    walk.detail("and paste" if pastes else "")
    into_pad(walk)
    walk.desk.desktop.key("ctrl+a", "ctrl+c", *["ctrl+End", "ctrl+v"] * pastes)
    walk.model.clipboard = walk.model.pad
    if pastes:
        walk.model.pad *= 2


@action(4, when=lambda model: model.showsPad and model.pad)
def empty_pad(walk, rng):
    back = rng.random() < 0.7
    walk.detail("and back" if back else "")
    into_pad(walk)
    former = walk.model.pad
    walk.desk.desktop.key("ctrl+a", "Delete")
    walk.model.pad = ""
    if back:
        walk.agree()
        walk.desk.desktop.key("ctrl+z")
        walk.model.pad = former


@action(4)
def switch_notes(walk, _):
    walk.model.showsPad = not walk.model.showsPad
    choose_quickly(walk, "Notizen", "Notizzettel" if walk.model.showsPad else "Apple Notizen")


# --- appointments

@action(4, when=lambda model: not model.form.isOpen and len(model.events) < MOST_EVENTS)
def open_form(walk, _):
    walk.desk.click(within(walk, "Kalender", None, "Neuer Termin"))
    walk.model.form.isOpen = True


@action(1, when=lambda model: model.form.isOpen)
def close_form(walk, _):
    walk.desk.click(within(walk, "Kalender", None, "Formular schließen"))
    walk.model.form.isOpen = False


@action(5, when=lambda model: model.form.isOpen and len(model.form.title) < 40)
def type_event(walk, rng):
    words = text(rng, 2)
    walk.detail(repr(words))
    walk.desk.click(within(walk, "Kalender", "text", "Titel"))
    walk.desk.desktop.key("End")
    walk.desk.type(words)
    walk.model.form.title += words


@action(3, when=lambda model: model.form.isOpen)
def type_start(walk, rng):
    day = date.today() + timedelta(days=rng.randint(1, 4))
    start = day.strftime("%d.%m.%Y, ") + f"{rng.randint(0, 22):02}:{rng.randint(0, 59):02}"
    # Or into the next thing.
    leaves = rng.random() < 0.5
    walk.detail(start)
    walk.desk.click(within(walk, "Kalender", "text", "Beginn"))
    walk.desk.desktop.key("ctrl+a")
    walk.desk.type(start)
    if leaves:
        walk.desk.desktop.key("Tab")
    walk.model.form.start = start


@action(5, when=lambda model: model.form.isOpen and model.form.title.strip())
def add_event(walk, rng):
    by_button = rng.random() < 0.5
    walk.detail("button" if by_button else "Return")
    start = walk.model.form.start or walk.desk.read_events()["form"][1]
    if by_button:
        walk.desk.click(within(walk, "Kalender", None, "Hinzufügen"))
    else:
        walk.desk.click(within(walk, "Kalender", "text", "Titel"))
        walk.desk.desktop.key("Return")
    walk.model.add_event(start)


@action(2, when=lambda model: len(model.events) >= MOST_EVENTS)
def calendar_from_elsewhere(walk, _):
    """Another program empties the calendar."""
    path = walk.desk.folder / "calendar.ics"
    aside = path.with_suffix(".neu")
    aside.write_text("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Anderes//Programm//DE\r\nEND:VCALENDAR\r\n")
    os.replace(aside, path)
    walk.model.events.clear()
