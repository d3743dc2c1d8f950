#!/usr/bin/env python3
"""The run-time library, by small programs that are instrumented by hand, and the traces that they leave.

    runtime.py VELDACOV RUNTIME-SOURCES TINY [CASE...]

TINY is the folder of the example whose description (functions, calls, blocks, conditions) the programs' units share."""

import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

VELDACOV, RUNTIME, TINY = (pathlib.Path(name).resolve() for name in sys.argv[1:4])
ONLY = sys.argv[4:]
WORK = pathlib.Path(tempfile.mkdtemp(prefix="velda-runtime-"))
STRICT = ["-std=c99", "-Wall", "-Wextra", "-Werror", "-pedantic", "-fPIC", "-fvisibility=hidden"]
BUILDS = {
    "gcc": ["gcc", "-O2"],
    "clang": [shutil.which("clang") or "clang-14", "-O0"],
    "sanitized": ["gcc", "-O1", "-g", "-fsanitize=address,undefined", "-fno-sanitize-recover=all"],
}
if shutil.which("arm-linux-gnueabihf-gcc") and shutil.which("qemu-arm"):
    BUILDS["arm"] = ["arm-linux-gnueabihf-gcc", "-O2"]
RUN = {"arm": ["qemu-arm", "-L", "/usr/arm-linux-gnueabihf"]}
ABI = (RUNTIME / "velda_abi.inc").read_text()
KEY, CHECKSUM = 0x0A1C1040, 0x160EB5FD  # of TINY's description
HEAD = "Norvik veldacc - WARNING: "


# --- Instrumented code, by hand ---

def formula(text):
    """'c0 + c1 - c2' as words; 'never'."""
    if text == "never":
        return ["0xFFFFFFFFu"]
    terms = re.findall(r"([-+]?) *c(\d+)", text)
    return [str(int(c) * 4 + (sign == "-") * 2 + (i + 1 < len(terms))) for i, (sign, c) in enumerate(terms)]


def unit(items, counters=8, key=KEY, name="", version=1):
    """The registration of one unit. items: formulas of TP, TA, TB, TE, each a list from identifier 0 on."""
    words = [word for keyword in items for text in keyword for word in formula(text)]
    return f"""
static velda_count c{name}[{counters}];
static const unsigned int formulas{name}[] = {{{', '.join(words or ['0'])}}};
static const struct velda_section sections{name}[] =
    {{{{{key}u, {CHECKSUM}u, {{{', '.join(str(len(k)) for k in items)}}}, {len(words)}, formulas{name}}}}};
static struct velda_unit unit{name} = {{{version}, 1, {counters}, sections{name}, c{name}, 0}};
""" + joining(name)


def joining(name=""):
    return f"""
static __attribute__((constructor(101))) void join{name}(void) {{ veldacc_has_to_link_this_program_too(&unit{name}, 1); }}
static __attribute__((destructor(101))) void leave{name}(void) {{ veldacc_has_to_link_this_program_too(&unit{name}, 0); }}
"""


ORDERED = f"""
static const struct velda_section sections[] = {{{{{KEY}u, {CHECKSUM}u, {{5, 1, 10, 14}}, 0, 0}}}};
static struct velda_unit unit = {{1, 1, 0, sections, 0, 0}};
#define HIT(keyword, id) veldacc_hit(&sections[0], (id) * 4 + keyword)
enum {{ TP, TA, TB, TE }};
""" + joining()

PLAIN_ITEMS = (["c0", "c1"], ["c2"], ["c0 - c1"], [])
INCLUDES = """
#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <setjmp.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>
#include "velda.h"
"""


# --- Building and running ---

class Failure(Exception):
    pass


def expect(what, got, wanted):
    if got != wanted:
        raise Failure(f"{what}:\n--- wanted\n{wanted}\n--- got\n{got}")


def call(words, **options):
    return subprocess.run([str(word) for word in words], capture_output=True, text=True, timeout=60, **options)


def must(words, **options):
    done = call(words, **options)
    if done.returncode != 0:
        raise Failure(f"{' '.join(map(str, words))}\n{done.stdout}{done.stderr}")
    return done


