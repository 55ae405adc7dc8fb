#!/usr/bin/env bash
# The host's commands for setup files of every generation: what show prints, what convert makes, what check finds.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
. tools/common.sh
wine_environment
setups=$root/tests/data/setups
work=$root/build/setup_test
tools/wine cmd /c ver >/dev/null # the prefix is made and everything registered
rm -rf "$work"
mkdir -p "$work"
cd "$work"

fail() {
    echo "$said: $*"
    cat out err
    exit 1
}
expect_exit() { # CODE ARGUMENT...
    local code=$1 status=0
    shift
    said="tvnhost $*"
    "$wine_program" "$root/build/win64/bin/tvnhost.exe" "$@" >out 2>err </dev/null || status=$?
    [ "$status" = "$code" ] || fail "ends with $status instead of $code"
}
expect_text() { grep -qF -- "$1" out || fail "does not print: $1"; }
expect_notice() { grep -qF -- "$1" err || fail "does not tell: $1"; }

# A setup of the present generation, with a quoted label and notes of two lines.
expect_exit 0 show "$setups/version-2.0.ini"
expect_text 'TVN Host, version 2.0'
expect_text '  Input route               Receiver (75 ohm)'
expect_text '  1  S22    314.0000000      6.900'
expect_text '      15   15  RF Level (dBµV)              yes      yes'
expect_text '  Call before measuring: Vösendorf'
[ ! -s err ] || fail 'has something to tell'
expect_exit 0 check "$setups/version-2.0.ini"
expect_text 'version 2.0, 6 channels: nothing doubtful'

# Version 1.4 becomes a present one and stays what it was.
expect_exit 1 check "$setups/version-1.4.ini"
expect_text 'line 16: "Frequency 4" was left behind by an early program and is not read'
expect_exit 0 convert "$setups/version-1.4.ini" -o new.ini
expect_text 'version-1.4.ini: version 1.4, 3 channels'
expect_text 'new.ini: version 2.0, 3 channels, 30 parameters'
expect_notice '2 doubtful things in it. To see them: tvnhost check'
expect_exit 0 show "$setups/version-1.4.ini"
tail -n +4 out | sed 's/ version [0-9.]*//' >old.txt
expect_exit 0 show new.ini
tail -n +4 out | sed 's/ version [0-9.]*//' >new.txt
cmp old.txt new.txt || fail 'a converted setup shows something else'
expect_exit 0 check new.ini

# A backup copy knows the real document; what is made of it is no backup copy.
expect_exit 0 show "$setups/backup.ini"
expect_text 'C:\Measurements\north.ini (which had unsaved changes)'
expect_exit 0 convert "$setups/backup.ini" -o real.ini
expect_notice 'is a backup copy of C:\Measurements\north.ini'
grep -q Backup real.ini && fail 'the new setup is a backup copy'

# What is doubtful is named by line, what cannot be loaded is refused everywhere.
sed 's/^Order Of QAM=.*/Order Of QAM=65\r/; s/^Count=6/Count=5/' "$setups/version-2.0.ini" >odd.ini
expect_exit 1 check odd.ini
expect_text 'odd.ini, line 30: "Order Of QAM" is "65"; the list has 4, 16, 32, 64, 128, 256'
expect_text 'line 24: "Frequency   06" stands beyond "Count" (5) and is not read'
expect_text '4 doubtful things'
sed 's/^Frequency   02=.*/Frequency   02=fast\r/' "$setups/version-2.0.ini" >bad.ini
for command in check show 'convert -o never.ini'; do
    expect_exit 2 $command bad.ini
    cat out err | grep -qF 'bad.ini, line 12: "Frequency   02" is "fast", which is no number' || fail 'does not say why'
done
[ ! -e never.ini ] || fail 'wrote a setup all the same'
expect_exit 2 convert new.ini -o new.ini
expect_notice 'would replace the file that it is made from'
expect_exit 2 check "$root/tests/data/plans/at-Liwest"
expect_text 'this is a channel plan, not a setup'

# A text that cannot stand in a setup: the reason, and nothing is written.
expect_exit 2 import "$root/tests/data/plans/at-Kabelsignal" -o never.ini --title $'one\ntwo'
expect_notice 'the notes cannot be saved: line 1 ends with LF alone. End each line with CR LF'
[ -z "$(ls -A | grep -E '^(never|~tvn)')" ] || fail 'leaves something behind'
echo "show, convert and check do as they should"
