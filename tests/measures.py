"""The files of the measure database, as the tests read them."""

import struct

VALUES = 20
RECORD = 8 + VALUES * 8  # time, key, and each value with its running total


def record_at(records, offset):
    return struct.unpack_from(f"<{RECORD // 4}I", records, offset)


def entries_of(index):
    return [struct.unpack_from("<II", index, place) for place in range(0, len(index) - 7, 8)]


def broken_history(records, index):
    """What is wrong: totals follow from the records before, and the index names the latest of each key. Else none."""
    values, totals, latest = {}, [0] * VALUES, {}
    for offset in range(0, len(records) - RECORD + 1, RECORD):
        words = record_at(records, offset)
        for i, (new, old) in enumerate(zip(words[2::2], values.get(words[1], [0] * VALUES))):
            totals[i] += new - old
        values[words[1]], latest[words[1]] = words[2::2], offset
        if list(words[3::2]) != totals:
            return f"the totals at {offset}"
    if len(records) % RECORD or len(index) % 8:
        return "a part of a record or of an entry"
    return None if dict(entries_of(index)) == latest else "the index does not name the latest records"
