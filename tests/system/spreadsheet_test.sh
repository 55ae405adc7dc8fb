#!/usr/bin/env bash
# What a spreadsheet finds in a result file, under a locale with a decimal comma and one with a point: every cell in its
# place, numbers as numbers, texts unharmed, nothing calculated.
#
# A double click opens the file with the user's list separator and decimal separator. Without a user these are given to
# the import filter, which is made to detect all it can: dates and exponents, and formulas, which it would calculate.
# What it found is written as plain values again, texts alone in quotes. English words for true and false are truth values
# to an English spreadsheet, and words to a German one.
set -euo pipefail
cd "$(dirname "$0")/../.."
out=$PWD/build/spreadsheet
rm -rf "$out"
mkdir -p "$out"

# field separator, quote, UTF-8, first row; language; quoted cells are no special texts; detect dates and exponents;
# do not trim; calculate formulas
import_filter() { echo "CSV:$1,34,76,1,,$2,false,true,false,false,false,0,true"; }
# comma, quote, UTF-8; American English; quotes round texts; values rather than their display
export_filter='csv:Text - txt - csv (StarCalc):44,34,76,1,,1033,true,false'

# open_as NAME SEPARATOR_CODE LANGUAGE
open_as() {
    soffice "-env:UserInstallation=file://$out/profile" --headless --infilter="$(import_filter "$2" "$3")" \
        --convert-to "$export_filter" --outdir "$out/found" tests/data/results/*."$1.csv" >"$out/$1.log" 2>&1 </dev/null
}

open_as german 59 1031
open_as american 44 1033

# A spreadsheet fills each row up to the widest one.
for found in "$out"/found/*.csv; do
    name=$(basename "$found" .csv)
    diff "tests/data/results/found/$name.csv" <(sed 's/\r$//; s/,*$//' "$found") || {
        echo "$name: the spreadsheet finds something else (>) than expected (<)"
        exit 1
    }
    echo "$name: every cell in its place"
done
[ "$(ls "$out/found" | wc -l)" = 4 ]
