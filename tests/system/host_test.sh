#!/usr/bin/env bash
# The reference host as its user meets it: what it prints where, what it ends with, what it leaves on the disk.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh host_test
plans=$root/tests/data/plans

expect_refusal() { # MESSAGE ARGUMENT...: nothing is printed but that, and no file is new, changed or gone
    local before
    before=$(ls -lAR --time-style=full-iso)
    expect_exit 2 "${@:2}"
    expect_notice "$1"
    [ ! -s "$work/out" ] || fail "prints results"
    [ "$(ls -lAR --time-style=full-iso)" = "$before" ] || fail "leaves something behind"
}

head -n 24 "$plans/at-Kabelsignal" >town # three channels
session host
grep -q $'[\r\033]' "$work/out" "$work/err" && fail "writes a terminal's control characters into a file"
grep -q Jitter "$work/out" && fail "shows columns that were not asked for"

# Several setups are one run: one grid, one verdict, one of each report, and gone on with where it ended.
fast=(--time-scale 0.001)
mixed=(mixed-64qam.ini mixed-128qam.ini mixed-256qam.ini)
expect_exit 0 import "$plans/at-Kabel-Braunau" -o mixed.ini --max-settling-time 1 --ber-samples 1
expect_notice 'The plan mixes 3 orders of QAM, and a setup has one: 3 setups are written.'
expect_text 'mixed-64qam.ini: 20 channels' 'mixed-128qam.ini: 2 channels' 'mixed-256qam.ini: 2 channels'
[ ! -e mixed.ini ] || fail "writes mixed.ini beside the three"
read -r -a advice <<<"$(tr -d '\r' <"$work/err" | sed -n 's/^To scan them as one network: tvnhost //p' | sed 's/\\/\\\\/g')"
expect_exit 0 network "$plans/at-Kabel-Braunau" -o town-clean.ini --clean
expect_exit 0 "${advice[@]}" --network town-clean.ini "${fast[@]}" --channels 20-23 --limits outlet --journal mixed.journal \
    --json mixed.jsonl --junit mixed.xml --html mixed.html --result mixed.csv
expect_text ' QAM ' '4 channels, 4 synchronised' 'of 4 channels pass'
expect_match '^ 20   64 ' '^ 21  128 ' '^ 22  128 ' '^ 23  256 '
check schema "$root/docs/result.schema.json" mixed.jsonl mixed.journal
check agree mixed.jsonl mixed.html mixed.xml
[ "$(grep -c '^Order of QAM' mixed.csv)" = 3 ] || fail "does not write three tables"
[ "$(grep -c $'\xEF\xBB\xBF' mixed.csv)" = 1 ] || fail "marks the encoding in the middle"
[ "$(grep -c ',Done,' mixed.csv)" = 4 ] || fail "does not write the results"
expect_exit 0 report mixed.jsonl --limits outlet --json later.jsonl --junit later.xml --html later.html --result later.csv
for report in jsonl xml html csv; do cmp mixed.$report later.$report; done
head -n 3 mixed.journal >begun.journal # two of four channels, and two of three setups
session mixed
check same mixed.jsonl begun.journal

# Input that is not to be used.
mkdir folder.ini blocked-256qam.ini
echo mine >readonly.ini
chmod a-w readonly.ini
at() { wine_path "$1"; }
expect_refusal "cannot read $(at missing.ini): there is no such file" scan missing.ini
expect_refusal "cannot write $(at folder.ini): it is a folder" import town -o folder.ini
expect_refusal "cannot write $(at readonly.ini): it is read-only" network town -o readonly.ini --force
expect_refusal "cannot write $(at none/new.ini): the folder does not exist" import town -o none/new.ini
for command in import network; do
    expect_refusal "$(at town) would replace the file that it is made from" $command town -o town
done
# The first of two setups could be written.
expect_refusal "cannot write $(at blocked-256qam.ini): it is a folder" import "$plans/at-Liwest" -o blocked.ini
expect_refusal 'a channel plan is required, or --from' import -o new.ini
expect_refusal 'time-scale' scan net.ini --time-scale 0
expect_refusal 'unknown command "scna"; the nearest is scan' scna net.ini
expect_refusal 'unknown option "--chanels"; the nearest is --channels (scan)' scan --chanels 3 net.ini

output=/dev/full expect_exit 2 scan net.ini --network clean.ini "${fast[@]}" --channels 1 --json full.jsonl
expect_notice 'the results cannot be written (the disk is full)'
[ -s full.jsonl ] || fail "loses the report with the grid"
exec 5> >(true)
wait $!
output=/dev/fd/5 expect_exit 0 limits # a closed pipe is no error
exec 5>&-

# Ctrl+C, typed on a terminal while the second channel waits for a carrier that is not there; then gone on with.
printf '[Network]\n[Channel 1]\nFrequency (MHz)=314\nOrder of QAM=256\n' >one.ini
expect_exit 0 import town -o slow.ini --max-settling-time 30 --ber-samples 1
on_terminal scan slow.ini --network one.ini --journal run.journal --json run.jsonl
for expected in 'Receiver *' '*1/3*synchronised'; do
    read -r -t 30 line <&4 || fail "comes too late: the scan does not say $expected"
    [[ $line == $expected ]] || fail "comes after: $line"
done
read -r -t 1 line <&4 && fail "comes too late: $line"
end_by_ctrl_c 3 2000
read -r -t 1 line <&4 && [[ $line == *2/3*stopped ]] || fail "does not show as the end of the running channel"
expect_match '^  2 '
expect_text 'Stopped: 3 channels, 1 synchronised, 0 not synchronised, 0 errors, 2 not measured'
grep -qE '^  1 .* Done .* OK ' "$work/out" || fail "loses the first channel's row"
grep -qE '^  3 .* Un-measured$' "$work/out" || fail "comes after the third channel"
check schema "$root/docs/result.schema.json" run.journal run.jsonl
expect_exit 2 scan slow.ini --network clean.ini "${fast[@]}" --resume run.journal
expect_notice 'was begun with another network: Simulated receiver: network model one.ini'
expect_exit 1 scan slow.ini --network one.ini "${fast[@]}" --resume run.journal
expect_text '3 channels, 1 synchronised, 2 not synchronised'

# A driver library that is not registered.
"$wine_program" regsvr32 /s /u "$(wine_path "$bin/XKTR2x.dll")" </dev/null
expect_refusal 'error 429: the instrument driver XKTR2x cannot be created' scan net.ini
expect_notice 'regsvr32 XKTR2x.dll'
expect_exit 0 import town -o town.ini --force # needs no receiver

echo "the host does as it should; Ctrl+C took $took ms"