class Place:
    """A folder with a build of the library, in which a case makes and runs its programs."""

    def __init__(self, build, case):
        self.compiler = BUILDS[build]
        self.build = build
        self.library = WORK / build / "libruntime.a"
        self.dir = WORK / build / case
        self.dir.mkdir()

    def compile(self, name, text, *options, abi=ABI):
        (self.dir / f"{name}.c").write_text(INCLUDES + abi + text)
        must([*self.compiler, "-w", f"-I{RUNTIME}", "-fPIC", "-c", f"{name}.c", "-o", f"{name}.o", *options],
             cwd=self.dir)
        return f"{name}.o"

    def program(self, text, *options, name="prog"):
        must([*self.compiler, self.compile(name, text), "-o", name, self.library, *options], cwd=self.dir)
        return f"./{name}"

    def shared(self, name, text, *options):
        """A shared library that shows entry points only, as libtool's do."""
        (self.dir / "map").write_text("{ global: enter_*; local: *; };\n")
        must([*self.compiler, "-shared", self.compile(name, text), "-o", f"lib{name}.so", self.library,
              "-Wl,--version-script=map", "-Wl,--no-undefined", *options], cwd=self.dir)

    def run(self, program="./prog", status=0, stdout="", stderr="", cwd=None, **environment):
        """Runs in the case's folder; variables given as None are unset."""
        env = {"PATH": os.environ["PATH"], "LD_LIBRARY_PATH": str(self.dir), "VELDA_DATE": "",
               "ASAN_OPTIONS": "detect_leaks=0", **environment}
        env = {name: value for name, value in env.items() if value is not None}
        done = call([*RUN.get(self.build, []), program], env=env, cwd=cwd or self.dir)
        expect("status", (done.returncode, done.stderr), (status, stderr))
        expect("standard output", done.stdout, stdout)

    def files(self, where="."):
        """Names of traces and of temporary files; process ids as P."""
        names = [path.name for path in (self.dir / where).iterdir() if ".tio" in path.name]
        return sorted(re.sub(r"\d{2,}", "P", name) for name in names)

    def trace(self, name):
        """The text of a trace, once veldacov has read it without a word."""
        path = self.dir / name
        report = call([VELDACOV, TINY / "tiny.fdc", path, f"-OUTPUT={self.dir}/report"],
                      env={"NORVIKDIR": str(WORK), "PATH": os.environ["PATH"]})
        said = [line for line in report.stderr.splitlines() if "do not match any listed FDC" not in line]
        expect(f"what veldacov says about {name}", (report.returncode, said), (0, []))
        return path.read_text()

    def only_trace(self):
        paths = [path for path in self.dir.iterdir() if ".tio" in path.name]
        expect("number of traces", [path.name for path in paths][1:], [])
        text = self.trace(paths[0].name)
        paths[0].unlink()
        return text


def head(name="prog", rest="", lines=""):
    return f'NT "{name}"{rest}\n{lines}'


PART = "FT 0401c1a\nDC df5be061\n"
OTHER_KEY = 0x0A1C1041
OTHER_PART = "FT 1401c1a\nDC df5be061\n"


# --- Cases ---

def sums(at):
    """Sums of counters in both forms; no hit for a sum that is 0 or below, and none too large for its field."""
    at.program(unit((["c0", "c1 - c0", "c0 - c1", "never", "c2"], ["c0 + c0 + c1"], ["c3"] * 9 + ["c4"], ["c1"] * 14))
               + "int main(void) { c[0] = 1; c[1] = 27; c[2] = 1ull << 40; c[3] = 0; c[4] = 0xFFFFFFFFull; return 3; }")
    plain = "".join(f"TE {i:x}\n" for i in range(14))
    at.run(status=3)
    expect("plain", at.only_trace(), head() + PART + "TP 0\nTP 1\nTP 4\nTA 0\nTB 9\n" + plain)
    at.run(status=3, VELDA_MODE="counted")
    expect("counted", at.only_trace(), head(lines="CO\n") + PART + "TP 0 1\nTP 1 a1\nTP 4 ffffffff\nTA 0 d1\n"
           "TB 9 ffffffff\n" + plain.replace("\n", " b1\n"))
    at.run(status=3, VELDA_MODE="fast", stderr=HEAD + "VELDA_MODE is plain or counted, taken as plain: fast\n")
    expect("unknown mode", at.only_trace()[:17], head() + "FT 0401")


