#!/usr/bin/env python3
"""What the pages of veldaview say, beside what its exports say of the same campaign, and what becomes of the folder.

    page_contents.py VELDAVIEW

Pages are read with a parser of HTML: counts and marks of lines have to be those of the tracefile, decisions and what is
missing those of the JSON."""

import fcntl
import html.parser
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

VELDAVIEW = os.path.realpath(sys.argv[1])
EXAMPLE = pathlib.Path(__file__).resolve().parent.parent / "examples" / "burner"
FDC = [f"fdc/{name}.fdc" for name in ("burner", "interlock", "queue")]
os.environ["LC_ALL"] = "C.UTF-8"
problems = []


def check(fine, what):
    if not fine:
        problems.append(what)
        print("FAILED:", what, flush=True)


def run(*words, status=0, **options):
    ended = subprocess.run([VELDAVIEW, *map(str, words)], capture_output=True, timeout=120, **options)
    check(ended.returncode == status, f"{words}: status {ended.returncode}, {ended.stderr[-500:]!r}")
    return ended.stdout.decode(), ended.stderr.decode()


class Page(html.parser.HTMLParser):
    """The lines of a source, with mark, count and note; the sentences on conditions; rows of truth tables by decision."""

    def __init__(self, path):
        super().__init__()
        self.lines, self.proofs, self.cases, self.anchors = {}, {}, {}, set()
        self.line = self.decision = self.inside = None
        self.feed(path.read_text())

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        anchor = attributes.get("id", "")
        self.anchors.add(anchor)
        if tag in ("details", "div") and re.fullmatch(r"L\d+", anchor):
            self.line = self.lines.setdefault(int(anchor[1:]), {"mark": attributes.get("class"), "count": None, "note": ""})
        if re.fullmatch(r"D[\d-]+", anchor):
            self.decision = anchor
            self.proofs[anchor], self.cases[anchor] = [], []
        if tag == "li" and self.decision and self.inside == "pairs":
            self.proofs[self.decision].append("")
        if tag == "tr" and self.inside == "truth" and "class" in attributes:
            self.cases[self.decision].append("")
        self.inside = {"ul": attributes.get("class"), "table": attributes.get("class"), "i": "count", "small": "note",
                       "code": self.inside, "b": "sign"}.get(tag, self.inside if self.inside in ("pairs", "truth", "note") else None)

    def handle_endtag(self, tag):
        if tag in ("ul", "table", "i", "small"):
            self.inside = None
        if tag == "b":
            self.inside = "pairs" if self.decision else None

    def handle_data(self, data):
        if self.inside == "count":
            self.line["count"] = int(data)
        elif self.inside == "note":
            self.line["note"] += data
        elif self.inside == "pairs" and self.proofs.get(self.decision):
            self.proofs[self.decision][-1] += data.replace("\n", "")
        elif self.inside == "truth" and self.cases.get(self.decision):
            self.cases[self.decision][-1] += data.replace("\n", "")


def tracefile_lines(text):
    lines, source = {}, ""
    for line in text.splitlines():
        if line.startswith("SF:"):
            source = line[3:]
        if line.startswith("DA:"):
            number, count = line[3:].split(",")
            lines.setdefault(source, {})[int(number)] = int(count)
    return lines


def test_against_exports(work):
    """A campaign that counts, so that pages have numbers."""
    inputs = [*FDC, "traces/counted.tio"]
    run("html", "-o", "pages", *inputs, cwd=work)
    lines = tracefile_lines(run("export", "--format", "lcov", *inputs, cwd=work)[0])
    for file in json.loads(run("export", "--format", "json", *inputs, cwd=work)[0])["files"]:
        page = Page(work / "pages" / "source" / (file["path"].replace("/", "-") + ".html"))
        expected = lines[file["path"]]
        counts = {line: said["count"] for line, said in page.lines.items() if said["count"] is not None}
        check(counts == expected, f"{file['path']}: counts differ: {set(counts.items()) ^ set(expected.items())}")
        for line, said in page.lines.items():
            if said["mark"] in ("h", "x") and line in expected:
                check((expected[line] > 0) == (said["mark"] == "h"), f"{file['path']}:{line} is marked {said['mark']}")
            check(said["mark"] != "h" or line in expected, f"{file['path']}:{line} is hit without evidence")
        text_lines = len((work / file["path"]).read_bytes().splitlines())
        check(set(page.lines) == set(range(1, text_lines + 1)), f"{file['path']}: not every line has an anchor")
        for service in file["services"]:
            check("f-" + service["name"] in page.anchors, f"no anchor for {service['name']}")
        compare_decisions(file, page)


