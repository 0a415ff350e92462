"""The register of what a walk may do, and what its actions share.

An action is a function of the walk and a source of chance. What it draws may depend on the model alone, never on
the time or the screen: the same seed does the same again.
"""

from walk_model import COLUMNS

WORDS = ["Brötchen", "Maß & Gewicht", "a < b > c", "Zahnarzt;", "Äpfel, 3 kg", "Übung", "Müll", "Jürgen: anrufen",
         "1/2 l Öl", "100 %", "Garten", "#7", "\\n", "<b>", "Straße", "ja?", "(neu)", "\"so\""]

actions = {}


def action(weight, when=lambda model: True, hidden=False, editing=False):
    """May be chosen while the panel is shown (hidden: is not), and `when` holds; while a title is being edited
    only with `editing`: any click elsewhere ends that."""
    def register(function):
        def may(model):
            return model.isShown != hidden and (editing or not model.editor) and when(model)
        actions[function.__name__] = (weight, may, function)
        return function
    return register


def text(rng, words=3):
    return " ".join(rng.choice(WORDS) for _ in range(rng.randint(1, words)))


def within(walk, card, role, name):
    """Finds the first of a card."""
    def find():
        node = walk.desk.card(card)
        return node.first(role, name) if node else None
    return find


def into_field(walk):
    walk.desk.click(within(walk, "To-Do", "text", "Neue Aufgabe…"))
    walk.desk.desktop.key("End")


def into_pad(walk):
    walk.desk.click(within(walk, "Notizen", "text", "Notizzettel"))
    walk.desk.desktop.key("ctrl+End")


def choose_quickly(walk, card, choice):
    """Chooses in a card's quick settings."""
    x, y, width, _ = walk.desk.frame(lambda: walk.desk.card(card))
    walk.desk.desktop.right_click(x + width - 40, y + 14)
    walk.desk.click(within(walk, card, None, choice))
    walk.desk.click(within(walk, card, None, "Schließen"))
    walk.desk.wait(lambda: not walk.desk.card(card).first("panel", "Optionen"), "the quick settings stay")


def row_of(walk, task):
    """Finds the row or the board's card of a task, by its place: titles may be the same."""
    model = walk.model
    index = (model.column(task.status) if model.showsBoard else model.listed()).index(task)

    def find():
        card = walk.desk.card("To-Do")
        rows = walk.desk.task_rows(card, COLUMNS[task.status] if model.showsBoard else None)
        return rows[index] if index < len(rows) and rows[index].name == task.title else None
    return find


def click_row(walk, task, role=None, name=None, **click):
    """Clicks on a task's row, or on the first in it of this role and name, once it is in sight."""
    row = row_of(walk, task)

    def find():
        node = row()
        return node.first(role, name) if node and name else node

    def hidden():
        """How far the row's middle is out of the list: negative above it, 0 in it."""
        rows = walk.desk.card("To-Do").first("list", COLUMNS[task.status] if walk.model.showsBoard else "Aufgaben")
        x, top, width, height = walk.desk.frames([rows])[0]
        place = walk.desk.frame(row)
        middle = place[1] + place[3] // 2
        walk.desk.desktop.move(x + width // 2, top + height // 2)
        return min(middle - 8 - top, 0) + max(middle + 8 - top - height, 0)

    for _ in range(20):
        distance = hidden()
        if distance == 0:
            break
        walk.desk.desktop.scroll(1 if distance > 0 else -1)
    # What can be pressed in a row is there while the pointer is on it.
    x, y, width, height = walk.desk.frame(row)
    walk.desk.desktop.move(x + width // 2, y + height // 2)
    if name:
        walk.desk.wait(lambda: walk.desk.frames([find()])[0][2] > 0, f"nothing to press: {name}")
    walk.desk.click(find, **click)


def turn_to(walk, task):
    """Turns the board to the task's column."""
    wanted = list(COLUMNS).index(task.status)
    into_field(walk)
    walk.desk.desktop.key(*["ctrl+Prior"] * 2, *["ctrl+Next"] * wanted)
    walk.desk.wait(lambda: walk.desk.shown_column() == wanted, "the board does not turn")


def focus_task(walk, task):
    if walk.model.showsBoard:
        turn_to(walk, task)
    # Where no button is.
    click_row(walk, task, at=0.5)


def pick_task(walk, rng):
    task = rng.choice(walk.model.tasks)
    walk.detail(repr(task.title))
    return task
