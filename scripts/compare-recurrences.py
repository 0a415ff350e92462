#!/usr/bin/env python3
"""Compares when events recur, by random rules, with what python-dateutil finds. To be run by hand.

compare-recurrences.py [--seed N] [--cases N] [--program FILE]

The program is the build's `occurrences`. Needs python3-dateutil. No rule is left out; where the two are known to
differ, the reason is named, and the case counted apart.
"""

import argparse
import random
import signal
import subprocess
import sys
from collections import Counter
from datetime import datetime, timedelta
from pathlib import Path

try:
    from dateutil.rrule import rrulestr
except ImportError:
    sys.exit("python3-dateutil fehlt")

FORM = "%Y%m%dT%H%M%S"
DAYS = ["MO", "TU", "WE", "TH", "FR", "SA", "SU"]
FREQUENCIES = ["SECONDLY", "MINUTELY", "HOURLY", "DAILY", "WEEKLY", "MONTHLY", "YEARLY"]
# No clock changes there, so that nothing but the rules is compared; the zones have tests of their own.
ZONE = "UTC"
PROGRAM = Path(__file__).parent.parent / "build/dev/bin/occurrences"
# In seconds. It looks for what never comes until the year 9999.
DATEUTIL_TIME = 2
ENDLESS = "no end: dateutil goes on looking for a further occurrence until the year 9999"
# What a rule may give; more is not looked for.
MOST = 3000


def known_difference(parts):
    """Why the two differ on such a rule; None if they must not."""
    named = set(parts)
    if parts["FREQ"] in ("YEARLY", "WEEKLY", "MONTHLY") and "BYWEEKNO" in named \
            and not named & {"BYDAY", "BYMONTHDAY", "BYYEARDAY"}:
        return "BYWEEKNO alone: the day is the start's (RFC 5545, 3.3.10); dateutil takes the whole week"
    days = parts.get("BYDAY", "").split(",")
    if parts["FREQ"] in ("YEARLY", "MONTHLY") and len({day[-2:] == day for day in days}) == 2:
        return "BYDAY with and without numbers: a day may be either; dateutil wants both at once"
    if parts["FREQ"] == "WEEKLY" and "BYSETPOS" in named:
        return "BYSETPOS of a week: the first week is a whole one, as a month is; dateutil's begins with the start"
    return None


def numbers(chance, lowest, highest, most=4):
    values = [value for value in range(lowest, highest + 1) if value != 0 or lowest == 0]
    return ",".join(map(str, sorted(chance.sample(values, chance.randint(1, most)))))


def random_rule(chance):
    frequency = chance.choice(FREQUENCIES)
    parts = {"FREQ": frequency}
    if chance.random() < 0.6:
        parts["INTERVAL"] = str(chance.choice([1, 2, 3, 4, 5, 7, 12, 20, 45, 90, 100]))
    if chance.random() < 0.25:
        parts["WKST"] = chance.choice(DAYS)

    def maybe(name, probability, value):
        if chance.random() < probability:
            parts[name] = value()

    maybe("BYMONTH", 0.25, lambda: numbers(chance, 1, 12))
    maybe("BYMONTHDAY", 0.2 if frequency != "WEEKLY" else 0, lambda: numbers(chance, -31, 31))
    maybe("BYYEARDAY", 0.12 if frequency not in ("DAILY", "WEEKLY", "MONTHLY") else 0,
          lambda: numbers(chance, -366, 366, 8))
    maybe("BYWEEKNO", 0.15 if frequency == "YEARLY" else 0, lambda: numbers(chance, -53, 53))
    places = frequency in ("MONTHLY", "YEARLY") and "BYWEEKNO" not in parts

    def days():
        highest = 5 if frequency == "MONTHLY" or "BYMONTH" in parts else 53
        return ",".join((str(chance.choice([1, -1]) * chance.randint(1, highest)) if places and chance.random() < 0.4
                         else "") + day for day in chance.sample(DAYS, chance.randint(1, 4)))
    maybe("BYDAY", 0.35, days)
    maybe("BYHOUR", 0.2, lambda: numbers(chance, 0, 23))
    maybe("BYMINUTE", 0.2, lambda: numbers(chance, 0, 59))
    maybe("BYSECOND", 0.15, lambda: numbers(chance, 0, 59))
    if any(name.startswith("BY") for name in parts):
        maybe("BYSETPOS", 0.2, lambda: numbers(chance, -4, 4, 2))
    if chance.random() < 0.3:
        parts["COUNT"] = str(chance.randint(1, 60))
    return parts


