#!/usr/bin/env python3
"""Each file of cases/ is a C program with what must come out at its end: one line for each item of the description in its
order, without its identifier, behind the number of its hits (CE: true/false; CC: one number for each case).

    run_cases.py --instrument PROGRAM --runtime LIBRARY [--report VELDACOV] [case ...]

Every case is preprocessed, instrumented and compiled by gcc and the clangs there are, at -O0 and -O2, by shared counters,
with a counter for each item, and ordered, and once under the sanitizers; output and status have to be those of the program
without instrumentation. A case may say more on lines that begin with "options:" (of the instrumenter), "flags:" (of the
compiler), "warns:" (a part of a warning that must be printed), "arguments:" (of the program) and "only: gcc".
"""
import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile

HIT_KEYWORD = {"PR": "TP", "AP": "TA", "BL": "TB", "CE": "TE", "CA": "TE", "CC": "TE"}


def read_case(path):
    text = open(path, encoding="utf-8").read()
    block = re.search(r"/\* expected\n(.*)\*/", text, re.S)
    if not block:
        sys.exit(path + ": no expected items")
    facts = {"options": [], "flags": [], "arguments": [], "warns": [], "only": []}
    items = []
    for line in block.group(1).splitlines():
        key, _, rest = line.partition(": ")
        if key in facts:
            facts[key] += [rest] if key == "warns" else rest.split()
        elif line:
            items.append(line)
    return facts, items


def trace_hits(trace):
    """Hits of each part: (keyword, identifier) -> count."""
    parts = {}
    part = None
    for line in open(trace, encoding="latin1"):
        field = line.split()
        if field[0] == "FT":
            key = field[1]
        elif field[0] == "DC":
            part = parts.setdefault(key, {})
        elif field[0] in ("TP", "TA", "TB", "TE"):
            at = (field[0], int(field[1][::-1], 16))
            count = int(field[2][::-1], 16) if len(field) > 2 else 1
            part[at] = part.get(at, 0) + count
    return parts


def file_key(directory, name):
    data = (directory + name).encode()
    data += b"\0" * (-len(data) % 4)
    value = 0x4A4A4A4A
    for at in range(0, len(data), 4):
        word = sum((byte - 256 if byte > 127 else byte) << shift for byte, shift in zip(data[at:at + 4], (24, 16, 8, 0)))
        value ^= word & 0xFFFFFFFF
    return (("%x" % value)[::-1].rstrip("0")) or "0"


def described_hits(description, parts):
    """The items of a description as expected files have them."""
    lines = []
    hits = {}
    for line in open(description, encoding="utf-8"):
        line = line.rstrip("\n")
        code, _, rest = line.partition(" ")
        if code == "FC":
            name, directory = re.findall(r'"([^"]*)"', rest)[:2]
            hits = parts.get(file_key(directory, name), {})
            if lines:
                lines.append("section " + name)
        if code not in HIT_KEYWORD:
            continue
        number, _, rest = rest.partition(" ")
        at = int(number)
        count = lambda i: str(hits.get((HIT_KEYWORD[code], i), 0))
        if code == "CE":
            lines.append(count(at) + "/" + count(at + 1) + " CE " + rest)
        elif code == "CC":
            field = rest.split()
            conditions = int(field[0])
            cases = int(field[1 + conditions])
            lines.append(",".join(count(at + i) for i in range(cases)) + " CC " + " ".join(field[2 + conditions:]))
        else:
            lines.append(count(at) + " " + code + " " + rest)
    return lines


class Failure(Exception):
    pass


def call(command, **more):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False, **more)


def must(command, **more):
    done = call(command, **more)
    if done.returncode != 0:
        raise Failure(" ".join(command) + "\n" + done.stderr.decode(errors="replace"))
    return done


