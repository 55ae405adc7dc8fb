#!/usr/bin/env bash
# Nobody gets a verdict of "good" out of a network that nobody saw: dead networks, setups that do not look, limits that do
# not apply, runs that were killed or edited, in every combination of flags, by every command that judges.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh verdict_test
fast=(--time-scale 0.001)

head -n 24 "$root/tests/data/plans/at-Kabelsignal" >town # three channels
expect_exit 0 import town -o seeing.ini --ber-samples 1 --max-settling-time 1
expect_exit 0 network town -o alive.ini --clean
printf '[Network]\n[Channel 1]\nFrequency (MHz)=900\n' >dead.ini # nothing on any of them
sed 's/^Order of QAM=.*/Order of QAM=64/' alive.ini >other.ini # something else is on the air
sed 's/^Level (dBuV)=.*/Level (dBuV)=5/' alive.ini >faint.ini
# Setups that neither display nor save the locks, and such as measure next to nothing.
without() { # SETUP PARAMETER...
    local parameters=" ${*:2} "
    awk -v not="$parameters" '/^\[/ { in_flags = /^\[Parameters to (Display|Save)\]/ }
        { split($0, part, /[ =]/); if (in_flags && index(not, " " part[2] " ")) print "Parameter " part[2] "=0\r"; else print }' \
        seeing.ini >"$1"
}
without blind.ini 18 19 20
without level.ini 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30
printf '[rflev]\nWarn Below=1\n' >lenient.ini
printf '[ber 64-QAM]\nFail Above=1\n[step 4-QAM]\nFail Above=90\n' >useless.ini

# No report of a run says that it is good.
bad() { # ARGUMENT...
    rm -f run.*
    expect_exit '1|3' "$@" --json run.jsonl --junit run.xml --html run.html
    ! grep -qE '^PASS' "$work/out" || fail "passes"
    grep -qE '<testsuites .*(failures|errors)="[1-9]' run.xml || fail "is green for a build server"
    xmllint --noout --schema "$root/tests/data/junit.xsd" run.xml 2>xsd || fail "$(cat xsd)"
    grep -qE '"record":"verdict","result":"(not measured|error|fail)"' <<<"$(tail -n 1 run.jsonl)" || fail "passes in JSON"
    ! grep -qE '<p class="verdict (pass|warning)"' run.html || fail "passes on the page"
    grep -q 'class="band">Simulated receiver' run.html || fail "does not say that the receiver is a simulated one"
}

# Dead networks, whatever the flags.
combinations=0
for network in dead other faint; do
    for setup in seeing blind level; do
        for flags in '--write' '--limits outlet --as-is --channels 2' '--limits lenient.ini --parameters rflev --repeat 2'; do
            # shellcheck disable=SC2086
            bad scan $setup.ini --network $network.ini "${fast[@]}" $flags
            [ $setup = seeing ] || expect_notice 'because columns or verdicts need it'
            combinations=$((combinations + 1))
        done
        mv run.jsonl stored.jsonl
        bad judge stored.jsonl --limits lenient.ini
    done
done

# A good network and limits that cannot be applied; one that can, seen by a setup that does not look.
bad scan seeing.ini --network alive.ini "${fast[@]}" --limits useless.ini
expect_text 'NOT JUDGED' 'BER before RS: no section for 256-QAM (3 channels)'
expect_exit 0 scan level.ini --network alive.ini "${fast[@]}" --limits lenient.ini --json good.jsonl
expect_text 'PASS: 3 of 3 channels pass.' 'Simulated receiver: network model alive.ini, SHA-256'
bad judge good.jsonl
expect_text 'MER: not measured (3 channels)'

# Killed, edited.
head -n 2 good.jsonl >killed.jsonl
sed 's/"outcome":"synchronised"/"outcome":"not measured"/' good.jsonl >unmeasured.jsonl
for run in killed unmeasured; do
    bad judge $run.jsonl --limits lenient.ini
    check schema "$root/docs/result.schema.json" run.jsonl
    bad report $run.jsonl
done
expect_exit 1 compare killed.jsonl killed.jsonl
expect_text 'not measured'
head -n 3 good.jsonl >begun.jsonl
expect_exit 2 scan level.ini --network dead.ini "${fast[@]}" --resume begun.jsonl
expect_exit 0 scan level.ini --network alive.ini "${fast[@]}" --resume begun.jsonl --limits lenient.ini
expect_text 'PASS: 3 of 3 channels pass.'

echo "$combinations scans of dead networks, and none was good"
