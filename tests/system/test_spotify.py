"""The music player in the built program, from the sign-in in the browser to the sign-out: the browser is a
stand-in, and so is the service."""

import json
import os
import signal
import sqlite3
import time
import unittest
from pathlib import Path

from music_service import MusicService, install_browser, install_program
from test_sidebar import QUILLBAR, SHOWN, Sidebar, store
from virtual_desktop import VirtualDesktop, wait_for

HELPER = Path(QUILLBAR).with_name("quillbar-webplayer")

# Where the only card has its parts.
SIGN_IN = (209, 209)
PLAY = (314, 90)
NEXT = (352, 90)
NEW_PLAYLIST = (385, 127)
FIRST_PLAYLIST = (200, 211)
CREATE = (252, 210)
BACK = (40, 129)
PLAY_ALL = (381, 129)
REMOVE_FIRST_TRACK = (370, 170)
HEADER = (60, 60)
# It stands below what there is to say about the device.
SIGN_OUT = ((125, 205), (125, 245), (125, 275))

POLL = "GET /v1/me/player/currently-playing"


class SpotifyTest(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop(compositor=True)
        self.addCleanup(self.desktop.close)
        install_browser(self.desktop)
        store(self.desktop, alwaysVisible=True, mediaSource="spotify")
        with sqlite3.connect(self.desktop.data_home / "quillbar/preferences.sqlite") as preferences:
            preferences.execute("INSERT INTO preferences VALUES ('enabledModuleIDs', 'array', '[\"spotify\"]')")
        preferences.close()
        self.service = MusicService(self.desktop, os.environ["SPOTIFY_STAND_IN"])

    def signed_in(self, *options):
        """The service with these options, for a user who has signed in before."""
        self.service = MusicService(self.desktop, os.environ["SPOTIFY_STAND_IN"], *options)
        self.desktop.store(sp_refresh="refresh-0")

    def draft(self):
        """What is stored of the new playlist."""
        path = self.desktop.data_home / "quillbar/preferences.sqlite"
        with sqlite3.connect(f"file:{path}?mode=ro", uri=True, timeout=5) as database:
            found = database.execute("SELECT value FROM drafts WHERE key = 'media.playlist'").fetchone()
        database.close()
        return json.loads(found[0]) if found else {}

    def start(self):
        sidebar = Sidebar(self.desktop, self.service.environment())
        sidebar.wait_shown(SHOWN)
        time.sleep(0.5)
        return sidebar

    def test_plays_from_sign_in_to_sign_out(self):
        desktop, service = self.desktop, self.service
        install_program(desktop, QUILLBAR)
        sidebar = self.start()

        def seen(line):
            return service.wait_for(line, lambda: sidebar.program.log)

        def click(place):
            desktop.click(*place)
            time.sleep(0.3)

        self.assertEqual(service.requests(), [])
        click(SIGN_IN)
        for line in ("GET /authorize", "POST /api/token", POLL, "GET /v1/me/playlists", "GET /v1/me"):
            seen(line)
        if HELPER.exists():
            seen("GET /spotify-player.js")
            self.assertEqual(json.loads(seen("PUT /v1/me/player")["body"]),
                             {"device_ids": ["device of access-1"], "play": False})
        device = "device_id=" + ("device of access-1" if HELPER.exists() else "speaker")
        tokens = {key: value for key, value in desktop.preferences().items() if key.startswith("sp_")}
        self.assertEqual((tokens["sp_access"], tokens["sp_refresh"]), ("access-1", "refresh-1"))
        time.sleep(0.5)

        click(FIRST_PLAYLIST)
        seen("GET /v1/playlists/mine/tracks")
        time.sleep(0.5)
        commands = []
        click(PLAY_ALL)
        commands.append(seen("PUT /v1/me/player/play"))
        self.assertEqual(json.loads(commands[0]["body"]), {"context_uri": "spotify:playlist:mine"})
        seen(POLL)
        time.sleep(0.5)
        click(NEXT)
        commands.append(seen("POST /v1/me/player/next"))
        # That this is a pause tells that the card knows what the service plays.
        click(PLAY)
        commands.append(seen("PUT /v1/me/player/pause"))
        self.assertEqual([request["query"] for request in commands], [device] * 3)

        click(REMOVE_FIRST_TRACK)
        removal = seen("DELETE /v1/playlists/mine/tracks")
        self.assertEqual(json.loads(removal["body"]), {"tracks": [{"uri": "spotify:track:t0"}]})
        click(BACK)
        click(NEW_PLAYLIST)
        desktop.type("Süße Träume")
        desktop.key("Return")
        created = seen("POST /v1/users/me/playlists")
        self.assertEqual(json.loads(created["body"]), {"name": "Süße Träume", "public": False})
        seen("GET /v1/me/playlists")

        desktop.right_click(*HEADER)
        time.sleep(0.8)
        for place in SIGN_OUT:
            if "sp_refresh" in desktop.preferences():
                click(place)
        wait_for(lambda: "sp_refresh" not in desktop.preferences(), message=lambda: sidebar.program.log)
        self.assertNotIn("sp_access", desktop.preferences())
        time.sleep(0.5)
        count = len(service.requests())
        time.sleep(4.5)
        self.assertEqual(len(service.requests()), count)
        self.assertEqual([request for request in service.requests() if request["violation"]], [])
        for secret in (*tokens.values(), "good-code"):
            self.assertNotIn(str(secret), sidebar.program.log)
        self.assertFalse(list(desktop.data_home.glob("applications/*callback*")))

    def test_signs_in_without_being_installed(self):
        sidebar = self.start()
        self.desktop.click(*SIGN_IN)
        self.service.wait_for("GET /v1/me/playlists", lambda: sidebar.program.log)
        self.assertEqual(self.desktop.preferences()["sp_access"], "access-1")


    def test_serves_new_clients_and_brings_tracks_back(self):
        # What fails at first is loaded again as soon as the service answers.
        self.signed_in("--new", "--fault", "GET /v1/me/playlists=500", "--fault", "GET /v1/me=500",
                       "--fault", "POST /v1/me/player/next=drop")
        sidebar = self.start()
        desktop, service = self.desktop, self.service

        def seen(line):
            return service.wait_for(line, lambda: sidebar.program.log)

        def click(place):
            desktop.click(*place)
            time.sleep(0.3)

        seen("GET /v1/me/playlists")
        seen("GET /v1/me/playlists")
        time.sleep(1)
        click(FIRST_PLAYLIST)
        seen("GET /v1/playlists/mine/tracks")
        self.assertEqual(seen("GET /v1/playlists/mine/items")["query"],
                         "limit=50&fields=items(item(id,uri,name,artists(name)))")
        time.sleep(0.5)
        click(REMOVE_FIRST_TRACK)
        seen("DELETE /v1/playlists/mine/items")
        time.sleep(0.5)
        desktop.key("ctrl+z")
        back = seen("POST /v1/playlists/mine/items")
        self.assertEqual(json.loads(back["body"]), {"uris": ["spotify:track:t0"], "position": 0})
        # A command whose connection ends is not sent again.
        click(NEXT)
        seen("POST /v1/me/player/next")
        time.sleep(1.5)
        lines = [request["line"] for request in service.requests()]
        self.assertEqual(lines.count("POST /v1/me/player/next"), 1)
        self.assertEqual(lines.count("GET /v1/playlists/mine/tracks"), 1)
        self.assertEqual([request for request in service.requests() if request["violation"]], [])

    def test_keeps_a_new_playlist_over_a_refusal_and_a_kill(self):
        create = "POST /v1/users/me/playlists"
        self.signed_in("--fault", create + "=429/3600")
        sidebar = self.start()
        desktop, service = self.desktop, self.service
        service.wait_for("GET /v1/me", lambda: sidebar.program.log)
        time.sleep(0.5)
        desktop.click(*NEW_PLAYLIST)
        desktop.type("Süße Träume")
        wait_for(lambda: self.draft() == {"open": True, "name": "Süße Träume"}, message=lambda: str(self.draft()))
        desktop.key("Return")
        service.wait_for(create, lambda: sidebar.program.log)
        time.sleep(0.5)
        # The pause is kept: nothing more is sent, and nothing of what was typed is lost.
        desktop.key("Return")
        desktop.type(" am Morgen")
        wait_for(lambda: self.draft().get("name") == "Süße Träume am Morgen", message=lambda: str(self.draft()))
        count = len(service.requests())
        time.sleep(4.5)
        self.assertEqual(len(service.requests()), count)
        sidebar.program.process.send_signal(signal.SIGKILL)
        sidebar.program.wait()

        again = self.start()
        time.sleep(1.5)
        desktop.click(*CREATE)
        created = service.wait_for(create, lambda: again.program.log)
        self.assertEqual(json.loads(created["body"]), {"name": "Süße Träume am Morgen", "public": False})
        wait_for(lambda: self.draft() == {}, message=lambda: str(self.draft()))
        self.assertEqual([request["line"] for request in service.requests()].count(create), 2)


if __name__ == "__main__":
    unittest.main()
