#!/usr/bin/env bash
# Where translated messages come from: small translation files are compiled, installed below an installation directory and
# found by the name of the locale. Where two families have a text, the family that is loaded last wins. (What the program's
# own translations say is for install_tree.sh and scripts/translations.)
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
unset VELDACOV_LAN VELDA_TPM_ROOT VELDA_TPM_USER LANGUAGE "${!LC_@}"
lrelease=$(PATH=$PATH:/usr/lib/qt6/bin command -v lrelease lrelease6 lrelease-qt6 | head -n 1)
[ -n "$lrelease" ] || { echo "no lrelease: install the translation tools of the toolkit (qt6-l10n-tools)" >&2 && exit 1; }
failures=0

# One text of a translation file, as it stands in XML. With a comment, the text stands there again with another one: only
# the right comment finds the translation.
message() { # CONTEXT SOURCE COMMENT TRANSLATION
    printf '<context><name>%s</name><message><source>%s</source>%s<translation>%s</translation></message></context>\n' \
        "$1" "$2" "${3:+<comment>$3</comment>}" "$4"
    [ -z "$3" ] || [ "$3" = 'for something else' ] || message "$1" "$2" 'for something else' 'WRONG COMMENT'
}

install() { # FILE; reads its messages
    {
        echo '<?xml version="1.0" encoding="utf-8"?><!DOCTYPE TS><TS version="2.1" language="fr_FR">'
        cat
        echo '</TS>'
    } >"$1.ts"
    "$lrelease" -silent "$1.ts" -qm "$locale/$1.qm" || exit 1
}

expect() { # WHAT TEXT [NAME=VALUE WORD...]; what the run, or the last one, writes to standard error
    [ $# -eq 2 ] || env "$3" "$program" "${@:4}" >report 2>messages
    diff <(printf '%s' "$2") messages >difference || {
        echo "$1: $(cat difference)" >&2
        failures=$((failures + 1))
    }
}

prefix_comment='%1: product name
%2: executable name
%3: message'
{
    message fdcL-Warning 'Cannot open file %1' '%1 is a file name' "Impossible d'ouvrir « %1 »"
    message fdcL-Error 'Cannot retrieve correctly %1 %2' '%1 is a message, %2 a file name' '%2 : %1 illisible'
    message fdcL-Error 'src-file name in FDC file' '' 'nom du source'
    message 'Fatal Error' 'There is nothing to report ... report is empty' '' 'rien à dire'
    message ULMOIdent Norvik '' 'WRONG FAMILY'
} | install cov_fr_FR
{
    message 'Display Message' $'%1 %2 - WARNING: %3\n' "Used for warning messages
$prefix_comment" $'%2 (%1), attention : %3\n'
    message 'Display Message' $'%1 %2 - FATAL ERROR: %3\n' "Used for fatal error message
$prefix_comment to display" $'%2 (%1), fin : %3\n'
} | install common_fr
message CAB 'Unknown option,' '' 'Inconnu :' | install cab_fr
{
    message ULMOIdent Norvik '' 'Norvique'
    message ULMOIdent 'Corvane Orbis Norvik Suite' '' 'Suite Norvique'
    message Version 'Coverage Report Generator' '' 'de couverture'
    message Version ms-dos 'Operating system name' 'DOS'
} | install ulmoident_fr

printf 'VE 3.0e A\nFC "a\n' >bad.fdc
nothing="veldacov (Norvique), fin : rien à dire
"
for setting in LANG=fr_FR.UTF-8 LC_ALL=fr_FR; do
    expect "$setting: a warning" "veldacov (Norvique), attention : Impossible d'ouvrir « gone.fdc »
$nothing" $setting gone.fdc
    expect "$setting: the order of placeholders" 'veldacov (Norvique), fin : ./bad.fdc : nom du source illisible
' $setting bad.fdc
    env $setting "$program" -V >messages
    expect "$setting: the banner" ' Suite Norvique de couverture 7.0.0.1.031.001 
 Build Number: 031.001 
   Date : 2007-01-31 18:16:00 
    OS : DOS 
'
done
env LANG=fr_FR.UTF-8 "$program" -ZZ 2>&1 | head -n 1 >messages
expect "the command line" $'Orbis(R) Norvique Command analysis : Inconnu : ZZ\n'

expect "another country has the texts of the language" 'veldacov (Norvique), attention : Cannot open file gone.fdc
veldacov (Norvique), fin : There is nothing to report ... report is empty
' LC_ALL=fr_CA.UTF-8 gone.fdc

source_texts='Norvik veldacov - WARNING: Cannot open file gone.fdc
Norvik veldacov - FATAL ERROR: There is nothing to report ... report is empty
'
expect "other languages have the source texts" "$source_texts" LANG=de_DE.UTF-8 gone.fdc
LANG=fr_FR.UTF-8 expect "LC_ALL wins over LANG" "$source_texts" LC_ALL=C gone.fdc
for file in "$locale"/*; do
    echo 'no translation' >"$file"
done
expect "broken translation files" "$source_texts" LC_ALL=fr_FR.UTF-8 gone.fdc

echo "$failures failures"
[ "$failures" -eq 0 ]
