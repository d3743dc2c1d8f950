#!/usr/bin/env python3
"""What other programs read of exports, with those programs as judges: lcov, genhtml, xmllint, diff-cover, a JSON schema.

    exports.py VELDACOV VELDAVIEW

Judges that are missing are a reason to skip (status 77), after everything that can be judged without them."""

import base64
import collections
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

VELDACOV, VELDAVIEW = (os.path.realpath(name) for name in sys.argv[1:3])
TESTS = pathlib.Path(__file__).resolve().parent
EXAMPLE = TESTS.parent / "examples" / "burner"
FDC = [f"fdc/{name}.fdc" for name in ("burner", "interlock", "queue")]
os.environ.update(LC_ALL="C.UTF-8", HOME="/nonexistent", SOURCE_DATE_EPOCH="12")
os.environ.pop("LANGUAGE", None)

problems, missing = [], set()


def check(fine, what):
    if not fine:
        problems.append(what)
        print("FAILED:", what, flush=True)


def run(*words, status=0):
    ended = subprocess.run([str(word) for word in words], capture_output=True, timeout=120)
    check(ended.returncode == status, f"{words}: status {ended.returncode}, {ended.stderr[-500:]!r}")
    return ended.stdout.decode("utf-8", "surrogateescape"), ended.stderr.decode("utf-8", "surrogateescape")


def export(kind, *words):
    return run(VELDAVIEW, "export", "--format", kind, *words)[0]


def judge(program, *words):
    """The output of a judge that has to be content; None where it is missing."""
    if shutil.which(program) is None:
        missing.add(program)
        return None
    out, err = run(program, *words)
    check(not re.search("warning|error|skip|mismatch|ignor", out + err, re.I), f"{program} complains: {out}{err}")
    return out


def records(text):
    """Sums by source and line of a tracefile, whatever test a record is of."""
    sums, source = collections.Counter(), ""
    for line in text.splitlines():
        kind, _, rest = line.partition(":")
        if kind == "SF":
            source = rest
        elif kind == "FNDA":
            count, name = rest.split(",", 1)
            sums[source, kind, name] += int(count)
        elif kind in ("DA", "BRDA"):
            place, count = rest.rsplit(",", 1)
            sums[source, kind, place] += 0 if count == "-" else int(count)
            sums[source, "evaluated", place] |= count != "-"
    return sums


def lcov_totals(name):
    out = judge("lcov", "--rc", "lcov_branch_coverage=1", "--summary", name)
    return out and re.findall(r"\((\d+) of (\d+)", out)


