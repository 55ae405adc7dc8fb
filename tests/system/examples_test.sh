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

program=("$bin/example_scan.exe")
session examples
program=(cscript //nologo "$(wine_path "$root/examples/scan.vbs")")
session examples
echo "the examples do their job"
