#!/usr/bin/env bash
# What `veldacc` does when a step goes wrong, and what its options do: with a stand-in for the instrumenter that does
# as the name of the source asks for.
#
#   manners.sh VELDACC LIBRARY_DIRECTORY
# shellcheck disable=SC2016 # the inner shell expands
set -u
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/bin" "$work/lib/veldacc" "$work/tmp" "$work/run"
cp "$1" "$work/bin/veldacc"
for file in veldacc-say libveldacc-runtime.a src; do
    ln -s "$(realpath "$2")/$file" "$work/lib/veldacc/$file"
done
cat >"$work/lib/veldacc/veldacc-instrument" <<'EOS'
#!/usr/bin/env bash
echo "$*" >>"$STAND_IN_LOG"
while [ $# -gt 0 ]; do
    case $1 in
    --source) source=$2 ;; --text) text=$2 ;; --output) output=$2 ;; --description) description=$2 ;;
    --leave) left=$2 ;;
    esac
    shift
done
case ${STAND_IN:-$source} in
*crash*) kill -SEGV $$ ;;
*slow*) while :; do :; done ;;
*left*) exit 3 ;;
*refused*) exit 4 ;;
*option*) exit 2 ;;
esac
cp "$text" "$output"
case $source in
*broken*) echo 'this is no C' >>"$output" ;;
*mended*) [ "${left-}" = mended.y:70 ] || printf '# 70 "mended.y"\nthis is no C\n' >>"$output" ;;
esac
printf '%s\n' 'VE 3.0e A' "FC \"$source\" \"./\"" 'FD 0' 'TC PR' "# $(grep -v '^#' "$text" | cksum)" 'DC 1' >"$description"
EOS
chmod +x "$work/lib/veldacc/veldacc-instrument"
cd "$work/run" || exit 1
export PATH=$work/bin:$PATH STAND_IN_LOG=$work/log TMPDIR=$work/tmp LC_ALL=C.UTF-8 XDG_CACHE_HOME=$work/cache
unset VELDACC VELDACC_OPTIONS NORVIKDIR
failures=0

# Runs a command; compares its status, what it says (a pattern that all of it fits) and which files it leaves.
expect() { # STATUS SAID FILES COMMAND...
    local said status files
    said=$("${@:4}" 2>&1)
    status=$?
    files=$(find . -type f ! -name '*.c' ! -name CMakeCache.txt -printf '%P\n' | LC_ALL=C sort | tr '\n' ' ')
    # shellcheck disable=SC2053
    if [ "$status" != "$1" ] || [[ $said != $2 ]] || [ "${files% }" != "$3" ] || [ -n "$(ls -A "$TMPDIR")" ]; then
        printf '%s\nstatus %s, files %s, temporary %s\n%s\n\n' "${*:4}" "$status" "$files" "$(ls -A "$TMPDIR")" "$said" >&2
        failures=$((failures + 1))
    fi
    find . -type f ! -name '*.c' ! -name CMakeCache.txt -delete
}
for name in good crash slow left refused broken mended option; do
    echo 'int main(void) { return 0; }' >$name.c
done

said='Norvik veldacc - '
expect 0 '' 'good.fdc good.o' veldacc gcc -c good.c
expect 0 "${said}WARNING: crash.c: the instrumenter failed (status 139); it is not instrumented" crash.o veldacc gcc -c crash.c
expect 0 "${said}WARNING: slow.c: * 1 seconds; it is not instrumented" slow.o veldacc --time-limit 1 gcc -c slow.c
expect 0 '' left.o veldacc gcc -c left.c
expect 0 "${said}WARNING: broken.c: * does not compile; it is not instrumented" broken.o veldacc gcc -c broken.c
# What the compiler refuses is left as it is in another attempt.
expect 0 '' 'mended.fdc mended.o' veldacc gcc -c mended.c
expect 2 '' '' veldacc gcc -c option.c
expect 1 "${said}ERROR: crash.c: *" '' veldacc --strict gcc -c crash.c
expect 1 "${said}ERROR: slow.c: *" '' veldacc --strict --time-limit=1 gcc -c slow.c
expect 0 '' left.o veldacc --strict gcc -c left.c
expect 1 '' '' veldacc --strict gcc -c refused.c
expect 1 "${said}ERROR: broken.c: *" '' veldacc --strict gcc -c broken.c

# What described an object goes away when it is compiled as it is.
expect 0 '' good.o bash -c 'veldacc gcc -c good.c && STAND_IN=left veldacc gcc -c good.c'
# Files that were not made here stay.
expect 0 '' 'good-2.fdc good.fdc good.o' bash -c 'echo mine >good.fdc && veldacc gcc -c good.c && grep -q mine good.fdc'