def case(chance):
    parts = random_rule(chance)
    start = datetime(1995, 1, 1) + timedelta(seconds=chance.randint(0, 12000 * 86400))
    if parts["FREQ"] != "SECONDLY":
        start = start.replace(second=0)
    length = {"SECONDLY": 1, "MINUTELY": 3, "HOURLY": 40}.get(parts["FREQ"], 1500)
    first = start + timedelta(days=chance.choice([0, 0, chance.randint(0, 4000)]))
    if "COUNT" in parts or parts["FREQ"] in ("SECONDLY", "MINUTELY"):
        # dateutil counts from the start, one by one.
        first = start
    first -= timedelta(days=1)
    last = first + timedelta(days=length)
    if chance.random() < 0.2 and "COUNT" not in parts:
        parts["UNTIL"] = (first + (last - first) * chance.random()).strftime(FORM)
    return parts, start, first, last


class TooLong(Exception):
    pass


def give_up(*_):
    raise TooLong


def expected_in_time(*case):
    """What dateutil finds; None if it does not come to an end."""
    signal.signal(signal.SIGALRM, give_up)
    signal.setitimer(signal.ITIMER_REAL, DATEUTIL_TIME)
    try:
        return expected(*case)
    except TooLong:
        return None
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)


def expected(parts, start, first, last):
    found = set()
    try:
        for time in rrulestr("RRULE:" + rule_text(parts), dtstart=start).xafter(first - timedelta(seconds=1), inc=True):
            if time >= last or len(found) >= MOST:
                break
            if time >= first:
                found.add(time)
    except ValueError as error:
        # It says that of some rules that never match.
        if "empty" not in str(error):
            raise
    # The start takes place, whether it follows the rule or not.
    if first <= start < last:
        found.add(start)
    return sorted(found)


def rule_text(parts):
    return ";".join(f"{name}={value}" for name, value in parts.items())


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("--seed", type=int, default=random.randrange(1_000_000))
    arguments.add_argument("--cases", type=int, default=2000)
    arguments.add_argument("--program", type=Path, default=PROGRAM)
    chosen = arguments.parse_args()
    print(f"Saat {chosen.seed}")
    chance = random.Random(chosen.seed)
    cases = [case(chance) for _ in range(chosen.cases)]
    text = "\n".join("\t".join([ZONE, start.strftime(FORM), rule_text(parts), first.strftime(FORM), last.strftime(FORM)])
                     for parts, start, first, last in cases)
    answers = subprocess.run([chosen.program], input=text, capture_output=True, text=True, check=True,
                             timeout=3600).stdout.splitlines()
    occurrences = 0
    failed = 0
    reasons = Counter()
    for (parts, start, first, last), answer in zip(cases, answers, strict=True):
        times = expected_in_time(parts, start, first, last)
        if times is None:
            reasons[ENDLESS] += 1
            continue
        wanted = [time.strftime(FORM) for time in times][:MOST]
        found = answer.split()[:MOST]
        occurrences += len(wanted)
        if found == wanted:
            continue
        reason = known_difference(parts)
        if reason:
            reasons[reason] += 1
            continue
        failed += 1
        missing = [time for time in wanted if time not in set(found)][:3]
        extra = [time for time in found if time not in set(wanted)][:3]
        print(f"{start:{FORM}} {rule_text(parts)} von {first:{FORM}} bis {last:{FORM}}: "
              f"{len(found)} statt {len(wanted)}, es fehlen {missing}, zu viel {extra}")
    print(f"{len(cases)} Regeln, {occurrences} Termine, {failed} Regeln anders")
    for reason, count in reasons.items():
        print(f"  {count} mal: {reason}")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
