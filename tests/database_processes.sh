#!/usr/bin/env bash
# The measure database when several runs use it at once, when its lock is left behind, when a waiting run is interrupted
# and when a run is killed.
#
#   database_processes.sh PROGRAM
set -u
program=$(realpath "$1")
work=$(mktemp -d)
trap 'kill -KILL $(jobs -p) 2>/dev/null; rm -rf "$work"' EXIT
mkdir -p "$work/norvik/lib/locale" "$work/tpm"
cd "$work" || exit 1
export NORVIKDIR=$work/norvik LC_ALL=C.UTF-8 VELDA_TPM_ROOT=$work/tpm
unset VELDACOV_LAN
record_size=168 # time, key and 20 pairs of value and running total, four bytes each
failures=0

fail() {
    echo "$1" >&2
    failures=$((failures + 1))
}

# A description of files with the keys 1 to COUNT, each of them with four functions; all checksums are 1.
description() { # COUNT
    for ((key = 1; key <= $1; key++)); do
        printf 'VE 3.0e A\nFC "file%d.c" "src"\nFD 0\nTC PR\n' $key
        for ((function = 0; function < 4; function++)); do
            printf 'PR %d proc "f%d" 1 1\n' $function $function
        done
        printf 'DC 1090519041 %d\n@/RIK\n' $key
    done
}

# A trace that hits the first HITS functions of the files 1 to COUNT.
trace() { # COUNT HITS
    echo 'NT "test" 1'
    for ((key = 1; key <= $1; key++)); do
        printf 'FT %x\nDC 1\n' $key
        for ((function = 0; function < $2; function++)); do
            echo "TP $function"
        done
    done
}

description 1 >one.fdc
description 9 >nine.fdc
description 300 >many.fdc
for ((hits = 0; hits <= 4; hits++)); do
    trace 1 $hits >one$hits.tio
    trace 9 $hits >nine$hits.tio
done

use_database() { # USER; a fresh database
    export VELDA_TPM_USER=$1
    base=$VELDA_TPM_ROOT/Coverage.$1.20
    rm -f "$base".*
}

records() {
    if [ -e "$base.tpm" ]; then
        echo $(($(wc -c <"$base.tpm") / record_size))
    else
        echo 0
    fi
}

# Every index entry names a whole record of its key.
check_index() { # WHEN
    [ -s "$base.idx" ] || return 0
    [ -e "$base.tpm" ] || {
        fail "$1: an index without a database"
        return
    }
    {
        od -An -v -tu4 -w$record_size "$base.tpm" | awk -v size=$record_size 'NF == size / 4 { print "record", (NR - 1) * size, $2 }'
        od -An -v -tu4 -w8 "$base.idx" | awk 'NF == 2 { print "entry", $2, $1 }'
    } | awk '
        $1 == "record" { key[$2] = $3 }
        $1 == "entry" && !($2 in key) { print "entry of key " $3 " names no record: " $2; bad = 1 }
        $1 == "entry" && ($2 in key) && key[$2] != $3 { print "entry of key " $3 " names a record of key " key[$2]; bad = 1 }
        $1 == "entry" && seen[$3]++ { print "two entries of key " $3; bad = 1 }
        END { exit bad }' >problems || fail "$1: $(cat problems)"
}

# Every record holds the sums that follow from the records before it, and the index names the latest of each key.
check_history() { # WHEN
    check_index "$1"
    {
        od -An -v -tu4 -w$record_size "$base.tpm" | sed 's/^/record /'
        od -An -v -tu4 -w8 "$base.idx" | sed 's/^/entry /'
    } | awk -v size=$record_size '
        $1 == "record" {
            latest[$3] = count++ * size
            for (i = 0; i < 20; i++) {
                value = $(4 + 2 * i)
                total[i] += value - old[$3, i]
                old[$3, i] = value
                if ($(5 + 2 * i) != total[i]) {
                    print "record " count ": total " i " is " $(5 + 2 * i) ", not " total[i]
                    exit bad = 1
                }
            }
        }
        $1 == "entry" && $3 != latest[$2] { print "key " $2 ": not the latest record"; exit bad = 1 }
        END { exit bad }' >problems || fail "$1: $(cat problems)"
}

