#!/usr/bin/env python3
"""Runs the command lines of cases.txt without and with `veldacc` and compares all that they leave.

    cases.py VELDACC [NAME...]
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

here = Path(__file__).resolve().parent
compilers = {"gcc": "g++", "clang": "clang++"}


def rows(names):
    for line in (here / "cases.txt").read_text().splitlines():
        if not line or line.startswith("#"):
            continue
        fields = [field.strip() for field in re.split(r"(?<=\s)::(?=\s|$)", line)]
        if not 3 <= len(fields) <= 4:
            sys.exit(f"cases.txt: {line}")
        if not names or fields[0] in names:
            yield fields[0], fields[1], fields[2].split(), fields[3] if len(fields) == 4 else ""


def output_of(program, folder):
    """Of a program that was made: what it prints, and its status. None for other files."""
    with open(program, "rb") as file:
        head = file.read(20)
    if head[:4] != b"\x7fELF" or head[16] not in (2, 3) or program.suffix in (".so", ".gch"):
        return None
    run = subprocess.run([program], cwd=folder, stdin=subprocess.DEVNULL, capture_output=True, timeout=60,
                         env={**os.environ, "VELDA_TIO": "", "LD_LIBRARY_PATH": str(folder)})
    return run.stdout, run.returncode


def left(folder):
    """What stands in the folder, by name: descriptions, and all other files with what matters of them."""
    descriptions, others = [], {}
    for path in sorted(path for path in folder.rglob("*") if path.is_file()):
        name = str(path.relative_to(folder))
        if path.suffix == ".fdc":
            descriptions.append(name)
        elif path.suffix in (".d", ".dep", ".i"):
            others[name] = path.read_bytes()
        else:
            others[name] = output_of(path, folder)
    return descriptions, others


def run(command, compiler, wrapper, work):
    shutil.copytree(here / "input", work)
    temporary = work.with_name(work.name + ".tmp")
    temporary.mkdir()
    front = f"{wrapper} " if wrapper else ""
    environment = {**os.environ, "CC": front + compiler, "CXX": front + compilers[compiler], "W": wrapper,
                   "PLAIN": compiler, "LC_ALL": "C.UTF-8", "TMPDIR": str(temporary), "VELDA_TIO": "", "MAKEFLAGS": ""}
    for name in ("VELDACC", "VELDACC_OPTIONS", "DESTDIR", "CFLAGS", "MAKELEVEL"):
        environment.pop(name, None)
    done = subprocess.run(["bash", "-c", command], cwd=work, env=environment, stdin=subprocess.DEVNULL,
                          capture_output=True, timeout=300)
    said = done.stderr.decode().replace(str(work), "").replace(str(temporary), "")
    # The names of temporary files are the compiler's.
    said = re.sub(r"/cc\w{6}", "/cc", re.sub(r"-[0-9a-f]{6}\.o", ".o", said))
    return done.returncode, done.stdout, said, *left(work), sorted(path.name for path in temporary.iterdir())


def faults(case, wrapper):
    (name, command, descriptions, restriction), compiler = case
    with tempfile.TemporaryDirectory() as folder:
        plain = run(command, compiler, "", Path(folder) / "plain")
        wrapped = run(command, compiler, wrapper, Path(folder) / "front")
    for what, expected, found in zip(("status", "standard output", "messages"), plain, wrapped):
        if expected != found:
            yield f"{what} without:\n{expected}\n--- with:\n{found}"
    if wrapped[3] != descriptions:
        yield f"descriptions {wrapped[3]}"
    if plain[4] != wrapped[4]:
        keys = sorted(key for key in {*plain[4], *wrapped[4]} if plain[4].get(key, 0) != wrapped[4].get(key, 0))
        yield "files differ: " + ", ".join(f"{key}: {plain[4].get(key, 'missing')} {wrapped[4].get(key, 'missing')}"
                                           for key in keys)
    if wrapped[5]:
        yield f"temporary files stay: {wrapped[5]}"


def is_possible(case):
    (_, _, _, restriction), compiler = case
    kind, _, program = restriction.partition(" ")
    return (shutil.which(compiler) and shutil.which(compilers[compiler]) and (kind != "only" or program == compiler)
            and (kind != "needs" or shutil.which(program)))


def report(case, wrapper):
    found = list(faults(case, wrapper))
    for fault in found:
        print(f"== {case[0][0]}, {case[1]}: {case[0][1]}\n{fault}", file=sys.stderr)
    return bool(found)


def main(arguments):
    if not arguments:
        sys.exit(__doc__)
    cases = [(row, compiler) for row in rows(arguments[1:]) for compiler in compilers]
    possible = [case for case in cases if is_possible(case)]
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        failed = sum(pool.map(lambda case: report(case, os.path.realpath(arguments[0])), possible))
    print(f"{len(possible)} cases, {len(cases) - len(possible)} left out, {failed} failed")
    return 1 if failed or not possible else 0


sys.exit(main(sys.argv[1:]))
