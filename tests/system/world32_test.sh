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
    python3 - "$work/$3.jsonl" ber sy de timestamp >"$work/$3.readings" <<'END'
import json, sys
for line in open(sys.argv[1], encoding="utf-8"):
    record = json.loads(line)
    if record["record"] == "channel":
        readings = {name: reading for name, reading in record["readings"].items() if name not in sys.argv[2:]}
        print(record["label"], record["outcome"], readings)
END
}
scan tools/wine tvnhost 64
scan tools/world32 build/win32/bin/tvnhost.exe 32
[ "$(wc -l <"$work/64.readings")" -eq 8 ] || { echo 'eight channels are expected'; exit 1; }
diff "$work/64.readings" "$work/32.readings"
echo 'the readings agree'
