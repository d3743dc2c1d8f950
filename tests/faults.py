#!/usr/bin/env python3
"""What the program does when the system refuses: memory, writes, reads, closes and opens that fail, full devices,
closed streams, readers that leave, and crashes. And what hostile inputs may cost.

    faults.py PROGRAM PRELOAD [--all] [--only=PART] [--kind=KIND]

The second program is expected beside PROGRAM. PRELOAD is the library of faults/fail_nth.cpp. Of many allocations only some fail, unless --all is given."""

import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor

from measures import broken_history

PROGRAM, PRELOAD = (os.path.realpath(name) for name in sys.argv[1:3])
VIEW = os.path.join(os.path.dirname(PROGRAM), "veldaview")
OPTIONS = sys.argv[3:]
EXAMPLE = pathlib.Path(__file__).resolve().parent.parent / "examples" / "burner"
HEAD = "Norvik veldacov - "
NO_MEMORY = HEAD + "FATAL ERROR: No memory left\n"
NO_MEMORY_IN_COMMAND = "Command analysis: No memory left"
IN_COMMAND_LINE = HEAD + "FATAL ERROR: Errors in command line\n"
INTERNAL = HEAD + "INTERNAL ERROR: "
TIMEOUT = 30  # seconds; a loaded machine is no hang

ALL_OUTPUTS = "-OUTPUT=out/report -CIO=out/cio -CLEAN=out/clean -LISTING=out -FLOW=out/flow"
BURNER = "fdc/burner.fdc fdc/queue.fdc fdc/interlock.fdc traces/normal.tio traces/lock.tio "
BIG = "big.fdc big.tio "
# name: words, measure database (none, fresh, or with records of an earlier run)
SCENARIOS = {
    "all outputs": (BURNER + ALL_OUTPUTS, "primed"),
    "first measures": (BURNER + "-OUTPUT=out/report", "fresh"),
    "words from a file": ("@words.txt -OUTPUT=out/report -CLEAN=out/clean -MERGETESTS -NOGLOBAL", "none"),
    "report to standard output": (BURNER + "-TEST=stray,nobody -NOGLOBAL", "none"),
    "bad command line": (BURNER + "-OUTPUT=out/report -NONSENSE", "none"),
    "big outputs": (BIG + ALL_OUTPUTS, "none"),
    "verdict": ("check " + BURNER + "--min loops=0 -o out/verdict --markdown out/comment.md", "none"),
    "tracefile of tests": ("export --format lcov --per-test --mcdc " + BIG + "-o out/big.info", "none"),
    "split export": ("export --format cobertura --split 2 " + BURNER + "-o out/burner.xml", "none"),
    "order of tests": ("tests --format json " + BIG, "none"),
}
# Memory of the second program is also that of a library which crashes without it.
NOT_WITHOUT_MEMORY = {"big outputs", "verdict", "tracefile of tests", "split export", "order of tests"}
HOWS = {"allocation": ("on", "once"), "write": ("on", "once", "part", "torn", "short", "interrupt"),
        "read": ("once", "short", "interrupt"), "close": ("once",), "open": ("on", "once", "interrupt")}

problems = []


def check(fine, what, run=None):
    if not fine:
        problems.append(re.split("[0-9]", what)[0])
        if problems.count(problems[-1]) <= 5 or "--all" in OPTIONS:  # of each kind
            print("FAILED:", what, "" if run is None else f"[status {run.status}] {run.err[-300:]!r}", flush=True)


