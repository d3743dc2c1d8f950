#!/usr/bin/env python3
"""The completion of command lines in bash and zsh: what an interactive shell makes of a line when TAB is pressed, and
whether the shells offer the options and keywords that the program's usage text has.

    completion.py PROGRAM COMPLETIONS_DIR

A shell that is not installed is left out; without any of them, or without pseudo terminals, the exit status is 77."""

import fcntl
import os
import pathlib
import pty
import re
import select
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time

PROGRAM = os.path.realpath(sys.argv[1])
COMPLETIONS = pathlib.Path(sys.argv[2]).resolve()
BASH_COMPLETION = pathlib.Path("/usr/share/bash-completion/bash_completion")
SECONDS = 60  # for one answer of a shell, however busy the machine is
PROMPT = "READY> "
LINE, CURSOR, END = "\x1e", "\x1d", "\x1f"  # around and in a line that a shell shows on request
SHOW, CLEAR, TAB, LEFT = "\x1e", "\x1d", "\t", "\x02"  # keys

FILES = {
    "alpha.fdc": 'VE 3.0d X\nPR 0 proc "alarm_level" 1 2\nPR 1 return "left" 2 2\nPR 2 proc "open valve" 4 5\n'
                 'PR 3 proc "Plant::add(int, char)" 7 8\nPR 4 proc "all" 10 11\n',
    "my case.fdc": 'VE 3.0d X\nPR 0 proc "in_my_case" 1 2\n',
    "beta.tio": 'NT "night run" 7 4\nTB 1\nNT "say \\"go\\" twice" 8\nNT "noon"\nNT 12\n',
    "UPPER.TIO": "",
    "notes.txt": 'PR 0 proc "in_notes" 1 2\n',
    "words.lst": "",
    "x:y.fdc": "",
    "q,r.fdc": "",
    "sub/gamma.fdc": 'VE 3.0d X\nPR 0 proc "gamma" 1 2\n',
    "sub/plain.txt": "",
    "listings/": None,
    "list of/": None,
}
INPUTS = ["alpha.fdc", "beta.tio", "list of/", "listings/", "my case.fdc", "q,r.fdc", "sub/", "UPPER.TIO", "x:y.fdc"]