def empty(at):
    """A program that hits nothing was a test all the same; a part without hits is left out."""
    at.program(unit(PLAIN_ITEMS) + "int main(void) { return 0; }")
    at.run()
    expect("trace", at.only_trace(), head())


def names(at):
    """Names of traces: the pattern, the directory of the start, and what exists is never overwritten."""
    at.program(unit(PLAIN_ITEMS) + """int main(void) {
        c[0] = 1; clearenv(); return chdir("/") == 0 && unsetenv("VELDA_TIO") == 0 ? 0 : 1; }""")
    for _ in range(3):
        at.run(VELDA_TIO="100%%-%e-%x.tio")
    expect("same name", at.files(), ["P%-prog-%x-1.tio", "P%-prog-%x-2.tio", "P%-prog-%x.tio"])
    for path in at.dir.glob("*.tio"):
        path.unlink()
    (at.dir / "50%e").mkdir()
    at.run("../prog", cwd=at.dir / "50%e")
    expect("directory with a percent sign", at.files("50%e"), ["velda-prog-P.tio"])
    (at.dir / "a.b").mkdir()
    for _ in range(2):
        at.run(VELDA_TIO=f"{at.dir}/a.b/.tio.d")
    expect("dot of the directory", at.files("a.b"), [".tio-1.d", ".tio.d"])


def bad_names(at):
    """A trace that cannot be written is told, and the program ends as it would."""
    at.program(unit(PLAIN_ITEMS) + "int main(void) { c[0] = 1; puts(\"out\"); return 4; }")
    at.run(VELDA_TIO="missing/x.tio", status=4, stdout="out\n",
           stderr=f"{HEAD}cannot write trace {at.dir}/missing/x.tio: No such file or directory\n")
    at.run(VELDA_TIO="x" * 250 + ".tio", status=4, stdout="out\n",
           stderr=f"{HEAD}cannot write trace {at.dir}/{'x' * 250}.tio: File name too long\n")
    at.run(VELDA_TIO="x" * 5000, status=4, stdout="out\n", stderr=HEAD + "VELDA_TIO is too long, no trace is written\n")
    at.run(VELDA_TIO="", status=4, stdout="out\n")
    expect("no trace wanted", at.files(), [])


def tests(at):
    """What the environment says about the test."""
    at.program(unit(PLAIN_ITEMS) + "int main(void) { c[0] = 1; return 0; }")
    hits = PART + "TP 0\nTB 0\n"
    for expected, stderr, environment in [
        (head('a \\"b\\" \\\\c d'), "", {"VELDA_TEST": 'a "b" \\c\nd'}),
        (head(), "", {"VELDA_TEST": ""}),
        (head(rest=" a1"), "", {"VELDA_TESTNO": "26"}),
        (head("t", " fffffff7 0"), "", {"VELDA_TEST": "t", "VELDA_TESTNO": "2147483647", "VELDA_SERVICE": "0"}),
        (head(), "not a number from 0 to 2147483647, left out: VELDA_TESTNO", {"VELDA_TESTNO": "2147483648"}),
        (head(), "VELDA_SERVICE needs VELDA_TESTNO, left out", {"VELDA_SERVICE": "1"}),
        (head(lines="DT c39b5596\n"), "", {"VELDA_DATE": "1767225660"}),
        (head(lines='DT "C:\\\\first of January\\\\"\n'), "", {"VELDA_DATE": "C:\\first of January\\"}),
        (head(), "VELDA_DATE holds a quote, left out: a\"b", {"VELDA_DATE": 'a"b'}),
    ]:
        at.run(stderr=HEAD + stderr + "\n" if stderr else "", **environment)
        got = at.only_trace()
        if environment.get("VELDA_DATE") == 'a"b':
            got = re.sub(r"DT \w+\n", "", got)
        expect(str(environment), got, expected + hits)
    at.run(VELDA_DATE=None)
    date = re.search(r"^DT (\w+)$", at.only_trace(), re.M)[1]
    seconds = int(date[::-1], 16)
    if abs(seconds - (at.dir / "prog").stat().st_mtime) > 300:
        raise Failure(f"date of now: {seconds}")


