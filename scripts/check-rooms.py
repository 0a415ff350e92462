#!/usr/bin/python3
"""Holds every include and every QML import against the link lines: what a room does not link, it does not know, and
of the rooms that it links it knows the headers that these list under API.

Usage: check-rooms.py [<folder of the sources>]
"""

import re
import sys
from dataclasses import dataclass, field
from pathlib import Path

KEYWORDS = {"API", "SOURCES", "QML", "SINGLETONS", "LINK", "PRIVATE_LINK", "DEPENDENCIES", "URI",
            "PUBLIC", "PRIVATE", "INTERFACE", "STATIC", "MODULE", "SHARED"}
FILES = {"API", "SOURCES", "QML", "SINGLETONS", "STATIC", "MODULE", "SHARED", None}
LINKS = {"LINK", "PRIVATE_LINK", "PUBLIC", "PRIVATE", "INTERFACE", None}

# Whose headers begin so, and what brings them.
FOREIGN = {
    r"xcb/": "PkgConfig::XCB", r"wayland-|.*-client-protocol\.h": "randblatt_wayland_protocols",
    r"libecal/|libedataserver/": "PkgConfig::LIBECAL", r"glib|gio/": "PkgConfig::LIBECAL",
    r"libical/": "PkgConfig::LIBICAL", r"libxml/": "PkgConfig::LIBXML2", r"sqlite3\.h": "SQLite::SQLite3",
    r"QDBus": "Qt6::DBus", r"QWebEngine": "Qt6::WebEngineCore", r"QWebChannel": "Qt6::WebChannel",
    r"QQuick": "Qt6::Quick", r"QQml|QJS": "Qt6::Qml", r"QSvg": "Qt6::Svg", r"QNetwork|QTcp|QHttp|QSsl": "Qt6::Network",
    r"QSystemTrayIcon|QMenu|QApplication|QAction$": "Qt6::Widgets", r"qpa/|private/": "Qt6::GuiPrivate",
}
# What Qt's own libraries bring along.
BRINGS = {"Qt6::Quick": {"Qt6::Qml", "Qt6::Gui", "Qt6::Network"}, "Qt6::Qml": {"Qt6::Network"},
          "Qt6::Svg": {"Qt6::Gui"}, "Qt6::Widgets": {"Qt6::Gui"}, "Qt6::WebEngineCore": {"Qt6::Network"},
          "PkgConfig::LIBECAL": {"PkgConfig::LIBICAL"}}


@dataclass
class Room:
    name: str
    uri: str = ""
    files: set = field(default_factory=set)
    api: set = field(default_factory=set)
    links: set = field(default_factory=set)
    imports: set = field(default_factory=set)


def commands(text):
    """The name and arguments of each command of a CMakeLists.txt."""
    text = re.sub(r"#[^\n]*", "", text)
    for call in re.finditer(r"(\w+)\s*\(([^()]*)\)", text):
        yield call[1].lower(), re.findall(r'"[^"]*"|[^\s"]+', call[2])


def read_rooms(root):
    rooms = {}
    for listing in sorted(root.rglob("CMakeLists.txt")):
        for command, arguments in commands(listing.read_text()):
            if command in ("randblatt_library", "randblatt_qml_module", "add_executable", "add_library"):
                takes_files = True
            elif command in ("target_link_libraries", "randblatt_import_qml", "target_sources"):
                takes_files = command == "target_sources"
            else:
                continue
            room = rooms.setdefault(arguments[0], Room(arguments[0]))
            keyword = None
            for argument in arguments[1:]:
                if argument in KEYWORDS:
                    keyword = argument
                elif keyword == "URI":
                    room.uri = argument
                elif keyword == "DEPENDENCIES":
                    room.imports.add(argument)
                elif keyword in LINKS and not (takes_files and keyword in (None, "PRIVATE", "PUBLIC")):
                    room.links.add(argument)
                elif keyword in FILES or takes_files:
                    file = (listing.parent / argument).resolve()
                    room.files.add(file)
                    if keyword == "API":
                        room.api.add(file)
    return rooms


def reachable(room, rooms):
    """Every library that a room gets by its links and by those of what it links."""
    found, left = set(), [room.name]
    while left:
        name = left.pop()
        more = rooms[name].links if name in rooms else BRINGS.get(name, set())
        left += more - found
        found |= more
    return found


def faults_of_includes(file, room, rooms, owners, root, libraries):
    for number, line in enumerate(file.read_text().splitlines(), 1):
        include = re.match(r'\s*#\s*include\s+(?:"([^"]+)"|<([^>]+)>)', line)
        if include and include[1]:
            # By its place under the sources; the generated ones are nobody's.
            header = (root / include[1]).resolve()
            owner = owners.get(header)
            if owner is None or owner is room:
                continue
            if owner.name not in room.links:
                yield number, f"{include[1]} is of {owner.name}, which {room.name} does not link"
            elif header not in owner.api:
                yield number, f"{include[1]} is not in the API of {owner.name}"
        elif include:
            for pattern, library in FOREIGN.items():
                if re.match(pattern, include[2]) and library not in libraries:
                    yield number, f"<{include[2]}> is of {library}, which {room.name} does not link"


def faults_of_imports(file, room):
    known = {room.uri} | room.imports
    for number, line in enumerate(file.read_text().splitlines(), 1):
        module = re.match(r"import\s+([A-Z][\w.]*)", line)
        if module and module[1] not in known:
            yield number, f"{module[1]} is not among the DEPENDENCIES of {room.name}"


def main():
    root = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).parent.parent / "src").resolve()
    rooms = read_rooms(root)
    owners = {file: room for room in rooms.values() for file in room.files}
    faults = []
    for room in rooms.values():
        libraries = reachable(room, rooms)
        for file in sorted(room.files):
            if not file.is_file():
                continue
            found = []
            if file.suffix in (".cpp", ".h"):
                found = faults_of_includes(file, room, rooms, owners, root, libraries)
            elif file.suffix == ".qml":
                found = faults_of_imports(file, room)
            faults += [f"{file.relative_to(root)}:{number}: {fault}" for number, fault in found]
    for file in sorted(root.rglob("*")):
        if file.suffix in (".cpp", ".h", ".qml") and file not in owners:
            faults.append(f"{file.relative_to(root)}: belongs to no room")
    print("\n".join(faults) if faults else f"{len(rooms)} rooms, {len(owners)} files: all keep to their link lines")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