def preprocess(compiler, flags, source, folder):
    text, macros = os.path.join(folder, "x.i"), os.path.join(folder, "x.map.c")
    must([compiler, *flags, "-E", source, "-o", text])
    if "clang" in compiler:
        parts = must([compiler, *flags, "-dM", "-E", "-x", "c", "/dev/null"]).stdout
        parts += must([compiler, *flags, "-E", "-frewrite-includes", source]).stdout
        open(macros, "wb").write(parts)
    else:
        must([compiler, *flags, "-E", "-fdirectives-only", source, "-o", macros])
    return text, macros


def run(program, arguments, folder, **environment):
    done = call([program, *arguments], cwd=folder, env={**os.environ, **environment})
    return done.returncode, done.stdout, done.stderr


def check(tools, case, compiler, flags, way):
    facts, expected = read_case(case)
    flags = [*flags, *facts["flags"]]
    with tempfile.TemporaryDirectory() as folder:
        text, macros = preprocess(compiler, flags, case, folder)
        output, description = os.path.join(folder, "x.inst.i"), os.path.join(folder, "x.fdc")
        made = call([tools.instrument, "--source", case, "--text", text, "--map", macros, "--output", output,
                     "--description", description, *way, *facts["options"]])
        said = made.stderr.decode(errors="replace")
        if made.returncode != 0:
            raise Failure("instrumenter: status %d\n%s" % (made.returncode, said))
        for warning in facts["warns"]:
            if warning not in said:
                raise Failure("missing warning: " + warning + "\n" + said)
        if not facts["warns"] and said:
            raise Failure("unexpected: " + said)
        program, original = os.path.join(folder, "program"), os.path.join(folder, "original")
        must([compiler, *flags, "-w", "-x", "cpp-output", output, "-x", "none", tools.runtime, "-o", program, "-lm"])
        must([compiler, *flags, "-w", case, "-o", original, "-lm"])
        trace = os.path.join(folder, "x.tio")
        plain = run(original, facts["arguments"], folder)
        seen = run(program, facts["arguments"], folder, VELDA_TIO=trace, VELDA_MODE="counted", VELDA_TEST="a")
        if seen != plain:
            raise Failure("behaves otherwise:\n%s\n%s" % (plain, seen))
        lines = described_hits(description, trace_hits(trace))
        if lines != expected:
            import difflib
            raise Failure("\n".join(difflib.unified_diff(expected, lines, "expected", "found", lineterm="", n=2)))
        if tools.report:
            said = must([tools.report, description, trace, "-OUTPUT=" + os.path.join(folder, "r.txt")], cwd=folder)
            if said.stderr:
                raise Failure("report: " + said.stderr.decode(errors="replace"))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--instrument", required=True)
    parser.add_argument("--runtime", required=True)
    parser.add_argument("--report")
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("cases", nargs="*")
    tools = parser.parse_args()
    folder = os.path.join(os.path.dirname(os.path.abspath(__file__)), "cases")
    cases = [os.path.abspath(case) for case in tools.cases] or sorted(
        os.path.join(folder, name) for name in os.listdir(folder) if name.endswith(".c"))
    compilers = [name for name in ("gcc", "clang", "clang-19") if shutil.which(name)]
    runs = [("gcc", ["-O0"], [])] if tools.quick else [
        *((compiler, [level], []) for compiler in compilers for level in ("-O0", "-O2")),
        ("gcc", ["-O2"], ["--counter-per-item"]), ("gcc", ["-O1"], ["--ordered"]),
        ("gcc", ["-O1", "-fsanitize=address,undefined", "-fno-sanitize-recover=all"], [])]
    failed = 0
    for case in cases:
        only = read_case(case)[0]["only"]
        for compiler, flags, way in runs:
            if only and compiler not in only:
                continue
            try:
                check(tools, case, compiler, flags, way)
            except Failure as problem:
                failed += 1
                print("%s: %s %s %s:\n%s\n" % (os.path.basename(case), compiler, " ".join(flags), " ".join(way), problem))
    print("%d cases, %d failures" % (len(cases), failed))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
