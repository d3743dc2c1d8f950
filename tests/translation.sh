#!/usr/bin/env bash
# Translated messages: a small translation file of each family is compiled, installed below an installation directory and
# found by the name of the locale. Where two families have a text, the family that is loaded last wins.
#
#   translation.sh PROGRAM
set -u
program=$(realpath "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
locale=$work/norvik/lib/locale
mkdir -p "$locale"
export NORVIKDIR=$work/norvik
unset VELDACOV_LAN VELDA_TPM_ROOT VELDA_TPM_USER LC_ALL LANG LANGUAGE
for category in $(env | sed -n 's/^\(LC_[A-Z]*\)=.*/\1/p'); do
    unset "$category"
done
failures=0

find_lrelease() {
    local candidate
    for candidate in "$(qtpaths6 --query QT_HOST_BINS 2>/dev/null)/lrelease" /usr/lib/qt6/bin/lrelease \
        "$(command -v lrelease6)" "$(command -v lrelease-qt6)" "$(command -v lrelease)"; do
        [ -x "$candidate" ] && echo "$candidate" && return
    done
    echo "no lrelease: install the translation tools of the toolkit (qt6-l10n-tools)" >&2
    return 1
}
lrelease=$(find_lrelease) || exit 1

escaped() {
    sed -e 's/&/\&amp;/g' -e 's/</\&lt;/g' -e 's/>/\&gt;/g' <<<"$1"
}

# One text of a translation file. With a comment, the text stands there again with another one: only the right comment
# finds the translation. The here-strings end texts with a line end, which is taken off again.
message() { # CONTEXT SOURCE COMMENT TRANSLATION
    local source translation
    source=$(escaped "$2" && echo .)
    translation=$(escaped "$4" && echo .)
    printf '<context><name>%s</name><message><source>%s</source>' "$1" "${source%$'\n.'}"
    [ -z "$3" ] || printf '<comment>%s</comment>' "$(escaped "$3")"
    printf '<translation>%s</translation></message></context>\n' "${translation%$'\n.'}"
    if [ -n "$3" ] && [ "$3" != 'for something else' ]; then
        message "$1" "$2" 'for something else' 'WRONG COMMENT'
    fi
}

install() { # FILE; reads its messages
    {
        echo '<?xml version="1.0" encoding="utf-8"?><!DOCTYPE TS><TS version="2.1" language="fr_FR">'
        cat
        echo '</TS>'
    } >"$1.ts"
    "$lrelease" -silent "$1.ts" -qm "$locale/$1.qm" || exit 1
}

expect() { # WHAT TEXT; what the last run wrote to standard error
    diff <(printf '%s' "$2") messages >difference || {
        echo "$1: $(cat difference)" >&2
        failures=$((failures + 1))
    }
}

run() { # NAME=VALUE WORD...
    env "$1" "$program" "${@:2}" >report 2>messages
}

run LANG=C
usage=$(sed -n '/^Usage/,/^$/p' messages)
usage=$'\n'$usage$'\n'

prefix_comment='%1: product name
%2: executable name
%3: message'
{
    message fdcL-Warning 'Cannot open file %1' '%1 is a file name' "Impossible d'ouvrir « %1 »"
    message fdcL-Error 'Cannot retrieve correctly %1 %2' '%1 is a message, %2 a file name' '%2 : %1 illisible'
    message fdcL-Error 'src-file name in FDC file' '' 'nom du source'
    message 'Fatal Error' 'There is nothing to report ... report is empty' '' 'rien à dire'
    message 'Cio message' 'Calls' '' 'Appels'
    message 'Merged test' 'Merged test' 'The test name to display for a set of merged tests' 'Tests réunis'
    message ULMOIdent Norvik '' 'WRONG FAMILY'
} | install cov_fr_FR
{
    message 'Display Message' $'%1 %2 - WARNING: %3\n' "Used for warning messages
$prefix_comment" $'%2 (%1), attention : %3\n'
    message 'Display Message' $'%1 %2 - FATAL ERROR: %3\n' "Used for fatal error message
$prefix_comment to display" $'%2 (%1), fin : %3\n'
} | install common_fr
{
    message CAB 'Orbis(R)' '' 'Orbis®'
    message CAB 'Command analysis' '' 'analyse'
    message CAB 'Argument missing,' '' 'il manque'
    message Command-line file '' fichier
    message Command-line "$usage" '' $'\nEmploi : veldacov <fichier>\n\t[-PROC]\n\t[-XTRACE]\n\t[-CALL]\n'
} | install cab_fr
{
    message ULMOIdent Norvik '' 'Norvique'
    message ULMOIdent 'Corvane Orbis Norvik Suite' '' 'Suite Norvique'
    message Version 'Coverage Report Generator' '' 'de couverture'
    message Version ms-dos 'Operating system name' 'DOS'
} | install ulmoident_fr

cat >a.fdc <<'FDC'
VE 3.0e A
FC "a.c" "src"
FD 0
TC PR AP
PR 0 proc "a" 1 1
AP 0 "a" "b" 1 1
DC 1090519041 5
FDC
printf 'NT "a" 1\nFT 5\nDC 1\nTA 0\n' >a.tio
printf 'VE 3.0e A\nFC "a\n' >bad.fdc

for setting in LANG=fr_FR.UTF-8 LC_ALL=fr_FR.UTF-8 LC_ALL=fr_FR; do
    run $setting gone.fdc
    expect "$setting: a warning" "veldacov (Norvique), attention : Impossible d'ouvrir « gone.fdc »
veldacov (Norvique), fin : rien à dire
"
    run $setting bad.fdc
    expect "$setting: the order of placeholders" 'veldacov (Norvique), fin : ./bad.fdc : nom du source illisible
'
    run $setting
    expect "$setting: the usage, without the line of the -XT option" $'Orbis® Norvique analyse : il manque fichier
Emploi : veldacov <fichier>\n\t[-PROC]\n\t[-CALL]\n
veldacov (Norvique), fin : Errors in command line
'
    run $setting -V
    mv report messages
    expect "$setting: the banner" ' Suite Norvique de couverture 7.0.0.1.031.001 
 Build Number: 031.001 
   Date : 2007-01-31 18:16:00 
    OS : DOS 
'
    run $setting a.fdc a.tio -CIO=a.cio -CLEAN=clean.tio -MERGETESTS
    expect "$setting: no message" ''
    { sed '/^#/d' a.cio && head -n 1 clean.tio; } >messages
    expect "$setting: summary file and merged test" $'T1\n File a.c\n    a\n       Appels\t100.0% (1/1), +100.0 (+1)
G\n File a.c\n    a\n       Hit\tno\n       Appels\t100.0% (1/1)\nNT "Tests réunis"\n'
done

run LC_ALL=fr_CA.UTF-8 gone.fdc
expect "another country has the texts of the language" 'veldacov (Norvique), attention : Cannot open file gone.fdc
veldacov (Norvique), fin : There is nothing to report ... report is empty
'

source_texts='Norvik veldacov - WARNING: Cannot open file gone.fdc
Norvik veldacov - FATAL ERROR: There is nothing to report ... report is empty
'
for setting in LANG=de_DE.UTF-8 LC_ALL=C LANG=en_GB.UTF-8 LANG=; do
    run "$setting" gone.fdc
    expect "$setting: the source texts" "$source_texts"
done
export LANG=fr_FR.UTF-8
run LC_ALL=C gone.fdc
expect "LC_ALL wins over LANG" "$source_texts"

for file in "$locale"/*; do
    echo 'no translation' >"$file"
done
run LC_ALL=fr_FR.UTF-8 gone.fdc
expect "broken translation files" "$source_texts"

echo "$failures failures"
[ "$failures" -eq 0 ]