def several_tests(at):
    """Tests of one process, and traces written in between: each is complete when velda_write returns."""
    at.program(unit(PLAIN_ITEMS) + """
int main(void) {
    int i;
    c[0]++;
    for (i = 0; i < 3; i++) {
        velda_begin_test(i == 1 ? 0 : "a \\"test\\"", i == 2 ? -1 : i + 30, i == 0 ? 7 : -1);
        c[0] += i + 1;
        errno = 5;
        velda_write();
        velda_write();
        if (errno != 5) return 1;
    }
    c[2]++;
    velda_write();
    c[1] = 50;
    _exit(0);
}""")
    at.run(VELDA_MODE="counted", VELDA_TIO="t.tio")
    expect("files", [name for name in at.files() if not name.endswith(".part")], ["t.tio"])
    expect("trace", at.trace("t.tio"), "".join(test + "CO\n" + PART + hits for test, hits in [
        (head(), "TP 0 1\nTB 0 1\n"), (head('a \\"test\\"', " e1 7"), "TP 0 1\nTB 0 1\n"), ("NT f1\n", "TP 0 2\nTB 0 2\n"),
        (head('a \\"test\\"'), "TP 0 3\nTA 0 1\nTB 0 3\n")]))


def write_and_end(at):
    """The end of the program replaces what velda_write wrote; no temporary file is left."""
    at.program(unit(PLAIN_ITEMS) + """
int main(void) { velda_begin_test("x", -1, -1); c[2]++; velda_write(); velda_begin_test("y", -1, -1); c[1]++; return 0; }""")
    (at.dir / "t.tio").write_text("mine")
    at.run(VELDA_TIO="t.tio")
    expect("files", at.files(), ["t-1.tio", "t.tio"])
    expect("another's file", (at.dir / "t.tio").read_text(), "mine")
    expect("trace", at.trace("t-1.tio"), head("x") + PART + "TA 0\n" + head("y") + PART + "TP 1\n")


def ordered(at):
    """An ordered build keeps every hit, beyond all buffers, with those of signal handlers, in its order. One hit is before
    the unit has joined."""
    at.program(ORDERED + """
static __attribute__((constructor(100))) void early(void) { HIT(TE, 3); }
static void handler(int signal) { HIT(TA, 0); }
int main(void) {
    int i;
    signal(SIGUSR1, handler);
    for (i = 0; i < 30000; i++) {
        HIT(TB, 0); HIT(TB, 1);
        if (i % 1000 == 0) raise(SIGUSR1);
        HIT(TE, 13);
    }
    return 0;
}""")
    at.run()
    thousand = "TB 0\nTB 1\nTA 0\nTE d\n" + "TB 0\nTB 1\nTE d\n" * 999
    expect("trace", at.only_trace(), head() + PART + "TE 3\n" + thousand * 30)
    at.run(VELDA_MODE="counted")
    expect("counted", at.only_trace(), head(lines="CO\n") + PART + "TE 3 1\n" + thousand.replace("\n", " 1\n") * 30)


def interrupted(at):
    """Signal handlers that hit, and that jump out of a hit, at any moment: nothing else is lost or wrong."""
    at.program(ORDERED + """
static volatile sig_atomic_t ticks;
static sigjmp_buf back;
static void handler(int signal) { ticks++; HIT(TA, 0); if (ticks % 3 == 0) siglongjmp(back, 1); }
int main(void) {
    struct itimerval often = {{0, 100}, {0, 100}}, never = {{0, 0}, {0, 0}};
    static volatile int done;
    signal(SIGALRM, handler);
    setitimer(ITIMER_REAL, &often, 0);
    sigsetjmp(back, 1);
    while (ticks < 1000) { HIT(TB, 0); done++; }
    setitimer(ITIMER_REAL, &never, 0);
    printf("%d %d\\n", (int)ticks, done);
    return 0;
}""")
    environment = {"PATH": os.environ["PATH"], "ASAN_OPTIONS": "detect_leaks=0"}
    done = must([*RUN.get(at.build, []), "./prog"], cwd=at.dir, env=environment)
    ticks, blocks = map(int, done.stdout.split())
    lines = at.only_trace().splitlines()
    expect("hits of handlers", lines.count("TA 0"), ticks)
    lost = blocks - lines.count("TB 0")
    if not -ticks // 3 - 1 <= lost <= ticks // 3 + 1:
        raise Failure(f"{lost} hits lost of {blocks}")
    expect("other lines", sorted(set(lines[4:])), ["TA 0", "TB 0"])


