#!/usr/bin/env python3
"""Compiles the sources of examples/burner with `veldacc`, runs the scenarios, and compares descriptions and traces with
those that are shipped: which items there are, by kind, function, text and lines, and which of them each scenario hits.
Identifiers may differ. An earlier tool made the shipped ones; what it left out is listed here, and has to be there.

    burner.py VELDACC
"""
import os
import subprocess
import sys
import tempfile
from collections import Counter
from pathlib import Path

sys.dont_write_bytecode = True  # the tree stays as it is
from coverage_data import hits, sections

example = Path(__file__).resolve().parents[3] / "examples/burner"

# Calls inside decisions of one condition: source, function, called function, line.
LEFT_OUT = {
    ("burner.c", "schedule", "queue_put", 40), ("burner.c", "step", "may_purge", 63), ("burner.c", "step", "may_ignite", 67),
    ("burner.c", "step", "must_shut_down", 76), ("burner.c", "handle", "may_unlock", 135),
    ("burner.c", "kind_of", "strcmp", 162), ("burner.c", "kind_of", "strcmp", 164),
    ("burner.c", "read_scenario", "fgets", 172), ("burner.c", "main", "read_scenario", 209),
    ("burner.c", "main", "handle", 216), ("queue.c", "sift_down", "before", 35),
}


def left_out(source, item):
    return item.kind == "AP" and (Path(source).name, item.service, item.text, item.lines[0]) in LEFT_OUT


def scenarios():
    for line in (example / "inputs/scenarios").read_text().splitlines():
        if line and not line.startswith("#"):
            trace, number, service, name, source, status, *arguments = line.split()
            yield trace, number, service, name, source, int(status), arguments


def build(veldacc, folder, options):
    sources = sorted((example / "src").glob("*.c"))
    subprocess.run([veldacc, "--root", example, "--fdc-dir", folder / "fdc", *options, "gcc", "-std=gnu11", "-O2", "-Wall",
                    "-Werror", *sources, "-o", folder / "burner"], check=True)


def run(folder, name, source, arguments, status):
    with open(example / "inputs" / source, "rb") as scenario:
        done = subprocess.run([folder / "burner", *arguments], stdin=scenario, capture_output=True, check=False,
                              env={**os.environ, "VELDA_TIO": str(folder / f"{name}.tio"), "VELDA_TEST": name})
    if done.returncode != status:
        yield f"{name}: status {done.returncode}"


def hit_items(found, described):
    """What a test hit: (source, item), by the sections that its parts belong to."""
    items = set()
    for section in described:
        of_part = found.get((section.key, section.checksum), ())
        items.update((Path(section.source).name, section.items[identity]) for identity in of_part)
    return items


def unlike(what, shipped, made):
    """Differences of two sets of (source, item), what is listed aside."""
    for sign, more in (("shipped only", shipped - made), ("new only", {entry for entry in made - shipped if not left_out(*entry)})):
        for source, item in sorted(more):
            yield f"{what}: {sign}: {source} {' '.join(map(str, item))}"


def compare(veldacc, options, descriptions, runs):
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        build(veldacc, folder, options)
        shipped = [section for path in descriptions for section in sections(path)]
        made = [section for section in (section for path in sorted((folder / "fdc").glob("*.fdc")) for section in sections(path))
                if Path(section.source).name in {Path(other.source).name for other in shipped}]
        both = [Counter((Path(section.source).name, item) for section in group for item in section.items.values())
                for group in (shipped, made)]
        for source, item in (both[0] - both[1]).keys() | {entry for entry in (both[1] - both[0]) if not left_out(*entry)}:
            yield f"description: {source} {' '.join(map(str, item))}: {both[0][source, item]} times shipped, {both[1][source, item]} new"
        missing = {(source, *key) for source, *key in LEFT_OUT if any(Path(section.source).name == source for section in made)
                   and not any(entry == source and (item.service, item.text, item.lines[0]) == tuple(key) and item.kind == "AP"
                               for entry, item in both[1])}
        yield from (f"description: {entry} is not there" for entry in sorted(missing))
        for trace, test, source, arguments, status in runs:
            yield from run(folder, test, source, arguments, status)
            shipped_hits = hits([example / "traces" / f"{trace}.tio"])[test]
            made_hits = hits([folder / f"{test}.tio"])[test]
            yield from unlike(f"{test}", hit_items(shipped_hits, shipped), hit_items(made_hits, made))


def main(veldacc):
    veldacc = os.path.realpath(veldacc)
    plain = [(trace, name.replace("bad_", "bad "), source, arguments, status)
             for trace, _, _, name, source, status, arguments in scenarios()]
    forced = [("forced", test, source, [], 0) for trace, test, source, _, status in plain if status == 0]
    found = list(compare(veldacc, [], sorted((example / "fdc").glob("*.fdc")), plain))
    found += [f"forced: {text}" for text in compare(veldacc, ["--forced"], [example / "forced/interlock.fdc"], forced)]
    print("\n".join(found) or "descriptions and traces are those of the example")
    return 1 if found else 0


if len(sys.argv) != 2:
    sys.exit(__doc__)
sys.exit(main(sys.argv[1]))
