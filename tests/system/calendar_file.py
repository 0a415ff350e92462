"""Calendar files as another program reads them."""


def events(path):
    """The events of an iCalendar file: one dictionary of properties each."""
    found = []
    if not path.exists():
        return found
    for line in path.read_text(encoding="utf-8").replace("\n ", "").splitlines():
        name, _, value = line.partition(":")
        if (name, value) == ("BEGIN", "VEVENT"):
            found.append({})
        elif found:
            found[-1].setdefault(name.partition(";")[0], value)
    return found
