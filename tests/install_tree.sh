#!/usr/bin/env bash
# What is installed: the program runs from the tree with the language of its user, the manual page can be read, the
# documentation and the example are complete.
#
#   install_tree.sh BUILD
set -u
build=$(realpath "$1")
source=$(realpath "$(dirname "$0")/..")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
fail() {
    echo "$*" >&2
    failures=$((failures + 1))
}

cmake --install "$build" --prefix "$work/tree" >"$work/log" || fail "install: $(cat "$work/log")"
unset VELDACOV_LAN VELDA_TPM_ROOT VELDA_TPM_USER LC_ALL LANG LANGUAGE
export NORVIKDIR=$work/tree

# The same warning in the languages of the installed translations, and in another.
while IFS='|' read -r locale text; do
    said=$(LC_ALL=$locale "$work/tree/bin/veldacov" gone.fdc 2>&1 >/dev/null | head -n 1)
    [ "$said" = "$text" ] || fail "LC_ALL=$locale: $said"
done <<'TABLE'
C.UTF-8|Norvik veldacov - WARNING: Cannot open file gone.fdc
fr_FR.UTF-8|Norvik veldacov - AVERTISSEMENT : Impossible d'ouvrir le fichier gone.fdc
fr_BE.UTF-8|Norvik veldacov - AVERTISSEMENT : Impossible d'ouvrir le fichier gone.fdc
de_DE.UTF-8|Norvik veldacov - WARNUNG: Datei gone.fdc kann nicht geöffnet werden
de|Norvik veldacov - WARNUNG: Datei gone.fdc kann nicht geöffnet werden
es_ES.UTF-8|Norvik veldacov - WARNING: Cannot open file gone.fdc
TABLE
for family in cov common cab view ulmoident acc; do
    for language in de fr; do
        [ -s "$work/tree/lib/locale/${family}_$language.qm" ] || fail "no translations ${family}_$language"
    done
done

# The second program finds them, too, and does without.
said=$(LC_ALL=fr_FR.UTF-8 "$work/tree/bin/veldaview" check @gone 2>&1)
[ "$said" = "Norvik veldaview - ERREUR FATALE : Impossible d'ouvrir le fichier de réponse gone" ] || fail "veldaview: $said"
said=$(LC_ALL=fr_FR.UTF-8 NORVIKDIR='' "$work/tree/bin/veldaview" check @gone 2>&1)
[ "$said" = "Norvik veldaview - FATAL ERROR: Cannot open response file gone" ] || fail "veldaview: $said"

