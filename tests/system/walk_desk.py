"""The hands and eyes of a walk through the built program: keys, pointer, what is shown, and what is on the disk."""

import html.parser
import http.client
import json
import os
import re
import shutil
import signal
import subprocess
import time
import urllib.parse
from datetime import datetime, timezone
from pathlib import Path
from zoneinfo import ZoneInfo

import accessibility
from calendar_file import events
from music_service import MusicService
from virtual_desktop import POLL_INTERVAL, VirtualDesktop

SCREEN = (1440, 1560)
# Of the same screen, with one that is lower in its place.
SMALLER_SCREEN = (1440, 1500)
ZONE = ZoneInfo("Europe/Berlin")
# With other programs beside it, a machine may take its time.
PATIENCE = 30.0
# What no run may write.
COMPLAINT = re.compile(r"\.qml:\d+|ASSERT|TypeError|ReferenceError|terminate called|Binding loop")


class Disagreement(AssertionError):
    """What stands there is not what the model says."""


class NoteReader(html.parser.HTMLParser):
    """The title and the plain text of a note's file, as another program would read it."""

    def __init__(self, text):
        super().__init__()
        self._inside = []
        self.title = ""
        self.text = ""
        self.feed(text)

    def handle_starttag(self, tag, _):
        if tag == "br":
            self.text += "\n"
        elif tag in ("title", "body"):
            self._inside.append(tag)
        elif tag in ("p", "div") and self.text:
            self.text += "\n"

    def handle_endtag(self, tag):
        if self._inside and tag == self._inside[-1]:
            self._inside.pop()

    def handle_data(self, data):
        if self._inside == ["title"]:
            self.title += data
        elif self._inside == ["body"]:
            # The lines of the source are none of the text's.
            self.text += data.replace("\n", "").replace("\xa0", " ")


