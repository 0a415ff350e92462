#!/usr/bin/python3
"""Installs the build into a folder and looks whether everything is where it is looked for.

Usage: test_installation.py <build folder> <folder of libraries> <folder of helpers>
"""

import configparser
import os
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

ICON = "com.randblatt.Quillbar"


def check(condition, message):
    if not condition:
        raise AssertionError(message)


def built(build, name):
    return next(iter(path for path in build.rglob(name) if path.is_file()), None)


def check_programs(build, prefix, libraries, helpers):
    program = prefix / "bin/quillbar"
    check(os.access(program, os.X_OK), "the application is not installed")
    code = program.read_bytes()
    for name, folder in [("quillbar-calendar-server.so", prefix / libraries / "quillbar"),
                         ("quillbar-webplayer", prefix / helpers)]:
        if not built(build, name):
            continue
        check((folder / name).exists(), f"{name} is not in {folder}")
        # The program goes there from its own folder.
        relative = os.path.relpath(folder, prefix / "bin").encode()
        check(relative in code, f"the program does not look for {name} in {relative.decode()}")
    names = [path.name for path in prefix.rglob("*") if path.is_file()]
    check(not [name for name in names if name.endswith((".a", ".h")) or "bench" in name],
          "parts of the build are installed")


def check_desktop_file(prefix):
    text = configparser.ConfigParser(interpolation=None)
    text.optionxform = str
    text.read(prefix / "share/applications/com.randblatt.Quillbar.desktop", encoding="utf-8")
    entry = text["Desktop Entry"]
    check(entry["Exec"] == "quillbar %u" and "x-scheme-handler/randblatt;" in entry["MimeType"],
          "the sign-in's redirect does not come back")
    for action in entry["Actions"].strip(";").split(";"):
        command = text[f"Desktop Action {action}"]["Exec"]
        check(f".ActivateAction {action} " in command, f"{action} does something else: {command}")
    # Where a desktop file says DBusActivatable, nothing but this file starts the program.
    check(entry["DBusActivatable"] == "true", "not activatable")
    service = configparser.ConfigParser()
    service.read(prefix / "share/dbus-1/services/com.randblatt.Quillbar.service")
    check(service["D-BUS Service"]["Name"] == "com.randblatt.Quillbar", "the service has another name")
    check(Path(service["D-BUS Service"]["Exec"]).is_absolute(), "the service's program has no full path")


def check_icons(prefix):
    icons = prefix / "share/icons/hicolor"
    check((icons / f"scalable/apps/{ICON}.svg").exists(), "there is no scalable icon")
    for path in icons.rglob("*.png"):
        width, height = struct.unpack(">II", path.read_bytes()[16:24])
        check(path.parent.parent.name == f"{width}x{height}", f"{path} has {width}x{height} pixels")


def main(build, libraries, helpers):
    with tempfile.TemporaryDirectory() as folder:
        prefix = Path(folder)
        subprocess.run(["cmake", "--install", build, "--prefix", folder], check=True, stdout=subprocess.DEVNULL)
        check_programs(Path(build), prefix, libraries, helpers)
        check_desktop_file(prefix)
        check_icons(prefix)


if __name__ == "__main__":
    main(*sys.argv[1:])
