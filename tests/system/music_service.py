"""The stand-in for the music service on a virtual desktop, and for the browser in which its user signs in."""

import json
import os
import shutil
from pathlib import Path

from virtual_desktop import wait_for

PACKAGING = Path(__file__).resolve().parent.parent.parent / "packaging"

# Opens the page, agrees to everything, and hands the address that it is sent to to the desktop.
BROWSER = """#!/usr/bin/python3
import http.client, subprocess, sys, urllib.parse
page = urllib.parse.urlsplit(sys.argv[1])
connection = http.client.HTTPConnection(page.netloc)
connection.request("GET", page.path + "?" + page.query)
subprocess.run(["gio", "open", connection.getresponse().getheader("Location")], check=True)
"""


def install_browser(desktop):
    """Makes the stand-in what opens pages."""
    folder = desktop.folder / "bin"
    folder.mkdir()
    browser = folder / "xdg-open"
    browser.write_text(BROWSER)
    browser.chmod(0o700)
    desktop.environment["PATH"] = f"{folder}:{desktop.environment['PATH']}"


def install_program(desktop, quillbar):
    """Makes the program what opens its own scheme, as an installation does."""
    desktop.environment["PATH"] = f"{Path(quillbar).parent}:{desktop.environment['PATH']}"
    applications = desktop.data_home / "applications"
    applications.mkdir()
    shutil.copy(PACKAGING / "com.randblatt.Quillbar.desktop", applications)
    (desktop.config_home / "mimeapps.list").write_text(
        "[Default Applications]\nx-scheme-handler/randblatt=com.randblatt.Quillbar.desktop\n")


class MusicService:
    """The service, with what it was asked. Its options are those of the executable."""

    def __init__(self, desktop, executable, *options):
        self.program = desktop.start([str(executable), *options])
        self.url = wait_for(lambda: self.program.log.partition("\n")[0], message=lambda: "no music service")
        self._seen = 0

    def environment(self):
        """Variables with which the program finds the service here."""
        variables = {f"RANDBLATT_{host}_URL": self.url for host in ("ACCOUNTS", "API", "SDK")}
        if os.geteuid() == 0:
            # The web engine refuses its sandbox to root.
            variables["QTWEBENGINE_DISABLE_SANDBOX"] = "1"
        return variables

    def requests(self):
        lines = self.program.log.splitlines(keepends=True)[1:]
        return [json.loads(line) for line in lines if line.endswith("\n")]

    def wait_for(self, line, message=lambda: ""):
        """The next request of this line after the ones that were waited for."""
        def find():
            for number, request in enumerate(self.requests()[self._seen:], self._seen + 1):
                if request["line"] == line:
                    self._seen = number
                    return request
            return None
        return wait_for(find, timeout=20, message=lambda: f"no {line}\n{self.program.log}\n{message()}")
