"""What a walk does with the panel and the process: hiding, making anew, ending."""

from walk_actions import action, into_field, into_pad, text, within
from walk_desk import SCREEN, SMALLER_SCREEN, Disagreement


@action(30, hidden=True, editing=True)
def show_panel(walk, _):
    walk.show()


@action(5, editing=True)
def hide_panel(walk, _):
    walk.hide()


@action(2)
def hide_by_escape(walk, _):
    into_field(walk)
    walk.desk.desktop.key("Escape")
    walk.desk.wait_hidden()
    walk.model.isShown = False


@action(6, editing=True)
def kill(walk, _):
    walk.kill_and_judge()
    walk.restart()
    walk.show()


def takes_typing(model):
    """Whether nothing is open that goes on where it was."""
    return model.showsPad or not (model.composer.isOpen or model.openNote)


@action(2, hidden=True, when=lambda model: takes_typing(model) and len(model.newTask) < 40)
def type_at_once(walk, rng):
    """Called anew, the panel takes what is typed without a click."""
    words = text(rng)
    walk.detail(repr(words))
    walk.kill_and_judge()
    walk.restart()
    walk.show()
    walk.agree()
    walk.desk.wait(walk.desk.has_keyboard, "the panel has no keyboard")
    walk.desk.type(words)
    walk.model.newTask += words


@action(3, hidden=True, editing=True)
def kill_hidden(walk, _):
    walk.kill_and_judge()
    walk.restart()


@action(2, editing=True)
def quit_program(walk, _):
    walk.desk.quit()
    walk.model.process_ended()
    walk.judge_disk()
    walk.restart()


@action(4)
def kill_while_typing(walk, rng):
    """What was seen in the field for new tasks or on the pad when the process died is there again."""
    model, desk = walk.model, walk.desk
    words = " " + text(rng, 6)
    enough = rng.randint(1, len(words) - 1)
    on_pad = rng.random() < 0.5 and model.showsPad
    walk.detail(f"{'pad' if on_pad else 'field'} {words!r} at {enough}")
    former = model.pad if on_pad else model.newTask
    seen = former

    def read():
        return desk.read_notes()["pad"] if on_pad else desk.read_tasks()["field"]

    def typed_enough():
        nonlocal seen
        seen = read()
        return len(seen) >= len(former) + enough
    into_pad(walk) if on_pad else into_field(walk)
    typing = desk.typing(words)
    try:
        desk.wait(typed_enough, lambda: f"typing stops at {seen!r}")
        desk.kill()
    finally:
        # To its end: a key that it holds down would stay down.
        typing.wait()
    model.process_ended()
    walk.restart()
    walk.show()
    desk.wait(lambda: read().startswith(seen), lambda: f"{seen!r} was seen before the kill, {read()!r} is there")
    present = read()
    if not (former + words).startswith(present):
        raise Disagreement(f"{former + words!r} was typed, {present!r} is there")
    if on_pad:
        model.pad = present
    else:
        model.newTask = present


def in_settings(walk, role, name, at=None):
    """Clicks on something in the settings window."""
    desk = walk.desk

    def find():
        window = desk.window("Einstellungen.*")
        return window.first(role, name) if window else None
    desk.call("settings")
    desk.click(find, at=at)
    desk.desktop.key("ctrl+w")
    desk.wait(lambda: not desk.window("Einstellungen.*"), "the settings stay")


@action(2, hidden=True, editing=True)
def change_width(walk, rng):
    """The panel is made anew."""
    part = rng.uniform(0.1, 0.9)
    walk.detail(f"{part:.2f}")
    in_settings(walk, "slider", "Breite: .*", part)


@action(2, hidden=True, editing=True)
def change_side(walk, rng):
    side = rng.choice(["left", "right"])
    walk.detail(side)
    in_settings(walk, None, {"left": "Links", "right": "Rechts"}[side])
    walk.model.side = side


@action(3, editing=True)
def change_screen(walk, _):
    """The screen goes, and the panel with it; another comes in its place."""
    desktop = walk.desk.desktop
    # Off the edge, where a panel that was lost would be called again.
    x, y, width, height = walk.desk.frame(lambda: walk.desk.card("Kalender"))
    desktop.move(x + width // 2, y + height // 2)
    desktop.set_monitors([SMALLER_SCREEN if desktop.screens[0] == SCREEN else SCREEN])
    walk.hide()


@action(8, when=lambda model: model.can_undo(model.fresh))
def undo_by_bar(walk, _):
    """Right after a change."""
    card = walk.model.fresh
    walk.detail(card)
    walk.desk.click(within(walk, card, "push button", "Rückgängig"))
    walk.model.undo(card)
