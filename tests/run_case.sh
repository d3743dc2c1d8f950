#!/usr/bin/env bash
# Runs one whole-program case and compares all that it left with what is expected.
#
#   run_case.sh PROGRAM CASE             compares; prints a diff and fails where they differ
#   run_case.sh PROGRAM CASE --refresh   takes what the program left as expected: review it before you keep it
#
# A case is a folder: `command` (a script that calls "$veldacov" or "$veldaview"; run in a fresh copy of `input/`) and `expected/` with
# stdout, stderr, status and every file that the command creates or changes. Where a case has no `input/`, the example of
# the repository is its input.
set -u
program=$(realpath "$1")
case_dir=$(realpath "$2")
here=$(dirname "$(realpath "$0")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

input=$case_dir/input
[ -d "$input" ] || input=$here/../examples/burner
mkdir -p "$work/run" "$work/norvik/lib/locale" "$work/left"
cp -r "$input/." "$work/run"
chmod -R u+w "$work/run"
cp -r "$work/run" "$work/before"

export veldacov=$program veldaview=${program%/*}/veldaview NORVIKDIR=$work/norvik LC_ALL=C.UTF-8 TZ=UTC
unset VELDACOV_LAN VELDA_TPM_ROOT VELDA_TPM_USER
(cd "$work/run" && bash "$case_dir/command" >"$work/left/stdout" 2>"$work/left/stderr" </dev/null)
echo $? >"$work/left/status"

# What the command created or changed belongs to what it left.
while IFS= read -r -d '' file; do
    name=${file#"$work/run/"}
    if ! cmp -s "$file" "$work/before/$name"; then
        mkdir -p "$work/left/$(dirname "$name")"
        cp "$file" "$work/left/$name"
    fi
done < <(find "$work/run" -type f -print0)

# Dates of the run itself stand on lines of their own.
now='[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9]{2}:[0-9]{2}:[0-9]{2} 20[0-9]{2}'
find "$work/left" -type f ! -name '*.tpm' -print0 | xargs -0 sed -E -i \
    -e "s/^(\t\t\t  |\tListing time:       |# Generation date: )$now\$/\1(now)/"

if [ "${3:-}" = --refresh ]; then
    rm -rf "$case_dir/expected"
    cp -r "$work/left" "$case_dir/expected"
    exit 0
fi
diff -ru "$case_dir/expected" "$work/left"
