#!/usr/bin/python3
"""Runs qmllint over the QML modules that a build has put together, and fails on every warning.

Usage: check-qml.py <build folder> <qmllint>

Ids of an outer document in a component are what `pragma ComponentBehavior: Bound` is for, but Qt 6.4 knows it
only half: its qmllint does, its engine refuses such components. So the check reads copies that have the pragma.
"""

import re
import shutil
import subprocess
import sys
from pathlib import Path

PRAGMA = "pragma ComponentBehavior: Bound; "


def main(build, qmllint):
    modules = Path(build) / "qml"
    copies = Path(build) / "qmllint"
    settings = Path(__file__).resolve().parent.parent / ".qmllint.ini"
    shutil.rmtree(copies, ignore_errors=True)
    shutil.copytree(modules, copies, ignore=shutil.ignore_patterns("*.a", "*.so"))
    shutil.copy(settings, copies)
    documents = sorted(copies.rglob("*.qml"))
    if not documents:
        sys.exit(f"no QML in {modules}")
    for document in documents:
        text = document.read_text(encoding="utf-8")
        # On the line of the first import, so that line numbers stay.
        document.write_text(re.sub(r"^(?=import )", PRAGMA, text, count=1, flags=re.MULTILINE), encoding="utf-8")
    done = subprocess.run([qmllint, "-I", copies, *documents], capture_output=True, text=True, check=False)
    output = (done.stdout + done.stderr).replace(str(copies), "").replace(PRAGMA, "")
    print(output, end="")
    # Older versions end with success on some warnings.
    sys.exit(1 if done.returncode != 0 or "Warning:" in output or "Error:" in output else 0)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
