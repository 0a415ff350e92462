#!/usr/bin/python3
"""Acts at random on every card of the built program, and holds what is shown and stored against a model.

    random_walk.py [--program …] [--seconds 600 | --steps 200] [--seed 42] [--keep <folder>]
                   [--without <action> …]

What is done follows from the seed alone, so that a seed that failed can be walked again.
"""

import argparse
import collections
import os
import random
import sys
import tempfile
import time

# Each registers its actions.
import walk_music  # noqa: F401
import walk_notes  # noqa: F401
import walk_panel  # noqa: F401
import walk_tasks  # noqa: F401
import walk_texts  # noqa: F401
from walk_actions import actions
from walk_desk import Desk, Disagreement
from walk_model import Model

SHOWN_ACTIONS = 30


class Walk:
    def __init__(self, program, seed):
        self.seed = seed
        self.model = Model()
        self.desk = Desk(program)
        self.log = []
        self.steps = 0

    def run(self, seconds=None, steps=None):
        end = time.monotonic() + seconds if seconds else None
        self.desk.start()
        while (end is None or time.monotonic() < end) and (steps is None or self.steps < steps):
            self.step()
        self.log.append("the end")
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
        self.log.append(f"{self.steps}: {name}")
        serial = self.model.serial
        actions[name][2](self, rng)
        if self.model.serial == serial:
            self.model.fresh = None
        self.agree()
        self.desk.check_log()

    def detail(self, what):
        """Adds to what is told of the present step."""
        self.log[-1] += f" {what}"

    # --- judging

    def agree(self):
        """Waits until the cards show what the model says."""
        if not self.model.isShown:
            return
        wanted = seen = None

        def agrees():
            nonlocal wanted, seen
            wanted, seen = self.model.shown(), self.desk.read()
            form, wanted_form = seen["Kalender"]["form"], wanted["Kalender"]["form"]
            # The time that a form begins with is the program's to choose.
            if form and wanted_form and wanted_form[1] is None:
                seen["Kalender"]["form"] = (form[0], None)
            # Only one column of the board is in sight.
            tasks, wanted_tasks = seen["To-Do"], wanted["To-Do"]
            if "columns" in tasks and "columns" in wanted_tasks:
                wanted_tasks["columns"] = {label: wanted_tasks["columns"][label] for label in tasks["columns"]}
            return seen == wanted
        self.desk.wait(agrees, lambda: "the cards differ from the model\n" + differences(wanted, seen))

    def judge_disk(self):
        wanted, there = self.model.stored(), self.desk.stored()
        if wanted != there:
            raise Disagreement("the disk differs from the model\n" + differences(wanted, there))

    def wait_stored(self):
        """Waits until the disk is as the model, for what is only shown to be under way."""
        there = None

        def agrees():
            nonlocal there
            there = self.desk.stored()
            return there == self.model.stored()
        self.desk.wait(agrees, lambda: "the disk differs from the model\n" + differences(self.model.stored(), there))

    # --- the panel and the process

    def show(self):
        self.desk.show(self.model.side)
        self.model.isShown = True

    def hide(self):
        self.desk.hide(self.model.side)
        self.model.isShown = False

    def kill_and_judge(self):
        self.desk.kill()
        self.model.process_ended()
        self.judge_disk()

    def restart(self):
        # Away from the edge, so that the panel comes when it is called.
        self.desk.leave(self.model.side)
        self.desk.start()

    def report(self, error, folder):
        """Says what there is to say about a failure, and keeps what there is to see."""
        self.desk.keep(folder)
        print(f"seed {self.seed} FAILED at step {self.steps}: {error}")
        print(f"the last of {len(self.log)} actions:")
        print("\n".join(self.log[-SHOWN_ACTIONS:]))
        print("the model says", self.model.stored(), self.model.shown())
        try:
            print("the disk says", self.desk.stored())
        except (OSError, ValueError, KeyError) as problem:
            print(f"the disk cannot be read: {problem!r}")
        print(f"kept: {folder}")


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
    parser.add_argument("--tally", action="store_true", help="says how often each action was done")
    parser.add_argument("--without", nargs="*", default=[], help="actions to leave out, to narrow a failure down")
    arguments = parser.parse_args()
    for name in arguments.without:
        del actions[name]
    if not arguments.program:
        parser.error("--program or QUILLBAR has to name the built program")
    seed = random.SystemRandom().randrange(10**6) if arguments.seed is None else arguments.seed
    seconds = arguments.seconds or (None if arguments.steps else 600)
    print(f"seed {seed}", flush=True)

    walk = Walk(os.path.abspath(arguments.program), seed)
    try:
        walk.run(seconds, arguments.steps)
    except Exception as error:
        walk.report(error, os.path.join(arguments.keep or tempfile.gettempdir(), f"walk-{seed}"))
        if not isinstance(error, AssertionError):
            raise
        return 1
    finally:
        walk.desk.close()
    if arguments.tally:
        counts = collections.Counter(line.split()[1] for line in walk.log if ":" in line)
        print(", ".join(f"{name} {count}" for name, count in counts.most_common()))
    print(f"seed {seed}: {walk.steps} actions, {walk.desk.words} words, {walk.desk.kills} kills, nothing lost")
    return 0


if __name__ == "__main__":
    sys.exit(main())
