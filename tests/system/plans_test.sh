#!/usr/bin/env bash
# Every channel plan of the tests' own and of the package dtv-scan-tables that has cable channels is imported, and its
# setups load, show and have nothing doubtful in them.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh plans_test

imported=0 setups=0
for plan in "$root"/tests/data/plans/*-* /usr/share/dvb/dvb-c/*; do
    grep -q 'DVBC' "$plan" || continue
    rm -f net*.ini
    expect_exit 0 import "$plan" -o net.ini --order 64
    imported=$((imported + 1))
    for setup in net*.ini; do
        expect_exit 0 show "$setup"
        [ ! -s "$work/err" ] || fail "tells of something doubtful in it"
        setups=$((setups + 1))
    done
done
echo "$imported plans imported as $setups setups"
[ "$imported" -ge 4 ]
