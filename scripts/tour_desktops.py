"""The tour's station on other desktops: the panel over another window, wherever the desktop's programs are there."""

import shutil
import time
from contextlib import ExitStack

import nested_desktop
from virtual_desktop import VirtualDesktop, wait_for

# A point in the second card of a panel at the left edge, where there is nothing else.
ON_CARD = (200, 600)
LETTER = """

   Liebe Mira,

   der Umzug ist geschafft, und die Kisten stehen dort, wo sie
   wohl noch eine Weile stehen werden. Vom Balkon aus sieht man
   den Fluss, morgens liegt Nebel darauf.

   Am Samstag koche ich für alle, die getragen haben. Bring die
   Liste mit, auf der steht, wem welche Lampe gehört: Ich habe
   drei, die niemand kennt.

   Bis dahin
   Jonas
"""

# By the names of their pictures: Wayland's compositors, then X11's window managers.
NESTED = {"sway": "sway", "kde": "kwin_wayland", "gnome": "mutter"}
MANAGERS = {"gnome-x11": "mutter", "xfce": "xfwm4", "i3": "i3", "openbox": "openbox"}


def missing_programs(name):
    """What this desktop needs and what is not there."""
    if name in NESTED:
        return nested_desktop.missing_programs(NESTED[name])
    return [] if shutil.which(MANAGERS[name]) else [MANAGERS[name]]


def start_desktop(name, wallpaper):
    if name in NESTED:
        return nested_desktop.NestedDesktop(NESTED[name], wallpaper=wallpaper)
    return VirtualDesktop(window_manager=MANAGERS[name], wallpaper=wallpaper)


class Walk:
    """The program beside another window on one of the desktops."""

    def __init__(self, name, desktop, executable):
        self.name = name
        self.desktop = desktop
        letter = self.desktop.folder / "letter.txt"
        letter.write_text(LETTER, encoding="utf-8")
        empty = self.desktop.screenshot()
        self.desktop.start(["xterm", "-geometry", "64x22+250+130", "-fa", "DejaVu Sans Mono", "-fs", "13", "-u8",
                            "-bg", "#f6f4ee", "-fg", "#202020", "-T", "Brief", "-e",
                            "sh", "-c", f"cat {letter}; exec sleep 600"])
        wait_for(lambda: self.desktop.screenshot() != empty, message=f"{name}: no window")
        self.wait_rest()
        self.hidden = self.desktop.pixel(*ON_CARD)
        self.desktop.store(hasOnboarded=True)
        self.program = self.desktop.start([str(executable)])
        self.wait_up()

    def is_up(self):
        return self.desktop.pixel(*ON_CARD) != self.hidden

    def wait_rest(self):
        """Waits until nothing moves: a compositor in software takes its time."""
        pictures = [None]

        def rests():
            pictures.append(self.desktop.screenshot().tobytes())
            time.sleep(0.2)
            return pictures[-1] == pictures[-2]
        wait_for(rests, message=f"{self.name}: no rest")

    def wait_up(self):
        wait_for(self.is_up, message=lambda: f"{self.name}: no panel\n{self.program.log}")

    def wait_hidden(self):
        wait_for(lambda: not self.is_up(), message=lambda: f"{self.name}: the panel stays\n{self.program.log}")

    def pictures(self):
        """Yields what is to be seen at the edge, by name."""
        self.wait_hidden()
        self.desktop.move(0, 450)
        self.wait_up()
        self.wait_rest()
        yield self.name
        self.desktop.type("Brot und Kaffee kaufen")
        self.desktop.key("Return")
        self.desktop.type("Karten für das Konzert")
        self.wait_rest()
        yield f"{self.name}-tippen"
        self.desktop.move(1000, 800)
        self.wait_hidden()


def visit_desktops(wallpaper, prepare, executable, shot):
    """Shows the program on each desktop: prepare gets a desktop before, shot a picture's name and its desktop."""
    with ExitStack() as stack:
        walks = []
        # All first, so that one wait is enough for the panels that greet.
        for name in [*NESTED, *MANAGERS]:
            missing = missing_programs(name)
            if missing:
                print(f"desktop-{name}: ausgelassen, es fehlt {', '.join(missing)}", flush=True)
                continue
            try:
                desktop = stack.enter_context(start_desktop(name, wallpaper))
            except (AssertionError, RuntimeError) as error:
                print(f"desktop-{name}: ausgelassen, startet hier nicht: {error}", flush=True)
                continue
            prepare(desktop)
            walks.append(Walk(name, desktop, executable))
        for walk in walks:
            for name in walk.pictures():
                shot(f"desktop-{name}", walk.desktop)
