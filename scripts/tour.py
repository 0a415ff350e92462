#!/usr/bin/python3
"""Goes through the program on a virtual desktop as a person would, and leaves screenshots.

Usage: tour.py <folder of the executables> <folder for the screenshots>
"""

import sys
import time
from datetime import datetime, timedelta
from pathlib import Path

from PIL import Image, ImageDraw, ImageFilter

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests/system"))
from music_service import MusicService, install_browser  # noqa: E402
from tour_desktops import visit_desktops  # noqa: E402
from virtual_desktop import AS_A_PERSON, VirtualDesktop, wait_for  # noqa: E402

SCREEN = (1440, 900)
FONTS = """<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <alias binding="strong"><family>sans-serif</family><prefer><family>Inter</family></prefer></alias>
</fontconfig>
"""
TASKS = ["Angebot für die Werkstatt schreiben", "Milch, Brot und Kaffee kaufen",
         "Steuerunterlagen sortieren und abheften, bevor das Jahr zu Ende geht", "Fahrrad zur Inspektion"]
FROSTED = {"frosted": True, "tint": {"r": 0.42, "g": 0.2, "b": 0.6}, "tintStrength": 0.28, "darkness": 0.3,
           "blur": 40, "lightsEnabled": True, "lightColor": {"r": 0.95, "g": 0.4, "b": 0.3},
           "lightsIntensity": 0.45, "textWhite": True, "haloStrength": 0.29, "textScale": 1.0}
NOTES = {"Notizen": ("Einkaufsliste", "Tomaten\nMozzarella\nBasilikum"),
         "Arbeit": ("Gesprächsleitfaden für das Interview am Donnerstag mit der neuen Kollegin",
                    "Vorher: Lebenslauf lesen\nFragen zur letzten Stelle"),
         "Reisen": ("Packliste Ostsee", "Regenjacke\nFernglas")}
# Days from today, start and end of the day or none, title.
EVENTS = [(0, None, None, "Messewoche"), (0, "20:30", "22:00", "Kino: „Der Sommer“ mit Ana und Jakob"),
          (1, "08:15", "09:00", "Zahnarzt"), (1, "14:00", "15:30", "Planung des Frühlingsheftes mit der Redaktion in Halle 3"),
          (3, "18:00", "19:00", "Lauftreff"), (5, None, None, "Geburtstag Oma")]
# What more is known of one of them.
DETAILS = {"Kino: „Der Sommer“ mit Ana und Jakob": [
    "LOCATION:Kino am Markt\\, Saal 2", "ATTENDEE;CN=Ana;PARTSTAT=ACCEPTED:mailto:ana@example.org",
    "ATTENDEE;CN=Jakob;PARTSTAT=TENTATIVE:mailto:jakob@example.org",
    "CONFERENCE;VALUE=URI:https://meet.example.org/kino",
    "DESCRIPTION:Karten liegen an der Kasse.\\nProgramm: https://example.org/programm"]}
BRIGHT = {"frosted": True, "tint": {"r": 1.0, "g": 1.0, "b": 1.0}, "tintStrength": 0.35, "darkness": 0.0,
          "blur": 13, "lightsEnabled": False, "lightColor": {"r": 0.0, "g": 0.11, "b": 1.0},
          "lightsIntensity": 0.0, "textWhite": False, "haloStrength": 0.29, "textScale": 1.0}


def write_calendar(path):
    """The events, as an iCalendar file (RFC 5545)."""
    lines = ["BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//Quillbar//Rundgang//DE", "X-WR-CALNAME:Privat"]
    for number, (day, start, end, title) in enumerate(EVENTS):
        date = datetime.now() + timedelta(days=day)
        times = [f"DTSTART;VALUE=DATE:{date:%Y%m%d}"]
        if start:
            times = [f"{name}:{date:%Y%m%d}T{time.replace(':', '')}00" for name, time in
                     (("DTSTART", start), ("DTEND", end))]
        lines += ["BEGIN:VEVENT", f"UID:{number}", "DTSTAMP:20260101T000000Z", *times, f"SUMMARY:{title}",
                  *DETAILS.get(title, []), "END:VEVENT"]
    path.write_bytes("\r\n".join([*lines, "END:VCALENDAR", ""]).encode())


def choose_fonts(desktop):
    fonts = desktop.config_home / "fontconfig"
    fonts.mkdir(exist_ok=True)
    (fonts / "fonts.conf").write_text(FONTS)


