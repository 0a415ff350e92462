"""What a walk does with tasks."""

from walk_actions import action, choose_quickly, click_row, focus_task, into_field, pick_task, text, turn_to, within
from walk_model import Editor

MOST = 7


def add(walk, words):
    into_field(walk)
    walk.desk.type(words)
    walk.desk.desktop.key("Return")
    walk.model.newTask += words
    walk.model.add_task()


@action(12, when=lambda model: len(model.tasks) < MOST)
def add_task(walk, rng):
    words = text(rng)
    walk.detail(repr(words))
    add(walk, words)


@action(4, when=lambda model: len(model.newTask) < 40)
def type_task(walk, rng):
    words = text(rng)
    walk.detail(repr(words))
    into_field(walk)
    walk.desk.type(words)
    walk.model.newTask += words


@action(2, when=lambda model: model.newTask)
def empty_field(walk, _):
    into_field(walk)
    walk.desk.desktop.key("ctrl+a", "Delete")
    walk.model.newTask = ""


@action(3, when=lambda model: 0 < len(model.clipboard) < 100)
def paste_into_field(walk, _):
    into_field(walk)
    walk.desk.desktop.key("ctrl+a", "ctrl+v")
    # One line.
    walk.model.newTask = walk.model.clipboard.replace("\n", " ")


@action(6, when=lambda model: model.tasks)
def delete_by_key(walk, rng):
    task = pick_task(walk, rng)
    focus_task(walk, task)
    walk.desk.desktop.key("Delete")
    walk.model.delete_tasks([task])


@action(5, when=lambda model: model.tasks and not model.showsBoard)
def delete_by_button(walk, rng):
    """A double click takes one as well."""
    task = pick_task(walk, rng)
    clicks = rng.randint(1, 2)
    walk.detail("double click" if clicks == 2 else "")
    focus_task(walk, task)
    click_row(walk, task, None, "Löschen: .*", repeat=clicks)
    walk.model.delete_tasks([task])


@action(3, when=lambda model: len(model.tasks) > 2)
def hold_key(walk, rng):
    """A key is held: it meets one task."""
    task = pick_task(walk, rng)
    key = "Delete" if walk.model.showsBoard else rng.choice(["Delete", "space"])
    walk.detail(key)
    focus_task(walk, task)
    walk.desk.hold_key(key)
    if key == "Delete":
        walk.model.delete_tasks([task])
    else:
        walk.model.toggle_task(task)


@action(7, when=lambda model: model.tasks and not model.showsBoard)
def toggle_task(walk, rng):
    task = pick_task(walk, rng)
    if rng.random() < 0.5:
        click_row(walk, task, None, "Erledigt: .*")
    else:
        focus_task(walk, task)
        walk.desk.desktop.key("space")
    walk.model.toggle_task(task)


@action(2, when=lambda model: not model.showsBoard and model.column("done"))
def delete_done(walk, _):
    def find():
        rows = walk.desk.card("To-Do").first("list", "Aufgaben")
        return next((node for node in rows.children if node.name == "Löschen" and node.has("showing")), None)
    walk.desk.click(find)
    walk.model.delete_tasks(walk.model.column("done"))


@action(8, when=lambda model: model.tasks and not model.showsBoard)
def edit_title(walk, rng):
    task = pick_task(walk, rng)
    words = text(rng)
    walk.detail(repr(words))
    if rng.random() < 0.5:
        click_row(walk, task, repeat=2)
    else:
        focus_task(walk, task)
        walk.desk.desktop.key("F2")
    walk.desk.wait(lambda: walk.desk.read_tasks()["editor"] == task.title, "no field for the title")
    walk.desk.type(words)
    walk.model.editor = Editor(task, words)
    if rng.random() < 0.7:
        walk.agree()
        end_editing(walk, rng)


@action(4, when=lambda model: model.editor and len(model.editor.text) < 40, editing=True)
def type_title(walk, rng):
    words = text(rng)
    walk.detail(repr(words))
    into_editor(walk)
    walk.desk.type(words)
    walk.model.editor.text += words


@action(6, when=lambda model: model.editor, editing=True)
def finish_title(walk, rng):
    into_editor(walk)
    end_editing(walk, rng)


def into_editor(walk):
    click_row(walk, walk.model.editor.task, "text", "Titel")
    walk.desk.desktop.key("End")


def end_editing(walk, rng):
    way = rng.choice(["Return", "Return", "Escape", "elsewhere"])
    walk.detail(way)
    if way == "elsewhere":
        into_field(walk)
    else:
        walk.desk.desktop.key(way)
    if way == "Escape":
        walk.model.drop_edit()
    else:
        walk.model.commit_edit()


@action(8, when=lambda model: model.tasks and model.showsBoard)
def choose_in_menu(walk, rng):
    task = pick_task(walk, rng)
    choice = rng.choice(["backlog", "doing", "done", "delete"])
    walk.detail(choice)
    turn_to(walk, task)
    click_row(walk, task, None, "Aktionen: .*")
    label = {"backlog": "Offen", "doing": "In Arbeit", "done": "Erledigt", "delete": "Löschen"}[choice]
    walk.desk.click(lambda: walk.desk.window().first("menu item", label))
    if choice == "delete":
        walk.model.delete_tasks([task])
    else:
        walk.model.set_status(task, choice)


@action(4)
def switch_board(walk, _):
    walk.model.showsBoard = not walk.model.showsBoard
    choose_quickly(walk, "To-Do", "Kanban-Tafel" if walk.model.showsBoard else "Liste")


@action(6, when=lambda model: model.tasks and model.can_undo(model.undone_from("To-Do")))
def undo_by_key(walk, rng):
    """With the keyboard in the list or on the board: its own latest change, or else the latest of all."""
    task = pick_task(walk, rng)
    focus_task(walk, task)
    card = walk.model.undone_from("To-Do")
    walk.detail(card)
    walk.desk.desktop.key("ctrl+z")
    walk.model.undo(card)
    # The list scrolls and the keyboard goes where the task is; nothing else may come of it.
    walk.desk.wait(within(walk, "To-Do", "text", "Neue Aufgabe…"), "no field")