def test_lcov():
    traces = sorted(str(path) for path in pathlib.Path("traces").glob("*.tio"))
    groups = [[t for t in traces if "bad" in t], [t for t in traces if "bad" not in t and "stale" not in t]]
    whole = export("lcov", *FDC, *groups[0], *groups[1], "--test", "*", "-o", "all.info")
    check(whole == "", "an export into a file writes nothing else")
    export("lcov", *FDC, *groups[0], *groups[1], "--per-test", "-o", "tests.info")
    for place, group in enumerate(groups):
        export("lcov", *FDC, *group, "-o", f"{place}.info")
    read = {name: records(pathlib.Path(name + ".info").read_text()) for name in ("all", "tests", "0", "1")}
    check(read["all"] == read["tests"], "records of the tests are not the merged file")
    numbers = {key for key in read["all"] if key[1] != "evaluated"}
    check(all(read["0"][key] + read["1"][key] == read["all"][key] for key in numbers),
          "the sum of two exports is not the export of both")
    check(len({line for line in pathlib.Path("tests.info").read_text().splitlines() if line.startswith("TN:")}) > 5,
          "tests have records of their own")

    # Functions and outcomes as veldacov counts them; a case label that is in the report, too, is one branch.
    report = run(VELDACOV, *FDC, *groups[0], *groups[1], "-SUMMARY=CONCLUSION")[0]
    functions = re.search(r"Functions \.+ +[\d.]+% \((\d+)/(\d+)\)", report).groups()
    conditions = re.search(r"Basic [Cc]onditions \.+ +[\d.]+% \((\d+)/(\d+)\)", report).groups()
    totals = lcov_totals("all.info")
    if totals:
        check(totals[1:] == [functions, conditions], f"lcov has {totals}, veldacov {functions} and {conditions}")
        check(lcov_totals("tests.info") == totals, "lcov sums up tests in another way")
        judge("lcov", "--rc", "lcov_branch_coverage=1", "-a", "0.info", "-a", "1.info", "-o", "sum.info")
        check(lcov_totals("sum.info") == totals, "lcov -a gives another sum")
        check(records(pathlib.Path("sum.info").read_text()) == read["all"], "lcov -a gives other numbers")
    judge("genhtml", "--branch-coverage", "--quiet", "-o", "html", "all.info")

    mcdc = export("lcov", *FDC, *traces, "--mcdc").splitlines()
    lines = [line[5:].split(",", 5) for line in mcdc if line.startswith("MCDC:")]
    by_group = collections.Counter()
    source = ""
    for line in mcdc:
        source = line[3:] if line.startswith("SF:") else source
        if line.startswith("MCDC:"):
            number, size = line[5:].split(",")[:2]
            by_group[source, number, int(size)] += 1
    check(all(times == 2 * size for (_, _, size), times in by_group.items()), "a decision is not there once")
    check(all(a[3] == b[3] and (a[2], b[2]) == ("t", "f") for a, b in zip(lines[::2], lines[1::2])), "senses")
    found = sum(int(line[4:]) for line in mcdc if line.startswith("MCF:"))
    check(found == len(lines) and found > 100, f"MCF says {found} of {len(lines)}")
    check(all(re.fullmatch(r"FN:\d+,\d+,\w+", line) for line in mcdc if line.startswith("FN:")), "FN without end")

    # Of two decisions of one line and size the first is written, in the records of each test; the message counts decisions.
    decisions = "".join(f'CE {7 * i} "f" "{i}a" {line} 4\nCE {7 * i + 2} "f" "{i}b" 4 4\n'
                        f"CC {7 * i + 4} 2 {7 * i} {7 * i + 2} 3 TTTFFX 1\n" for i, line in enumerate((4, 4, 3)))
    pathlib.Path("twice.fdc").write_text(f'VE 3.0e A\nFC "t.c" "src"\nFD 0\nTC CO CC\n{decisions}DC 1090519047 97\n')
    pathlib.Path("twice.tio").write_text("".join(f'NT "{i}" {i}\nFT 16\nDC 7\nTE 4\n' for i in (1, 2)))
    text, messages = run(VELDAVIEW, "export", "--format", "lcov", "--mcdc", "--per-test", "twice.fdc", "twice.tio")
    check(re.findall("^MCDC:(.*)$", text, re.M) == 2 * [
        f"{line},2,{sense},0,{index},{i}{letter}" for i, line in ((2, 3), (0, 4)) for index, letter in enumerate("ab")
        for sense in "tf"], text)
    check("MCDC records of 1 decisions are left out: an earlier decision of as many conditions begins" in messages, messages)


def describe(path, functions, key, codes="PR"):
    items = b"".join(f'PR {i} proc "' .encode() + name + f'" {i + 1} {i + 1}\n'.encode()
                    for i, name in enumerate(functions))
    pathlib.Path(f"{key}.fdc").write_bytes(b'VE 3.0e A\nFC "' + path + b'" "src/"\nFD 0\nTC ' + codes.encode() +
                                           b"\n" + items + f"DC 1090519047 {key}\n".encode())
    return f"{key}.fdc"


