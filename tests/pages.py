#!/usr/bin/env python3
"""Reads the pages as a newcomer does who types all they show: runs the commands of one page after the other, and compares
what they print with what the page shows.

    pages.py BUILD [--refresh]

BUILD is a build directory with the program; it serves as build/release of a fresh checkout. In blocks marked ```console a
line "$ ..." is a command, lines "> ..." behind it continue it, and the lines up to the next command are what it prints, on
standard output and standard error. "..." alone stands for any number of lines. All commands of all pages run in one plain
shell. Dates of the present moment compare equal with any date. A page cleans up behind itself: the next one finds the
same directory, variables and files (only NORVIKDIR and PATH, which the README sets, stay for all others). Pages with
commands of the front end are left out where BUILD is without it.

--refresh writes what the commands printed into the pages, where they show all of it: review before you keep it.
"""
import calendar
import re
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
FIRST = ["README.md", "packaging/README.md", "docs/report.md", "docs/outputs.md", "docs/formats/README.md"]
DATE = re.compile(r"(?:Mon|Tue|Wed|Thu|Fri|Sat|Sun) [A-Z][a-z]{2} [ \d]\d \d\d:\d\d:\d\d \d{4}")
ANYTHING = "..."
# The directory, the variables of programs, and all files.
STATE = """pwd; export -p | grep -v ' OLDPWD=\\| NORVIKDIR=\\| PATH='
find "$HOME" -type d -print -o -exec stat -c '%n %y %s' {} +"""


class Step:
    """A command, the output that its page shows, and the line where this output begins."""

    def __init__(self, page, line, command):
        self.page, self.line, self.command, self.shown, self.printed = page, line, command, [], None


def steps_of(page):
    steps, in_block = [], False
    for number, line in enumerate((ROOT / page).read_text().splitlines(), 1):
        if line.startswith("```"):
            in_block = not in_block and line == "```console"
        elif in_block and line.startswith("$ "):
            steps.append(Step(page, number, line[2:]))
        elif in_block and line.startswith("> ") and not steps[-1].shown:
            steps[-1].command += "\n" + line[2:]
            steps[-1].line = number
        elif in_block:
            steps[-1].shown.append(line)
    return steps


def run(steps, build):
    """Notes what each command prints, as far as the shell gets."""
    with tempfile.TemporaryDirectory() as home:
        checkout = Path(home, "check out")
        shutil.copytree(ROOT / "examples", checkout / "examples")
        (checkout / "build").mkdir()
        (checkout / "build/release").symlink_to(build)
        Path(home, "tmp").mkdir()
        environment = {"PATH": "/usr/bin:/bin", "TZ": "UTC", "LANG": "C.UTF-8", "HOME": home, "TMPDIR": f"{home}/tmp"}
        mark = f"-- {time.time_ns()} --"
        script = "".join(f"{step.command}\necho '{mark}'\n" for step in steps)
        printed = subprocess.run(["sh"], input=script, text=True, cwd=checkout, env=environment, timeout=300,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT).stdout
    for step, part in zip(steps, printed.split(mark + "\n")[:-1]):
        step.printed = part.splitlines()


def without_present_dates(lines, start):
    def masked(match):
        seconds = calendar.timegm(time.strptime(match.group(), "%a %b %d %H:%M:%S %Y"))  # the runs are in UTC
        return "(now)" if start - 2 <= seconds <= time.time() + 1 else match.group()

    return [DATE.sub(masked, line) for line in lines]


def pattern_of(shown):
    """A regular expression for lines that each end with a line end."""
    parts = []
    for line in shown:
        if line == ANYTHING:
            parts.append(r"(?:.*\n)*?")
            continue
        parts.append("".join(f"(?:{re.escape(piece)}|\\(now\\))" if DATE.fullmatch(piece) else re.escape(piece)
                             for piece in re.split(f"({DATE.pattern})", line)) + r"\n")
    return "".join(parts)


def fault_of(step, start):
    if step.printed is None:
        return "the shell has ended"
    actual = "".join(line + "\n" for line in without_present_dates(step.printed, start))
    if re.fullmatch(pattern_of(step.shown), actual):
        return None
    return "\n    ".join(["shown:", *step.shown, "  printed:", *step.printed])


def refresh(steps):
    for page in {step.page for step in steps}:
        lines = (ROOT / page).read_text().splitlines()
        for step in reversed([step for step in steps if step.page == page]):
            if ANYTHING not in step.shown:
                lines[step.line:step.line + len(step.shown)] = step.printed
        (ROOT / page).write_text("\n".join(lines) + "\n")


def main():
    others = sorted(str(page.relative_to(ROOT)) for page in (ROOT / "docs").rglob("*.md"))
    pages = [steps_of(page) for page in FIRST + [page for page in others if page not in FIRST]]
    front_end = Path(sys.argv[1], "veldacc").exists()
    pages = [steps for steps in pages if steps and (front_end or not any("veldacc " in step.command for step in steps))]
    states = [Step(steps[0].page, steps[-1].line, STATE) for steps in pages[:1] + pages]
    start = time.time()
    run(states[:1] + [step for steps, state in zip(pages, states[1:]) for step in steps + [state]], Path(sys.argv[1]).resolve())
    commands = [step for steps in pages for step in steps]
    if sys.argv[2:] == ["--refresh"]:
        refresh(commands)
        return 0
    faults = 0
    for before, state in zip(states, states[1:]):
        state.shown = before.printed or []
    for step in commands + states[1:]:
        if fault := fault_of(step, start):
            faults += 1
            print(f"{step.page}:{step.line}: $ {step.command}\n  {fault}")
    print(f"{len(pages)} pages, {len(commands)} commands, {faults} differences")
    return 1 if faults else 0


sys.exit(main())
