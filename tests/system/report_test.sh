#!/usr/bin/env bash
# Reports, limits and journal of the reference host. Programs that are not ours judge the files; scans are killed and
# gone on with; a journal meets a full disk.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh report_test
mkdir disk
at_end '! mountpoint -q "$work/files/disk" || umount "$work/files/disk"'

plan=$root/tests/data/plans/at-Kabelsignal
expect_exit 0 import "$plan" -o net.ini --ber-samples 1 --max-settling-time 1
sed -i "s|^User Field  05=.*|User Field  05=</td><script>\&\"'\r|" net.ini # a label that no report may take for markup
expect_exit 0 network "$plan" -o clean.ini --clean
expect_exit 0 network "$plan" -o impaired.ini --seed 7
fast=(--time-scale 0.02)

# All reports of one scan, judged.
expect_exit 1 scan net.ini --network impaired.ini "${fast[@]}" --limits outlet --journal all.journal \
    --json all.jsonl --junit all.xml --html all.html --result all.csv
expect_text 'FAIL: '
expect_text 'RF level 43.5 dBµV is 10.5 dB below the limit of 54 dBµV'
check schema "$root/docs/result.schema.json" all.jsonl all.journal
check count all.jsonl 36
check same all.jsonl all.journal
check agree all.jsonl all.html all.xml
! grep -qE '<script|src=|@import|url\(' all.html || fail "writes a page that needs something else"

# The same reports later, from the stored run.
expect_exit 0 report all.jsonl --limits outlet --html later.html --junit later.xml --json later.jsonl --result later.csv
for report in html xml jsonl csv; do cmp all.$report later.$report; done
expect_exit 0 limits
cp "$work/out" outlet.ini
printf '[rflev]\nFail Below=30\n' >lenient.ini

# Good channels pass; what changed is told.
expect_exit 0 scan net.ini --network clean.ini "${fast[@]}" --channels 1-14 --limits lenient.ini --json clean.jsonl
expect_text 'PASS: 14 of 14 channels pass.'
expect_exit 0 compare clean.jsonl clean.jsonl
expect_exit 1 compare clean.jsonl all.jsonl --drift-level 1
expect_text 'K45 666 MHz'

# Again and again, into one journal.
expect_exit 0 scan net.ini --network clean.ini "${fast[@]}" --channels 3-4 --repeat 3 --every 1s --journal thrice.jsonl \
    --junit thrice.xml --result thrice.csv
check count thrice.jsonl 6
expect_exit 0 report thrice.jsonl --result later.csv
cmp thrice.csv later.csv
check schema "$root/docs/result.schema.json" thrice.jsonl
xmllint --noout --schema "$root/tests/data/junit.xsd" all.xml thrice.xml 2>xsd || { cat xsd; exit 1; }

# Killed again and again: no channel is lost, none is measured twice, and nothing else tells the runs apart.
go=(--journal crash.journal --channels 1-14)
scan=(scan net.ini --network clean.ini "${fast[@]}" --json crashed.jsonl --result crashed.csv)
for seen in 3 1 5; do
    said="killed after $seen channels" line=
    exec {notices}< <(exec "$wine_program" "$bin/tvnhost.exe" "${scan[@]}" "${go[@]}" 2>&1 >"$work/out" </dev/null)
    until grep -qE "^ *$seen/" <<<"$line"; do
        read -r -t 60 line <&$notices || fail 'ends before it is killed'
    done
    kill -KILL $!
    cat <&$notices >"$work/err" # until it is gone
    go=(--resume crash.journal)
done
expect_exit 0 "${scan[@]}" "${go[@]}"
check schema "$root/docs/result.schema.json" crashed.jsonl
check count crashed.jsonl 14
check count crash.journal 14
check same clean.jsonl crashed.jsonl
expect_exit 0 report crashed.jsonl --result later.csv
cmp crashed.csv later.csv

# A torn last line, a complete journal, another setup.
head -c -300 crash.journal >torn.journal
expect_exit 0 scan net.ini --network clean.ini "${fast[@]}" --resume torn.journal
expect_notice 'the last line is torn'
check same clean.jsonl torn.journal
session reports

# A full disk.
if mount -t tmpfs -o size=12k none disk 2>/dev/null; then
    expect_exit 2 scan net.ini --network clean.ini "${fast[@]}" --channels 1-14 --journal disk/full.journal --json full.jsonl
    expect_notice 'the journal cannot be written (the disk is full)' 'the journal lacks the last channels'
    [ "$(grep -c 'cannot be written' "$work/err")" = 1 ] || fail "says so more than once"
    check same clean.jsonl full.jsonl
    cp disk/full.journal moved.journal
    expect_exit 0 scan net.ini --network clean.ini "${fast[@]}" --resume moved.journal
    check same clean.jsonl moved.journal
else
    echo "no small file system can be mounted here: the full disk is left out (the unit tests have it)"
fi
