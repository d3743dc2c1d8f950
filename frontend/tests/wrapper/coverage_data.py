"""Descriptions and traces as Python sees them: for tests, and for scripts/real-programs."""
import collections
import re

KEYWORDS = {"PR": "TP", "AP": "TA", "BL": "TB", "CE": "TE", "CA": "TE", "CC": "TE"}

# What can be hit. Two items of different descriptions are the same when they are equal: no identifier is part of it.
# `text` is what tells it from others of its kind and lines: the called function, the label, the condition, a case.
Item = collections.namedtuple("Item", "kind service text lines")
Section = collections.namedtuple("Section", "key checksum source items")


def strings(line):
    return [re.sub(r"\\(.)", r"\1", text) for text in re.findall(r'"((?:[^"\\]|\\.)*)"', line)]


def folded(data, value, signed):
    """`value` with each four bytes of the data folded in: see docs/formats/README.md."""
    data += b"\0" * (-len(data) % 4)
    for at in range(0, len(data), 4):
        four = [byte - 256 if signed and byte > 127 else byte for byte in data[at:at + 4]]
        value ^= sum(byte << shift for byte, shift in zip(four, (24, 16, 8, 0))) & 0xFFFFFFFF
    return value


def token_strings(words):
    tokens = []
    for word in words:
        if word[0] == "#" or word[0].isdigit():
            break
        tokens.append(word)
    return " ".join(tokens)


def items_of(line, conditions):
    """(identifier, item) of one line of a description; `conditions` are those of the lines before, by identifier."""
    kind, _, rest = line.partition(" ")
    words, texts, lines = rest.split(), strings(rest), None
    identity = int(words[0])
    if kind == "CC":
        count = int(words[1])
        parts = [conditions[int(word)] for word in words[2:2 + count]]
        form = " ".join(words[3 + count:])
        for case in range(int(words[2 + count])):
            text = f"{' , '.join(part.text for part in parts)} : {form} #{case}"
            yield identity + case, Item(kind, parts[0].service, text, parts[0].lines)
        return
    lines = tuple(map(int, words[-2:]))
    if kind in ("CE", "CA"):
        conditions[identity] = Item(kind, texts[0], texts[1], lines)
        yield identity, conditions[identity]._replace(text=texts[1] + (" : T" if kind == "CE" else ""))
        if kind == "CE":
            yield identity + 1, conditions[identity]._replace(text=texts[1] + " : F")
    elif kind == "AP":
        yield identity, Item(kind, texts[0], texts[1], lines)
    else:
        label = words[-3] if kind == "BL" else ""
        yield identity, Item(kind, texts[0], f"{words[1]} {label}".strip(), lines)


def section(text):
    items, conditions = {}, {}
    for line in text.splitlines():
        kind, _, rest = line.partition(" ")
        if kind == "VE":
            tokens = token_strings(rest.split()[1:])
        elif kind == "FC":
            name, directory = strings(rest)[:2]
        elif kind == "DC":
            words = rest.split()
            named = (directory if directory.endswith("/") else directory + "/") + name
            key = int(words[1]) if len(words) > 1 else folded((directory + name).encode(errors="surrogateescape"), 0x4A4A4A4A, True)
            return Section(key, folded(tokens.encode(), int(words[0]), False), named, items)
        elif kind in KEYWORDS:
            for identity, item in items_of(line, conditions):
                items[KEYWORDS[kind], identity] = item
    raise ValueError("no DC line")


def sections(path):
    """The sections of a description file."""
    text = path.read_text(errors="surrogateescape")
    return [section(part) for part in re.split(r"(?m)^@/RIK.*\n", text)]


def hits(traces):
    """{test: {(key, checksum): {(keyword, identifier)}}} of trace files."""
    tests = {}
    for trace in traces:
        for line in trace.read_text(errors="replace").splitlines():
            keyword, _, rest = line.partition(" ")
            if keyword == "NT":
                parts = tests.setdefault((strings(rest) or [rest])[0], collections.defaultdict(set))
            elif keyword == "FT":
                key = int(rest[::-1], 16)
            elif keyword == "DC":
                part = parts[key, int(rest[::-1], 16)]
            elif keyword in ("TP", "TA", "TB", "TE"):
                part.add((keyword, int(rest.split()[0][::-1], 16)))
    return tests
