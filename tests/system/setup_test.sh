#!/usr/bin/env bash
# The host's commands for setup files of every generation: what show prints, what convert makes, what check finds.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh setup_test
setups=$root/tests/data/setups

# A setup of the present generation, with a quoted label and notes of two lines.
expect_exit 0 show "$setups/version-2.0.ini"
expect_text 'TVN Host, version 2.0' '  Input route               Receiver (75 ohm)' \
    '  1  S22    314.0000000      6.900' '      15   15  RF Level (dBµV)              yes      yes' \
    '  Call before measuring: Vösendorf'
[ ! -s "$work/err" ] || fail 'has something to tell'

# Version 1.4 becomes a present one and stays what it was.
expect_exit 0 convert "$setups/version-1.4.ini" -o new.ini
expect_text 'version-1.4.ini: version 1.4, 3 channels' 'new.ini: version 2.0, 3 channels, 30 parameters'
expect_notice '2 doubtful things in it. To see them: tvnhost check'
for setup in "$setups/version-1.4.ini" new.ini; do
    expect_exit 0 show "$setup"
    tail -n +4 "$work/out" | sed 's/ version [0-9.]*//' >"$(basename "$setup").txt"
done
cmp version-1.4.ini.txt new.ini.txt || fail 'a converted setup shows something else'
expect_exit 0 check new.ini
expect_text 'version 2.0, 3 channels: nothing doubtful'

# A backup copy knows the real document; what is made of it is no backup copy.
expect_exit 0 show "$setups/backup.ini"
expect_text 'C:\Measurements\north.ini (which had unsaved changes)'
expect_exit 0 convert "$setups/backup.ini" -o real.ini
expect_notice 'is a backup copy of C:\Measurements\north.ini'
grep -q Backup real.ini && fail 'the new setup is a backup copy'

# What is doubtful is named by line, what cannot be loaded is refused everywhere.
sed 's/^Order Of QAM=.*/Order Of QAM=65\r/; s/^Count=6/Count=5/' "$setups/version-2.0.ini" >odd.ini
expect_exit 1 check odd.ini
expect_text 'odd.ini, line 30: "Order Of QAM" is "65"; the list has 4, 16, 32, 64, 128, 256' '4 doubtful things'
sed 's/^Frequency   02=.*/Frequency   02=fast\r/' "$setups/version-2.0.ini" >bad.ini
for command in check show 'convert -o never.ini' scan edit; do
    expect_exit 2 $command bad.ini
    cat "$work/out" "$work/err" | grep -qF 'bad.ini, line 12: "Frequency   02" is "fast", which is no number' || fail 'does not say why'
done
[ ! -e never.ini ] || fail 'wrote a setup all the same'
sed 's/^Count=6/Count=0/' "$setups/version-2.0.ini" >none.ini
expect_exit 2 scan none.ini
expect_notice 'none.ini: there is no channel to measure'
expect_exit 2 convert new.ini -o new.ini
expect_notice 'would replace the file that it is made from'

# What the code page lacks is saved all the same, and the file says so.
expect_exit 0 import "$root/tests/data/plans/at-Kabelsignal" -o cyrillic.ini --title 'Россия'
[ "$(head -c 2 cyrillic.ini | od -An -tx1)" = ' ff fe' ] || fail 'is not UTF-16'
expect_exit 0 show cyrillic.ini
expect_text 'Россия'

# A text that cannot stand in a setup: the reason, and nothing is written.
expect_exit 2 import "$root/tests/data/plans/at-Kabelsignal" -o never.ini --title $'one\ntwo'
expect_notice 'the notes cannot be saved: line 1 ends with LF alone. End each line with CR LF'
[ -z "$(ls -A | grep -E '^(never|~tvn)')" ] || fail 'leaves something behind'
echo "show, convert and check do as they should"
