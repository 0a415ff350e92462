#!/usr/bin/python3
"""Acts at random on every card of the built program, and holds what is shown and stored against a model.

    random_walk.py [--program …] [--seconds 600 | --steps 200] [--seed 42] [--keep <folder>]

What is done follows from the seed alone, so that a seed that failed can be walked again.
"""

import argparse
import os
import random
import sys
import tempfile
import time
from datetime import date, timedelta

from walk_desk import SCREEN, SMALLER_SCREEN, Desk, Disagreement
from walk_model import COLUMNS, Event, Model, Note

KEEPS_DRAFTS = False

WORDS = ["Brötchen", "Maß & Gewicht", "a < b > c", "Zahnarzt;", "Äpfel, 3 kg", "Übung", "Müll", "Jürgen: anrufen", "1/2 l Öl",
         "100 %", "Garten", "#7", "\\n", "<b>", "Straße", "ja?", "(neu)", "\"so\""]
MOST_TASKS = 7
MOST_EVENTS = 5
MOST_NOTES = 6
SHOWN_ACTIONS = 30

actions = {}


def action(weight, when=lambda model: True, hidden=False):
    """An operation that may be chosen while the panel is shown (hidden: is not), and `when` holds."""
    def register(function):
        actions[function.__name__] = (weight, lambda model: model.isShown != hidden and when(model), function)
        return function
    return register


def text(rng, words=3):
    return " ".join(rng.choice(WORDS) for _ in range(rng.randint(1, words)))