# Which shells, what is typed behind "veldacov ", and what comes of it: the line after one TAB, or the list of what is
# offered (an empty one: the line stays, too). "|" is the cursor, where it is not at the end.
ROWS = [
    # Names
    ("all", "-su", "-SUMMARY="),
    ("all", "-m", "-MERGETESTS "),
    ("all", "-s", ["-SERVICE=", "-SUMMARY="]),
    ("all", "-noc", ["-NOCALL", "-NOCOND"]),
    ("all", "-pr", ["-PROC", "-PROC="]),
    ("all", "-sux", []),
    ("all", "größe.fdc -su", "größe.fdc -SUMMARY="),
    ("all", "alpha.fdc -su| beta.tio", "alpha.fdc -SUMMARY=| beta.tio"),
    # Names that the line already has, or excludes
    ("all", "-out=x -o", []),
    ("all", "-o| -OUTPUT=x", []),
    ("all", "-proc -nop", []),
    ("all", "-noca -c", ["-CIO=", "-CLEAN=", "-COND", "-COND="]),
    ("all", "-FILE=a -fi", "-FILE=a -FILE="),
    ("all", "-fi=a -ex", ["-EXSERVICE=", "-EXTEST="]),
    ("all", "-sum=se -br", []),
    ("all", "-no -nopr", "-no -NOPROC "),
    ("all", "-v", "-VERSION "),
    ("all", "alpha.fdc -v", []),
    # Keywords
    ("all", "-SUMMARY=se", "-SUMMARY=SERVICE "),
    ("all", "-bl=at", "-bl=ATC "),
    ("bash", "-SUMMARY=se| beta.tio", "-SUMMARY=SERVICE| beta.tio"),
    ("zsh", "-SUMMARY=se| beta.tio", "-SUMMARY=SERVICE | beta.tio"),
    ("all", "-SUMMARY=x", []),
    ("all", "-c=", []),
    ("all", "-CALL=", []),
    # Files and directories as values
    ("all", "-OUTPUT=no", "-OUTPUT=notes.txt "),
    ("all", "-o=my", "-o=my\\ case.fdc "),
    ("all", "-CLEAN=my\\ c", "-CLEAN=my\\ case.fdc "),
    ("bash", '-CIO="my', '-CIO="my case.fdc" '),
    ("zsh", '-CIO="my', "-CIO=my\\ case.fdc "),
    ("all", "'-FLOW=my", "'-FLOW=my case.fdc' "),
    ("all", "-LISTING=", ["list of/", "listings/", "sub/"]),
    ("all", "-L=listi", "-L=listings/"),
    ("all", "-option=wo", "-option=words.lst "),
    # Lists
    ("all", "-FILE=a.c,no", "-FILE=a.c,notes.txt "),
    ("all", "-exf=a.c,b.c,my", "-exf=a.c,b.c,my\\ case.fdc "),
    ("all", "-FILE=a.c,sub/p", "-FILE=a.c,sub/plain.txt "),
    ("all", "alpha.fdc,be", "alpha.fdc,beta.tio "),
    # Services and tests
    ("all", "alpha.fdc -SERVICE=", ["alarm_level", "all", "open valve", "Plant::add(int\\, char)"]),
    ("all", "alpha.fdc -exs=o", "alpha.fdc -exs=open\\ valve "),
    ("all", "alpha.fdc -se=Plant::", "alpha.fdc -se=Plant::add\\(int\\\\,\\ char\\) "),
    ("all", "*.fdc,sub/gamma.fdc -se=", ["alarm_level", "all", "gamma", "in_my_case", "open valve",
                                         "Plant::add(int\\, char)"]),
    ("all", "my\\ case.fdc -se=i", "my\\ case.fdc -se=in_my_case "),
    ("all", "~/sub/gamma.fdc -se=g", "~/sub/gamma.fdc -se=gamma "),
    ("all", "beta.tio -TEST=", ["night run", "noon", 'say "go" twice']),
    ("bash", 'beta.tio -t="s', 'beta.tio -t="say \\"go\\" twice" '),
    ("all", "none.fdc sub -SERVICE=", []),
    # Positional words
    ("all", "", INPUTS),
    ("all", "al", "alpha.fdc "),
    ("all", "up", []),
    ("all", "my", "my\\ case.fdc "),
    ("all", '"my', '"my case.fdc" '),
    ("all", "su", "sub/"),
    ("all", "sub/p", "sub/plain.txt "),
    ("all", "@wo", "@words.lst "),
    ("bash", "q", "q\\\\\\,r.fdc "),
    ("bash", "x:", "x:y.fdc "),
    ("all", "~/my", "~/my\\ case.fdc "),
    ("all", "alpha.fdc >no", "alpha.fdc >notes.txt "),
]
# The same behind "veldaview ".
VIEW_ROWS = [
    ("all", "", ["check", "export", "html", "tests"]),
    ("all", "ch", "check "),
    ("all", "check al", "check alpha.fdc "),
    ("bash", "check alpha.fdc --mark", "check alpha.fdc --markdown "),
    ("zsh", "check alpha.fdc --mark", "check alpha.fdc --markdown="),
    ("all", "check --markdown=my", "check --markdown=my\\ case.fdc "),
    ("all", "check --min de", "check --min decisions="),
    ("all", "check --min=lo", "check --min=loops="),
    ("all", "check --per=s", "check --per=service "),
    ("all", "check --per ", ["file", "service", "total"]),
    ("all", "export --format c", "export --format cobertura "),
    ("all", "tests --format=j", "tests --format=json "),
    ("all", "tests my\\ case.fdc -o no", "tests my\\ case.fdc -o notes.txt "),
    ("all", "export --root li", ["list of/", "listings/"]),
    ("all", "html -o li", ["list of/", "listings/"]),
    ("all", "check @wo", "check @words.lst "),
]

BASH_SETUP = r"""
bind 'set enable-bracketed-paste off' 'set bell-style none' 'set completion-display-width 0' 'set page-completions off'
bind 'set completion-query-items 0'
show() { printf '\036%s\035%s\037' "${READLINE_LINE:0:READLINE_POINT}" "${READLINE_LINE:READLINE_POINT}"; }
bind -x '"\C-^": show'
bind '"\C-]": kill-whole-line'
names() { compgen -v | grep -Ev '^(_|BASH.*|COMP.*|MAPFILE|PIPESTATUS|READLINE.*|FUNCNAME|LINENO|RANDOM)$'; }
"""
ZSH_SETUP = r"""
fpath=("$COMPLETIONS" $fpath)
autoload -Uz compinit
compinit -D -u
setopt no_auto_menu no_beep no_prompt_sp no_prompt_cr
LISTMAX=0
show() { zle -R; print -rn -- $'\036'"${LBUFFER}"$'\035'"${RBUFFER}"$'\037'; }
complete-and-show() { zle expand-or-complete || true; show; }
bindkey -e
zle -N show
zle -N complete-and-show
bindkey '^I' complete-and-show '^^' show '^]' kill-whole-line
zmodload zsh/parameter
names() { emulate -L zsh; print -rl -- "${(@k)parameters}" | grep -Ev '^(_.*|[a-z]*stat.*|[!#$*0?@-]|[A-Z]*|[0-9]+)$'; }
"""
# What they are called, the shell, and what is to be done there.
SHELLS = [
    ("bash", "bash", '. "$COMPLETIONS/veldacov"; . "$COMPLETIONS/veldaview"'),
    ("bash with other word breaks", "bash", 'set -u; COMP_WORDBREAKS=${COMP_WORDBREAKS//[=:@]/}\n'
                                            '. "$COMPLETIONS/veldacov"; . "$COMPLETIONS/veldaview"'),
    ("bash with bash-completion", "bash", 'set -u; . "$BASH_COMPLETION"'),
    ("zsh", "zsh", ""),
    ("zsh with other options", "zsh", "setopt no_unset ksh_arrays sh_word_split no_nomatch err_return"),
]