class Run:
    """One run of the program in a place: its status, messages and files."""

    def __init__(self, place, words, database="none", kind="", at=0, how="on", variables=None, before=None,
                 timeout=TIMEOUT, **streams):
        for folder in ("out", "tpm"):
            shutil.rmtree(place / folder, ignore_errors=True)
            (place / folder).mkdir()
        if database == "primed":
            shutil.copytree(place / "primed", place / "tpm", dirs_exist_ok=True)
        self.how = how
        log = place / "log"
        log.unlink(missing_ok=True)
        environment = {"NORVIKDIR": str(place / "norvik"), "LC_ALL": "C.UTF-8", "TZ": "UTC", "LD_PRELOAD": PRELOAD,
                       "FAULT_KIND": kind, "FAULT_AT": str(at), "FAULT_HOW": how, "FAULT_LOG": str(log)}
        if database != "none":
            environment |= {"VELDA_TPM_ROOT": str(place / "tpm"), "VELDA_TPM_USER": "anna"}
        with open(place / "out" / "stdout", "wb") as out, open(place / "stderr", "w+b") as err:
            streams = {"stdin": subprocess.DEVNULL, "stdout": out, "stderr": err} | streams
            program = VIEW if words.startswith(("check ", "export ", "tests ")) else PROGRAM
            process = subprocess.Popen([program, *words.split()], cwd=place, env=environment | (variables or {}),
                                       preexec_fn=before, **streams)
            try:
                self.status = process.wait(timeout)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
                self.status = "hangs"
            err.seek(0)
            self.err = err.read().decode().replace("Norvik veldaview - ", HEAD)
        self.files = {str(file.relative_to(place)): file.read_bytes() for folder in ("out", "tpm")
                      for file in (place / folder).rglob("*") if file.is_file() and not file.is_symlink()}
        self.calls, self.failed = 0, []
        for line in log.read_text().splitlines() if log.exists() else ():
            if line.startswith("calls "):
                self.calls = int(line.split()[1])
            else:
                offset, name = line.split(" ", 2)[1:]
                self.failed.append((int(offset), os.path.relpath(name.removesuffix(" (deleted)"), place)
                                    if name.startswith("/") else name))

    def like(self, other):
        return (self.status, self.err, self.files) == (other.status, other.err, other.files)

    def same_files(self, other, but=()):
        return all(self.files.get(name) == other.files.get(name)
                   for name in self.files.keys() | other.files.keys() if not name.startswith(but or "-"))


def cannot_write(name):
    return f"{HEAD}FATAL ERROR: Cannot write to file {'standard output' if str(name).endswith('stdout') else name}\n"


# Each judge says whether a run with a fault ended as promised, beside the good run.

def judge_allocation(run, good, place, scenario):
    if "tpm/Coverage.anna.20.lck" in run.files:
        return False
    if "failed to register TLS destructor" in run.err:
        return run.status == 9  # the C library gives up by itself, below the toolkit's regular expressions
    if run.status == 7 and good.status != 7:
        return run.err.endswith(NO_MEMORY) or NO_MEMORY_IN_COMMAND in run.err and run.err.endswith(IN_COMMAND_LINE)
    if run.like(good):
        return True  # the toolkit copes, or would have used the memory later
    if "Unable to allocate memory" in run.err:
        return run.status == 0 and run.same_files(good, "tpm/") and "tpm/Coverage.anna.20.lck" not in run.files
    return good.status == 7 and run.status == 7 and "No memory left" in run.err


def judge_output(run, good, place, scenario):
    """A write or a close failed, and perhaps later ones."""
    names = [name for _, name in run.failed]
    outputs = [name for name in names if name in good.files and not name.startswith("tpm/")]
    if outputs:
        return run.status == 7 and run.err.endswith(cannot_write(outputs[0]))
    if "tpm/Coverage.anna.20.lck" in run.files or run.status != 0 or not run.same_files(good, "tpm/"):
        return False
    database = [run.files.get(f"tpm/Coverage.anna.20.{end}", b"") for end in ("tpm", "idx")]
    if broken_history(*database) and run.how in ("once", "torn"):  # else what failed cannot be taken back
        return False
    # Closing what was read matters to nobody.
    return run.like(good) or "Test Process Monitor: " in run.err and any(name.startswith("tpm/") for name in names)


def judge_read(run, good, place, scenario):
    """A read failed: that is no end of the file, but the end of the run."""
    name = run.failed[0][1]
    if name.startswith("tpm/"):
        return run.like(good) or run.status == 0 and "Unable to read" in run.err and run.same_files(good, "tpm/")
    return run.status == 7 and re.search(f"FATAL ERROR: Cannot read file (./)?{name}\n$", run.err)


def judge_open(run, good, place, scenario):
    names = [name for _, name in run.failed]
    if run.like(good):
        return not names[0].startswith(("fdc", "big", "out", "words"))
    if names[0].startswith("tpm/") and "Test Process Monitor: " not in run.err:
        return False
    if run.status == 0:
        return run.same_files(good, "tpm/") or all(name in run.err for name in names if not name.startswith("tpm/"))
    return run.status == 7 and any(name.removeprefix("./") in run.err for name in names) or IN_COMMAND_LINE in run.err


