#!/usr/bin/env bash
# Reporting on a cleaned trace shows what reporting on its traces shows: the same tests, the same rates, the same
# references hit and not hit. Only counts become 1.
#
#   round_trip.sh PROGRAM
set -u
program=$(realpath "$1")
example=$(dirname "$(realpath "$0")")/../examples/burner
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$example/fdc" "$example/forced" "$example/traces" "$work"
chmod -R u+w "$work"
mkdir -p "$work/norvik/lib/locale"
export NORVIKDIR=$work/norvik LC_ALL=C.UTF-8 TZ=UTC
unset VELDACOV_LAN VELDA_TPM_ROOT VELDA_TPM_USER
cd "$work" || exit 1

# Two tests that the example has not: nameless, without a date, with a part that nobody described.
cat >traces/odd.tio <<'TRACE'
NT
FT d44246e3
DC ffa18a02
TP 0
FT 1
DC 2
TB af
NT 3 1
CO
FT d44246e3
DC ffa18a02
TP 0 c
TE 0 fffffff7
TRACE
everything=(fdc/burner.fdc fdc/interlock.fdc fdc/queue.fdc forced/interlock.fdc)
failures=0
compared=0

fail() {
    echo "$1" >&2
    failures=$((failures + 1))
}

report() { # OUTPUT WORD...
    "$program" "${@:2}" >"$1" 2>messages || fail "status $? of: ${*:2}: $(cat messages)"
    # Not the date of the run, and of counts only whether they are 0.
    sed -E -i -e '/^\t\t\t  /d' -e 's/, [1-9][0-9]* time\(s\)( \(maximum reached\))?$/, some time(s)/' "$1"
}

same() { # WHAT EXPECTED FOUND
    grep -q '% (' "$2" || fail "$1: no rates to compare"
    diff "$2" "$3" >difference || fail "$1: the cleaned trace shows something else: $(head -n 20 difference)"
    compared=$((compared + 1))
}

# The blocks of the files, between the head of a report and the conclusions.
blocks() { # REPORT
    sed -n '/^burner\.c :/,/^-----/p' "$1"
}

final_conclusion() { # REPORT
    sed -n '/^Conclusion :/,$p' "$1"
}

round_trip() { # TRACE...
    local traces=("${@/#/traces/}") kind options
    report unused "${everything[@]}" "${traces[@]}" -CLEAN=tests.tio
    report unused "${everything[@]}" "${traces[@]}" -CLEAN=merged.tio -MERGETESTS
    report unused "${everything[@]}" tests.tio -CLEAN=again.tio
    cmp tests.tio again.tio || fail "$*: cleaning a cleaned trace changes it"

    for kind in -GLOBAL "-GLOBAL -BRANCH=COV" -NOGLOBAL; do
        read -ra options <<<"$kind"
        report original "${everything[@]}" "${traces[@]}" "${options[@]}"
        report cleaned "${everything[@]}" tests.tio "${options[@]}"
        same "$* $kind" original cleaned
        report merged "${everything[@]}" merged.tio "${options[@]}"
        if [ "$kind" != -NOGLOBAL ]; then
            same "$* $kind, merged" original merged
        else
            final_conclusion original >expected
            final_conclusion merged >found
            same "$* $kind, merged, conclusion" expected found
        fi
    done

    # The one merged test shows what the report on all tests shows.
    report original "${everything[@]}" "${traces[@]}" -GLOBAL
    blocks original >expected
    blocks merged >found
    same "$*, the merged test" expected found
}

round_trip normal.tio bad_input.tio lock.tio
round_trip counted.tio
round_trip counted.tio sensors.tio odd.tio trips.tio

# Parts whose description was not at hand when the trace was cleaned are still in it.
report unused fdc/queue.fdc traces/counted.tio traces/normal.tio -CLEAN=tests.tio
report original "${everything[@]}" traces/counted.tio traces/normal.tio -NOGLOBAL
report cleaned "${everything[@]}" tests.tio -NOGLOBAL
same "cleaned with one description" original cleaned

# The comparison sees a single hit that is missing.
sed -i '0,/^TB /{/^TB /d}' tests.tio
report cleaned "${everything[@]}" tests.tio -NOGLOBAL
cmp -s original cleaned && fail "the comparison does not see a missing hit"

echo "$compared comparisons, $failures failures"
[ "$failures" -eq 0 ]
