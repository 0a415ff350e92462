#!/usr/bin/python3
"""Looks whether what a build made is hardened: linked without a run path, with all relocations read-only, at no
fixed address, and compiled with the guards that the build sets.

Usage: check-hardening.py <build folder>
"""

import json
import re
import subprocess
import sys
from pathlib import Path

PROGRAMS = ["bin/quillbar", "bin/quillbar-webplayer", "lib/**/quillbar-calendar-server.so"]
GUARDS = ["-fstack-protector-strong"]
GUARDS_X86 = ["-fcf-protection=full"]
GUARDS_OPTIMISED = ["-D_FORTIFY_SOURCE=3"]


def dynamic_section(program):
    return subprocess.run(["readelf", "--wide", "--dynamic", "--file-header", "--program-headers", program],
                          check=True, capture_output=True, text=True).stdout


def faults_of_program(program):
    text = dynamic_section(program)
    if path := re.search(r"\((?:RPATH|RUNPATH)\).*", text):
        yield f"searches folders of its own for libraries: {path[0]}"
    if "BIND_NOW" not in text or "GNU_RELRO" not in text:
        yield "leaves its table of foreign functions writable (full RELRO is missing)"
    if not re.search(r"Type:\s+DYN", text):
        yield "is loaded at a fixed address"
    if re.search(r"GNU_STACK.*RWE", text):
        yield "has an executable stack"


def faults_of_sources(build):
    commands = json.loads((build / "compile_commands.json").read_text())
    ours = [command for command in commands if re.search(r"/src/.*\.cpp$", command["file"])
            and "_autogen" not in command["file"] and ".rcc" not in command["file"]]
    if not ours:
        yield "no sources are known"
    for command in ours:
        line = command["command"].split()
        guards = GUARDS + (GUARDS_X86 if sys.platform == "linux" and is_x86() else [])
        guards += GUARDS_OPTIMISED if any(option in line for option in ("-O1", "-O2", "-O3")) else []
        if missing := [guard for guard in guards if guard not in line]:
            yield f"{command['file']} is compiled without {' '.join(missing)}"


def is_x86():
    return "86" in subprocess.run(["uname", "-m"], check=True, capture_output=True, text=True).stdout


def main():
    build = Path(sys.argv[1])
    programs = [path for pattern in PROGRAMS for path in build.glob(pattern)]
    if not any(program.name == "quillbar" for program in programs):
        sys.exit(f"{build} has no program")
    faults = [f"{program.name} {fault}" for program in programs for fault in faults_of_program(program)]
    faults += faults_of_sources(build)
    for fault in faults[:20]:
        print(fault)
    print(f"{len(programs)} programs, {len(faults)} faults")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