at_once() { # PROCESSES RUNS_OF_EACH
    use_database "at_once_$1"
    local process run pids=()
    for ((process = 1; process <= $1; process++)); do
        for ((run = 1; run <= $2; run++)); do
            "$program" nine.fdc nine$((process % 5)).tio -OUTPUT=report$process || echo "status $?"
        done >messages$process 2>&1 &
        pids+=($!)
    done
    wait "${pids[@]}"
    [ "$(records)" -eq $((9 * $1 * $2)) ] || fail "$1 processes: $(records) records, not $((9 * $1 * $2))"
    [ "$(($(wc -c <"$base.idx")))" -eq 72 ] || fail "$1 processes: $(wc -c <"$base.idx") bytes of index, not 72"
    [ ! -e "$base.lck" ] || fail "$1 processes: the lock is left"
    check_history "$1 processes"
    # A run that had to wait says so, and that it went on.
    local said
    said=$(cat messages* | grep -v -e '^Norvik - Test Process Monitor: File is ' -e '^  Please break$' -e '^      or ')
    [ -z "$said" ] || fail "$1 processes: $said"
    [ "$(cat messages* | grep -c 'in use')" -eq "$(cat messages* | grep -c 'now available')" ] ||
        fail "$1 processes: somebody did not say that he goes on"
    echo "$1 processes: $(records) records, $(cat messages* | grep -c 'in use') times the lock was waited for"
    rm messages*
}

wait_for() { # TEXT
    for ((try = 0; try < 200; try++)); do
        grep -qs "$1" messages && return
        sleep 0.05
    done
    fail "no message \"$1\" came: $(cat messages)"
}

start_waiting() { # USER; a run that finds a lock
    use_database "$1"
    "$program" one.fdc one1.tio -OUTPUT=report || fail "$1: status $?"
    touch "$base.lck"
    "$program" one.fdc one2.tio -OUTPUT=report 2>messages &
    waiting=$!
    wait_for 'File is currently in use'
    sleep 0.2
    kill -0 $waiting || fail "$1: the run does not wait"
    [ "$(records)" -eq 1 ] || fail "$1: a record was written in spite of the lock"
}

check_messages() { # WHEN LINE...
    printf '%s\n' "${@:2}" | sed "s|LOCK|$base.lck|" | diff - messages >difference || fail "$1: $(cat difference)"
}

in_use=('Norvik - Test Process Monitor: File is currently in use.' '  Please break' '      or wait until previous task has finished'
    '      or remove file: LOCK')

stale_lock() {
    start_waiting stale_lock
    rm "$base.lck"
    wait $waiting || fail "stale lock: status $?"
    check_messages "stale lock" "${in_use[@]}" 'Norvik - Test Process Monitor: File is now available'
    [ "$(records)" -eq 2 ] || fail "stale lock: $(records) records after it was removed"
    [ ! -e "$base.lck" ] || fail "stale lock: the lock is left"
    check_history "stale lock"
}

interrupt() {
    start_waiting interrupt
    kill -INT $waiting
    wait $waiting || fail "interrupt: status $?"
    check_messages interrupt "${in_use[@]}" 'Norvik - Test Process Monitor: User break.' '  File is still in use.' \
        '  Please wait until previous task has finished' '      or remove file: LOCK'
    [ "$(records)" -eq 1 ] || fail "interrupt: a record was written"
    [ -e "$base.lck" ] || fail "interrupt: the lock of another process is gone"
    [ "$(tail -n 1 report | tr -d '-')" = "" ] || fail "interrupt: the report is not complete"
    rm "$base.lck"
    "$program" one.fdc one3.tio -OUTPUT=report || fail "after the interrupt: status $?"
    check_history "after the interrupt"
}

milliseconds() {
    echo $(($(date +%s%N) / 1000000))
}

killed() {
    use_database killed
    local begin duration caught=0 kills=0
    begin=$(milliseconds)
    "$program" many.fdc -PROC -OUTPUT=report 2>/dev/null
    duration=$(($(milliseconds) - begin + 1))
    begin=$(milliseconds)
    while [ $caught -lt 20 ] && [ $(($(milliseconds) - begin)) -lt 8000 ]; do
        [ $((kills++ % 4)) -ne 0 ] || rm -f "$base".*
        "$program" many.fdc -PROC -OUTPUT=report 2>/dev/null &
        sleep "$(printf '0.%06d' $((RANDOM * 1000 % (duration * 1000))))"
        kill -KILL $! 2>/dev/null
        wait $! 2>/dev/null
        if [ -e "$base.lck" ]; then
            caught=$((caught + 1))
            rm "$base.lck"
        fi
        check_index "kill $kills"
    done
    [ $caught -gt 0 ] || fail "none of $kills kills came during an update"
    "$program" many.fdc -PROC -OUTPUT=report 2>messages || fail "after the kills: status $?"
    check_messages "after the kills" \
        'Norvik veldacov - WARNING: No traces in argument list; generating report showing all branches'
    check_index "after the kills"
    [ "$(($(wc -c <"$base.idx")))" -eq 2400 ] || fail "after the kills: $(wc -c <"$base.idx") bytes of index, not 2400"
    echo "$kills kills, $caught of them during an update"
}

at_once 2 6
at_once 8 2
stale_lock
interrupt
killed
echo "$failures failures"
[ "$failures" -eq 0 ]
