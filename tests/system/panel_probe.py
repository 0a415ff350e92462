"""Drives the probe program: one line in, one line of JSON out."""

import json
import os
import queue
import subprocess
import threading

from virtual_desktop import DEFAULT_TIMEOUT, wait_for


class Probe:
    """A panel window, or with plain=True another application's window."""

    def __init__(self, desktop, plain=False, env=None):
        arguments = [os.environ["PANEL_PROBE"]] + (["plain"] if plain else [])
        self._program = desktop.start(arguments, env, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._desktop = desktop
        self._answers = queue.Queue()
        self.events = []
        threading.Thread(target=self._read, daemon=True).start()
        self.window = self.ask("state")["window"]

    def _read(self):
        for line in self._program.process.stdout:
            message = json.loads(line)
            if "event" in message:
                self.events.append(message)
            else:
                self._answers.put(message)

    def ask(self, command, *numbers):
        """Runs a command; returns the probe's state after it."""
        line = " ".join([command, *map(str, numbers)]) + "\n"
        self._program.process.stdin.write(line.encode())
        self._program.process.stdin.flush()
        return self._answers.get(timeout=DEFAULT_TIMEOUT)

    def state(self, name):
        return self.ask("state")[name]

    def show(self, *frame):
        self.ask("frame", *frame)
        self.ask("front")
        wait_for(lambda: self.state("exposed"), message="window does not appear")

    def wait_until_active(self):
        wait_for(lambda: self.state("active"), message=lambda: f"{self.window} does not become active, "
                 f"{self._desktop.active_window()} is")

    def wait_for_geometry(self, *expected):
        wait_for(lambda: self._desktop.geometry(self.window) == expected,
                 message=lambda: f"{self._desktop.geometry(self.window)} instead of {expected}")

    def quit(self):
        self.ask("quit")
        return self._program.wait()
