#!/usr/bin/env bash
# The examples that can run here, each through its whole job: every channel, a receiver that cannot do the setup, a file
# that is none.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
. tools/common.sh
work=$root/build/examples_test
rm -rf "$work"
mkdir -p "$work"
head -n 24 tests/data/plans/at-Kabelsignal >"$work/plan" # three channels of 256 QAM
tools/wine tvnhost import "$(wine_path "$work/plan")" -o "$(wine_path "$work/setup.ini")" --ber-samples 1 --max-settling-time 1
tools/wine tvnhost network "$(wine_path "$work/plan")" -o "$(wine_path "$work/town.ini")" --clean
# The middle one sends another order of QAM than the setup has.
sed '/^\[Channel 2\]/,/^\[Channel 3/s/^Order of QAM=.*/Order of QAM=64/' "$work/town.ini" >"$work/wrong.ini"

fail() {
    echo "$example: $*"
    cat "$work/said"
    exit 1
}
run() { # CODE ARGUMENT...
    local code=$1 status=0
    shift
    tools/wine "${example[@]}" "$@" >"$work/said" 2>&1 </dev/null || status=$?
    tr -d '\r' <"$work/said" >"$work/text"
    [ "$status" = "$code" ] || fail "ends with $status instead of $code"
}
expect() { LC_ALL=C grep -qE -- "$1" "$work/text" || fail "does not say: $1"; }

scan_with() {
    local setup town wrong bare
    setup=$(wine_path "$work/setup.ini") town=$(wine_path "$work/town.ini") wrong=$(wine_path "$work/wrong.ini")
    bare=$(wine_path examples/receivers/bare.ini)
    run 0 "$setup" "$town"
    expect 'Configuring KTR$'
    expect 'Measuring at 330 MHz$'
    expect '^S22  314 MHz  level [0-9.]+ dB[^ ]+V  MER [34][0-9]\.[0-9] dB  BER <.*  frame OK$'
    expect '^3 of 3 channels synchronised$'
    run 1 "$setup" "$wrong"
    expect '^S23  322 MHz  level [0-9.]+ dB[^ ]+V  MER --- dB  BER ---  frame UNSYNC$'
    expect '^2 of 3 channels synchronised$'
    run 2 "$setup" "$bare"
    expect '[Rr]eceiver 200042 has not got the setup.s: SAW filter$'
    run 2 "$town"
    expect '[Tt]he setup cannot be loaded: .*town.ini$'
    run 2 "$setup" "$setup"
    expect 'setup.ini:[0-9]+: unknown section'
    run 2
    expect 'usage:'
}

example=("$root/build/win64/bin/example_scan.exe")
scan_with
example=(cscript //nologo "$(wine_path examples/scan.vbs)")
scan_with
echo "the examples do their job"
