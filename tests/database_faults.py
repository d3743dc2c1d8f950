#!/usr/bin/env python3
"""The measure database when many runs use it at once, when its lock is left behind, when a waiting run is interrupted and
when runs are killed, when its files are cut or foreign, and when its directory cannot be written or disappears. Whatever
happens to it, the report is complete, and a run that shows no problem has its records in the index.

    database_faults.py PROGRAM [--kills=NUMBER]"""

import os
import pathlib
import random
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor

from measures import RECORD, VALUES, broken_history, entries_of, record_at

KILLS = next((int(option.partition("=")[2]) for option in sys.argv[2:] if option.startswith("--kills=")), 50)
HEAD = "Norvik - Test Process Monitor: "
IN_USE = "File is currently in use.\n  Please break\n      or wait until previous task has finished\n      or remove file: "
STILL_IN_USE = "File is still in use.\n  Please wait until previous task has finished\n      or remove file: "
MESSAGES = ("Unable to create TPM file", "Unable to create DataBase file", "Unable to write in DataBase file",
            "Unable write in DataBase file", "Unable to open DataBase file", "Reposition in DataBase file fail",
            "Unable to read DataBase file", "Unable to update DataBase file", "Unable to open index file",
            "Unable to read index file", "Unable to update Index File", "Cannot open file :", "Reason is : ",
            "VELDA_TPM_ROOT directory does not exist: ", "Error unlocking transaction", "File is now available", "User break.")

problems = []


def check(fine, what):
    if not fine:
        problems.append(what)
        if len(problems) <= 20:
            print("FAILED:", what, flush=True)


class Database:
    """A database with the runs that use it, in a directory of its own."""

    def __init__(self, work, name):
        self.work, self.root = work, work / name
        shutil.rmtree(self.root, ignore_errors=True)
        self.root.mkdir()
        self.index, self.records, self.lock = (self.root / f"Coverage.anna.{VALUES}.{end}" for end in ("idx", "tpm", "lck"))
        self.base = str(self.root)

    def start(self, words, report, **more):
        environment = {"NORVIKDIR": str(self.work / "norvik"), "LC_ALL": "C.UTF-8", "TZ": "UTC",
                       "VELDA_TPM_ROOT": self.base, "VELDA_TPM_USER": "anna"}
        return subprocess.Popen([self.work / "veldacov", *words.split(), f"-OUTPUT={report}"], cwd=self.work, env=environment,
                                text=True, **{"stderr": subprocess.PIPE} | more)

    def run(self, hits, files="nine", **more):
        """A run to its end; gives its messages."""
        report = f"report.{self.root.name}"
        return self.ended(self.start(f"{files}.fdc {files}{hits}.tio", report, **more), report, f"{files}{hits}")

    def ended(self, process, report, kind, said=""):
        """Waits for the end of a run, of which something was read already; gives all its messages."""
        try:
            err = said + process.communicate(timeout=60)[1]
        except subprocess.TimeoutExpired:
            process.kill()
            err = said + process.communicate()[1]
        check(process.returncode == 0, f"{self.root.name}: status {process.returncode}, {err!r}")
        check(without_date(self.work / report) == without_date(self.work / f"good.{kind}"), f"{self.root.name}: another report")
        unknown = [line for line in err.replace(IN_USE, "").splitlines() if line and line.startswith(HEAD) and
                   not line.removeprefix(HEAD).startswith(MESSAGES + (self.base,))]
        check(not unknown, f"{self.root.name}: {unknown}")
        return err

    def start_waiting(self, report):
        """A run that finds the lock of another, when it has said so."""
        process = self.start("one.fdc one1.tio", report)
        first = "".join(process.stderr.readline() for _ in range(4))
        check(first == f"{HEAD}{IN_USE}{self.lock}\n", f"{self.root.name}: a lock is left, and the next run says {first!r}")
        time.sleep(0.2)
        check(process.poll() is None, f"{self.root.name}: the run does not wait")
        return process, first

    def entries(self):
        return entries_of(self.index.read_bytes() if self.index.is_file() else b"")

    def record(self, offset):
        return record_at(self.records.read_bytes(), offset)

    def check_index(self, when, keys=()):
        """Every entry names a whole record of its key, and all the keys have one."""
        data, entries = self.records.read_bytes() if self.records.is_file() else b"", self.entries()
        check(len({key for key, _ in entries}) == len(entries), f"{when}: two entries of one key")
        for key, offset in entries:
            check(offset + RECORD <= len(data) and struct.unpack_from("<I", data, offset + 4)[0] == key,
                  f"{when}: the entry of key {key} names no record of it")
        check({key for key, _ in entries} >= set(keys), f"{when}: a key has no entry")

    def check_history(self, when, count):
        data = self.records.read_bytes()
        check(len(data) == count * RECORD, f"{when}: {len(data)} bytes of {count} records")
        broken = broken_history(data, self.index.read_bytes())
        check(not broken, f"{when}: {broken}")