def compare_decisions(file, page):
    decisions = {}
    for service in file["services"]:
        for decision in service["decisions"]:
            on_line = sum(anchor.split("-")[0] == f"D{decision['line']}" for anchor in decisions)
            decisions[f"D{decision['line']}" + (f"-{on_line + 1}" if on_line else "")] = (service, decision)
    check(set(page.proofs) == set(decisions), f"{file['path']}: decisions {set(page.proofs) ^ set(decisions)}")
    for anchor, (service, decision) in decisions.items():
        texts = [service["conditions"][place]["text"] for place in decision["conditions"]]
        rows = [f"{place + 1}{case['values']}{'T' if case['outcome'] else 'F'}{'✓' if case['hits'] else '✗'}{case['hits']}"
                for place, case in enumerate(decision["cases"])]
        shown = page.cases[anchor]
        check(len(shown) == len(rows) and all(s.startswith(r) for s, r in zip(shown, rows)), f"{anchor}: {shown} for {rows}")
        for own, (text, modified, said) in enumerate(zip(texts, decision["modified"], page.proofs[anchor])):
            if modified["proven"]:
                check("is proven by cases" in said, f"{anchor} {text} is proven: {said!r}")
            elif not modified["pairs"]:
                check("no test can prove it" in said, f"{anchor} {text} has no pair: {said!r}")
            for place in modified["missing"]:
                values = decision["cases"][place]["values"]
                words = {"T": "true", "F": "false"}
                others = [f"{texts[i]} is {words[value]}" for i, value in enumerate(values) if i != own and value != "X"]
                wanted = f"{text} {words[values[own]]}{' while ' if others else ''}{' and '.join(others)} (case {place + 1}"
                check(wanted in said, f"{anchor}: {wanted!r} is not in {said!r}")


def tree(folder):
    return {path.relative_to(folder).as_posix(): path.read_bytes() if path.is_file() and not path.is_symlink() else None
            for path in folder.rglob("*")}


def test_folder(work):
    """What is somebody else's is refused and stays; what is ours is replaced, whole or not at all."""
    some, all_inputs = [*FDC[:1], "traces/normal.tio"], [*FDC, "traces/*.tio"]
    run("html", "-o", "deep/er/pages/", *all_inputs, cwd=work)
    pages = work / "deep" / "er" / "pages"
    before = tree(pages)
    run("html", "-o", pages, *some, cwd=work)
    check(set(tree(pages)) < set(before), "pages of sources that are gone are still there")
    check([path.name for path in pages.parent.iterdir()] == ["pages"], "something is left beside the pages")
    listed = set((pages / "veldaview-pages.txt").read_text().splitlines()[1:])
    check(listed == {name for name, text in tree(pages).items() if text is not None} - {"veldaview-pages.txt"}, "the list is wrong")

    for stranger in ("notes.txt", "source/notes.html", "tests/deep/index.html"):
        (pages / stranger).parent.mkdir(exist_ok=True)
        (pages / stranger).write_text("mine")
        kept = tree(pages)
        _, said = run("html", "-o", pages, *some, status=7, cwd=work)
        check(stranger.split("/")[-1] in said or "deep" in said, f"{stranger} is not named: {said!r}")
        check(tree(pages) == kept, f"{stranger}: the folder is not as it was")
        (pages / stranger).unlink()
    shutil.rmtree(pages / "tests" / "deep")
    link = pages / "source" / "link"
    link.symlink_to("/")
    run("html", "-o", pages, *some, status=7, cwd=work)
    link.unlink()
    run("html", "-o", "traces", *some, status=7, cwd=work)
    run("html", "-o", "src/burner.c", *some, status=7, cwd=work)
    run("html", "-o", "-", *some, status=7, cwd=work)
    check(tree(work / "traces") == tree(EXAMPLE / "traces"), "inputs are not as they were")

    kept = tree(pages)
    run("html", "-o", pages, *all_inputs, status=7, cwd=work, preexec_fn=lambda: __import__("resource").setrlimit(1, (20_000, 20_000)))
    check(tree(pages) == kept and len(list(pages.parent.iterdir())) == 1, "a full disk leaves something else than the earlier pages")

    # What killed runs have left goes; what somebody else has put there, or a run at work, stays.
    (pages.parent / ".veldaview-pages-1-0").mkdir()
    (pages.parent / ".veldaview-pages-1-0" / "veldaview-pages.txt").write_text("left")
    (pages.parent / ".veldaview-pages-1-1").mkdir()
    (pages.parent / ".veldaview-pages-1-1" / "mine").write_text("not by veldaview")
    (pages.parent / ".veldaview-pages-1-2").mkdir()
    busy = os.open(pages.parent / ".veldaview-pages-1-2", os.O_RDONLY)
    fcntl.flock(busy, fcntl.LOCK_EX)
    run("html", "-o", pages, *some, cwd=work)
    check(sorted(path.name[-1] for path in pages.parent.iterdir()) == ["1", "2", "s"], f"left-overs: {list(pages.parent.iterdir())}")
    os.close(busy)