def test_names():
    odd = describe(b"../x/./caf\xe9\x01.c", [b"a,b", b"a_b", b"a\tb", b"plain", b"x<&>\xe9"], 99)
    other = describe(b"./y.c", [b"y"], 98)
    pathlib.Path("odd.tio").write_bytes(b'NT "n 1" 1 1\nFT 36\nDC 7\nTP 0\nNT "n-1" 1 1\nFT 36\nDC 7\nTP 1\n')
    text = export("lcov", odd, other, "odd.tio", "--per-test")
    lines = text.splitlines()
    check([line for line in lines if line.startswith("TN:")] == ["TN:n_1", "TN:n_1", "TN:n_1_2"], text)
    check([line for line in lines if line.startswith("SF:")] ==
          ["SF:x/caf\udce9_.c", "SF:src/y.c", "SF:x/caf\udce9_.c"], text)
    check([line.split(",", 1)[1] for line in lines if line.startswith("FN:")][:5] ==
          ["a_b_2", "a_b", "a_b_3", "plain", "x<&>\udce9"], text)

    read = json.loads(export("json", odd, other, "odd.tio"))
    odd_file = read["files"][0]
    check(base64.b64decode(odd_file["pathBase64"]) == b"src/../x/./caf\xe9\x01.c", odd_file)
    check([service["name"] for service in odd_file["services"]] == ["a,b", "a_b", "a\tb", "plain", "x<&>\ufffd"],
          odd_file)
    tree = ElementTree.fromstring(export("cobertura", odd, other, "odd.tio"))
    check([name.get("filename") for name in tree.iter("class")] == ["src/y.c", "x/caf\ufffd\ufffd.c"], "names in XML")


def test_cobertura():
    traces = sorted(str(path) for path in pathlib.Path("traces").glob("*.tio"))
    export("cobertura", *FDC, *traces, "-o", "all.xml")
    export("cobertura", *FDC, *traces, "--split", "2", "-o", "part.xml")
    export("lcov", *FDC, *traces, "-o", "all.info")
    for name in ("all.xml", "part-1.xml", "part-2.xml"):
        local = pathlib.Path(name).read_text().replace("http://cobertura.sourceforge.net/xml", str(TESTS))
        pathlib.Path("local.xml").write_text(local)
        judge("xmllint", "--noout", "--nonet", "--valid", "local.xml")
    trees = {name: ElementTree.parse(name + ".xml").getroot() for name in ("all", "part-1", "part-2")}
    filenames = {name: [c.get("filename") for c in tree.iter("class")] for name, tree in trees.items()}
    check(filenames["part-1"] + filenames["part-2"] == filenames["all"] and filenames["part-2"], filenames)
    lines = {}
    for source in trees["all"].iter("class"):
        for line in source.iter("line"):
            lines[source.get("filename"), line.get("number")] = line
    known = records(pathlib.Path("all.info").read_text())
    check({(source, place): count for (source, kind, place), count in known.items() if kind == "DA"} ==
          {place: int(line.get("hits")) for place, line in lines.items()}, "lines differ from the tracefile's")
    branches = collections.defaultdict(list)
    for (source, kind, place), count in known.items():
        if kind == "BRDA":
            branches[source, place.split(",")[0]].append(count)
    shown = {place: line.get("condition-coverage").split("(")[1] for place, line in lines.items()
             if line.get("branch") == "true"}
    check(shown == {place: f"{sum(c > 0 for c in counts)}/{len(counts)})" for place, counts in branches.items()},
          "branches differ from the tracefile's")
    for what, total in (("lines", len(lines)), ("branches", sum(map(len, branches.values())))):
        for names in (["all"], ["part-1", "part-2"]):
            check(sum(int(trees[name].get(what + "-valid")) for name in names) == total, f"sum of {what} in {names}")
    check(trees["all"].get("timestamp") == "12", "SOURCE_DATE_EPOCH")


def test_diff_cover():
    if shutil.which("diff-cover") is None or shutil.which("git") is None:
        missing.add("diff-cover")
        return
    git = ["git", "-c", "user.name=a", "-c", "user.email=a@b", "-c", "commit.gpgsign=false"]
    run(*git, "init", "-q", "-b", "main", ".")
    source = pathlib.Path("src/queue.c")
    text = source.read_text().splitlines(keepends=True)
    source.write_text("".join(text[:48] + text[49:]))
    run(*git, "add", "src")
    run(*git, "commit", "-q", "-m", "a")
    source.write_text("".join(text))
    for kind in ("cobertura", "lcov"):
        export(kind, *FDC, "traces/normal.tio", "-o", "cover." + kind)
    for name in ("cover.cobertura", "cover.lcov"):
        shutil.copy(name, "cover.xml" if "cobertura" in name else "cover.info")
    out = run("diff-cover", "cover.xml", "--compare-branch", "main")[0]
    check("src/queue.c (0.0%): Missing lines 49" in out, out)