def judge_fault(kind, how):
    if how in ("short", "interrupt"):
        return lambda run, good, place, scenario: run.like(good)
    return {"allocation": judge_allocation, "write": judge_output, "close": judge_output, "read": judge_read,
            "open": judge_open}[kind]


def every_call(kind, how, name, places, workers):
    scenario = SCENARIOS[name]
    good = Run(places[0], *scenario)
    count = Run(places[0], *scenario, kind=kind)
    check(count.like(good) and good.status == (7 if name == "bad command line" else 0), f"{name}: no good run", count)
    numbers = list(range(1, count.calls + 1))
    if "--all" not in OPTIONS and len(numbers) > 100:
        start, most = (60, 60) if how == "on" else (20, 40)
        numbers = numbers[:start] + random.sample(numbers[start:], min(most, len(numbers) - start))

    def one(number):
        place = places.pop()
        try:
            run = Run(place, *scenario, kind=kind, at=number, how=how)
            messages_in_data = [file for file, text in run.files.items() if (HEAD + "FATAL").encode() in text]
            fine = judge_fault(kind, how)(run, good, place, scenario) and not messages_in_data
            check(fine, f"{name}: {kind} {number} of {count.calls}, {how} {run.failed[:1]}", run)
        finally:
            places.append(place)

    list(workers.map(one, numbers))
    return len(numbers), count.calls


def failing_calls(places, workers):
    kinds = [option.partition("=")[2] for option in OPTIONS if option.startswith("--kind=")] or HOWS
    for kind in kinds:
        for how in HOWS[kind]:
            done = [every_call(kind, how, name, places, workers) for name in SCENARIOS
                    if kind != "allocation" or name not in NOT_WITHOUT_MEMORY]
            print(f"{kind}, {how}: {sum(d for d, _ in done)} of {sum(c for _, c in done)} calls failed in turn", flush=True)


def less_and_less_memory(places, workers):
    """From plenty down to less than the loader needs."""
    place, scenario = places[0], SCENARIOS["all outputs"]
    good, ends, fine_step = Run(place, *scenario), {}, 32 * 1024
    limit, step = 128 * 1024 * 1024, 4 * 1024 * 1024
    while 127 not in ends:
        run = Run(place, *scenario, before=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
        if run.status != 0 and step > fine_step:
            limit, step = limit + step, fine_step
        ends[run.status] = ends.get(run.status, 0) + 1
        check(run.status == 127 or "libgomp" in run.err or run.like(good) or run.status == 7 and run.err.endswith(NO_MEMORY),
              f"memory limit {limit}", run)
        limit -= step
    print("memory limits:", ", ".join(f"status {status}: {times}" for status, times in ends.items()))


def full_devices(places, workers):
    place = places[0]
    for words in (BURNER, BIG):
        for option in ("-OUTPUT", "-CIO", "-CLEAN", "-FLOW"):
            report = "" if option == "-OUTPUT" else "-OUTPUT=out/report "
            run = Run(place, f"{words}{report}{option}=/dev/full")
            check(run.status == 7 and run.err.endswith(cannot_write("/dev/full")), f"{words}{option} to a full device", run)
        with open("/dev/full", "wb") as full:
            run = Run(place, words, stdout=full)
        check(run.status == 7 and run.err.endswith(cannot_write("stdout")), f"{words}to a full standard output", run)
        limit = lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000))
        run = Run(place, words + "-OUTPUT=out/report", before=limit)
        check(run.status == 7 and run.err.endswith(cannot_write("out/report")), f"{words}to a file that may not grow", run)
        if words == BIG:
            with subprocess.Popen(["cat", place / "big.tio"], stdout=subprocess.PIPE) as trace:
                run = Run(place, "big.fdc /dev/stdin -FLOW=/dev/null", before=limit, stdin=trace.stdout,
                          variables={"TMPDIR": str(place / "tpm")})
                trace.stdout.close()
            check(run.status == 7 and run.err.endswith(cannot_write(place / "tpm")) and not list((place / "tpm").iterdir()),
                  "a pipe copied to a full directory", run)
        listing = place / "full" / ("big.lsc" if words == BIG else "interlock.lsc")
        listing.parent.mkdir(exist_ok=True)
        listing.unlink(missing_ok=True)
        listing.symlink_to("/dev/full")
        run = Run(place, words + "-OUTPUT=out/report -LISTING=full")
        check(run.status == 7 and run.err.endswith(cannot_write(f"full/{listing.name}")), f"{words}listing to a full device", run)