def without_date(report):
    lines = report.read_text().splitlines() if report.exists() else []
    return [line for line in lines if not line.startswith("\t\t\t  ")]  # the date of the run


def at_once(work):
    for processes, runs in ((2, 8), (8, 3), (32, 2)):
        database = Database(work, f"{processes}_at_once")
        for _ in range(runs):
            started = [(number, database.start(f"nine.fdc nine{number % 5}.tio", f"report.{number}")) for number in range(processes)]
            for number, process in started:
                err = database.ended(process, f"report.{number}", f"nine{number % 5}")
                check(err.count("currently in use") == err.count("now available"), f"{processes} at once: {err!r}")
        database.check_history(f"{processes} at once", 9 * processes * runs)
        check(not database.lock.exists(), f"{processes} at once: the lock is left")


def left_lock(work):
    """Nothing is written while the lock stands. When it goes, the run goes on; when the run is interrupted, it gives up
    the database, and leaves the lock to its owner."""
    for event in ("removed", "interrupted"):
        database = Database(work, event)
        database.run(2, "one")
        database.lock.touch()
        process, first = database.start_waiting("report.waiting")
        database.check_history(f"{event}, waiting", 1)
        if event == "removed":
            database.lock.unlink()
            last = f"{HEAD}File is now available\n"
        else:
            process.send_signal(signal.SIGINT)
            last = f"{HEAD}User break.\n  {STILL_IN_USE}{database.lock}\n"
        err = database.ended(process, "report.waiting", "one1", first)
        check(err == first + last, f"{event}: {err!r}")
        check(database.lock.exists() == (event == "interrupted"), f"{event}: whose lock is it?")
        database.check_history(f"{event}, at the end", 2 if event == "removed" else 1)


