#!/usr/bin/python3
"""Measures the built program on a virtual desktop, beside a bare Qt Quick window of the same size.

Usage: whole_program.py <folder of the executables>

Prints one line per figure. The numbers say what this machine did in this run; nothing is judged here.
"""

import json
import os
import re
import statistics
import subprocess
import sys
import time
import uuid
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests/system"))
from music_service import MusicService  # noqa: E402
from virtual_desktop import VirtualDesktop, wait_for  # noqa: E402

FIRST_FRAME = "Bild gezeigt"
STARTS = 9
TICKS_PER_SECOND = os.sysconf("SC_CLK_TCK")


def cpu_seconds(pid):
    fields = Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / TICKS_PER_SECOND


def wake_ups(pid):
    total = 0
    for status in Path(f"/proc/{pid}/task").glob("*/status"):
        total += int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)", status.read_text(), re.M).group(1))
    return total


def proportional_memory(pid):
    """MiB."""
    rollup = Path(f"/proc/{pid}/smaps_rollup").read_text()
    return int(re.search(r"^Pss:\s+(\d+) kB", rollup, re.M).group(1)) / 1024


def resident_memory(pid):
    """MiB; unlike the proportional figure it does not change with what other programs share."""
    status = Path(f"/proc/{pid}/status").read_text()
    return int(re.search(r"^VmRSS:\s+(\d+) kB", status, re.M).group(1)) / 1024


def start_to_first_frame(desktop, executable, memory_of=proportional_memory):
    """Seconds until the program says that its first frame is shown, and its memory once it has settled, in MiB."""
    begin = time.monotonic()
    program = desktop.start([executable], env={"QT_LOGGING_RULES": "quillbar.panel.debug=true",
                                               "QT_MESSAGE_PATTERN": "%{time boot} %{message}"})
    # By the program's own clock, which is this one: asking for the log again and again would blur the figure.
    shown = wait_for(lambda: re.search(rf"([\d.]+) {FIRST_FRAME}", program.log), message=lambda: program.log)
    seconds = float(shown.group(1)) - begin
    time.sleep(4.0)
    memory = memory_of(program.pid)
    program.terminate()
    return seconds, memory


def compare_starts(desktop, folder):
    names = ("quillbar", "bare-window")
    figures = {name: [] for name in names}
    for _ in range(STARTS):
        for name in names:
            figures[name].append(start_to_first_frame(desktop, str(folder / name)))
    seconds = {name: statistics.median(run[0] for run in figures[name]) for name in names}
    memory = {name: statistics.median(run[1] for run in figures[name]) for name in names}
    pairs = [ours[0] / theirs[0] for ours, theirs in zip(*figures.values())]
    print(f"start to first frame, median of {STARTS}: {seconds['quillbar'] * 1000:.0f} ms, bare window "
          f"{seconds['bare-window'] * 1000:.0f} ms, ratio {statistics.median(pairs):.2f}")
    print(f"proportional memory, median: {memory['quillbar']:.1f} MiB, bare window {memory['bare-window']:.1f} MiB, "
          f"ratio {memory['quillbar'] / memory['bare-window']:.2f}")


def rest(program, label, seconds=15):
    before = cpu_seconds(program.pid), wake_ups(program.pid), program.log.lower().count("frame rendered")
    time.sleep(seconds)
    after = cpu_seconds(program.pid), wake_ups(program.pid), program.log.lower().count("frame rendered")
    cpu, wakes, frames = (end - start for start, end in zip(before, after))
    print(f"{label}: {cpu / seconds * 100:.2f} % of a core, {wakes / seconds:.1f} wake-ups per second, "
          f"{frames} frames in {seconds} s")


def measure_rest(desktop, folder):
    program = desktop.start([str(folder / "quillbar")],
                            env={"QT_LOGGING_RULES": "qt.scenegraph.time.renderloop.debug=true"})
    panel = wait_for(lambda: desktop.windows("^Quillbar$"))[0]
    wait_for(lambda: not desktop.windows("^Quillbar$"))
    time.sleep(1.0)
    rest(program, "hidden")
    measure_slide(desktop, panel)
    time.sleep(1.5)
    rest(program, "open and untouched")
    program.terminate()


def measure_slide(desktop, panel):
    watcher = desktop.start(["xev", "-id", str(panel), "-event", "structure"], stdout=subprocess.PIPE)
    time.sleep(0.5)
    desktop.move(0, 400)
    time.sleep(1.5)
    watcher.process.terminate()
    moves = watcher.process.stdout.read().decode().count("ConfigureNotify")
    print(f"slide in: {moves} steps in 0.22 s, {moves / 0.22:.0f} per second")


def percentile(values, share):
    return sorted(values)[min(len(values) - 1, int(len(values) * share))]