expect 2 "${said}ERROR: Unknown option --there; *" '' veldacc --there gcc -c good.c
expect 2 "${said}ERROR: Unknown option --strict=2; *" '' veldacc --strict=2 gcc -c good.c
expect 2 "${said}ERROR: Option --root needs a value" '' veldacc --root
expect 2 "${said}ERROR: The time limit *, not 1m" '' veldacc --time-limit=1m gcc -c good.c
expect 2 "${said}ERROR: No compiler: *" '' veldacc --strict --
expect 127 "${said}ERROR: Cannot run there-is-none: *" '' veldacc there-is-none -c good.c
expect 127 "${said}ERROR: Cannot run ./none/gcc: *" '' veldacc ./none/gcc good.o
expect 0 'Usage: veldacc *VELDACC=off*' '' veldacc --help
expect 0 'Norvik veldacc [0-9]*' '' veldacc --version
expect 0 '' good.o env VELDACC=off veldacc --strict gcc -c good.c
expect 0 '' 'f/d/good.fdc good.o' env VELDACC_OPTIONS="--fdc-dir 'f/d'" veldacc -- gcc -c good.c
expect 2 "${said}ERROR: Unknown option gcc; *" '' env VELDACC_OPTIONS=gcc veldacc gcc -c good.c
rm -f "$STAND_IN_LOG"
expect 0 '' 'good.fdc good.o' env VELDACC_OPTIONS='--headers --types PR' veldacc --root .. --types=CO --max-cases 9 --forced \
    --ordered gcc -std=c99 -funsigned-char -c good.c
grep -q -- "--root $work/\? .*--headers --types PR --types CO --max-cases 9 --forced --ordered --std c99 .*-funsigned-char" \
    "$STAND_IN_LOG" || { cat "$STAND_IN_LOG" >&2; failures=$((failures + 1)); }

# An object without the run-time library says what to do. (The stand-in's objects need none; this one is by hand.)
echo 'extern char veldacc_has_to_link_this_program_too; int main(void) { return veldacc_has_to_link_this_program_too; }' >by_hand.c
expect 1 '*undefined reference to `veldacc_has_to_link_this_program_too*' '' bash -c 'gcc -c by_hand.c && gcc by_hand.o -o by_hand; s=$?; rm by_hand.o; exit $s'
expect 0 '' by_hand bash -c 'gcc -c by_hand.c && veldacc gcc by_hand.o -o by_hand && rm by_hand.o'

# In front of CMake's compiler instead of in its place.
mkdir -p CMakeFiles/p.dir
echo 'CMAKE_C_COMPILER:FILEPATH=/usr/bin/gcc' | sed '1i# cache' >CMakeCache.txt
expect 1 "${said}ERROR: As a compiler launcher, *" '' veldacc /usr/bin/gcc -c good.c -o CMakeFiles/p.dir/good.c.o
expect 0 '' 'CMakeFiles/p.dir/good.c.o CMakeFiles/p.dir/good.fdc' veldacc gcc -c good.c -o CMakeFiles/p.dir/good.c.o

# One description directory for all: equal ones are one file, and a changed source replaces its own.
mkdir a b
echo 'int a(void) { return X; }' >a/same.c
cp a/same.c b/same.c
all() { veldacc --fdc-dir all gcc "$@"; }
export -f all
expect 0 '' 'all/same-2.fdc all/same.fdc' bash -c 'for x in 1 1 2; do all -DX=$x -c a/same.c -o $x.o; all -DX=$x -fPIC -c a/same.c -o $x.pic.o; done; rm *.o'
expect 0 '' 'all/same-2.fdc all/same.fdc' bash -c 'for d in a b; do all -DX=1 -c $d/same.c -o $d/o.o; done; rm */*.o'
expect 0 '' 'all/same.fdc' bash -c 'for x in 1 2 3; do all -DX=$x -c a/same.c; done; grep -qx "# object \"../same.o\"" all/same.fdc; rm *.o'
expect 0 '' 'all/same-2.fdc all/same.fdc' bash -c 'for i in $(seq 12); do all -DX=$((i % 2)) -c a/same.c -o $i.o & done; wait; rm *.o'

# Ended by a signal: as the compiler would be, and nothing stays.
expect 143 '*' '' bash -c 'veldacc gcc -c slow.c & sleep 0.7; kill $!; wait $!'
# Also by one that comes while no step is waited for.
printf '#!/bin/sh\nkill $PPID\nexec gcc "$@"\n' >"$work/bin/deadly-gcc" && chmod +x "$work/bin/deadly-gcc"
expect 143 '*' '' veldacc deadly-gcc -c good.c

# A compiler for another machine builds its own run-time library, once.
cross=arm-linux-gnueabihf-gcc
if command -v $cross >/dev/null; then
    expect 0 '' 'by_hand' bash -c "$cross -c by_hand.c && veldacc $cross by_hand.o -o by_hand && rm by_hand.o"
    [ "$(find "$XDG_CACHE_HOME" -name 'runtime-*.a' | wc -l)" = 1 ] || { echo 'no library in the cache' >&2; failures=1; }
    expect 0 '' 'by_hand' env HOME=/nonexistent XDG_CACHE_HOME=/proc/none bash -c "$cross -c by_hand.c && veldacc $cross by_hand.o -o by_hand && rm by_hand.o"
    rm -f "$STAND_IN_LOG"
    expect 0 '' 'good good.fdc' veldacc $cross -mfpu=neon good.c -o good
    grep -q -- '--target arm-linux-gnueabihf' "$STAND_IN_LOG" || { echo 'no target' >&2; failures=$((failures + 1)); }
fi

echo "$failures failures"
[ "$failures" -eq 0 ]
