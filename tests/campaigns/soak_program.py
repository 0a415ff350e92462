#!/usr/bin/python3
"""Shows and hides the built program for long, uses its cards, and looks whether it grows.

Usage: soak_program.py <program> [minutes [seed]]

All cards are there, the lights are on. Between the shows tasks are typed and taken back, cards are scrolled, the
calendar file and the notes are changed by another program, and window manager and compositor are killed, or
stopped for a moment, at random. What is measured while the panel is hidden: private memory, descriptors, threads,
windows on the X server and the server's memory. A line every minute; at the end the last third is compared with
the second.
"""

import os
import random
import re
import signal
import statistics
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "system"))
from virtual_desktop import VirtualDesktop, wait_for  # noqa: E402

ACTIVATE = ("gdbus", "call", "--session", "--dest", "com.randblatt.Quillbar", "--object-path",
            "/com/randblatt/Quillbar", "--method", "org.freedesktop.Application.ActivateAction")
THEME = {"frosted": True, "tint": {"r": 0.2, "g": 0.2, "b": 0.5}, "tintStrength": 0.3, "darkness": 0.6, "blur": 13,
         "lightsEnabled": True, "lightColor": {"r": 0, "g": 0.1, "b": 1}, "lightsIntensity": 0.5, "textWhite": True,
         "haloStrength": 0.3, "textScale": 1}
CALENDAR = """BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:{0}\r\nDTSTART:{1}T{2:02}0000Z\r
SUMMARY:Termin {0}\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n"""

# What may come and go with caches and render threads.
TOLERANCE = {"MiB": 6.0, "descriptors": 4, "threads": 3, "windows": 2, "X MiB": 6.0}


def memory(pid):
    text = Path(f"/proc/{pid}/smaps_rollup").read_text()
    return sum(int(size) for size in re.findall(r"^Private_(?:Clean|Dirty):\s+(\d+)", text, re.M)) / 1024


def measured(desktop, pid):
    tree = desktop.run("xwininfo", "-root", "-tree")
    return {"MiB": memory(pid), "descriptors": len(os.listdir(f"/proc/{pid}/fd")),
            "threads": len(os.listdir(f"/proc/{pid}/task")),
            "windows": len(re.findall(r"^\s+0x", tree, re.M)), "X MiB": memory(desktop._server.pid)}


def disturb(desktop, draw, services):
    name = draw.choice(sorted(services))
    program = services[name]
    if draw.random() < 0.5:
        program.process.send_signal(signal.SIGSTOP)
        time.sleep(0.3)
        program.process.send_signal(signal.SIGCONT)
    else:
        program.process.kill()
        program.terminate()
        services[name] = desktop.start_compositor() if name == "picom" else desktop.start_window_manager(name)


def use(desktop, draw, number):
    action = draw.randrange(5)
    if action == 0:
        desktop.type(f"Aufgabe {number}")
        desktop.key("Return")
        time.sleep(0.2)
        desktop.key("ctrl+z")
    elif action == 1:
        desktop.move(200, draw.randint(100, 800))
        desktop.scroll(draw.choice((-3, 3)))
    elif action == 2:
        day = time.strftime("%Y%m%d")
        (desktop.data_home / "quillbar/calendar.ics").write_text(CALENDAR.format(number, day, draw.randrange(24)))
    elif action == 3:
        note = desktop.data_home / f"quillbar/notes/Notizen/fremd{number % 20}.html"
        note.parent.mkdir(parents=True, exist_ok=True)
        note.write_text(f"<title>Notiz {number}</title><p>Absatz</p>" * draw.randint(1, 50))
    else:
        desktop.right_click(200, draw.randint(100, 800))
        time.sleep(0.2)
        desktop.key("Escape")


def main():
    program = sys.argv[1]
    minutes = float(sys.argv[2]) if len(sys.argv) > 2 else 120
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else 20261123
    draw = random.Random(seed)
    samples = []
    shows = disturbances = 0
    with VirtualDesktop(window_manager=None) as desktop:
        desktop._window_manager = "openbox"
        services = {"openbox": desktop.start_window_manager("openbox"), "picom": desktop.start_compositor()}
        desktop.store(hasOnboarded=True, enabledModuleIDs=["todo", "notes", "calendar", "spotify"],
                      notesMode="apple", globalTheme=THEME)
        running = desktop.start([program])
        wait_for(lambda: desktop.windows("^Quillbar$"), timeout=60, message=lambda: "no panel\n" + running.log)
        end = time.monotonic() + minutes * 60
        next_sample = 0.0
        while time.monotonic() < end:
            for action in ("show", "hide"):
                desktop.run(*ACTIVATE, action, "@av []", "@a{sv} {}")
                shows += action == "show"
                if action == "show":
                    wait_for(lambda: desktop.windows("^Quillbar$"), timeout=30, message="not shown")
                    use(desktop, draw, shows)
                    desktop.move(900, 450)
            wait_for(lambda: not desktop.windows("^Quillbar$"), timeout=30, message="not hidden")
            if not running.is_running():
                sys.exit("the program is gone:\n" + running.log[-2000:])
            if draw.random() < 0.05:
                disturb(desktop, draw, services)
                disturbances += 1
            if time.monotonic() > next_sample:
                next_sample = time.monotonic() + min(60.0, minutes)
                samples.append(measured(desktop, running.pid))
                print(f"{shows} shows: " + ", ".join(f"{value:.1f} {name}" for name, value in
                                                          samples[-1].items()), flush=True)
    third = len(samples) // 3
    grown = [] if third else ["too short to tell"]
    for name, tolerance in TOLERANCE.items():
        before = statistics.median(sample[name] for sample in samples[third:2 * third] or samples)
        after = statistics.median(sample[name] for sample in samples[2 * third:])
        if after > before + tolerance:
            grown.append(f"{name} from {before:.1f} to {after:.1f}")
    print(f"{minutes:g} minutes, {shows} shows, {disturbances} disturbances (seed {seed}); "
          f"grown: {', '.join(grown) or 'nothing'}")
    sys.exit(1 if grown else 0)


if __name__ == "__main__":
    main()
