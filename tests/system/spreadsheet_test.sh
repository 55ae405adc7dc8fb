#!/usr/bin/env bash
# What a spreadsheet finds in a result file, under a locale with a decimal comma and one with a point: every cell in its
# place, numbers as numbers, texts unharmed, nothing calculated.
#
# A double click opens the file with the user's list separator and decimal separator. Without a user these are given to
# the import filter, which is made to detect all it can: dates and exponents, and formulas, which it would calculate.
# What it found is written as plain values again, texts alone in quotes.
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

settings='"Application","TVN Host 2.0"
"Setup","Untitled"
"Input Route","Receiver (75 ohm)"
"SAW Filter Bandwidth (MHz)","8 MHz"
"Order of QAM",64
"Rolloff Factor",0.15
"Level Unit","dBmV"
"10 MHz Reference","Internal"
"BER Integration (Samples)",10
"Maximum Settling Time (sec)",10
"X Axis is Frequency",@across@
"Default Symbol Rate (MSymb/s)",6.9
"Couple Display and Save",@true@
'
down='"Label; with, separators","Center Frequency (MHz)","Symbol Rate (MSymb/s)","Status","RF Level (dBmV)","BER before RS","Frequency Offset (Hz)"
"Ølgade ""north""; a, b
中文 📡",113.2512345,6.9,"Done",-12.3,1.50E-03,-1250
"'"'"'=1+1",121.2512345,6.9,"Done",61.5,"<1@point@7E-8","---"
"'"'"'@SUM(A1); - plain",129.2512345,6.9,"Un-measured",,,'
across='"Label; with, separators","Ølgade ""north""; a, b
中文 📡","'"'"'=1+1","'"'"'@SUM(A1); - plain"
"Center Frequency (MHz)",113.2512345,121.2512345,129.2512345
"Symbol Rate (MSymb/s)",6.9,6.9,6.9
"Status","Done","Done","Un-measured"
"RF Level (dBmV)",-12.3,61.5,
"BER before RS",1.50E-03,"<1@point@7E-8",
"Frequency Offset (Hz)",-1250,"---",'
notes='
"Notes"
"cold; ""quiet"" morning"
"'"'"'=1+1"'

open_as german 59 1031
open_as american 44 1033

for direction in down across; do
    for locale in german american; do
        # English words for true and false are truth values to an English spreadsheet, and words to a German one.
        [ "$locale" = german ] && point=, true='"True"' false='"False"' || point=. true=TRUE false=FALSE
        [ "$direction" = across ] && is_across=$true || is_across=$false
        expected="$settings
${!direction}
$notes"
        expected=${expected//@point@/$point}
        expected=${expected//@across@/$is_across}
        expected=${expected//@true@/$true}
        # A spreadsheet fills each row up to the widest one.
        diff <(echo "$expected" | sed 's/,*$//') <(sed 's/\r$//; s/,*$//' "$out/found/$direction.$locale.csv") || {
            echo "$direction, $locale: the spreadsheet finds something else (>) than expected (<)"
            exit 1
        }
        echo "$direction, $locale: every cell in its place"
    done
done