# The report's own language does not come from the locale, and data files are the same everywhere.
cd "$work/tree/share/doc/veldacov/examples/burner" || exit 1
run() { # LOCALE OUTPUTS
    mkdir "$work/$2"
    LC_ALL=$1 "$work/tree/bin/veldacov" fdc/*.fdc traces/normal.tio traces/lock.tio -OUTPUT="$work/$2/report" \
        -CIO="$work/$2/cio" -CLEAN="$work/$2/clean" -MERGETESTS -LISTING="$work/$2" -FLOW="$work/$2/flow" 2>"$work/$2.messages"
    sed -E -i 's/[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9]{2} [0-9:]{8} 20[0-9]{2}/(now)/' "$work/$2"/*
}
run C.UTF-8 source
run fr_FR.UTF-8 french
diff -r "$work/source" "$work/french" >&2 || fail "outputs differ with the locale"
cmp -s "$work/source.messages" "$work/french.messages" && fail "messages do not differ with the locale"

MANWIDTH=80 LC_ALL=C.UTF-8 man --warnings -l "$work/tree/share/man/man1/veldacov.1.gz" >"$work/manual" 2>"$work/log"
[ -s "$work/log" ] && fail "manual page: $(cat "$work/log")"
# Every option of the usage text, and the two that are not in it, have an entry of their own.
for option in $("$work/tree/bin/veldacov" 2>&1 | grep -oE '[-][A-Z]{2,}' | sort -u) -FLOW -VERSION; do
    grep -qE "^ +([-][A-Z]+.*, )?$option\b" "$work/manual" || fail "manual page: no entry for $option"
done

# The front end, where it is built: the same of its page, and it finds its parts and its translations in the tree.
pages=(veldacov veldaview)
if grep -q '^VELDACOV_FRONTEND:BOOL=ON' "$build/CMakeCache.txt"; then
    pages+=(veldacc)
    MANWIDTH=80 LC_ALL=C.UTF-8 man --warnings -l "$work/tree/share/man/man1/veldacc.1.gz" >"$work/manual" 2>"$work/log"
    [ -s "$work/log" ] && fail "manual page: $(cat "$work/log")"
    for option in $("$work/tree/bin/veldacc" --help | grep -oE '[-]-[a-z-]{2,}' | sort -u); do
        grep -qE "^ +([-]-[a-z]+, )?$option\b" "$work/manual" || fail "manual page: no entry for $option"
        grep -q -- "$option\b" "$source/completions/veldacc" || fail "completion: no $option"
        grep -q -- "$option\b" "$source/completions/_veldacc" || fail "completion for zsh: no $option"
    done
    said=$(LC_ALL=de_DE.UTF-8 NORVIKDIR='' "$work/tree/bin/veldacc" --none 2>&1)
    [[ $said == *"Unbekannte Option --none"* ]] || fail "veldacc: $said"
    [ -f "$work/tree/include/velda.h" ] || fail 'no velda.h'
fi

# The second one has an entry for each option that the program shows, and so do the completions; bash offers them.
MANWIDTH=80 LC_ALL=C.UTF-8 man --warnings -l "$work/tree/share/man/man1/veldaview.1.gz" >"$work/second_manual" 2>"$work/log"
[ -s "$work/log" ] && fail "manual page of veldaview: $(cat "$work/log")"
for command in $("$work/tree/bin/veldaview" --help | sed -n '/^Subcommands/,$s/^  \([a-z]*\) .*/\1/p'); do
    offered=$(bash -c ". '$source/completions/veldaview'; compopt() { :; }; COMP_LINE='veldaview $command --'
        COMP_POINT=\${#COMP_LINE}; _veldaview veldaview --; echo \${COMPREPLY[*]}")
    for option in $("$work/tree/bin/veldaview" "$command" --help | grep -oE '^  .*[-][-][a-z-]+' | grep -oE '[-][-][a-z-]+'); do
        grep -qE "^ +([-].*, )?$option\b" "$work/second_manual" || fail "manual page of veldaview: no entry for $option"
        [[ " $offered " == *" $option "* ]] || fail "completion in bash: no $option of $command"
        grep -qE "[-]?$option\b" "$source/completions/_veldaview" || fail "completion in zsh: no $option"
    done
done

# The examples of the pages run where they say so, without warnings. One of them is a response file.
for page in "${pages[@]}"; do
    sed -n '/^# EXAMPLES/,/^# [A-DF-Z]/p' "$source/docs/man/$page.1.scd" | sed 's/\\\(.\)/\1/g'
done | awk '/^```/ { inside = !inside; count += inside; next } inside { print >("example" count) }'
for example in example*; do
    if grep -q '^#' "$example"; then
        cp "$example" campaign.txt
    elif ! PATH=$work/tree/bin:$PATH bash -e "$example" >"$work/log" 2>&1 || grep -E ' - (WARNING|.*ERROR):' "$work/log"; then
        fail "manual page: $(cat "$example" "$work/log")"
    fi
done
[ -f campaign.txt ] || fail "manual page: no response file among the examples"

# The installed pages name only what is installed: their links, and the files that they tell of.
cd "$work/tree/share/doc/veldacov" || exit 1
while IFS=: read -r page link; do
    [ -e "$(dirname "$page")/${link%%#*}" ] || fail "$page: no $link"
done < <(grep -rhoE --include='*.md' -H '\]\([^)#:]+' . | sed 's/](//')
grep -rnE --include='*.md' '(^|[^a-z/])(scripts|tests|fuzz|bench|build|translations)/[a-z]' . >"$work/log" &&
    fail "names what is not installed: $(cat "$work/log")"
for file in "${pages[@]/#/$source/completions/}" "${pages[@]/#/$source/completions/_}"; do
    find "$work/tree/share" -name "$(basename "$file")" -type f | grep -q . || fail "no $file"
done

echo "$failures failures"
[ "$failures" -eq 0 ]
