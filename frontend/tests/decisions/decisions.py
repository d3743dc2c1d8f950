#!/usr/bin/env python3
"""Random programs of decisions (make.py), built with veldacc and run: they print and return what the interpreter of
program.py says, and their descriptions and counts are the interpreter's, whatever the compiler, its options, and the way in
which hits are counted.

    decisions.py VELDACC VELDACOV [--seeds=FIRST-LAST] [--builds=NAME,...] [--shrink] [--keep=FOLDER]

--shrink makes the first program that fails small and shows it; --keep leaves the programs that fail in a folder."""

import argparse
import collections
import concurrent.futures
import copy
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True  # nothing is left in the source tree
import make
import program

SANITIZE = ["-fsanitize=address,undefined", "-fno-sanitize-recover=all"]
CLANG = next((name for name in ("clang-19", "clang", "clang-14") if shutil.which(name)), "clang")
BUILDS = {  # options of veldacc, compiler with options
    "fast": ([], ["gcc", "-O2"]),
    "own": (["--counter-per-item"], ["gcc", "-O0"]),
    "ordered": (["--ordered"], ["gcc", "-O0"]),
    "clang": ([], [CLANG, "-O2"]),
    "plain": ([], ["gcc", "-O0"]),
    "sanitized": ([], ["gcc", "-O1", *SANITIZE]),
    "clang-own": (["--counter-per-item"], [CLANG, "-O0"]),
}


class Failure(Exception):
    pass


def call(words, cwd, **environment):
    env = {**{name: value for name, value in os.environ.items() if not name.startswith("VELDA")}, **environment}
    try:
        return subprocess.run([str(word) for word in words], cwd=cwd, env=env, capture_output=True, text=True, timeout=60)
    except subprocess.TimeoutExpired as late:
        raise Failure(f"{' '.join(map(str, words))}: no end after a minute") from late


# --- Descriptions and traces, as items with counts ---

FIELD = re.compile(r'"((?:[^"\\]|\\.)*)"|(\S+)')


def fields(line):
    return [re.sub(r"\\([\"\\])", r"\1", text) if word == "" else word for text, word in FIELD.findall(line)]


def outcome(expression, values):
    """A composition's expression in prefix form; values: of the conditions in their order."""
    at = iter(expression)
    values = iter(values)

    def operand():
        letter = next(at)
        if letter == ".":
            return next(values)
        if letter == "N":
            return not operand()
        left, right = operand(), operand()
        return {"A": left and right, "O": left or right, "X": left != right}[letter.upper()]

    return operand()


def cases(words, conditions):
    """The texts of a composition's cases, the texts of its conditions, and its lines. words: the fields behind CC."""
    count = int(words[1])
    parts = [conditions[int(word)] for word in words[2:2 + count]]
    number, letters = int(words[2 + count]), words[3 + count]
    texts = []
    for i in range(number):
        if len(words) > 4 + count:
            case = letters[i * count:(i + 1) * count]
            whole = i < int(words[4 + count])
        else:
            values = [bool(i >> j & 1) for j in range(count)]
            case = "".join("FT"[value] for value in values)
            whole = outcome(letters, values)
        texts.append(f"{case}={'FT'[whole]}")
    return texts, parts[0][2], tuple(part[3] for part in parts), (parts[0][4], parts[-1][5])


def described(path):
    """(keyword, identifier) -> item."""
    items, conditions = {}, {}
    for line in path.read_text().splitlines():
        word, *rest = fields(line)
        if word == "PR":
            items["TP", int(rest[0])] = ("TP", rest[1], rest[2], "", *map(int, rest[3:5]))
        elif word == "AP":
            items["TA", int(rest[0])] = ("TA", "call", rest[1], rest[2], *map(int, rest[3:5]))
        elif word == "BL":
            items["TB", int(rest[0])] = ("TB", *rest[1:4], *map(int, rest[4:6]))
        elif word in ("CE", "CA"):
            for i, what in enumerate(["true", "false"] if word == "CE" else ["constant"]):
                items["TE", int(rest[0]) + i] = ("TE", what, rest[1], rest[2], *map(int, rest[3:5]))
            conditions[int(rest[0])] = items["TE", int(rest[0])]
        elif word == "CC":
            texts, service, parts, lines = cases(rest, conditions)
            for i, text in enumerate(texts):
                items["TE", int(rest[0]) + i] = ("TE", text, service, parts, *lines)
        elif word == "DC":
            break
    return items


