#!/usr/bin/python3
"""Kills the built program again and again while words are typed into it, and compares what is stored.

Usage: kill_program.py <program> [kills [seed]]

Each word goes into the field for new tasks, and some kills come in the middle of one. What another program could
read in the store before a kill, tasks and draft, must be there after it, and so after the next start, with the rest
of the typing behind it; nothing may be there that was not typed. Half of the kills come while the program starts.
"""

import contextlib
import json
import os
import random
import shutil
import signal
import sqlite3
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "system"))
from virtual_desktop import VirtualDesktop, wait_for  # noqa: E402

LONGEST_START = 1.5
LONGEST_TYPING = 0.3


def text(database):
    """All that was typed, from the tasks and from what is in the field still, in order."""
    rows = dict(database.execute("SELECT key, value FROM preferences WHERE key = 'todoItems.v1'").fetchall())
    tasks = json.loads(rows.get("todoItems.v1", "[]"))
    titles = [task["title"] for task in sorted(tasks, key=lambda task: task["order"])]
    is_there = database.execute("SELECT 1 FROM sqlite_schema WHERE name = 'drafts'").fetchone()
    draft = is_there and database.execute("SELECT value FROM drafts WHERE key = 'todo.add'").fetchone()
    return "".join(titles) + (json.loads(draft[0])["text"] if draft else "")


def has_in_order(whole, part):
    characters = iter(whole)
    return all(character in characters for character in part)


def seen_by_another(path):
    with contextlib.closing(sqlite3.connect(f"file:{path}?mode=ro", uri=True, timeout=5)) as database:
        return text(database)


def left_behind(path):
    """The text, and what SQLite says of the file; of a copy, as whoever opens it first tidies up."""
    with tempfile.TemporaryDirectory() as folder:
        for file in path.parent.glob(path.name + "*"):
            if not file.name.endswith("-shm"):
                shutil.copy(file, folder)
        with contextlib.closing(sqlite3.connect(Path(folder) / path.name)) as database:
            return text(database), database.execute("PRAGMA integrity_check").fetchone()[0]


def main():
    program = sys.argv[1]
    kills = int(sys.argv[2]) if len(sys.argv) > 2 else 500
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else 20261123
    draw = random.Random(seed)
    typed = acknowledged = violations = 0
    begin = time.monotonic()

    def violation(what):
        nonlocal violations
        violations += 1
        print(f"Violated: round {number}: {what}", flush=True)

    with VirtualDesktop() as desktop:
        path = desktop.data_home / "quillbar/preferences.sqlite"
        desktop.store(hasOnboarded=True, enabledModuleIDs=["todo"])
        for number in range(kills):
            running = desktop.start([program], env={"QT_QUICK_BACKEND": "software"})
            types = number % 2 == 1
            if types:
                # The panel that shows itself at the start has the keyboard, and typing keeps it.
                wait_for(lambda: desktop.title(desktop.active_window() or 0) == "Quillbar", timeout=60,
                         message=lambda: "no keyboard\n" + running.log)
                for _ in range(draw.randint(1, 3)):
                    typed += 1
                    desktop.at_screen("xdotool", "type", "--args", 1, "--delay", 1, f"wort{typed}", "key", "Return")
                time.sleep(draw.uniform(0, LONGEST_TYPING))
            else:
                time.sleep(draw.uniform(0, LONGEST_START))
            seen = seen_by_another(path)
            running.process.send_signal(signal.SIGKILL)
            running.process.wait()
            running.terminate()
            after, health = left_behind(path)
            if not after.startswith(seen):
                violation(f"“…{after[-60:]}” instead of “…{seen[-60:]}”")
            if not has_in_order("".join(f"wort{word + 1}" for word in range(typed)), after):
                violation(f"nobody typed “…{after[-60:]}”")
            if health != "ok":
                violation(health)
            if list(path.parent.glob("*.unlesbar-*")):
                violation("a healthy file was put aside")
                break
            acknowledged = len(after)
            os.remove(running.log_path)
            if (number + 1) % 50 == 0:
                print(f"{number + 1} kills", flush=True)
    print(f"{kills} kills in {time.monotonic() - begin:.0f} s (seed {seed}), {typed} words typed, "
          f"{acknowledged} characters stored; violated: {violations}")
    sys.exit(1 if violations or acknowledged == 0 else 0)


if __name__ == "__main__":
    main()