class Walk:
    def __init__(self, program, seed):
        self.seed = seed
        self.model = Model()
        self.desk = Desk(program)
        self.log = []
        self.steps = 0

    def close(self):
        self.desk.close()

    # --- the walk

    def run(self, seconds=None, steps=None):
        end = time.monotonic() + seconds if seconds else None
        self.desk.start()
        while (end is None or time.monotonic() < end) and (steps is None or self.steps < steps):
            self.step()
        self.say("the end: killed once more")
        self.kill_and_judge()
        self.restart()
        self.show()
        self.agree()
        self.desk.quit()
        self.judge_disk()

    def step(self):
        self.steps += 1
        # Of each step's own, so that what one draws does not move the next.
        rng = random.Random(f"{self.seed}/{self.steps}")
        possible = [(name, weight) for name, (weight, may, _) in actions.items() if may(self.model)]
        name = rng.choices([name for name, _ in possible], [weight for _, weight in possible])[0]
        self.say(name)
        actions[name][2](self, rng)
        self.agree()
        self.desk.check_log()

    def say(self, what):
        self.log.append(f"{self.steps}: {what}")

    def detail(self, what):
        self.log[-1] += f" {what}"

    # --- judging

    def agree(self):
        """Waits until the cards show what the model says."""
        if not self.model.isShown:
            return
        wanted = self.model.shown()
        seen = None

        def agrees():
            nonlocal seen
            seen = self.desk.read()
            form, wanted_form = seen["Kalender"]["form"], wanted["Kalender"]["form"]
            # The time that a form begins with is the program's to choose.
            if form and wanted_form and wanted_form[1] is None:
                seen["Kalender"]["form"] = (form[0], None)
            # Only one column of the board is in sight.
            if "columns" in seen["To-Do"] and "columns" in wanted["To-Do"]:
                wanted["To-Do"]["columns"] = {label: titles for label, titles in self.model.shown()["To-Do"]["columns"].items()
                                              if label in seen["To-Do"]["columns"]}
                if not seen["To-Do"]["columns"]:
                    return False
            return all(seen[card] == wanted[card] for card in wanted)

        def difference():
            return "the cards differ from the model\n" + differences(wanted, seen)
        self.desk.wait(agrees, difference)

    def judge_disk(self):
        wanted, there = self.model.stored(), self.desk.stored()
        if wanted != there:
            raise Disagreement("the disk differs from the model\n" + differences(wanted, there))

    # --- the panel and the process

    def show(self):
        self.desk.show(self.model.side)
        self.model.isShown = True

    def lose_drafts(self):
        if not KEEPS_DRAFTS:
            self.model.lose_drafts()

    def kill_and_judge(self):
        self.desk.kill()
        self.model.process_ended()
        self.lose_drafts()
        self.judge_disk()

    def restart(self):
        # Away from the edge, so that the panel comes when it is called.
        self.desk.leave(self.model.side)
        self.desk.start()

    @action(30, hidden=True)
    def show_panel(self, _):
        self.show()

    @action(5)
    def hide_panel(self, _):
        self.desk.hide(self.model.side)
        self.model.isShown = False

    @action(5)
    def kill(self, _):
        self.kill_and_judge()
        self.restart()
        self.show()

    @action(3, hidden=True)
    def kill_hidden(self, _):
        self.kill_and_judge()
        self.restart()

    @action(2)
    def quit(self, _):
        self.desk.quit()
        self.model.process_ended()
        self.lose_drafts()
        self.judge_disk()
        self.restart()

    @action(3)
    def kill_while_typing(self, rng):
        """What was seen in the field of new tasks or in the pad when the process died is there again."""
        words = " " + text(rng, 6)
        into_pad = self.model.scratch and (not KEEPS_DRAFTS or rng.random() < 0.5)
        if not self.model.scratch and not KEEPS_DRAFTS:
            return
        enough = rng.randint(1, len(words) - 1)
        self.detail(f"{'pad' if into_pad else 'field'} {words!r} at {enough}")
        self.into_pad() if into_pad else self.into_field()
        former = self.model.pad if into_pad else self.model.field
        seen = former

        def typed_enough():
            nonlocal seen
            seen = self.desk.read_notes()["pad"] if into_pad else self.desk.read_todo()["field"]
            return len(seen) >= len(former) + enough
        typing = self.desk.typing(words)
        try:
            self.desk.wait(typed_enough, lambda: f"typing stops at {seen!r}")
            self.desk.kill()
        finally:
            # To its end: a key that it holds down would stay down.
            typing.wait()
        self.model.process_ended()
        self.lose_drafts()
        self.restart()
        self.show()
        present = self.desk.wait(lambda: self.desk.card("Notizen") and (
            self.desk.read_notes()["pad"] if into_pad else self.desk.read_todo()["field"]) or " ", "no card")
        if not present.startswith(seen) or not (former + words).startswith(present):
            raise Disagreement(f"{seen!r} was seen before the kill, {present!r} is there")
        if into_pad:
            self.model.pad = present
        else:
            self.model.field = present

    @action(2, hidden=True)
    def change_width(self, rng):
        part = rng.uniform(0.1, 0.9)
        self.detail(f"{part:.2f}")
        self.in_settings(lambda: self.desk.click(self.setting("slider", "Breite: .*"), at=part))

    @action(2, hidden=True)
    def change_side(self, rng):
        side = rng.choice(["left", "right"])
        self.detail(side)
        self.in_settings(lambda: self.desk.click(self.setting(None, {"left": "Links", "right": "Rechts"}[side])))
        self.model.side = side

    def in_settings(self, change):
        self.desk.call("settings")
        change()
        self.desk.desktop.key("ctrl+w")
        self.desk.wait(lambda: not self.desk.window("Einstellungen.*"), "the settings stay")
        self.lose_drafts()

    def setting(self, role, name):
        def find():
            window = self.desk.window("Einstellungen.*")
            return window.first(role, name) if window else None
        return find

    @action(2)
    def change_screen(self, _):
        """Another screen takes the present one's place."""
        present = self.desk.desktop.screens[0]
        self.desk.desktop.set_monitors([SMALLER_SCREEN if present == SCREEN else SCREEN])
        self.desk.hide(self.model.side)
        self.model.isShown = False

    # --- hands

    def card_node(self, card, role, name):
        def find():
            node = self.desk.card(card)
            return node.first(role, name) if node else None
        return find

    def into_field(self):
        self.desk.click(self.card_node("To-Do", "text", "Neue Aufgabe…"))
        self.desk.desktop.key("End")

    def into_pad(self):
        self.desk.click(self.card_node("Notizen", "text", "Notizzettel"))
        self.desk.desktop.key("ctrl+End")

    def quick(self, card, choice):
        def header():
            node = self.desk.card(card)
            return node
        x, y, width, _ = self.desk.frame(header)
        self.desk.desktop.right_click(x + width - 40, y + 14)
        self.desk.click(self.card_node(card, None, choice))
        self.desk.desktop.key("Escape")
        self.desk.wait(lambda: not self.desk.card(card).first("panel", "Optionen"), "the quick settings stay")

    # --- tasks

    @action(12, when=lambda model: len(model.tasks) < MOST_TASKS)
    def add_task(self, rng):
        words = text(rng)
        self.detail(repr(words))
        self.into_field()
        self.desk.type(words)
        self.desk.desktop.key("Return")
        self.model.field += words
        self.model.add_task()

    @action(4, when=lambda model: len(model.field) < 40)
    def type_task(self, rng):
        words = text(rng)
        self.detail(repr(words))
        self.into_field()
        self.desk.type(words)
        self.model.field += words

    @action(2, when=lambda model: model.field)
    def empty_field(self, _):
        self.into_field()
        self.desk.desktop.key("ctrl+a", "Delete")
        self.model.field = ""

    @action(3, when=lambda model: model.clipboard and len(model.clipboard) < 100)
    def paste_into_field(self, _):
        self.into_field()
        self.desk.desktop.key("ctrl+a", "ctrl+v")
        # One line.
        self.model.field = self.model.clipboard.replace("\n", " ")

    def row(self, task):
        """The row or card of a task: the only one with its place."""
        index = self.model.listed().index(task) if not self.model.board else self.model.column(task.status).index(task)

        def find():
            card = self.desk.card("To-Do")
            if self.model.board:
                rows = self.desk.from_top(card.first("list", COLUMNS[task.status]), "Aktionen: .*")
            else:
                rows = self.desk.from_top(card.first("list", "Aufgaben"), "Erledigt: .*")
            return rows[index] if index < len(rows) and rows[index].name == task.title else None
        return find

    def within_row(self, task, name):
        row = self.row(task)

        def find():
            node = row()
            return node.first(name=name) if node else None
        return find

    def pick(self, rng):
        task = rng.choice(self.model.tasks)
        self.detail(repr(task.title))
        return task

    def focus_task(self, task):
        if self.model.board:
            self.turn_to(task)
        # Where no button is.
        self.desk.click(self.row(task), at=0.5)

    def turn_to(self, task):
        """Turns the board to the task's column."""
        wanted = list(self.desk.read_todo()["counts"]).index(COLUMNS[task.status])
        self.desk.click(self.card_node("To-Do", "text", "Neue Aufgabe…"))
        self.desk.desktop.key(*["ctrl+Prior"] * 2, *["ctrl+Next"] * wanted)

        def is_there():
            board = self.desk.card("To-Do").first("panel", "Kanban-Tafel")
            there, place = self.desk.frames([board.children[wanted], board])
            return there[0] == place[0]
        self.desk.wait(is_there, "the board does not turn")

    @action(6, when=lambda model: model.tasks)
    def delete_by_key(self, rng):
        task = self.pick(rng)
        self.focus_task(task)
        self.desk.desktop.key("Delete")
        self.model.delete_tasks([task])

    @action(4, when=lambda model: model.tasks and not model.board)
    def delete_by_button(self, rng):
        task = self.pick(rng)
        self.focus_task(task)
        self.desk.click(self.within_row(task, "Löschen: .*"))
        self.model.delete_tasks([task])

    @action(7, when=lambda model: model.tasks and not model.board)
    def toggle_task(self, rng):
        task = self.pick(rng)
        if rng.random() < 0.5:
            self.desk.click(self.within_row(task, "Erledigt: .*"))
        else:
            self.focus_task(task)
            self.desk.desktop.key("space")
        self.model.toggle_task(task)

    @action(2, when=lambda model: not model.board and model.column("done"))
    def delete_done(self, _):
        def find():
            rows = self.desk.card("To-Do").first("list", "Aufgaben")
            return next((node for node in rows.children if node.name == "Löschen" and node.has("showing")), None)
        self.desk.click(find)
        self.model.delete_tasks(self.model.column("done"))

    @action(6, when=lambda model: model.tasks and not model.board)
    def rename_task(self, rng):
        task = self.pick(rng)
        words = text(rng)
        keeps = rng.random() < 0.8
        self.detail(f"{words!r} {'Return' if keeps else 'Escape'}")
        if rng.random() < 0.5:
            self.desk.click(self.row(task), repeat=2)
        else:
            self.focus_task(task)
            self.desk.desktop.key("F2")
        self.desk.wait(lambda: self.desk.read_todo()["editor"] == task.title, "no field for the title")
        self.desk.type(words)
        self.model.editor = (task, words)
        self.agree()
        self.desk.desktop.key("Return" if keeps else "Escape")
        self.model.editor = None
        if keeps:
            self.model.rename_task(task, words)

    @action(8, when=lambda model: model.tasks and model.board)
    def menu_of_card(self, rng):
        task = self.pick(rng)
        choice = rng.choice(["backlog", "doing", "done", "delete"])
        self.detail(choice)
        self.turn_to(task)
        self.desk.click(self.within_row(task, "Aktionen: .*"))
        label = {"backlog": "Offen", "doing": "In Arbeit", "done": "Erledigt", "delete": "Löschen"}[choice]

        def find():
            return self.desk.window().first("menu item", label)
        self.desk.click(find)
        if choice == "delete":
            self.model.delete_tasks([task])
        else:
            task.status = choice

    @action(4)
    def switch_board(self, _):
        self.model.board = not self.model.board
        self.quick("To-Do", "Kanban-Tafel" if self.model.board else "Liste")

    # --- the pad

    @action(8, when=lambda model: model.scratch and len(model.pad) < 300)
    def write_on_pad(self, rng):
        words = "\n" * rng.randint(0, 1) + text(rng, 5)
        at_start = rng.random() < 0.3
        self.detail(f"{words!r} {'above' if at_start else 'below'}")
        self.into_pad()
        if at_start:
            self.desk.desktop.key("ctrl+Home")
        self.desk.type(words)
        self.model.pad = words + self.model.pad if at_start else self.model.pad + words

    @action(3, when=lambda model: model.scratch and 0 < len(model.pad) < 200)
    def copy_pad(self, rng):
        pastes = rng.random() < 0.5
        self.detail("twice" if pastes else "")
        self.into_pad()
        self.desk.desktop.key("ctrl+a", "ctrl+c", *["ctrl+End", "ctrl+v"] * pastes)
        self.model.clipboard = self.model.pad
        if pastes:
            self.model.pad *= 2

    @action(4, when=lambda model: model.scratch and model.pad)
    def empty_pad(self, rng):
        back = rng.random() < 0.7
        self.detail("and back" if back else "")
        self.into_pad()
        former = self.model.pad
        self.desk.desktop.key("ctrl+a", "Delete")
        self.model.pad = ""
        self.agree()
        if back:
            self.desk.desktop.key("ctrl+z")
            self.model.pad = former

    @action(4)
    def switch_notes(self, _):
        self.model.scratch = not self.model.scratch
        self.quick("Notizen", "Notizzettel" if self.model.scratch else "Apple Notizen")

    # --- notes

    @action(8, when=lambda model: not model.scratch and not model.composer and not model.opened and len(model.notes) < MOST_NOTES)
    def write_note(self, rng):
        name, body = text(rng, 2), text(rng, 3) + "\n" * rng.randint(0, 2) + text(rng, 2)
        self.detail(f"{name!r} {body!r}")
        self.desk.click(self.card_node("Notizen", None, "Neue Notiz"))
        self.model.composer = ["", ""]
        self.agree()
        self.desk.type(name)
        self.desk.desktop.key("Return")
        self.desk.type(body)
        self.model.composer = [name, body]
        self.agree()
        if rng.random() < 0.5:
            self.desk.desktop.key("ctrl+s")
        else:
            self.desk.click(self.card_node("Notizen", None, "Speichern"))
        self.model.composer = None
        self.model.notes.append(Note(name, body))

    def open_note(self, rng):
        note = rng.choice(self.model.notes)
        self.detail(repr(note.name))
        same = [other for other in self.model.notes if other.name == note.name]
        if len(same) > 1:
            self.detail("(one of several)")
            return None

        def find():
            rows = self.desk.card("Notizen").first("list", "Notizen")
            return next((row for row in rows.children if row.name == note.name and row.has("visible")), None)
        self.desk.click(find)
        self.model.opened = [note, note.body]
        self.agree()
        return note

    @action(8, when=lambda model: not model.scratch and not model.composer and not model.opened and model.notes)
    def edit_note(self, rng):
        note = self.open_note(rng)
        if not note:
            return
        words = "\n" * rng.randint(0, 1) + text(rng, 3)
        self.detail(repr(words))
        self.desk.click(self.card_node("Notizen", "text", "(?!Titel).*"), at=0.9)
        self.desk.desktop.key("ctrl+End")
        self.desk.type(words)
        self.model.opened[1] += words
        self.agree()
        self.desk.desktop.key("ctrl+s")
        note.body = self.model.opened[1]
        self.wait_stored()
        self.desk.click(self.card_node("Notizen", None, "Zurück"))
        self.model.opened = None

    def wait_stored(self):
        """Waits until the disk is as the model, for what is only shown to be under way."""
        there = None

        def agrees():
            nonlocal there
            there = self.desk.stored()
            return there == self.model.stored()
        self.desk.wait(agrees, lambda: "the disk differs from the model\n" + differences(self.model.stored(), there))

    @action(4, when=lambda model: not model.scratch and not model.composer and not model.opened and model.notes)
    def delete_note(self, rng):
        note = self.open_note(rng)
        if not note:
            return
        self.desk.click(self.card_node("Notizen", None, "Notiz löschen"))
        self.model.notes.remove(note)
        self.model.opened = None

    # --- appointments

    @action(4, when=lambda model: not model.form and len(model.events) < MOST_EVENTS)
    def open_form(self, _):
        self.desk.click(self.card_node("Kalender", None, "Neuer Termin"))
        self.model.form = ("", None)

    @action(5, when=lambda model: model.form and len(model.form[0]) < 40)
    def type_event(self, rng):
        words = text(rng, 2)
        self.detail(repr(words))
        self.desk.click(self.card_node("Kalender", "text", "Titel"))
        self.desk.desktop.key("End")
        self.desk.type(words)
        self.model.form = (self.model.form[0] + words, self.model.form[1])

    @action(3, when=lambda model: model.form)
    def type_start(self, rng):
        start = (date.today() + timedelta(days=rng.randint(1, 4))).strftime("%d.%m.%Y, ") + f"{rng.randint(0, 22):02}:{rng.randint(0, 59):02}"
        self.detail(start)
        self.desk.click(self.card_node("Kalender", "text", "Beginn"))
        self.desk.desktop.key("ctrl+a")
        self.desk.type(start)
        self.desk.desktop.key("Tab")
        self.model.form = (self.model.form[0], start)

    @action(5, when=lambda model: model.form and model.form[0].strip())
    def add_event(self, rng):
        by_button = rng.random() < 0.5
        self.detail("button" if by_button else "Return")
        title, start = self.model.form
        start = start or self.desk.read_calendar()["form"][1]
        if by_button:
            self.desk.click(self.card_node("Kalender", None, "Hinzufügen"))
        else:
            self.desk.click(self.card_node("Kalender", "text", "Titel"))
            self.desk.desktop.key("Return")
        self.model.form = None
        self.model.events.append(Event(title.strip(), start))

    @action(1, when=lambda model: len(model.events) >= MOST_EVENTS)
    def calendar_from_elsewhere(self, _):
        """Another program empties the calendar."""
        path = self.desk.folder / "calendar.ics"
        aside = path.with_suffix(".neu")
        aside.write_text("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Anderes//Programm//DE\r\nEND:VCALENDAR\r\n")
        os.replace(aside, path)
        self.model.events.clear()