def ordered_tests(at):
    """Tests of an ordered build, together with a unit that counts."""
    at.program(ORDERED + unit(PLAIN_ITEMS, key=OTHER_KEY, name="2") + """
int main(void) { HIT(TB, 0); c2[2] = 1; velda_begin_test("x", -1, -1); HIT(TB, 1); HIT(TB, 1); velda_write(); HIT(TB, 2);
    velda_begin_test("none", -1, -1); return 0; }""")
    at.run()
    expect("trace", at.only_trace(), head() + PART + "TB 0\n" + OTHER_PART + "TA 0\n" + head("x") + PART + "TB 1\nTB 1\n" + PART + "TB 2\n")


def full_disk(at):
    """No room for the trace: told once, the program's signals, status and output are its own, nothing is left behind."""
    at.program(ORDERED + """
int main(void) {
    struct rlimit small = {1000, 1000};
    struct sigaction now;
    int i;
    setrlimit(RLIMIT_FSIZE, &small);
    errno = 7;
    for (i = 0; i < 100000; i++) HIT(TB, 0);
    sigaction(SIGXFSZ, 0, &now);
    printf("%d %d\\n", errno, now.sa_handler == SIG_DFL);
    return 9;
}""")
    at.run(VELDA_TIO="t.tio", status=9, stdout="7 1\n", stderr=f"{HEAD}cannot write trace {at.dir}/t.tio: File too large\n")
    expect("files", at.files(), [])


def closed_streams(at):
    """Nothing is written to a descriptor of the program, and a reader that is gone ends nothing."""
    at.program(ORDERED + """
int main(void) {
    int i, fd, ends[2];
    for (i = 0; i < 20000; i++) HIT(TB, 0);
    for (i = 0; i < 20; i++) close(i);
    fd = open("data.tiox", O_RDWR | O_CREAT, 0600);
    for (i = 0; i < 20000; i++) HIT(TB, 0);
    if (fd != 0 || lseek(fd, 0, SEEK_END) != 0) return 1;
    if (pipe(ends) == 0 && dup2(ends[1], 2) == 2) { close(ends[0]); close(ends[1]); }
    return getenv("VELDA_LATE") ? rename("d", "e") + 3 : 0;
}""")
    at.run(VELDA_TIO="t.tio")
    expect("hits", at.trace("t.tio").count("TB 0"), 40000)
    (at.dir / "d").mkdir()
    at.run(VELDA_TIO="d/t.tio", VELDA_LATE="1", status=3)


def children(at):
    """A forked child's trace has its own process id and its own hits; _exit, abort and exec leave none."""
    at.program(unit((["c0", "c1"], ["c2"], [], [])) + """
int main(int argc, char **argv) {
    int how;
    c[0]++;
    if (argc > 1) { c[2]++; return 0; }
    for (how = 0; how < 4; how++) {
        pid_t child = fork();
        if (child == 0) {
            c[1] += 5;
            signal(SIGABRT, SIG_DFL);
            if (how == 0) exit(0);
            if (how == 1) _exit(0);
            if (how == 2) { struct rlimit none = {0, 0}; setrlimit(RLIMIT_CORE, &none); close(2); abort(); }
            if (how == 3) _exit(execl("./prog", "prog", "again", (char *)0));
        }
        waitpid(child, 0, 0);
    }
    return 0;
}""")
    at.run(VELDA_MODE="counted", VELDA_TIO="t-%p.tio")
    expect("files", at.files(), ["t-P.tio"] * (2 if at.build == "arm" else 3))
    start = head(lines="CO\n") + PART
    wanted = [start + hits for hits in ("TP 0 1\n", "TP 0 1\nTA 0 1\n", "TP 1 5\n")]
    if at.build == "arm":
        del wanted[1]  # the emulator does not run what an emulated program executes
    expect("traces", sorted(at.trace(path.name) for path in at.dir.glob("t-*.tio")), wanted)