def small_file_system(places, workers):
    place = places[0]
    good = Run(place, *SCENARIOS["big outputs"])
    disk = place / "disk"
    disk.mkdir(exist_ok=True)
    for kilobytes in range(16, sum(map(len, good.files.values())) // 1024 + 128, 160):
        mount = ["mount", "-t", "tmpfs", "-o", f"size={kilobytes}k", "tmpfs", disk]
        if subprocess.run(mount, capture_output=True).returncode != 0:
            print("small file system: skipped, mounting is not permitted")
            return
        try:
            run = Run(place, BIG + ALL_OUTPUTS.replace("out", "disk"))
            left = {f"out/{file.name}": file.read_bytes() for file in disk.iterdir()}
            whole = run.status == 0 and run.err == good.err.replace("out/", "disk/") and all(
                text == good.files[name] for name, text in left.items())
            check(whole or run.status == 7 and HEAD + "FATAL ERROR: Cannot write to file disk/" in run.err,
                  f"file system of {kilobytes} KiB", run)
        finally:
            subprocess.run(["umount", disk], check=True)


def closed_streams(places, workers):
    place = places[0]
    words, database = SCENARIOS["all outputs"]
    good = Run(place, words, database)
    for closed in ((0,), (1,), (2,), (0, 1), (1, 2), (0, 1, 2)):
        def close(closed=closed):
            for number in closed:
                os.close(number)
        run = Run(place, words, database, before=close)
        check(run.status == 0 and run.same_files(good) and run.err == ("" if 2 in closed else good.err),
              f"closed streams {closed}", run)
        run = Run(place, BURNER + "-OUTPUT=out/report -TEST=nobody -NOGLOBAL", before=close, kind="null", at=1)
        told = [name for name, text in run.files.items() if HEAD.encode() in text and not name.endswith("stdout")]
        check(run.status == 0 and not told, f"closed streams {closed} and no null device: messages in {told}", run)
        run = Run(place, BURNER, before=close)
        expected = (7, cannot_write("stdout")) if 1 in closed else (0, "")
        check((run.status, "" if 2 in closed else run.err) == (expected[0], "" if 2 in closed else expected[1]),
              f"closed streams {closed}, report to standard output", run)


def readers_that_leave(places, workers):
    place = places[0]
    for words, taken in ((BURNER, 0), (BIG, 0), (BIG, 1), (BIG, 100000)):
        reader, writer = os.pipe()
        hold = subprocess.Popen(["head", "-c", str(taken)], stdin=reader, stdout=subprocess.DEVNULL)
        os.close(reader)
        hold.wait() if taken == 0 else None
        run = Run(place, words, stdout=writer)
        os.close(writer)
        hold.wait()
        check((run.status, run.err) == (-signal.SIGPIPE, ""), f"{words}to a reader that leaves after {taken}", run)
        reader, writer = os.pipe()
        os.close(reader)
        run = Run(place, words, stdout=writer, before=lambda: signal.signal(signal.SIGPIPE, signal.SIG_IGN))
        os.close(writer)
        check(run.status == 7 and run.err.endswith(cannot_write("stdout")), f"{words}broken pipe, signal ignored", run)


def handles_crashes(process):
    try:
        status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
    except OSError:
        return False
    caught = next((line for line in status.splitlines() if line.startswith("SigCgt")), "SigCgt: 0")
    return int(caught.split()[1], 16) >> (signal.SIGSEGV - 1) & 1


def crashes(places, workers):
    """A crash at any moment once the program runs: what was written so far stays, and it says so."""
    place = places[0]
    environment = {"NORVIKDIR": str(place / "norvik"), "LC_ALL": "C.UTF-8"}
    words = f"{BIG}{'big.tio ' * 12}{ALL_OUTPUTS}".split()
    (place / "out").mkdir(exist_ok=True)
    started = time.monotonic()
    subprocess.run([PROGRAM, *words], cwd=place, env=environment, stderr=subprocess.DEVNULL, check=True)
    duration, caught = time.monotonic() - started, 0
    for number in [signal.SIGSEGV, signal.SIGBUS, signal.SIGFPE, signal.SIGILL, signal.SIGABRT] * 6:
        process = subprocess.Popen([PROGRAM, *words], cwd=place, env=environment, stderr=subprocess.PIPE, text=True)
        while process.poll() is None and not handles_crashes(process):
            pass
        time.sleep(random.random() * duration * 0.8)
        process.send_signal(number)
        err = process.communicate(timeout=TIMEOUT)[1]
        caught += process.returncode == 9
        check(process.returncode in (0, 9) and (process.returncode == 0 or INTERNAL in err),
              f"{number.name}: status {process.returncode}, {err[-200:]!r}")
    check(caught >= 15, f"only {caught} crashes came during a run")
    print(f"crashes: {caught} of 30 during a run of {duration:.2f} s")


def described(lines, name="bad.c"):
    return (f'VE 3.0e A\nFC "{name}" "src/"\nFD 0\nTC PR RE AP BS BI BL BA CO CC\n{lines}DC 1090519047 99\n')


def composed(composition):
    return described(f'CE 0 "f" "x" 1 1\nCC 9 {composition}\n')


def exclusive_or(conditions):
    """2 to the power of so many cases, half as many pairs for each condition; cases are numbered from 1000."""
    first = "".join(f'CE {2 * number} "f" "x" 1 1\n' for number in range(conditions))
    ids = " ".join(str(2 * number) for number in range(conditions))
    return f"{first}CC 1000 {conditions} {ids} {2 ** conditions} {'X' * (conditions - 1)}{'.' * conditions}\n"


def hit_in_tests(*hits):
    """A trace of what `described` describes; each test has the next hit of each keyword."""
    together = zip(*([f"{keyword} {f'{number:x}'[::-1]}\n" for number in numbers] for keyword, numbers in hits))
    return "".join(f"NT {test}\nFT 36\nDC 7\n{''.join(lines)}" for test, lines in enumerate(together))


# Inputs that ask for much: what, the files bad.*, words, mebibytes that must do, and what the report says in the end or
# the message instead of it. A second of time must do, too, or ten in a build that is not optimised.
HOSTILE = (
    ("more cases than there is memory for", "fdc", lambda: composed("1 0 4000000000 TF 1"), "", 100, NO_MEMORY),
    ("more cases than there is memory for, by expression", "fdc", lambda: composed("1 0 4000000000 ."), "", 700, NO_MEMORY),
    ("more conditions than cases", "fdc", lambda: composed(f"32767 {'0 ' * 32767}100000 TF 1"), "", 150, "(0/32767)"),
    ("a million pairs", "fdc", lambda: composed(f"1 0 2048 {'T' * 1024}{'F' * 1024} 1024"), "", 150, "(0/2048)"),
    ("a deep expression", "fdc", lambda: composed(f"1 0 4 {'N' * 1000000}."), "", 150, "(0/4)"),
    ("a long expression", "fdc", lambda: composed(f"1 0 4096 {'A' * 500000}{'.' * 500001}"), "", 150, "(0/4096)"),
    ("many sections", "fdc", lambda: "@/RIK\n".join(described('AP 0 "f" "g" 1 1\n', f"{number}.c") for number in range(50000)),
     "-SUMMARY=CONCLUSION", 250, "(0/50000)"),
    ("many services", "fdc", lambda: described("".join(f'CA {number} "{number}" "x" 1 1\n' for number in range(100000))),
     "-SUMMARY=CONCLUSION", 250, "(0/100000)"),
    ("many parts to keep", "tio", lambda: "NT\n" + "".join(f"FT {number:x}\nDC 1\nTP 0\n" for number in range(100000)),
     "fdc/queue.fdc -CLEAN=out/clean", 250, "(0/34)"),
    ("the largest identifier", "tio", lambda: "NT\nFT 36\nDC 8\nTP ffffffff\n", "fdc/queue.fdc -CLEAN=out/clean", 100, "(0/34)"),
    ("first hits beside ten million pairs", "fdc tio",
     lambda: (described(exclusive_or(20) + "".join(f'BL {number} simple "f" x 1 1\n' for number in range(500))),
              hit_in_tests(("TB", range(500)), ("TE", range(1000, 1000000, 1998)))),
     "bad.tio -SUMMARY=CONCLUSION", 400, "(500/1048576)"),
    ("texts of pairs that are not printed", "fdc tio",
     lambda: (described(exclusive_or(16)), hit_in_tests(("TE", range(1000, 60000, 146)))), "bad.tio -BRANCH=COV -NOGLOBAL", 150,
     "(405/65536)"),
    ("conditions of services that alternate", "fdc",
     lambda: described("".join(f'CA {number} "{number % 300}" "x" 1 1\n' for number in range(300 * 1025))),
     "-SUMMARY=CONCLUSION", 100, "(0/307500)"),
    ("sections that are ignored", "fdc also",
     lambda: [described("".join(f'CA {number} "f" "x" 1 1\n' for number in range(20000))) + "@/RIK\n"] * 2,
     "bad.also " * 50 + "-SUMMARY=CONCLUSION", 100, "(0/20000)"),
    ("many stars", "tio", lambda: "NT\n", f"fdc/queue.fdc {'q*' * 500} {'*q' * 500} fdc/{'*e' * 500}", 100, "(0/34)"),
)


def hostile_inputs(places, workers):
    place = places[0]
    for what, kind, text, words, mebibytes, says in HOSTILE:
        texts = text()
        for ending, content in zip(kind.split(), (texts,) if isinstance(texts, str) else texts):
            (place / f"bad.{ending}").write_text(content)
        limit = mebibytes * 1024 * 1024
        started = time.monotonic()
        run = Run(place, f"bad.{kind.split()[0]} -OUTPUT=out/report {words}",
                  before=lambda: (resource.setrlimit(resource.RLIMIT_AS, (limit, limit)),
                                  resource.setrlimit(resource.RLIMIT_CPU, (10, 10))))
        done = run.status == 0 and says in run.files["out/report"].decode()
        check(done or run.status == 7 and run.err.endswith(says), f"{what}: not within its bounds", run)
        print(f"  {what}: {time.monotonic() - started:.2f} s")


def names_that_meet(count):
    """Names that a hash of eight bytes at a time, each multiplied and folded, sends to one place, and a fold of four
    bytes at a time, too: the third word of a name takes the first two back."""
    multiplier, length, names = 0x9E3779B97F4A7C15, 24, set()
    fold = lambda value, word: (product := (value ^ word) * multiplier % 2**64) ^ product >> 32
    while len(names) < count:
        high = int.from_bytes(random.choices(range(33, 127), k=4))
        first = high << 32 | 0x41424344
        after_first = fold(length, first)
        low = after_first % 2**32 ^ 0x55667788
        second = (high ^ low ^ 0x2A2A2A2A) << 32 | low
        third = fold(after_first, second) ^ 0x3C3C3C3C5A5A5A5A
        name = b"".join(word.to_bytes(8, "little") for word in (first, second, third))
        if not set(name) & set(b'\0\n\r "\\'):
            names.add(name)
    return names


def test_names(place, hostile):
    names = names_that_meet(20000) if hostile else [b"%024d" % random.randrange(10**24) for _ in range(20000)]
    (place / "bad.tio").write_bytes(b"".join(b'NT "%s"\n' % name for name in names))
    return "fdc/queue.fdc bad.tio"


def identifiers(hostile, count):
    """With a number of places that tables of the standard library have, 42,043, and their first ones in use."""
    return range(42043, 42043 * (count + 1), 42043) if hostile else sorted(random.sample(range(2**31), count))


def traced_identifiers(place, hostile):
    known = list(identifiers(hostile, 35000))
    lines = "".join(f"TP {f'{number:x}'[::-1]}\n" for number in known + known[:1] * 20000)
    (place / "bad.tio").write_text(f"NT\nFT 9\nDC 9\n{lines}")
    return "fdc/queue.fdc bad.tio -CLEAN=out/clean"


def described_identifiers(place, hostile):
    (place / "bad.fdc").write_text(described("".join(f'AP {number} "f" "g" 1 1\n' for number in identifiers(hostile, 40000))))
    return "bad.fdc"


def file_names(place, hostile, forms, ways=("",)):
    folder = place / ("hostile" if hostile else "harmless")
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()
    names = [form.format(number) for number in range(600 // len(forms)) for form in forms]
    for name in names:
        (folder / name).write_text("NT\n")
    (place / "words.names").write_text("".join(f'"{ways[i % len(ways)]}{folder.name}/{name}"\n' for i, name in enumerate(names)))
    return "fdc/queue.fdc @words.names"


def names_with_colons(place, hostile):
    return file_names(place, hostile, ("run-10:15:{}.tio" if hostile else "run-10-15-{}.tio",))


def names_with_blanks(place, hostile):
    return file_names(place, hostile, ("run 10 {};x" if hostile else "run-10-{}-x",))


def names_in_two_cases(place, hostile):
    return file_names(place, hostile, ("run{}.tio", "RUN{}.tio" if hostile else "cut{}.tio"))


def names_by_many_ways(place, hostile):
    return file_names(place, hostile, ("run-{}.tio",), ["./" * steps for steps in range(500)] if hostile else ("./",))


def hits_in_other_forms(place, hostile):
    """More blanks than one, and fields behind the last."""
    (place / "bad.fdc").write_text(described('AP 0 "f" "g" 1 1\nAP 1 "f" "g" 1 1\n'))
    hits = "TA  0 9\n TA 1 \n" if hostile else "TA 00000\nTA 1000\n"
    (place / "bad.tio").write_text("NT\nFT 36\nDC 7\n" + hits * 2000000)
    return "bad.fdc bad.tio"


def hostile_beside_harmless(places, workers):
    """Inputs that are chosen to be dear cost what harmless ones of their size cost."""
    place = places[0]
    for make in (test_names, traced_identifiers, described_identifiers, names_with_colons, names_with_blanks, names_in_two_cases,
                 names_by_many_ways, hits_in_other_forms):
        spent = []
        for hostile in (False, True):
            words = make(place, hostile)
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            run = Run(place, f"{words} -SUMMARY=CONCLUSION -OUTPUT=out/report")
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            spent.append(after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime)
            check(run.status == 0, f"{make.__name__}: no report", run)
        check(spent[1] < 3 * spent[0] + 0.1, f"{make.__name__}: {spent[1]:.2f} s, harmless ones {spent[0]:.2f} s")
        print(f"  {make.__name__}: {spent[1]:.2f} s, harmless ones {spent[0]:.2f} s")


def prepare(place):
    shutil.copytree(EXAMPLE, place)
    (place / "norvik" / "lib" / "locale").mkdir(parents=True)
    # Without wildcards: where the toolkit's matcher gets no memory, it matches nothing and does not say so.
    (place / "words.txt").write_text("# the example\nfdc/burner.fdc fdc/queue.fdc \\\ntraces/normal.tio \"traces/lock.tio\"\n")
    functions, tests = 3000, 30
    (place / "big.fdc").write_text('VE 3.0e A\nFC "big.c" "."\nFD 0\nTC PR\n' + "".join(
        f'PR {number} proc "function_{number}" {number + 1} {number + 1}\n' for number in range(functions)) +
        "DC 1090519041 1\n@/RIK\n")
    (place / "big.c").write_text("".join(f"void function_{number}(void) {{ /* {'-' * 80} */ }}\n" for number in range(functions)))
    hits = "".join(f"TP {f'{number:x}'[::-1]}\n" for number in range(0, functions, 2))
    (place / "big.tio").write_text("".join(f'NT "test {test}" {test} 1\nFT 1\nDC 1\n{hits}' for test in range(1, tests + 1)))
    (place / "primed").mkdir()
    run = Run(place, BURNER + "-OUTPUT=out/report", "fresh")
    shutil.copytree(place / "tpm", place / "primed", dirs_exist_ok=True)
    check(run.status == 0, "the first run", run)


def main():
    random.seed(1)
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    parts = [failing_calls, less_and_less_memory, full_devices, small_file_system, closed_streams, readers_that_leave, crashes,
             hostile_inputs, hostile_beside_harmless]
    only = next((option.partition("=")[2] for option in OPTIONS if option.startswith("--only=")), "")
    with tempfile.TemporaryDirectory() as work, ThreadPoolExecutor(os.cpu_count()) as workers:
        places = [pathlib.Path(work) / str(number) for number in range(os.cpu_count() or 1)]
        prepare(places[0])
        for place in places[1:]:
            shutil.copytree(places[0], place)
        for part in parts:
            if only in part.__name__:
                started = time.monotonic()
                part(places, workers)
                print(f"{part.__name__}: {time.monotonic() - started:.1f} s", flush=True)
    print(len(problems), "problems")
    return bool(problems)


if __name__ == "__main__":
    sys.exit(main())