problems = 0


def fail(shell, what, expected, found):
    global problems
    problems += 1
    print(f"FAILED: {shell}: {what}\n    expected: {expected}\n    found:    {found}", flush=True)


class Shell:
    """An interactive shell on a terminal of its own."""

    def __init__(self, program, work, setup):
        environment = {"PATH": os.environ["PATH"], "HOME": str(work), "LC_ALL": "C.UTF-8", "TERM": "dumb",
                       "PS1": PROMPT, "INPUTRC": "/dev/null", "COMPLETIONS": str(COMPLETIONS),
                       "BASH_COMPLETION": str(BASH_COMPLETION),
                       "BASH_COMPLETION_USER_DIR": str(work.parent / "bash-completion")}
        self.zsh = program == "zsh"
        words = ["zsh", "-f", "-i"] if self.zsh else ["bash", "--norc", "--noprofile", "-i"]
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.chdir(work)
            os.execvpe(words[0], words, environment)
        fcntl.ioctl(self.terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 100, 400, 0, 0))
        self.seen = ""
        self.until(PROMPT)
        script = work.parent / "setup"
        script.write_text((ZSH_SETUP if self.zsh else BASH_SETUP) + f"before=\nbefore=$(names | sort)\n{setup}\n"
                          f"PS1='{PROMPT}'\nprintf '\\036\\037'\n")
        self.send(f" . {script}\n")
        self.noise = re.sub(r"\x1b\[\?\w+", "", self.until(LINE).rpartition(f"{script}")[2]).strip()
        self.until(END)

    def send(self, text):
        os.write(self.terminal, text.encode())

    def until(self, mark):
        """What the shell writes up to a mark."""
        end = time.monotonic() + SECONDS
        while mark not in self.seen:
            if not select.select([self.terminal], [], [], max(0, end - time.monotonic()))[0]:
                sys.exit(f"FAILED: no answer for {SECONDS} seconds; seen: {self.seen!r}")
            try:
                self.seen += os.read(self.terminal, 65536).decode(errors="replace")
            except OSError:
                sys.exit(f"FAILED: the shell has ended; seen: {self.seen!r}")
        text, _, self.seen = self.seen.partition(mark)
        return text

    def press(self, keys):
        """What is written until the line is shown, and the line."""
        self.send(keys)
        text, _, line = self.until(END).rpartition(LINE)
        return text, line

    def complete(self, typed, tabs):
        """Types a line and presses TAB; gives the line that comes of it and what was listed."""
        before, bar, after = typed.partition("|")
        _, line = self.press(CLEAR + before + after + LEFT * len(after) + SHOW)
        if line != before + CURSOR + after:
            sys.exit(f"FAILED: typed {typed!r}, but the line is {line!r}")
        if self.zsh:
            text = ""
            for _ in range(tabs):
                more, line = self.press(TAB)
                text += more
        else:
            text, line = self.press(TAB * tabs + SHOW)
        listed = set()
        for row in text.replace("\r\r\n", "\r\n").split("\r\n")[1:]:
            if PROMPT in row:
                continue
            # In zsh several words stand in a row, with a description behind them; a part of what is typed may stand in
            # front of them, and either shell may quote them.
            for word in re.split(r"\s{2,}", re.sub(r"\s+-- .*", "", row)):
                listed.add(re.sub(r"\\(.)", r"\1", re.sub(r"^(-\w+=)?(.*/)?(?=.)", "", word)))
        return line.replace(CURSOR, "|" if bar else ""), sorted(listed - {""})

    def new_names(self):
        """The variables that were not there before."""
        self.press(CLEAR + SHOW)
        self.send("printf '\\036%s\\037' \"$(comm -13 <(echo \"$before\") <(names | sort) | tr '\\n' ' ')\"\n")
        return self.until(END).rpartition(LINE)[2].split()

    def close(self):
        os.close(self.terminal)
        os.kill(self.pid, signal.SIGKILL)
        os.waitpid(self.pid, 0)


