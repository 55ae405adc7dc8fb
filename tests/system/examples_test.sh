#!/usr/bin/env bash
# The examples that can run here, each through its whole job: every channel, a receiver that cannot do the setup, a file
# that is none.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh examples_test
head -n 24 "$root/tests/data/plans/at-Kabelsignal" >plan # three channels of 256 QAM
expect_exit 0 import plan -o setup.ini --ber-samples 1 --max-settling-time 1
expect_exit 0 network plan -o town.ini --clean
# The middle one sends another order of QAM than the setup has.
sed '/^\[Channel 2\]/,/^\[Channel 3/s/^Order of QAM=.*/Order of QAM=64/' town.ini >wrong.ini
cp "$root/examples/receivers/bare.ini" .

run() { # CODE ARGUMENT...: what it says counts, wherever it does
    expect_exit "$@"
    cat "$work/err" >>"$work/out"
    sed -i 's/\r$//' "$work/out"
}
expect() { LC_ALL=C expect_match "$1"; }

scan_with() { # PROGRAM...
    program=("$@")
    run 0 setup.ini town.ini
    expect 'Configuring KTR$'
    expect 'Measuring at 330 MHz$'
    expect '^S22  314 MHz  level [0-9.]+ dB[^ ]+V  MER [34][0-9]\.[0-9] dB  BER <.*  frame OK$'
    expect '^3 of 3 channels synchronised$'
    run 1 setup.ini wrong.ini
    expect '^S23  322 MHz  level [0-9.]+ dB[^ ]+V  MER --- dB  BER ---  frame UNSYNC$'
    expect '^2 of 3 channels synchronised$'
    run 2 setup.ini bare.ini
    expect '[Rr]eceiver 200042 has not got the setup.s: SAW filter$'
    run 2 town.ini
    expect '[Tt]he setup cannot be loaded: .*town.ini$'
    run 2 setup.ini setup.ini
    expect 'setup.ini:[0-9]+: unknown section'
    run 2
    expect 'usage:'
}

scan_with "$bin/example_scan.exe"
scan_with cscript //nologo "$(wine_path "$root/examples/scan.vbs")"
echo "the examples do their job"