def test_killed(work):
    """Killed at many moments: the pages are those of the first run or of the second, never a mixture."""
    wanted = [*FDC, "traces/*.tio"]
    run("html", "-o", "killed/pages", *FDC[:1], "traces/normal.tio", cwd=work)
    pages = work / "killed" / "pages"
    first = set(tree(pages))
    run("html", "-o", "killed/all", *wanted, cwd=work)
    second = set(tree(work / "killed" / "all"))
    for moment in range(12):
        killed = subprocess.Popen([VELDAVIEW, "html", "-o", pages, *wanted], cwd=work, stderr=subprocess.DEVNULL)
        time.sleep(moment * 0.003)
        killed.send_signal(signal.SIGKILL)
        killed.wait()
        found = set(tree(pages))
        check(found in (first, second), f"after {moment * 3} ms the pages are a mixture: {found ^ second}")
        check((pages / "index.html").read_text().endswith("</html>\n"), "the index is not whole")


def test_two_builds(work):
    """A source with two descriptions, of which the second is of another text."""
    described = (work / FDC[2]).read_text()
    now, other = int((work / "src/queue.c").stat().st_mtime), described.rsplit("DC ", 1)[0] + "DC 1\n"
    (work / "now.fdc").write_text(described.replace("FD 0", f"FD {now}"))
    (work / "then.fdc").write_text(other.replace("FD 0", f"FD {now - 60}"))
    run("html", "-o", "pages", "now.fdc", "then.fdc", "traces/normal.tio", cwd=work)
    check("has changed" in (work / "pages/source/src-queue.c.html").read_text(), "the page does not say that the source has changed")
    check("Source changed" in (work / "pages/index.html").read_text(), "the index does not say that the source has changed")


def test_surroundings(work):
    """A language that writes 0,5 (where the system can make one), and a present folder that is gone."""
    run("html", "-o", "plain", *FDC, "traces/normal.tio", cwd=work)
    subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", work / "de_DE.UTF-8"], capture_output=True)
    run("html", "-o", "comma", *FDC, "traces/normal.tio", cwd=work, env={**os.environ, "LOCPATH": str(work), "LC_ALL": "de_DE.UTF-8"})
    values = [re.findall("data-v=([^>]*)", (work / name / "index.html").read_text()) for name in ("plain", "comma")]
    check(values[0] == values[1] and "1.000000" in values[0], f"values to sort by: {values[1][:3]}")
    check("<title>normal 1 - " in (work / "plain/tests/normal-1.html").read_text(), "the page of a test is not called like it")

    def leave():
        os.mkdir("gone")
        os.chdir("gone")
        os.rmdir("../gone")

    inputs = [work / FDC[2], work / "traces/normal.tio"]
    _, said = run("html", "-o", "pages", *inputs, status=7, cwd=work, preexec_fn=leave)
    check("Cannot create folder pages" in said, said)
    run("html", "-o", "", *inputs, status=7, cwd=work)
    run("check", "--root", "root", *inputs, cwd=work, preexec_fn=leave)


def main():
    for test in (test_against_exports, test_folder, test_killed, test_two_builds, test_surroundings):
        with tempfile.TemporaryDirectory() as name:
            work = pathlib.Path(name, "work")
            shutil.copytree(EXAMPLE, work)
            test(work)
    sys.exit(1 if problems else 0)


main()
