#!/usr/bin/python3
"""Checks all QML with qmllint; any finding fails.

Usage: check-qml.py <folder of the built QML modules>

One kind of finding is dropped: before Qt 6.5 qmllint takes an id of the same file for an unqualified name when it
is used inside a component, and there is no pragma yet that says otherwise.
"""

import json
import re
import subprocess
import sys
from pathlib import Path

QMLLINT = "/usr/lib/qt6/bin/qmllint"
ROOT = Path(__file__).resolve().parent.parent


def uses_an_id(path, finding):
    if "Unqualified access" not in finding["message"]:
        return False
    text = path.read_text(encoding="utf-8")
    line = text.splitlines()[finding["line"] - 1]
    name = re.match(r"\w+", line[finding["column"] - 1:])
    return name is not None and re.search(rf"^\s*id: {name.group()}$", text, re.M) is not None


def main(modules):
    # The build's copies, since only they lie beside the description of their module.
    files = sorted(str(path.resolve()) for path in Path(modules).rglob("*.qml"))
    files += sorted(str(path) for path in (ROOT / "tests").rglob("*.qml"))
    if not files:
        sys.exit("no QML found")
    done = subprocess.run([QMLLINT, "-I", modules, "--json", "-", *files], cwd=ROOT, capture_output=True, text=True,
                          check=False)
    findings = 0
    for report in json.loads(done.stdout)["files"]:
        path = Path(report["filename"])
        for finding in report["warnings"]:
            if finding["type"] in ("warning", "critical", "error") and not uses_an_id(path, finding):
                findings += 1
                print(f"{path.name}:{finding.get('line', 0)}: {finding['message']}")
    print(f"{len(files)} files, {findings} findings")
    sys.exit(1 if findings else 0)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(sys.argv[1])