def ordered_child(at):
    """What an ordered build has kept when it forks is the parent's, whether written or not."""
    at.program(ORDERED + """
int main(void) { int i; for (i = 0; i < 20000; i++) HIT(TB, 1);
    if (fork() == 0) { HIT(TB, 2); exit(0); }
    wait(0); HIT(TB, 3); return 0; }""")
    at.run(VELDA_TIO="t-%p.tio")
    expect("traces", sorted(at.trace(path.name)[len(head() + PART):].count("TB 1\n") for path in at.dir.glob("t*")), [0, 20000])
    expect("files", at.files(), ["t-P.tio", "t-P.tio"])


def ends(at):
    """Ways to end: exit and quick_exit leave a trace with what destructors and exit functions hit."""
    at.program(unit((["c0", "c1"], ["c2"], [], [])) + """
static void at_end(void) { c[1]++; }
static __attribute__((destructor)) void destructor(void) { c[2]++; }
int main(void) { c[0]++; atexit(at_end); if (getenv("VELDA_QUICK")) quick_exit(2); exit(1); }""")
    at.run(status=1)
    expect("exit", at.only_trace(), head() + PART + "TP 0\nTP 1\nTA 0\n")
    at.run(status=2, VELDA_QUICK="1")
    expect("quick_exit", at.only_trace(), head() + PART + "TP 0\n")


def no_heap(at):
    """No allocation, neither in hits nor when the trace is written."""
    if at.build == "sanitized":
        return
    at.program(ORDERED + unit(PLAIN_ITEMS, key=OTHER_KEY, name="2") + """
void *malloc(size_t size) { write(1, "malloc\\n", 7); return 0; }
void *calloc(size_t number, size_t size) { write(1, "calloc\\n", 7); return 0; }
void *realloc(void *old, size_t size) { write(1, "realloc\\n", 8); return 0; }
int main(void) { int i; for (i = 0; i < 20000; i++) HIT(TB, 0); velda_write(); c2[0]++; return 0; }""")
    at.run()
    expect("hits", at.only_trace().count("\n"), 1 + 2 + 20000 + 2 + 2)


def two_copies(at):
    """A program and its shared library, both with the library inside and hidden: one trace, whoever is first."""
    at.shared("one", unit(PLAIN_ITEMS, key=OTHER_KEY) + 'void enter_one(void) { c[2]++; velda_begin_test("two", 2, -1); c[0]++; }')
    at.program(unit(PLAIN_ITEMS) + "void enter_one(void); int main(void) { c[0]++; enter_one(); c[0]++; return 0; }",
               "-L.", "-lone")
    at.run()
    expect("trace", at.only_trace(), head() + PART + "TP 0\nTB 0\n" + OTHER_PART + "TA 0\n" +
           head("two", " 2") + PART + "TP 0\nTB 0\n" + OTHER_PART + "TP 0\nTB 0\n")


def unloading(at):
    """Libraries that come and go keep their hits; when the one that owns the registry goes, another has it."""
    for name, key in (("one", KEY), ("two", OTHER_KEY)):
        at.shared(name, unit((["c0 - c1"], [], [], []), key=key) + f"void enter_{name}(void) {{ c[0]++; }}")
    host = """
static void load(const char *file, const char *function, void **library) {
    *library = dlopen(file, RTLD_NOW);
    if (!*library) { puts(dlerror()); exit(1); }
    ((void (*)(void))dlsym(*library, function))();
}
int main(void) {
    void *one, *two;
    int i;
    load("libone.so", "enter_one", &one); load("libtwo.so", "enter_two", &two); dlclose(one);
    for (i = 0; i < 9; i++) { load("libone.so", "enter_one", &one); dlclose(one); }
    load("libtwo.so", "enter_two", &one); MORE;
    return 0;
}"""
    hits = {OTHER_PART + "TP 0 2\n", PART + "TP 0 a\n"}

    def parts(text):
        start = head(lines="CO\n")
        expect("start", text[:len(start)], start)
        return set(re.findall(r"FT .*\nDC .*\n(?:T.*\n)+", text))

    at.program(host.replace("MORE", "0"), "-ldl")
    at.run(VELDA_MODE="counted")
    expect("left open", parts(at.only_trace()), hits)
    at.program(host.replace("MORE", "dlclose(one); dlclose(two)"), "-ldl")
    at.run(VELDA_MODE="counted")
    expect("all closed", parts(at.only_trace()), hits)
    at.program(unit(PLAIN_ITEMS, key=KEY + 2) + host.replace("MORE", "c[2]++"), "-ldl")
    at.run(VELDA_MODE="counted")
    expect("instrumented host", parts(at.only_trace()), hits | {"FT 2401c1a\nDC df5be061\nTA 0 1\n"})