def hits(path):
    """(keyword, identifier) -> count."""
    counts = collections.Counter()
    for line in path.read_text().splitlines():
        word, *rest = line.split(" ")
        if word in ("TP", "TA", "TB", "TE"):
            numbers = [int(text[::-1], 16) for text in rest]
            counts[word, numbers[0]] += numbers[1] if len(numbers) > 1 else 1
    return counts


def grouped(pairs):
    """Item -> counts, of all that look the same in their order."""
    groups = collections.defaultdict(list)
    for item, count in pairs:
        groups[item].append(count)
    return groups


def differences(expected, items, counts):
    strange = [f"hit of no item: {key}" for key in counts if key not in items]
    wanted = grouped(expected)
    got = grouped((items[key], counts[key]) for key in sorted(items))
    # What a compiler thinks of `if (1) return;` decides whether the end of such a function is described.
    with_constants = {item[2] for item in wanted if item[1] == "constant" and not item[3].startswith("case ")}
    for item in sorted(set(wanted) | set(got), key=str):
        free = item[1] == "endproc" and item[2] in with_constants and not any(wanted[item] + got[item])
        if wanted[item] != got[item] and not free:
            strange.append(f"{item}: {got[item] or 'not described'}, should be {wanted[item] or 'not there'}")
    return strange


# --- One program ---

def write(made, seed):
    """The text of a program, its layout by the seed; and what is expected."""
    text = made.text(random.Random(seed))
    return text, *made.expected()


def check(place, written, build, tools):
    """Builds, runs and compares; gives what is different as lines."""
    text, items, output, status = written
    options, compiler = BUILDS[build]
    (place / "prog.c").write_text(text)
    built = call([tools.veldacc, "--fdc-dir", "fdc", *options, "--", *compiler, "-w", "prog.c", "-o", "prog"], place)
    if built.returncode != 0 or built.stderr:
        return [f"build ends with {built.returncode}: {built.stdout}{built.stderr}"]
    run = call(["./prog"], place, VELDA_MODE="plain" if build == "ordered" else "counted", VELDA_TIO="t.tio",
               ASAN_OPTIONS="detect_leaks=0")
    if (run.returncode, run.stdout, run.stderr) != (status, output, ""):
        return [f"status {run.returncode}, should be {status}", run.stdout[-500:], "should be", output[-500:], run.stderr]
    descriptions = list((place / "fdc").rglob("*.fdc"))
    if len(descriptions) != 1:
        return [f"{len(descriptions)} descriptions"]
    report = call([tools.veldacov, descriptions[0], "t.tio", "-OUTPUT=report"], place, NORVIKDIR=str(place))
    said = [line for line in report.stderr.splitlines() if "compound conditions, it can take" not in line]
    if report.returncode != 0 or said:
        return [f"veldacov ends with {report.returncode}: {said}"]
    return differences(items, described(descriptions[0]), hits(place / "t.tio"))


def tried(written, build, tools):
    with tempfile.TemporaryDirectory(prefix="velda-decisions-") as name:
        place = pathlib.Path(name)
        (place / "lib" / "locale").mkdir(parents=True)
        (place / "fdc").mkdir()
        try:
            return check(place, written, build, tools)
        except Failure as failure:
            return [str(failure)]


def made(seed):
    """The program of a seed; None if it is no use."""
    one = make.make(random.Random(seed))
    try:
        return one, write(one, seed)
    except program.Reject:
        return None


def run_seed(job):
    seed, builds, tools = job
    one = made(seed)
    if not one:
        return seed, None, []
    for build in builds:
        found = tried(one[1], build, tools)
        if found:
            return seed, build, found
    return seed, "", []


# --- Making a failing program small ---

def lists(node, seen=None):
    """All lists of statements below a node, each with its owner."""
    for name, value in list(vars(node).items()):
        if name in ("statements", "groups", "functions"):
            yield node, value
        for part in value if isinstance(value, (list, tuple)) else [value]:
            if isinstance(part, (program.Statement, program.Group)) or name in ("functions", "body"):
                yield from lists(part)


