#!/usr/bin/env bash
# What a program of its own gets from a walk over traces: the hits of each test, whatever stands around them.
set -euo pipefail
program=$1
directory=$(mktemp -d)
trap 'rm -rf "$directory"' EXIT
cd "$directory"

describe() { # file, key, lines
    printf 'VE 3.0e A\nFC "%s" "src/"\nFD 0\nTC PR RE AP CO\n%s\nDC 7 %s\n' "$1" "$3" "$2" >"$1.fdc"
}
describe a.c 99 $'PR 0 proc "f" 1 9\nPR 1 return "f" 2 2\nAP 0 "f" "g" 3 3\nCE 0 "f" "\\"c\\"" 4 4'
describe skipped.c 98 'PR 0 proc "s" 1 9'
# The checksum is folded with the token string: 7 and "A".
part=$'FT 36\nDC 70000014\n'
printf '%sTP 0\nNT "one" 1 1\nDT "today"\n%sTP 0\nTE 1\nTP 0\nNT "one" 2 1\nCO\n%sTA 0 3\nTP  1 0 \nTA 0 2\nTP 1 0\n' \
    "$part" "$part" "$part" >first.tio
printf 'FT 26\nDC 70000014\nTP 0\nFT 1\nDC 1\nTP 0\nFT 36\nDC 1\nTP 9\nNT "last" 3 2\n%sTP 0\n' "$part" >second.tio

"$program" a.c.fdc first.tio skipped.c.fdc second.tio >got
diff - got <<'END'
outside of tests, none number -1 service -1 date none
    f type 1 id 0, 1 time(s)
test one number 1 service 1 date today
    f type 1 id 0, 1 time(s)
    f type 256 id 1, 1 time(s)
  part 98 is skipped
  part 1 is not described
  part 99 is of another build
test one number 2 service 1 date none
    f type 4 id 0, 5 time(s)
    f type 2 id 1, 0 time(s)
period 1
test last number 3 service 2 date none
    f type 1 id 0, 1 time(s)
period 2
END