def static_program(at):
    if at.build == "sanitized":
        return
    at.program(unit(PLAIN_ITEMS) + "int main(void) { c[0]++; return 0; }", "-static")
    at.run()
    expect("trace", at.only_trace(), head() + PART + "TP 0\nTB 0\n")


def two_versions(at):
    """An object of another interface: told, and the trace says so."""
    at.program(unit(PLAIN_ITEMS, version=2) + unit(PLAIN_ITEMS, name="2") + "int main(void) { c[0]++; c2[0]++; return 0; }")
    at.run(stderr=HEAD + "an object was made by another version of veldacc, its hits are lost: compile it again\n")
    expect("trace", (at.dir / at.dir.glob("*.tio").__next__()).read_text(), head() + "EI 02\n" + PART + "TP 0\nTB 0\n")


def without_library(at):
    """velda.h asks for nothing in a program that is not instrumented; an instrumented object asks for veldacc by name."""
    at.compile("plain", 'int main(void) { velda_begin_test("a", 1, 1); velda_write(); return 0; }', abi="")
    must([*at.compiler, "plain.o", "-o", "plain"], cwd=at.dir)
    at.run("./plain")
    expect("files", at.files(), [])
    plus = [word.replace("clang", "clang++").replace("gcc", "g++") for word in at.compiler]
    if shutil.which(plus[0]):
        must([*plus, "-x", "c++", "-Wall", "-Wextra", "-pedantic", "-Werror", "-Wno-deprecated", f"-I{RUNTIME}", "plain.c",
              "-o", "plain"], cwd=at.dir)
        at.run("./plain")
    at.compile("lone", unit(PLAIN_ITEMS) + "int main(void) { return 0; }")
    for kind in ([], ["-shared"]):
        done = call([*at.compiler, *kind, "lone.o", "-o", "lone"], cwd=at.dir)
        if done.returncode == 0 or "veldacc_has_to_link_this_program_too" not in done.stderr:
            raise Failure(f"linked without the library: {done.stderr}")


def oldest_language(at):
    """The declarations compile from preprocessed text alone, under options that know no long long."""
    (at.dir / "old.i").write_text(f'# 1 "<velda>" 3\n{ABI}\n# 1 "old.c"\nint main(void) {{ return 0; }}\n')
    must([*at.compiler, "-std=c90", "-pedantic-errors", "-Wall", "-Werror", "-x", "cpp-output", "-c", "old.i"], cwd=at.dir)


CASES = [sums, empty, names, bad_names, tests, several_tests, write_and_end, ordered, interrupted, ordered_tests, full_disk,
         closed_streams, children, ordered_child, ends, no_heap, two_copies, unloading, static_program, two_versions,
         without_library, oldest_language]


def build_library(build):
    (WORK / build).mkdir()
    objects = []
    for source in sorted(RUNTIME.glob("*.c")):
        objects.append(f"{source.stem}.o")
        must([*BUILDS[build], *STRICT, "-c", source, "-o", objects[-1]], cwd=WORK / build)
    must(["ar", "rcs", "libruntime.a", *objects], cwd=WORK / build)


def run_case(job):
    build, case = job
    try:
        case(Place(build, case.__name__))
        return None
    except (Failure, OSError, subprocess.TimeoutExpired) as failure:
        return f"{build}: {case.__name__}: {failure}"


def main():
    try:
        (WORK / "lib" / "locale").mkdir(parents=True)
        for build in BUILDS:
            build_library(build)
        # An emulator handles the signals itself: on a loaded machine it may hang in a storm of them.
        jobs = [(build, case) for build in BUILDS for case in CASES
                if (not ONLY or case.__name__ in ONLY) and not (build in RUN and case is interrupted)]
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            failures = [failure for failure in pool.map(run_case, jobs) if failure]
    finally:
        if not os.environ.get("KEEP"):
            shutil.rmtree(WORK)
    print(*failures, f"{len(jobs)} runs of {len(CASES)} cases, {len(failures)} failed", sep="\n")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
