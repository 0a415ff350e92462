#!/usr/bin/python3
"""Names the members of the program's classes that nothing in the program uses: a word is looked for wherever it may
stand, so what is found is unused, but not all that is unused is found.

Usage: check-unused.py [<folder of the sources>]
"""

import re
import sys
from collections import Counter
from pathlib import Path

# Called by others than the program, and by whom.
ALLOWED = {
    "ActivateAction": "the bus",
    "currentChanged": "tests, which watch that our own player is none to follow",
    "daysAhead": "whoever wants to know what the calendar shows",
    "inMemory": "tests, for which the store is the same in memory",
    "nextTick": "tests, which follow the clock",
    "qHash": "the toolkit's tables",
}
DECLARATION = re.compile(r"^    (?:\[\[nodiscard\]\] |static |virtual |explicit |Q_INVOKABLE |constexpr |inline )*"
                         r"[\w:<>,&* ]+?[ &*](\w+)\((?!\*)[^;{]*\)?.*?(?:;|\{|$)")
WORD = re.compile(r"\w+")


def declared(header):
    """The functions that are declared in a header, without those that override others'."""
    for line in re.sub(r"\n {8,}", " ", header.read_text()).splitlines():
        found = DECLARATION.match(line)
        if found and " override" not in line and "= default" not in line and "= delete" not in line:
            yield found[1]


def main():
    root = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).parent.parent / "src")
    words = Counter()
    for file in root.rglob("*"):
        if file.suffix in (".cpp", ".h", ".qml", ".in", ".xml"):
            words.update(WORD.findall(re.sub(r"//[^\n]*", "", file.read_text())))
    faults = []
    for header in sorted(root.rglob("*.h")):
        source = header.with_suffix(".cpp")
        text = re.sub(r"//[^\n]*", "", source.read_text()) if source.exists() else ""
        names = Counter(declared(header))
        for name, declarations in names.items():
            definitions = len(re.findall(rf"::{name}\(|Q_EMIT (?:\w+->)?{name}\(", text))
            handlers = words[f"on{name[0].upper()}{name[1:]}"]
            if name not in ALLOWED and words[name] + handlers - declarations - definitions <= 0:
                faults.append(f"{header.relative_to(root)}: nothing uses {name}()")
    print("\n".join(faults) if faults else "every member is used")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