def paint_wallpaper(path):
    """A colourful picture with soft light in it, so that glass has something to show."""
    small = (SCREEN[0] // 8, SCREEN[1] // 8)
    picture = Image.new("RGB", small, "#3d4a78")
    draw = ImageDraw.Draw(picture)
    for x, y, radius, colour in ((0.1, 0.0, 70, "#4f74c8"), (1.0, 0.2, 60, "#d08468"), (0.62, 1.0, 55, "#3a9486"),
                                 (0.3, 0.9, 40, "#2a3a68"), (0.55, 0.3, 30, "#7a6a96")):
        centre = (x * small[0], y * small[1])
        draw.ellipse([centre[0] - radius, centre[1] - radius, centre[0] + radius, centre[1] + radius], colour)
    picture.filter(ImageFilter.GaussianBlur(22)).resize(SCREEN, Image.BICUBIC).save(path)


def paint_cover(path):
    """A record's cover: a sun over the sea."""
    picture = Image.new("RGB", (300, 300), "#f2b880")
    draw = ImageDraw.Draw(picture)
    draw.ellipse([90, 70, 210, 190], "#e4572e")
    draw.rectangle([0, 150, 300, 300], "#17405c")
    for y in range(165, 300, 22):
        draw.line([(40 + y % 60, y), (200 + y % 90, y)], "#3a7ca5", 5)
    picture.save(path)


class Tour:
    def __init__(self, executables, target):
        self.executables = Path(executables)
        self.target = Path(target)
        self.target.mkdir(parents=True, exist_ok=True)
        for old in self.target.glob("*.png"):
            old.unlink()
        self.desktop = VirtualDesktop(screens=[SCREEN], compositor=True)
        choose_fonts(self.desktop)
        self.picture = self.desktop.folder / "wallpaper.png"
        paint_wallpaper(self.picture)
        self.desktop.set_wallpaper(self.picture)
        self.program = None
        self.count = 0

    # --- what a person does

    def shot(self, name):
        self.count += 1
        self.keep(f"{self.count:02}-{name}", self.desktop)

    def keep(self, name, desktop):
        path = self.target / f"{name}.png"
        desktop.screenshot(path)
        print(path, flush=True)

    def settle(self, seconds=0.5):
        """Lets animations end."""
        time.sleep(seconds)

    def panel(self):
        return self.desktop.windows("^Quillbar$")

    def start(self, env=None):
        self.program = self.desktop.start([*AS_A_PERSON, str(self.executables / "quillbar")], env=env)
        wait_for(self.panel, message=lambda: "no panel: " + self.program.log)

    def stop(self):
        if self.program:
            self.program.terminate()
        self.program = None

    def configure(self, env=None, **preferences):
        """Changes stored preferences while the program is not running."""
        self.stop()
        self.desktop.store(**preferences)
        self.start(env)

    def reveal(self, side="left"):
        self.desktop.move(0 if side == "left" else SCREEN[0] - 1, 450)
        wait_for(self.panel, message="the panel does not come")
        self.settle()

    def leave(self):
        self.desktop.move(720, 450)
        wait_for(lambda: not self.panel(), message="the panel does not go")

    # --- the stations

    def first_start(self):
        before = self.desktop.screenshot()
        self.start()
        wait_for(lambda: self.desktop.screenshot() != before, message="nothing to see")
        self.settle()
        window = wait_for(lambda: self.desktop.windows("^Willkommen bei Quillbar$"), message="no welcome")[0]
        wait_for(lambda: self.panel() and self.desktop.geometry(self.panel()[0])[0] == 0, message="no peek")
        self.settle(0.2)
        self.shot("erster-start")
        left, top, width, height = self.desktop.geometry(window)
        self.desktop.click(left + width // 2, top + height - 51)
        wait_for(lambda: not self.desktop.windows("^Willkommen"), message="the welcome stays")
        self.leave()

    def board(self):
        self.desktop.move(0, 450)
        wait_for(lambda: any(self.desktop.geometry(panel)[0] > -440 for panel in self.panel()),
                 message="the panel does not come")
        self.shot("gleitet-herein")
        self.settle()
        self.desktop.move(200, 700)
        for task in TASKS:
            self.desktop.type(task)
            self.desktop.key("Return")
        self.settle()
        self.shot("tafel")

    def quick_settings(self):
        self.desktop.right_click(60, 60)
        self.settle(0.8)
        self.shot("schnelleinstellungen")
        self.desktop.key("Escape")
        self.settle()

    def task_list(self):
        self.leave()
        self.configure(todoViewMode="list")
        self.reveal()
        self.desktop.move(200, 160)
        self.settle()
        self.shot("liste")
        self.leave()

    def looks(self):
        self.configure(globalTheme=FROSTED, sidebarSide="right")
        self.reveal("right")
        self.shot("milchglas-rechts")
        self.leave()
        for name, colour in (("weiss", "#ffffff"), ("schwarz", "#000000")):
            self.desktop.set_wallpaper(colour)
            self.configure(globalTheme={**FROSTED, "frosted": False, "tintStrength": 0.0, "darkness": 0.7,
                                        "lightsIntensity": 0.0}, sidebarSide="left")
            self.reveal()
            self.shot(f"standard-auf-{name}")
            self.leave()
        self.desktop.set_wallpaper(self.picture)
        self.configure(globalTheme=BRIGHT)
        self.reveal()
        self.shot("dunkler-text")
        self.leave()

    def settings(self):
        self.configure(globalTheme=FROSTED, alwaysVisible=True)
        self.settle(1)
        self.desktop.run("gdbus", "call", "--session", "--dest", "com.randblatt.Quillbar", "--object-path",
                         "/com/randblatt/Quillbar", "--method", "org.freedesktop.Application.ActivateAction",
                         "settings", "@av []", "@a{sv} {}")
        wait_for(lambda: self.desktop.windows("^Einstellungen"), message="no settings")
        for tab in ("allgemein", "module", "design", "spotify"):
            self.settle()
            self.shot(f"einstellungen-{tab}")
            self.desktop.key("ctrl+Next")
        # Back to the design, past its scope to the style, and another one; the panel behind follows.
        self.desktop.key("ctrl+Next", "ctrl+Next", "Tab", "Tab", "Right")
        self.settle(0.8)
        self.shot("design-geaendert")
        self.desktop.key("Escape")
        self.configure(alwaysVisible=False)
        self.leave()

    def notes(self):
        """Both modes of the notes, in a card alone; its places follow from the card's size."""
        content = 72
        self.configure(enabledModuleIDs=["notes"], notesMode="scratch", alwaysVisible=True)
        self.settle(1)
        self.shot("notizzettel-leer")
        self.desktop.click(200, content + 80)
        self.desktop.type("Ideen fürs Wochenende:")
        self.desktop.key("Return")
        self.desktop.type("– Kajak mieten, falls das Wetter hält")
        self.settle()
        self.shot("notizzettel")
        library = self.desktop.data_home / "quillbar/notes"
        for folder, (name, text) in NOTES.items():
            (library / folder).mkdir(parents=True, exist_ok=True)
            lines = "".join(f"<div>{line}</div>" for line in text.split("\n"))
            (library / folder / f"{folder}.html").write_text(
                f"<!DOCTYPE html><html><head><meta charset='utf-8'><title>{name}</title></head>"
                f"<body>{lines}</body></html>", encoding="utf-8")
        self.configure(notesMode="apple")
        self.settle(1)
        self.shot("notizen")
        self.desktop.click(360, content + 30)
        self.settle(0.8)
        self.shot("notizen-ordner")
        self.desktop.click(30, content + 11)
        self.settle()
        self.desktop.click(200, content + 90)
        self.desktop.move(383, content + 11)
        self.settle(1.2)
        self.shot("notiz")
        self.desktop.click(383, content + 11)
        self.desktop.type("Geschenk für Jonas")
        self.desktop.key("Return")
        self.desktop.type("Er wünscht sich einen Bausatz.")
        self.settle()
        self.shot("neue-notiz")
        library.rename(library.with_name("weg"))
        self.desktop.key("ctrl+s")
        self.settle()
        self.shot("notiz-fehler")
        library.with_name("weg").rename(library)
        self.stop()
        library.chmod(0)
        self.start()
        self.settle(1)
        self.shot("notizen-kein-zugriff")
        library.chmod(0o700)
        self.configure(alwaysVisible=False)
        self.leave()

    def calendar(self):
        """The agenda in a card alone, with the file as the only calendar."""
        file = self.desktop.data_home / "quillbar/calendar.ics"
        self.configure(enabledModuleIDs=["calendar"], alwaysVisible=True)
        self.settle(1)
        self.shot("kalender-leer")
        self.stop()
        write_calendar(file)
        self.start()
        self.settle(1)
        self.shot("kalender")
        self.desktop.click(200, 178)
        self.settle(0.8)
        self.shot("kalender-termin")
        self.desktop.key("Escape")
        self.settle()
        self.desktop.click(385, 83)
        self.settle(0.8)
        self.desktop.type("Kaffee mit Mira")
        self.settle()
        self.shot("kalender-formular")
        self.desktop.click(300, 154)
        self.desktop.key("ctrl+a")
        self.desktop.type("morgen abend")
        self.desktop.key("Return")
        self.settle()
        self.shot("kalender-datum-unklar")
        self.desktop.key("ctrl+a")
        self.desktop.type("morgen 18 Uhr")
        self.desktop.key("Return")
        self.desktop.click(378, 154)
        self.settle()
        self.shot("kalender-monat")
        self.desktop.key("Escape")
        whole = file.read_bytes()
        file.write_bytes(whole[:len(whole) // 2])
        self.settle(1)
        self.shot("kalender-unlesbar")
        file.write_bytes(whole)
        self.settle(1)
        self.desktop.click(300, 115)
        self.desktop.key("Return")
        self.settle(1)
        self.shot("kalender-hinzugefuegt")
        self.configure(alwaysVisible=False)
        self.leave()

    def empty(self):
        self.configure(enabledModuleIDs=[])
        self.reveal()
        self.shot("keine-module")
        self.leave()
        self.stop()

    def music(self):
        """The media card in all its states; the service and the browser are stand-ins."""
        click = self.desktop.click
        self.desktop.set_wallpaper(self.picture)
        self.configure(globalTheme=BRIGHT | {"darkness": 0.7, "tintStrength": 0.0, "frosted": False, "textWhite": True},
                       enabledModuleIDs=["spotify"], mediaSource="system", alwaysVisible=True)
        self.settle(1.5)
        self.shot("musik-system")

        cover = self.desktop.folder / "cover.png"
        paint_cover(cover)
        install_browser(self.desktop)
        stand_in = self.executables / "spotify-stand-in"
        service = MusicService(self.desktop, stand_in, "--cover", str(cover))
        self.configure(service.environment(), mediaSource="spotify")
        self.settle(1.5)
        self.shot("musik-anmelden")
        click(209, 209)
        service.wait_for("GET /v1/me/playlists")
        if (self.executables / "quillbar-webplayer").exists():
            service.wait_for("PUT /v1/me/player")
        service.wait_for("GET /v1/me/player/currently-playing")
        self.settle(1)
        self.shot("musik-playlists")
        click(200, 211)
        self.settle()
        click(381, 129)
        service.wait_for("PUT /v1/me/player/play")
        self.settle(1)
        self.desktop.move(700, 500)
        self.settle()
        self.shot("musik-eigene-titel")
        click(40, 129)
        self.settle()
        click(200, 258)
        self.settle()
        self.desktop.move(700, 500)
        self.settle()
        self.shot("musik-fremde-titel")
        click(40, 129)
        click(387, 90)
        self.desktop.move(700, 500)
        self.settle(1)
        self.shot("musik-gross")
        click(382, 82)
        self.settle()
        click(385, 127)
        self.settle()
        self.desktop.type("Sommer am See")
        self.settle()
        self.shot("musik-neue-playlist")
        self.desktop.key("Escape")
        self.desktop.right_click(60, 60)
        self.settle(1)
        self.shot("musik-schnelleinstellungen")
        self.desktop.key("Escape")
        self.stop()

        service = MusicService(self.desktop, stand_in, "--silent")
        self.configure(service.environment(), sp_refresh="refresh-0", sp_expiry=0.0)
        service.wait_for("GET /v1/me/playlists")
        self.settle(1)
        click(352, 90)
        self.desktop.move(700, 500)
        self.settle(1)
        self.shot("musik-kein-geraet")
        self.stop()

        service = MusicService(self.desktop, stand_in, "--without-playlists")
        self.configure(service.environment(), sp_refresh="refresh-0", sp_expiry=0.0)
        service.wait_for("GET /v1/me/playlists")
        self.settle(1)
        self.shot("musik-berechtigungen")
        self.configure(alwaysVisible=False)
        self.leave()
        self.stop()

    def gallery(self):
        program = self.desktop.start([str(self.executables / "quillbar-gallery")])
        before = self.desktop.screenshot()
        wait_for(lambda: self.desktop.screenshot() != before, message=lambda: "no gallery: " + program.log)
        self.settle(1.5)
        self.shot("galerie")
        program.terminate()

    def desktops(self):
        visit_desktops(self.picture, choose_fonts, self.executables / "quillbar", self.keep)

    def run(self):
        try:
            for station in (self.first_start, self.board, self.quick_settings, self.task_list, self.looks,
                            self.settings, self.notes, self.calendar, self.empty, self.music, self.gallery, self.desktops):
                station()
        finally:
            self.desktop.close()


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    Tour(sys.argv[1], sys.argv[2]).run()
