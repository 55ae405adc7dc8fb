#!/usr/bin/env bash
# Every channel plan of the tests' own and of the package dtv-scan-tables that has cable channels is imported, and its
# setups load, show and have nothing doubtful in them.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh plans_test

# A plan with a name that the code page cannot hold ("česká") makes a setup in UTF-16.
text_of() {
    if [ "$(head -c 2 "$1")" = $'\xFF\xFE' ]; then iconv -f UTF-16 -t UTF-8 "$1"; else cat "$1"; fi | tr -d '\r'
}

imported=0 setups=0
for plan in "$root"/tests/data/plans/*-* /usr/share/dvb/dvb-c/*; do
    grep -q 'DVBC' "$plan" || continue
    name=$(basename "$plan")
    rm -f "$name"*.ini # both places have some plans
    expect_exit 0 import "$plan" -o "$name.ini" --order 64
    imported=$((imported + 1))
    for setup in "$name"*.ini; do
        expect_exit 0 show "$setup"
        [ ! -s "$work/err" ] || fail "tells of something doubtful in it"
        # As many rows as the file counts, each in the table.
        channels=$(text_of "$setup" | sed -n '/^\[Frequency List\]/,/^\[/s/^Count=//p')
        expect_match "^$channels channels?$"
        rows=$(sed -n '/ channels\{0,1\}$/,/^Parameters$/p' "$work/out" | grep -cE '^ *[0-9]+  ')
        [ "$rows" = "$channels" ] || fail "shows $rows rows of $channels"
        setups=$((setups + 1))
    done
done
echo "$imported plans imported as $setups setups"
[ "$imported" -ge 4 ]
