#!/usr/bin/env bash
# Reporting on a cleaned trace shows what reporting on its traces shows: the same tests, the same rates, the same
# references hit and not hit. Only counts become 1.
#
#   round_trip.sh PROGRAM
set -u
program=$(realpath "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$(dirname "$(realpath "$0")")/../examples/burner/." "$work"
chmod -R u+w "$work"
mkdir -p "$work/norvik/lib/locale"
export NORVIKDIR=$work/norvik LC_ALL=C.UTF-8 TZ=UTC
unset VELDACOV_LAN VELDA_TPM_ROOT VELDA_TPM_USER
cd "$work" || exit 1

# Two tests that the example has not: nameless, without a date, with a part that nobody described.
printf '%s\n' NT 'FT d44246e3' 'DC ffa18a02' 'TP 0' 'FT 1' 'DC 2' 'TB af' 'NT 3 1' CO 'FT d44246e3' 'DC ffa18a02' \
    'TP 0 c' 'TE 0 fffffff7' >traces/odd.tio
everything=(fdc/burner.fdc fdc/interlock.fdc fdc/queue.fdc forced/interlock.fdc)
compared=0 failures=0

fail() {
    echo "$1" >&2
    failures=$((failures + 1))
}

report() { # OUTPUT WORD...
    "$program" "${@:2}" >"$1" 2>messages || fail "status $? of: ${*:2}: $(cat messages)"
    # Not the date of the run, and of counts only whether they are 0.
    sed -E -i -e '/^\t\t\t  /d' -e 's/, [1-9][0-9]* time\(s\)( \(maximum reached\))?$/, some time(s)/' "$1"
}

# Compares what an extract (a command of sed) gives of the reports on the traces and on the cleaned trace.
same() { # WHAT EXTRACT CLEANED
    sed -n "$2" original >expected
    sed -n "$2" "$3" >found
    grep -q '% (' expected || fail "$1: no rates to compare"
    diff expected found >difference || fail "$1: the cleaned trace shows something else: $(head -n 20 difference)"
    compared=$((compared + 1))
}

round_trip() { # TRACE...
    local kind options
    report unused "${everything[@]}" "$@" -CLEAN=tests.tio
    report unused "${everything[@]}" "$@" -CLEAN=merged.tio -MERGETESTS
    report unused "${everything[@]}" tests.tio -CLEAN=again.tio
    cmp tests.tio again.tio || fail "$*: cleaning a cleaned trace changes it"
    for kind in -NOGLOBAL "-GLOBAL -BRANCH=COV" -GLOBAL; do
        read -ra options <<<"$kind"
        report original "${everything[@]}" "$@" "${options[@]}"
        report cleaned "${everything[@]}" tests.tio "${options[@]}"
        report merged "${everything[@]}" merged.tio "${options[@]}"
        same "$* $kind" p cleaned
        # Of the reports per test, only the last conclusion is that of the one merged test.
        same "$* $kind, merged" "$([ "$kind" = -NOGLOBAL ] && echo '/^Conclusion :/,$')p" merged
    done
    # The one merged test by itself shows what the report on all tests shows, from the first file to its conclusion.
    report merged "${everything[@]}" merged.tio -NOGLOBAL
    same "$*, the merged test" '/^burner\.c :/,/^-----/p' merged
}

round_trip traces/normal.tio traces/bad_input.tio traces/lock.tio
round_trip traces/counted.tio
round_trip traces/counted.tio traces/sensors.tio traces/odd.tio traces/trips.tio

# Parts whose description was not at hand when the trace was cleaned are still in it.
report unused fdc/queue.fdc traces/counted.tio traces/normal.tio -CLEAN=tests.tio
report original "${everything[@]}" traces/counted.tio traces/normal.tio -NOGLOBAL
report cleaned "${everything[@]}" tests.tio -NOGLOBAL
same "cleaned with one description" p cleaned

echo "$compared comparisons, $failures failures"
[ "$failures" -eq 0 ]
