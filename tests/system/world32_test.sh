#!/usr/bin/env bash
# The programs of 32 bits: a script reaches every member, and a scan has the readings of the 64-bit programs to the last
# digit, but for time stamps and what is counted over time.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
. tools/common.sh
work=$root/build/world32_test
rm -rf "$work"
mkdir -p "$work"

said=$(tools/world32 cscript //nologo tests/system/script_test.vbs "$(wine_path tests/data/clean.ini)" | tr -d '\r')
echo "$said"
[ "$said" = 'all as expected' ]

scan() { # RUNNER HOST NAME
    "$1" "$2" scan "$(wine_path examples/first-scan.ini)" --network "$(wine_path examples/first-scan-network.ini)" --write \
        --json "$(wine_path "$work/$3.jsonl")" >"$work/$3.txt" 2>&1 || [ $? -eq 1 ] || { cat "$work/$3.txt"; exit 1; }
}
scan tools/wine tvnhost 64
scan tools/world32 build/win32/bin/tvnhost.exe 32
check=tests/system/report_check.py
python3 -B $check count "$work/64.jsonl" 8
python3 -B $check same "$work/64.jsonl" "$work/32.jsonl" ber timestamp
echo 'the readings agree'
