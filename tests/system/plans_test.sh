#!/usr/bin/env bash
# Every channel plan of the tests' own and of the package dtv-scan-tables that has cable channels is imported, and its
# setups load, show and have nothing doubtful in them.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
. tools/common.sh
wine_environment
tvnhost() { "$wine_program" "$root/build/win64/bin/tvnhost.exe" "$@" </dev/null; }
tools/wine cmd /c ver >/dev/null # the prefix is made and everything registered

work=$root/build/plans_test
rm -rf "$work"
mkdir -p "$work"
cd "$work"

imported=0 setups=0
for plan in "$root"/tests/data/plans/*-* /usr/share/dvb/dvb-c/*; do
    grep -q 'DVBC' "$plan" || continue
    name=$(basename "$plan")
    rm -f "$name"*.ini # both places have some plans
    tvnhost import "$plan" -o "$name.ini" --order 64 >out 2>err || { echo "$plan: import ends with $?"; cat err; exit 1; }
    imported=$((imported + 1))
    for setup in "$name"*.ini; do
        tvnhost show "$setup" >out 2>err || { echo "$setup:"; cat err; exit 1; }
        # A notice would tell of something doubtful in the file.
        [ ! -s err ] || { echo "$setup:"; cat err; exit 1; }
        # As many rows as the file counts, each in the table.
        channels=$(tr -d '\r' <"$setup" | sed -n '/^\[Frequency List\]/,/^\[/s/^Count=//p')
        grep -qE "^$channels channels?$" out || { echo "$setup: does not show $channels channels"; exit 1; }
        rows=$(sed -n '/ channels\{0,1\}$/,/^Parameters$/p' out | grep -cE '^ *[0-9]+  ')
        [ "$rows" = "$channels" ] || { echo "$setup: shows $rows rows of $channels"; exit 1; }
        setups=$((setups + 1))
    done
done
echo "$imported plans imported as $setups setups"
[ "$imported" -ge 4 ]