def measure_showing(desktop, folder, label, starts=9, shows=30):
    """The time from the tick that decides to the first frame on the screen, and until the panel has the keyboard: of
    the first show after a start, and of those that follow."""
    figures = {kind: {"frame": [], "keyboard": []} for kind in ("cold", "warm")}

    def events(program, word):
        return [float(time) for time in re.findall(rf"([\d.]+) {word}$", program.log, re.M)]

    def collect(program, kind, number):
        wait_for(lambda: len(events(program, "Bild gezeigt")) >= number and len(events(program, "Tastatur da")) >= number,
                 timeout=30, message=lambda: program.log)
        begin = events(program, "Einblenden")[number - 1]
        for name, word in (("frame", "Bild gezeigt"), ("keyboard", "Tastatur da")):
            figures[kind][name].append((events(program, word)[number - 1] - begin) * 1000)

    for start in range(starts):
        program = desktop.start([str(folder / "quillbar")], env={"QT_LOGGING_RULES": "quillbar.panel.debug=true",
                                                                 "QT_MESSAGE_PATTERN": "%{time boot} %{message}"})
        collect(program, "cold", 1)
        time.sleep(4.0)
        if start == starts - 1:
            for number in range(2, shows + 2):
                desktop.move(0, 400)
                collect(program, "warm", number)
                time.sleep(0.4)
                desktop.move(900, 400)
                time.sleep(0.6)
        program.terminate()
    for kind, times in figures.items():
        for name, values in times.items():
            print(f"{label}, {kind}, decision to {name}: median {statistics.median(values):.1f} ms, 95th percentile "
                  f"{percentile(values, 0.95):.1f} ms of {len(values)}")


def open_many_tasks(desktop, folder, count=10_000):
    tasks = [{"id": str(uuid.uuid4()).upper(), "title": f"Aufgabe {number}", "status": "backlog",
              "createdAt": 784111777.5, "order": number} for number in range(1, count + 1)]
    desktop.store(**{"todoItems.v1": json.dumps(tasks).encode()})
    seconds = [start_to_first_frame(desktop, str(folder / "quillbar"))[0] for _ in range(5)]
    desktop.store(**{"todoItems.v1": b"[]"})
    empty = [start_to_first_frame(desktop, str(folder / "quillbar"))[0] for _ in range(5)]
    print(f"start to first frame with {count} tasks: {statistics.median(seconds) * 1000:.0f} ms, without "
          f"{statistics.median(empty) * 1000:.0f} ms")


def compare_media_memory(desktop, folder, runs=5):
    """What the media card costs with the system's media control."""
    modules = {"with": ["todo", "spotify"], "without": ["todo"]}
    figures = {name: [] for name in modules}
    for _ in range(runs):
        for name, enabled in modules.items():
            desktop.store(enabledModuleIDs=enabled, mediaSource="system")
            figures[name].append(start_to_first_frame(desktop, str(folder / "quillbar"), resident_memory)[1])
    memory = {name: statistics.median(values) for name, values in figures.items()}
    print(f"resident memory with the media card: {memory['with']:.1f} MiB, without {memory['without']:.1f} MiB")


def scroll_many_tracks(desktop, folder, count=10_000):
    service = MusicService(desktop, folder / "spotify-stand-in", "--tracks", str(count))
    desktop.store(enabledModuleIDs=["spotify"], mediaSource="spotify", alwaysVisible=True, sp_refresh="refresh-0")
    program = desktop.start([str(folder / "quillbar")], env={
        **service.environment(), "QT_LOGGING_RULES": "qt.scenegraph.time.renderloop.debug=true"})
    service.wait_for("GET /v1/me/playlists")
    time.sleep(1.0)
    desktop.click(200, 211)
    opened = time.monotonic()
    wait_for(lambda: len(service.requests()) > count // 100 and f"offset={count}" in service.requests()[-1]["query"],
             timeout=60, message=lambda: f"{len(service.requests())} requests")
    loaded = time.monotonic() - opened
    time.sleep(0.5)
    before = len(program.log)
    for notches in (150, -150):
        desktop.scroll(notches)
    frames = sorted(int(number) for number in re.findall(r"frame rendered in (\d+)ms", program.log[before:]))
    print(f"{count} tracks loaded in {loaded:.1f} s; scrolling them: {len(frames)} frames, median "
          f"{statistics.median(frames):.0f} ms, 99th percentile {frames[len(frames) * 99 // 100]} ms, longest "
          f"{frames[-1]} ms, {sum(frame > 16 for frame in frames)} longer than 16 ms")
    program.terminate()


def main():
    folder = Path(sys.argv[1])
    with VirtualDesktop(compositor=True) as desktop:
        desktop.store(hasOnboarded=True)
        compare_starts(desktop, folder)
        measure_rest(desktop, folder)
        measure_showing(desktop, folder, "showing on X11")
        open_many_tasks(desktop, folder)
        compare_media_memory(desktop, folder)
        scroll_many_tracks(desktop, folder)
    os.environ.setdefault("VIRTUAL_SEAT", str(folder / "virtualseat"))
    from wayland_desktop import WaylandDesktop, missing_programs
    if missing_programs() or not Path(os.environ["VIRTUAL_SEAT"]).exists():
        print("showing on sway: not measured, something is missing")
        return
    with WaylandDesktop() as desktop:
        desktop.store(hasOnboarded=True)
        measure_showing(desktop, folder, "showing on sway")


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main()