class Desk:
    def __init__(self, program):
        self.desktop = VirtualDesktop(screens=(SCREEN,), compositor=True)
        self._program = self._without_helper(Path(program))
        self.desktop.store(hasOnboarded=True, enabledModuleIDs=["todo", "calendar", "notes", "spotify"],
                           todoViewMode="list", notesMode="scratch", mediaSource="spotify", sp_refresh="refresh-0",
                           # Everything in sight, on either screen.
                           moduleHeights={"spotify": 400.0, "todo": 320.0, "calendar": 240.0, "notes": 320.0},
                           launchAtLogin=False)
        self.music = MusicService(self.desktop, Path(program).with_name("spotify-stand-in"), "--tracks", "9")
        self.folder = self.desktop.data_home / "quillbar"
        self._bus = accessibility.start_bus(self.desktop)
        self.program = None
        self._application = None
        self.kills = 0
        self.words = 0

    def close(self):
        self.desktop.close()

    def _without_helper(self, program):
        """The program where it finds no web engine, which would be started anew after every kill."""
        folder = self.desktop.folder / "program/bin"
        folder.mkdir(parents=True)
        (folder.parent / "lib").symlink_to(program.parent.parent / "lib")
        copy = folder / program.name
        try:
            os.link(program, copy)
        except OSError:
            shutil.copy2(program, copy)
        return str(copy)

    # --- the process

    def start(self):
        self.program = self.desktop.start([self._program],
                                          env={**accessibility.ENVIRONMENT, **self.music.environment()})
        self._application = accessibility.Application(self._bus, self.program.pid)
        self.wait(self.windows, "the program does not answer")

    def kill(self):
        """Ends the process without a word to it."""
        self.program.process.send_signal(signal.SIGKILL)
        self.program.wait()
        self.kills += 1
        self._gone()

    def quit(self):
        self.program.process.send_signal(signal.SIGTERM)
        code = self.program.wait(PATIENCE)
        if code != 0:
            raise Disagreement(f"the program ended with {code}")
        self._gone()

    def _gone(self):
        self._application.close()
        self._application = None
        self.check_log()

    def check_log(self):
        found = COMPLAINT.search(self.program.log)
        if found:
            line = next(line for line in self.program.log.splitlines() if found.group() in line)
            raise Disagreement(f"the program wrote: {line}")

    # --- waiting

    def wait(self, condition, message):
        end = time.monotonic() + PATIENCE
        while True:
            if self.program and self.program.process.poll() is not None:
                raise Disagreement(f"the program ended with {self.program.process.returncode}\n{self.program.log}")
            try:
                value = condition()
            except accessibility.Unreachable:
                value = None
            if value:
                return value
            if time.monotonic() > end:
                raise Disagreement(message() if callable(message) else message)
            time.sleep(POLL_INTERVAL)

    # --- what is seen

    def window(self, pattern="Quillbar"):
        """The window of this title, or None."""
        return next((window for window in self.windows() if window.role == "frame" and window.has("showing")
                     and re.fullmatch(pattern, window.name)), None)

    def card(self, title):
        panel = self.window()
        return panel.first("panel", title) if panel else None

    def windows(self):
        return self._application.windows()

    def frames(self, nodes):
        return self._application.frames(nodes)

    def frame(self, find):
        """The place of what find() gives, once it rests."""
        former = None

        def rests():
            nonlocal former
            node = find()
            present = self.frames([node])[0] if node else None
            same = present is not None and present == former
            former = present
            return present if same else None
        return self.wait(rests, lambda: f"nothing there to click:\n{self.window()}")

    def click(self, find, button=1, repeat=1, at=None):
        """Clicks into the middle of what find() gives, or at a part of its width."""
        x, y, width, height = self.frame(find)
        place = x + (width // 2 if at is None else round(width * at))
        self.desktop.click(place, y + height // 2, button=button, repeat=repeat)

    def read_tasks(self):
        card = self.card("To-Do")
        shown = {"field": card.first("text", "Neue Aufgabe…").text}
        board = card.first("panel", "Kanban-Tafel")
        if board:
            columns = [(re.fullmatch(r"(.*), (\d+)", column.name), column) for column in board.children]
            shown["counts"] = {match.group(1): int(match.group(2)) for match, _ in columns}
            # The others are out of sight.
            label = list(shown["counts"])[self.shown_column()]
            shown["columns"] = {label: [row.name for row in self.task_rows(card, label)]}
        else:
            rows = self.task_rows(card)
            done = [node for node in card.first("list", "Aufgaben").children
                    if node.name == "Erledigt" and node.has("showing")]
            # Below the heading are the done ones.
            places = self.frames(rows + done)
            border = places[-1][1] if done else float("inf")
            shown["rows"] = [(row.name, place[1] > border) for row, place in zip(rows, places)]
            editors = [editor.text for row in rows for editor in row.find("text")]
            shown["editor"] = editors[0] if editors else None
        return shown

    def task_rows(self, card, column=None):
        """The rows of the list, or of a column of the board, as they stand; the tree has them as they were made."""
        name, button = (column, "Aktionen: .*") if column else ("Aufgaben", "Erledigt: .*")
        rows = [row for row in card.first("list", name).children if row.has("visible") and row.first(name=button)]
        places = self.frames(rows)
        return [rows[index] for index in sorted(range(len(rows)), key=lambda index: places[index][1])]

    def shown_column(self):
        """The number of the column that the board shows."""
        board = self.card("To-Do").first("panel", "Kanban-Tafel")
        left, *places = self.frames([board] + board.children)
        return min(range(len(places)), key=lambda index: abs(places[index][0] - left[0]))

    def note_rows(self):
        """The notes in the list, and those above it that are not saved."""
        card = self.card("Notizen")
        folders = card.first("list", "Ordner")
        hidden = {row.path for row in folders.children} if folders else set()
        return [row for row in card.find("list item") if row.has("visible") and row.path not in hidden]

    def note_row(self, name):
        return next((row for row in self.note_rows() if row.name == name), None)

    def note_editor(self):
        return next((node for node in self.card("Notizen").find("text") if node.has("showing")), None)

    def read_notes(self):
        card = self.card("Notizen")
        pad = card.first("text", "Notizzettel")
        if pad and pad.has("showing"):
            return {"pad": plain(pad.text)}
        heading = next(node for node in card.find("heading") if node.name != "Ordner")
        texts = [node for node in card.find("text") if node.has("showing")]
        if heading.name == "Neue Notiz" and len(texts) == 2:
            return {"composer": (texts[0].text, plain(texts[1].text))}
        if texts:
            return {"note": heading.name, "text": plain(texts[0].text)}
        return {"names": sorted(row.name for row in self.note_rows())}

    def read_events(self):
        card = self.card("Kalender")
        form = None
        title = card.first("text", "Titel")
        if card.first(name="Formular schließen"):
            form = (title.text, card.first("text", "Beginn").text)
        rows = [row.name.rsplit(", ", 1)[0] for row in card.find("list item") if row.has("visible")]
        return {"form": form, "titles": sorted(rows)}

    def read_music(self):
        card = self.card("Spotify")
        naming = card.first(name="Abbrechen")
        if naming:
            return {"naming": next(node for node in card.find("text") if node.has("showing")).text}
        return {"playlists": [row.name for row in self.playlist_rows()]}

    def playlist_rows(self):
        """The playlists below the saved tracks, as they stand."""
        rows = [row for row in self.card("Spotify").first("list", "Playlists").children if row.has("visible")
                and re.search(r", \d+ Titel$", row.name)]
        places = self.frames(rows)
        return [rows[index] for index in sorted(range(len(rows)), key=lambda index: places[index][1])]

    def read(self):
        return {"To-Do": self.read_tasks(), "Notizen": self.read_notes(), "Kalender": self.read_events(),
                "Spotify": self.read_music()}

    # --- what is on the disk

    def stored(self):
        preferences = self.desktop.preferences()
        tasks = sorted(json.loads(preferences.get("todoItems.v1", b"[]")), key=lambda task: task["order"])
        notes = [NoteReader(path.read_text(encoding="utf-8")) for path in self.note_files()]
        return {"tasks": [(task["title"], task["status"]) for task in tasks],
                "pad": preferences.get("notesScratch", ""),
                "notes": sorted((note.title, note.text) for note in notes),
                "events": sorted((unescaped(event["SUMMARY"]), local(event["DTSTART"]))
                                 for event in events(self.folder / "calendar.ics")),
                "playlists": self.service_playlists(preferences.get("sp_access", ""))}

    def music_total(self, name):
        """The number of tracks that the music service has in a playlist."""
        token = self.desktop.preferences().get("sp_access", "")
        return next(total for title, total in self.service_playlists(token) if title == name)

    def service_playlists(self, token):
        """The names and numbers of tracks that the music service has."""
        connection = http.client.HTTPConnection(urllib.parse.urlsplit(self.music.url).netloc, timeout=PATIENCE)
        connection.request("GET", "/v1/me/playlists?limit=50", headers={"Authorization": f"Bearer {token}"})
        answer = json.load(connection.getresponse())
        connection.close()
        return [(playlist["name"], playlist["tracks"]["total"]) for playlist in answer["items"]]

    def note_files(self):
        return sorted((self.folder / "notes/Notizen").glob("*.html"))

    def deleted_notes(self):
        """The texts of the notes that were put aside."""
        files = (self.folder / "notes/Zuletzt gelöscht").glob("*.html")
        return [NoteReader(path.read_text(encoding="utf-8")).text for path in files]

    # --- hands

    def show(self, side):
        width = self.desktop.screens[0][0]
        self.desktop.move(0 if side == "left" else width - 1, 600)
        self.wait(lambda: self.card("To-Do") and self.card("Kalender") and self.card("Notizen")
                  and self.card("Spotify") and self.desktop.windows("^Quillbar$"), "the panel does not come")

    def leave(self, side):
        """Moves the pointer to where no panel reaches."""
        width = self.desktop.screens[0][0]
        self.desktop.move(width - 300 if side == "left" else 300, 1100)

    def hide(self, side):
        self.leave(side)
        self.wait_hidden()

    def wait_hidden(self):
        self.wait(lambda: not self.desktop.windows("^Quillbar$"), "the panel does not go")
        # The program looks where the pointer is every 80 ms.
        time.sleep(0.3)

    def has_keyboard(self):
        panels = self.desktop.windows("^Quillbar$")
        return bool(panels) and self.desktop.active_window() == panels[0]

    def call(self, action):
        self.desktop.run("gdbus", "call", "--session", "--dest", "com.randblatt.Quillbar", "--object-path",
                         "/com/randblatt/Quillbar", "--method", "org.freedesktop.Application.ActivateAction", action,
                         "@av []", "@a{sv} {}")

    def type(self, text):
        """Types; line feeds are Return."""
        self.words += len(text.split())
        for index, line in enumerate(text.split("\n")):
            if index:
                self.desktop.key("Return")
            if line:
                self.desktop.at_screen("xdotool", "type", "--delay", 8, "--", line)

    def hold_key(self, key):
        """Holds a key for as long as the keyboard takes to repeat it often."""
        self.desktop.at_screen("xdotool", "keydown", key)
        time.sleep(1.2)
        self.desktop.at_screen("xdotool", "keyup", key)

    def typing(self, text):
        """Types aside; returns the process that does."""
        return subprocess.Popen(["xdotool", "type", "--delay", "15", "--", text], env=self.desktop.environment)

    def keep(self, target):
        """Leaves the home folder, the logs and a picture of the screen at target."""
        os.makedirs(target, exist_ok=True)
        try:
            self.desktop.screenshot(os.path.join(target, "screen.png"))
        except RuntimeError as error:
            print(f"no picture: {error}")
        subprocess.run(["cp", "-a", "--no-target-directory", str(self.desktop.folder), target], check=False,
                       capture_output=True)


def plain(text):
    """A document's text with line feeds."""
    return text.replace("\u2029", "\n").replace("\u2028", "\n")


def unescaped(text):
    return re.sub(r"\\(.)", lambda match: "\n" if match.group(1) in "nN" else match.group(1), text)


def local(text):
    moment = datetime.strptime(text, "%Y%m%dT%H%M%SZ").replace(tzinfo=timezone.utc).astimezone(ZONE)
    return moment.strftime("%d.%m.%Y, %H:%M")