def usage():
    """The words for options that the program knows, and the keywords of each."""
    words, keywords = {"-FLOW=", "-VERSION"}, {}
    for line in run().splitlines():
        option = re.fullmatch(r"\t\[((?:-[A-Z]+\|?)+)(\[?=)?(?:<([^>]*)>.*)?\]", line)
        if option:
            names, value, choice = option[1].split("|"), option[2], option[3] or ""
            words.update(names if value != "=" else [])
            words.update(f"{name}=" for name in names if value)
            if choice.isupper():
                keywords[names[0]] = sorted(choice.split("|"))
    return sorted(words), keywords


def run(*words):
    """What the program writes to standard error."""
    with tempfile.TemporaryDirectory() as root:
        os.makedirs(f"{root}/lib/locale")
        return subprocess.run([PROGRAM, *words], env={"NORVIKDIR": root, "LC_ALL": "C"}, cwd=root, text=True,
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, check=False).stderr


def view_options(command):
    """The long options that the second program tells of."""
    text = subprocess.run([os.path.join(os.path.dirname(PROGRAM), "veldaview"), command, "--help"], env={"LC_ALL": "C"},
                          text=True, stdout=subprocess.PIPE, check=True).stdout
    return sorted(re.findall(r"^  (?:-\w,)?(--[\w-]+)", text, re.MULTILINE))


def check(name, shell, words, keywords):
    _, offered = shell.complete("veldacov -", 3)
    if offered != words:
        fail(name, "the options are not those of the program", f"also {sorted(set(words) - set(offered))}",
             f"also {sorted(set(offered) - set(words))}")
    for option, choice in keywords.items():
        line, offered = shell.complete(f"veldacov {option}=", 2 if len(choice) > 1 else 1)
        offered = offered or [line.partition("=")[2].rstrip()]
        if offered != choice:
            fail(name, f"the keywords of {option} are not those of the program", choice, offered)
    for command in ("check", "export", "html", "tests"):
        known = view_options(command)
        _, offered = shell.complete(f"veldaview {command} --", 3)
        if offered != known:
            fail(name, f"the options of veldaview {command}", known, offered)
    for program, (shells, typed, expected) in [("veldacov ", row) for row in ROWS] + [("veldaview ", row) for row in VIEW_ROWS]:
        if shells not in ("all", "zsh" if shell.zsh else "bash"):
            continue
        typed = program + typed
        if isinstance(expected, str):
            line, offered = shell.complete(typed, 1)
            if line != program + expected or offered:
                fail(name, f"typed     {typed}", program + expected, f"{line}  {offered}" if offered else line)
        else:
            line, offered = shell.complete(typed, 3)
            if offered != sorted(expected) or not expected and line != typed:
                fail(name, f"typed     {typed}", sorted(expected), f"{offered}, line {line}")
    left = shell.new_names()
    if left and "bash-completion" not in name:
        fail(name, "variables left behind", [], left)
    if shell.noise:
        fail(name, "messages", "none", shell.noise)


def terminals_are_there():
    try:
        for descriptor in pty.openpty():
            os.close(descriptor)
        return True
    except OSError as error:
        print(f"skipped: no terminal: {error}")
        return False


def main():
    if not terminals_are_there():
        sys.exit(77)
    words, keywords = usage()
    if len(words) < 10 or not keywords:
        sys.exit(f"FAILED: no usage text from {PROGRAM}")
    for option, message in (("-FLOW", "Mandatory argument for this option, -FLOW"), ("-VERSION", "")):
        if run(option).partition("\n")[0].partition(" : ")[2] != message:
            fail("the program", f"its answer to {option}", message or "nothing", run(option).partition("\n")[0])
    tried = 0
    with tempfile.TemporaryDirectory() as root:
        work = pathlib.Path(root) / "work"
        for name, content in FILES.items():
            path = work / name
            (path if content is None else path.parent).mkdir(parents=True, exist_ok=True)
            if content is not None:
                path.write_text(content)
        loaded = pathlib.Path(root) / "bash-completion" / "completions"
        loaded.mkdir(parents=True)
        for completed in ("veldacov", "veldaview"):
            (loaded / completed).symlink_to(COMPLETIONS / completed)
        for name, program, setup in SHELLS:
            if not shutil.which(program):
                print(f"skipped: {name}: {program} is not installed")
            elif "$BASH_COMPLETION" in setup and not BASH_COMPLETION.exists():
                print(f"skipped: {name}: {BASH_COMPLETION} is not there")
            else:
                shell = Shell(program, work, setup)
                check(name, shell, words, keywords)
                shell.close()
                tried += 1
    if problems:
        sys.exit(f"{problems} problems")
    if not tried:
        sys.exit(77)
    print(f"{tried} shells, {len(ROWS) + len(VIEW_ROWS)} lines, {len(words)} words for options")


main()