def differences(wanted, there):
    lines = []
    for key in wanted:
        present = there.get(key) if there else None
        if wanted[key] != present:
            lines += [f"  {key}: model {wanted[key]!r}", f"  {' ' * len(key)}  there {present!r}"]
    return "\n".join(lines)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", default=os.environ.get("QUILLBAR"))
    parser.add_argument("--seconds", type=float)
    parser.add_argument("--steps", type=int)
    parser.add_argument("--seed", type=int)
    parser.add_argument("--keep", help="where a failure leaves its folder")
    arguments = parser.parse_args()
    if not arguments.program:
        parser.error("--program or QUILLBAR has to name the built program")
    seed = random.SystemRandom().randrange(10**6) if arguments.seed is None else arguments.seed
    seconds = arguments.seconds or (None if arguments.steps else 600)
    print(f"seed {seed}", flush=True)

    walk = Walk(os.path.abspath(arguments.program), seed)
    try:
        walk.run(seconds, arguments.steps)
    except (Disagreement, AssertionError) as error:
        target = os.path.join(arguments.keep or tempfile.gettempdir(), f"walk-{seed}")
        walk.desk.keep(target)
        print(f"seed {seed} FAILED at step {walk.steps}: {error}")
        print(f"the last of {len(walk.log)} actions:")
        print("\n".join(walk.log[-SHOWN_ACTIONS:]))
        print("the model says", walk.model.stored(), walk.model.shown())
        try:
            print("the disk says", walk.desk.stored())
        except Exception as problem:  # pylint: disable=broad-except
            print(f"the disk cannot be read: {problem}")
        print(f"kept: {target}")
        return 1
    finally:
        walk.close()
    print(f"seed {seed}: {walk.steps} actions, {walk.desk.kills} kills, nothing lost")
    return 0


if __name__ == "__main__":
    sys.exit(main())
