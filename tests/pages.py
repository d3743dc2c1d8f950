#!/usr/bin/env python3
"""Runs the commands that a page shows, and compares what they print with what the page shows.

    pages.py BUILD PAGE [--refresh]

BUILD is a build directory with the program; it serves as build/release of a fresh copy of the files that pages work
with. In blocks marked ```console a line "$ ..." is a command, lines "> ..." behind it continue it, and the lines up to the
next command are what it prints, on standard output and standard error. "..." alone stands for any number of lines. All
commands of a page run in one shell. Dates of the present moment compare equal with any date.

--refresh writes what the commands printed into the page, where it shows all of it: review before you keep it.
"""
import calendar
import re
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

root = Path(__file__).resolve().parent.parent
date = re.compile(r"(?:Mon|Tue|Wed|Thu|Fri|Sat|Sun) [A-Z][a-z]{2} [ \d]\d \d\d:\d\d:\d\d \d{4}")
anything = "..."


class Step:
    """A command, the output that the page shows, and the line where this output begins."""

    def __init__(self, command, line):
        self.command, self.shown, self.line = command, [], line


def steps_of(page):
    steps, in_block = [], False
    for number, line in enumerate(page.read_text().splitlines()):
        if line.startswith("```"):
            in_block = not in_block and line == "```console"
        elif in_block and line.startswith("$ "):
            steps.append(Step(line[2:], number + 1))
        elif in_block and line.startswith("> ") and not steps[-1].shown:
            steps[-1].command += "\n" + line[2:]
            steps[-1].line = number + 1
        elif in_block:
            steps[-1].shown.append(line)
    return steps


def run(steps, build):
    """The lines that each command prints."""
    with tempfile.TemporaryDirectory() as work:
        shutil.copytree(root / "examples", f"{work}/examples")
        Path(work, "build").mkdir()
        Path(work, "build/release").symlink_to(build)
        for name in ("scripts", "docs", "README.md"):
            Path(work, name).symlink_to(root / name)
        environment = {"PATH": f"{build}:/usr/bin:/bin", "NORVIKDIR": str(build), "TZ": "UTC", "LC_ALL": "C.UTF-8",
                       "HOME": work, "USER": "anna"}
        mark = f"-- {time.time_ns()} --"
        script = "".join(f"{step.command}\necho '{mark}'\n" for step in steps)
        printed = subprocess.run(["bash"], input=script, text=True, cwd=work, env=environment, timeout=300,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT).stdout
        return [part.splitlines() for part in printed.split(mark + "\n")[:-1]]


def without_present_dates(lines, start):
    def masked(match):
        seconds = calendar.timegm(time.strptime(match.group(), "%a %b %d %H:%M:%S %Y"))  # the runs are in UTC
        return "(now)" if start - 2 <= seconds <= time.time() + 1 else match.group()

    return [date.sub(masked, line) for line in lines]


def pattern_of(shown):
    """A regular expression for lines that each end with a line end."""
    parts = []
    for line in shown:
        if line == anything:
            parts.append(r"(?:.*\n)*?")
            continue
        parts.append("".join(f"(?:{re.escape(piece)}|\\(now\\))" if date.fullmatch(piece) else re.escape(piece)
                             for piece in re.split(f"({date.pattern})", line)) + r"\n")
    return "".join(parts)


def check(page, steps, printed, start):
    faults = 0
    for step, lines in zip(steps, printed):
        actual = without_present_dates(lines, start)
        if not re.fullmatch(pattern_of(step.shown), "".join(line + "\n" for line in actual)):
            faults += 1
            print(f"{page}:{step.line}: $ {step.command}\n  shown:")
            print("\n".join("    " + line for line in step.shown))
            print("  printed:")
            print("\n".join("    " + line for line in lines))
    if len(printed) < len(steps):
        faults += 1
        print(f"{page}:{steps[len(printed)].line}: $ {steps[len(printed)].command}\n  ended the shell")
    return faults


def refresh(page, steps, printed):
    lines = page.read_text().splitlines()
    for step, actual in reversed(list(zip(steps, printed))):
        if anything not in step.shown:
            lines[step.line:step.line + len(step.shown)] = actual
    page.write_text("\n".join(lines) + "\n")


def main():
    build, page = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
    steps, start = steps_of(page), time.time()
    printed = run(steps, build)
    if sys.argv[3:] == ["--refresh"]:
        refresh(page, steps, printed)
        return 0
    faults = check(page, steps, printed, start)
    print(f"{page.name}: {len(steps)} commands, {faults} differences")
    return 1 if faults else 0


sys.exit(main())