def killed(work):
    """Records stay where they are, entries go forward. Totals are not looked at: a record that was killed before its
    entry still counts in them."""
    database = Database(work, "killed")
    begin = time.monotonic()
    database.run(1, "many")
    duration, caught, told = time.monotonic() - begin, 0, 0
    for kill in range(KILLS * 4):
        if caught == KILLS:
            break
        if kill % 50 == 49:  # files that grow would only cost time
            database = Database(work, "killed")
            database.run(1, "many")
        before, entries = database.records.read_bytes(), dict(database.entries())
        process = database.start("many.fdc many2.tio", "report.killed")
        time.sleep(random.random() * duration)
        process.kill()
        process.communicate()
        check(database.records.read_bytes().startswith(before), f"kill {kill}: records changed")
        now = dict(database.entries())
        check(all(now.get(key, -1) >= offset for key, offset in entries.items()), f"kill {kill}: an entry went back")
        database.check_index(f"kill {kill}", range(1, 301))
        if not database.lock.exists():
            continue
        caught += 1
        if told < 3:  # who comes next says what he waits for, and goes on when it is away
            told += 1
            waiting, first = database.start_waiting("report.waiting")
            database.lock.unlink()
            database.ended(waiting, "report.waiting", "one1", first)
        database.lock.unlink(missing_ok=True)
    check(caught > KILLS // 4, f"only {caught} of {kill + 1} kills came during an update")
    check(database.run(2, "many") == "", "a run after the kills has something to say")
    database.check_index("after the kills", range(1, 301))
    print(f"{kill + 1} kills, {caught} during an update")


def cut_files(work):
    """Both files at every length, one at a time, and some pairs; then a run, and another one."""
    whole = Database(work, "whole")
    whole.run(1, "three")
    records, index = whole.records.read_bytes(), whole.index.read_bytes()
    lengths = [(len(index), length) for length in range(len(records) + 1)]
    lengths += [(length, len(records)) for length in range(len(index))]
    lengths += [(random.randrange(len(index)), random.randrange(len(records))) for _ in range(100)]
    told = 0

    def one(pair):
        database = Database(work, "cut_{}_{}".format(*pair))
        database.index.write_bytes(index[:pair[0]])
        database.records.write_bytes(records[:pair[1]])
        for hits in (2, 3):
            err = database.run(hits, "three")
            check(not database.lock.exists(), f"{database.root.name}: the lock is left")
            # A part of an entry at the end of the index stays, and new entries stand behind it: no reader finds them.
            if err == "" and pair[0] % 8 == 0:
                expected = {key for key in range(1, 4)}
                kept = {key for key, offset in database.entries() if offset + RECORD <= database.records.stat().st_size and
                        database.record(offset)[1] == key}
                check(kept == expected, f"{database.root.name}, run {hits - 1}: the records of {sorted(expected - kept)} are not in the index")
        shutil.rmtree(database.root)
        (work / f"report.{database.root.name}").unlink()
        return err != ""

    with ThreadPoolExecutor(os.cpu_count()) as workers:
        told = sum(workers.map(one, lengths))
    print(f"{len(lengths)} pairs of cut files, {told} told of")


def full_pipe():
    """A pipe that takes no more: who writes to it waits."""
    reader, writer = os.pipe()
    os.set_blocking(writer, False)
    try:
        while os.write(writer, bytes(65536)):
            pass
    except BlockingIOError:
        os.set_blocking(writer, True)
    return reader, writer


def seconds_used(process):
    fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def handles_interrupts(process):
    caught = next(line for line in pathlib.Path(f"/proc/{process.pid}/status").read_text().splitlines() if line.startswith("SigCgt"))
    return int(caught.split()[1], 16) >> (signal.SIGINT - 1) & 1


def waiting(work):
    """Who waits has written his report, rests meanwhile, goes on soon, and knows an interrupt from his message on."""
    database = Database(work, "waiting")
    database.lock.touch()
    reader, writer = full_pipe()
    process = database.start("three.fdc three1.tio", "report.waiting", stderr=writer)
    os.close(writer)
    latest = time.monotonic() + 20
    while not handles_interrupts(process) and time.monotonic() < latest:
        time.sleep(0.01)
    check(handles_interrupts(process), "interrupts are not handled before the message")
    written, whole = (without_date(work / name) for name in ("report.waiting", "good.three1"))
    check(written == whole[:-1], "the report is not written before the wait")  # but for the line that ends it
    if problems:
        process.kill()
    process.send_signal(signal.SIGINT)
    err = b""
    while b"User break" not in err and (more := os.read(reader, 65536)):
        err += more.lstrip(b"\0")
    database.lock.unlink()
    while more := os.read(reader, 65536):
        err += more
    process.wait()
    os.close(reader)
    check(err.decode().startswith(f"{HEAD}{IN_USE}{database.lock}\n{HEAD}User break.\n"), f"an interrupt at once: {err!r}")
    check(len(database.entries()) == 2, "an interrupt gives up one record")

    delays = []
    for _ in range(5):
        database.lock.touch()
        process, first = database.start_waiting("report.waiting")
        before = seconds_used(process)
        time.sleep(0.5)
        used = seconds_used(process) - before
        check(used < 0.05, f"waiting 0.5 s takes {used} s of the processor")
        database.lock.unlink()
        released = time.monotonic()
        first += process.stderr.readline()
        delays.append(time.monotonic() - released)
        database.ended(process, "report.waiting", "one1", first)
    check(min(delays) < 0.05, f"the lock is taken {min(delays)} s after its release")


def foreign_files(work):
    for length in (0, 1, 7, 8, 167, 168, 169, 5000):
        for which in ("records", "index", "both"):
            database = Database(work, f"foreign_{which}_{length}")
            database.run(1)
            for file in (database.records, database.index):
                if which == "both" or file == getattr(database, which):
                    file.write_bytes(random.randbytes(length))
            database.run(2)
            check(not database.lock.exists(), f"{database.root.name}: the lock is left")
    for which in ("records", "index", "lock"):
        database = Database(work, f"folder_{which}")
        if which != "lock":
            getattr(database, which).mkdir()
            check(database.run(1) != "", f"{database.root.name}: nothing said")


def unusable_root(work):
    user = {"user": 65534} if os.geteuid() == 0 else {}
    work.chmod(0o777)
    database = Database(work, "unwritable")
    database.root.chmod(0o555)
    reason = f"{HEAD}Cannot open file :{database.lock}\n\n{HEAD}Reason is : Permission denied\n\n"
    err = database.run(1, **user)
    check(err == reason * 9, f"unwritable: {err!r}")
    database.base = str(work / "missing")
    err = database.run(1)
    check(err == f"{HEAD}VELDA_TPM_ROOT directory does not exist: {database.base}\n" * 9, f"missing: {err!r}")
    database.base = str(work / "nine.fdc")
    err = database.run(1)
    check(err.count("Reason is : Not a directory") == 9, f"a file as root: {err!r}")
    begin = time.monotonic()
    Database(work, "disappears").run(1, "many")
    duration = time.monotonic() - begin
    for time_of_removal in range(20):
        database = Database(work, "disappears")
        process = database.start("many.fdc many1.tio", "report.disappears")
        time.sleep(random.random() * duration)
        os.rename(database.root, work / f"moved_{time_of_removal}")
        database.ended(process, "report.disappears", "many1")
    database = Database(work, "disappears")
    database.lock.touch()
    process, first = database.start_waiting("report.disappears")
    os.rename(database.root, work / "moved_while_waiting")  # at once: the lock does not go before the directory
    err = database.ended(process, "report.disappears", "one1", first)
    check("Reason is : No such file or directory" in err, f"gone while waiting: {err!r}")


def prepare(work):
    shutil.copy(sys.argv[1], work / "veldacov")  # where another user may start it, too
    (work / "norvik" / "lib" / "locale").mkdir(parents=True)
    for name, count in (("one", 1), ("three", 3), ("nine", 9), ("many", 300)):
        functions = "".join(f'PR {number} proc "f{number}" 1 1\n' for number in range(4))
        (work / f"{name}.fdc").write_text("".join(
            f'VE 3.0e A\nFC "file{key}.c" "src"\nFD 0\nTC PR\n{functions}DC 1090519041 {key}\n@/RIK\n' for key in range(1, count + 1)))
        for hits in range(5):
            lines = "".join(f"TP {number}\n" for number in range(hits))
            (work / f"{name}{hits}.tio").write_text('NT "test" 1\n' + "".join(
                f"FT {f'{key:x}'[::-1]}\nDC 1\n{lines}" for key in range(1, count + 1)))
            environment = {"NORVIKDIR": str(work / "norvik"), "LC_ALL": "C.UTF-8", "TZ": "UTC"}
            subprocess.run([work / "veldacov", f"{name}.fdc", f"{name}{hits}.tio", f"-OUTPUT=good.{name}{hits}"], cwd=work,
                           env=environment, check=True)


def main():
    random.seed(1)
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        prepare(work)
        for part in (at_once, left_lock, waiting, killed, cut_files, foreign_files, unusable_root):
            started = time.monotonic()
            part(work)
            print(f"{part.__name__}: {time.monotonic() - started:.1f} s", flush=True)
    print(len(problems), "problems")
    return bool(problems)


if __name__ == "__main__":
    sys.exit(main())