def nodes(node):
    for name, value in list(vars(node).items()):
        if name in ("function", "decision"):
            continue
        for i, part in enumerate(value) if isinstance(value, (list, tuple)) else [(None, value)]:
            if isinstance(part, program.Node):
                yield node, name, i, part
                yield from nodes(part)


def smaller(one):
    """Programs with something left out: statements first, then parts of expressions and statements."""
    for number in range(sum(len(found) for _, found in lists(one))):
        other = copy.deepcopy(one)
        for owner, found in lists(other):
            if number < len(found):
                del found[number]
                if hasattr(owner, "labels") and isinstance(owner.labels, dict):
                    owner.labels = {name: place - (place > number) for name, place in owner.labels.items()}
                yield other
                break
            number -= len(found)
    for number, (owner, name, i, part) in enumerate(nodes(one)):
        inner = [p for p in vars(part).values() if isinstance(p, program.Node)] + list(getattr(part, "parts", ()))
        kind = program.Expression if isinstance(part, program.Expression) else program.Statement
        for choice in range(len([p for p in inner if isinstance(p, kind)]) + 1):
            other = copy.deepcopy(one)
            owner, name, i, part = next(x for n, x in enumerate(nodes(other)) if n == number)
            inner = [p for p in vars(part).values() if isinstance(p, program.Node)] + list(getattr(part, "parts", ()))
            inner = [p for p in inner if isinstance(p, kind)]
            if choice < len(inner):
                new = inner[choice]
            elif kind is program.Expression and not isinstance(part, (program.Constant, program.Variable)):
                new = program.Variable("g0")
            else:
                continue
            old = getattr(owner, name)
            setattr(owner, name, new if i is None else type(old)(new if n == i else p for n, p in enumerate(old)))
            yield other


def builds_plainly(text):
    return subprocess.run(["gcc", "-w", "-x", "c", "-", "-o", "/dev/null"], input=text, text=True,
                          capture_output=True).returncode == 0


def shrink(one, seed, build, tools):
    best, progress = one, True
    while progress:
        progress = False
        for other in smaller(best):
            try:
                written = write(other, seed)
            except (program.Reject, AttributeError, KeyError, IndexError, RecursionError, program.Leave, program.Break,
                    program.Continue, TypeError):
                continue
            if len(written[0]) < len(best.text(random.Random(seed))) and builds_plainly(written[0]):
                found = tried(written, build, tools)
                if found and not found[0].startswith("status"):
                    best, progress = other, True
                    break
    written = write(best, seed)
    print(written[0], *tried(written, build, tools), sep="\n")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("veldacc", type=pathlib.Path)
    parser.add_argument("veldacov", type=pathlib.Path)
    parser.add_argument("--seeds", default="1-8")
    parser.add_argument("--builds", default=",".join(BUILDS))
    parser.add_argument("--shrink", action="store_true")
    parser.add_argument("--keep", type=pathlib.Path)
    tools = parser.parse_args()
    tools.veldacc, tools.veldacov = tools.veldacc.resolve(), tools.veldacov.resolve()
    first, last = map(int, tools.seeds.split("-"))
    jobs = [(seed, tools.builds.split(","), tools) for seed in range(first, last + 1)]
    with concurrent.futures.ProcessPoolExecutor(os.cpu_count()) as pool:
        results = list(pool.map(run_seed, jobs))
    failed = [result for result in results if result[2]]
    for seed, build, found in failed:
        print(f"seed {seed}, build {build}:", *found[:8], "" if len(found) <= 8 else f"and {len(found) - 8} more", sep="\n  ")
        if tools.keep:
            tools.keep.mkdir(exist_ok=True)
            (tools.keep / f"{seed}.c").write_text(made(seed)[1][0])
    unused = sum(result[1] is None for result in results)
    print(f"{len(results) - unused} programs, {unused} left out, {len(failed)} failed")
    if failed and tools.shrink:
        shrink(made(failed[0][0])[0], *failed[0][:2], tools)
    return 1 if failed or unused * 4 > len(results) else 0


if __name__ == "__main__":
    sys.exit(main())