def test_json():
    traces = sorted(str(path) for path in pathlib.Path("traces").glob("*.tio"))
    read = json.loads(export("json", *FDC, *traces))
    schema = json.loads((TESTS.parent / "docs/formats/veldaview.schema.json").read_text())
    try:
        import jsonschema
        for problem in jsonschema.Draft7Validator(schema).iter_errors(read):
            check(False, f"schema: {problem.message[:300]} at {list(problem.path)}")
    except ImportError:
        missing.add("python3-jsonschema")
    rates = collections.Counter()
    for file in read["files"]:
        for service in file["services"]:
            rates["functions"] += service["entry"]["hits"] > 0
            rates["calls"] += sum(call["hits"] > 0 for call in service["calls"])
            rates["implicit"] += sum(b["hits"] > 0 for b in service["blocks"] if b["kind"] == "implicit")
            rates["loops"] += sum(b["hits"] > 0 for b in service["blocks"] if b["kind"] == "logical")
            for condition in service["conditions"]:
                outcomes = [condition.get(name, 0) for name in ("hits", "trueHits", "falseHits")]
                rates["conditions"] += sum(count > 0 for count in outcomes)
            for decision in service["decisions"]:
                hits = [case["hits"] > 0 for case in decision["cases"]]
                rates["compound"] += sum(hits)
                check(len(decision["conditions"]) == len(decision["modified"]) == len(decision["cases"][0]["values"]),
                      decision)
                for modified in decision["modified"]:
                    rates["modified"] += modified["proven"]
                    lacking = [[c for c in pair if not hits[c]] for pair in modified["pairs"]]
                    check(modified["proven"] == ([] in lacking), modified)
                    check(modified["missing"] == min(lacking, key=len, default=[]), modified)
    check({name: rate["hits"] for name, rate in read["rates"].items() if name in rates} == dict(rates), rates)
    check({stray["stale"] for stray in read["strayParts"]} == {True}, read["strayParts"])
    check(sorted(test["order"] for test in read["tests"]) == list(range(len(read["tests"]))), "orders")
    check(read["modifiedConditions"]["criterion"] == "unique-cause", "criterion")


def test_faults():
    # A disk that fills in the middle: the limit of a file's size is one.
    for kind in ("json", "lcov", "cobertura"):
        limited = ["bash", "-c", 'ulimit -f 1; trap "" XFSZ; exec "$@"', "x", VELDAVIEW, "export", "--format", kind]
        err = run(*limited, *FDC, "traces/normal.tio", "-o", "cut.out", status=7)[1]
        check("cut.out" in err and os.path.getsize("cut.out") > 0, err)
    for words in (["--format", "json", "--mcdc"], ["--format", "cobertura", "--per-test"], ["--split", "2"],
                  ["--format", "lcov", "--split", "2", "-o", "x"], ["--format", "cobertura", "--split", "2"],
                  ["--format", "cobertura", "--split", "0", "-o", "x"], ["--format", "xml"]):
        run(VELDAVIEW, "export", *FDC, *words, status=7)


with tempfile.TemporaryDirectory() as scratch:
    shutil.copytree(EXAMPLE, scratch, dirs_exist_ok=True)
    os.chdir(scratch)
    os.makedirs("norvik/lib/locale")
    os.environ["NORVIKDIR"] = scratch + "/norvik"
    for test in (test_lcov, test_names, test_cobertura, test_json, test_faults, test_diff_cover):
        test()
    os.chdir("/")
for program in sorted(missing):
    print("missing:", program)
sys.exit(1 if problems else 77 if missing else 0)
