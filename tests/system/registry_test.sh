#!/usr/bin/env bash
# Registration writes what it should, and unregistration leaves the registry as it was before.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
. tools/common.sh
wine_environment
bin=$root/build/win64/bin
out=$root/build/registry
mkdir -p "$out"

export_classes() { "$wine_program" reg export 'HKLM\Software\Classes' "$(wine_path "$1")" /y >/dev/null </dev/null; }
unregister_all() {
    "$wine_program" regsvr32 /s /u "$(wine_path "$bin/TVN2x.dll")" </dev/null
    "$wine_program" regsvr32 /s /u "$(wine_path "$bin/XKTR2x.dll")" </dev/null
    "$wine_program" "$bin/tvnhost.exe" unregister >/dev/null </dev/null
}
register_all() {
    "$wine_program" "$bin/tvnhost.exe" register >/dev/null </dev/null
    "$wine_program" regsvr32 /s "$(wine_path "$bin/XKTR2x.dll")" </dev/null
    "$wine_program" regsvr32 /s "$(wine_path "$bin/TVN2x.dll")" </dev/null
}

tools/wine cmd /c ver >/dev/null # the prefix is made and everything registered
trap register_all EXIT
export_classes "$out/registered.reg"
unregister_all
export_classes "$out/clean.reg"
unregister_all # a second time finds nothing and does no harm
register_all
register_all
export_classes "$out/again.reg"
unregister_all
export_classes "$out/left.reg"

cmp "$out/clean.reg" "$out/left.reg"
cmp "$out/registered.reg" "$out/again.reg"
as_text() { iconv -f UTF-16 -t UTF-8 "$1" | tr -d '\r'; }
for name in TVN2x.clsSetup TVN2x.clsSupport TVN2x.clsTimeout XKTR2x.clsReceiver XKTR2x.clsRunControl XKTR2x.clsErrorReport; do
    as_text "$out/again.reg" | grep -F "[HKEY_LOCAL_MACHINE\\Software\\Classes\\$name\\CLSID]" >/dev/null || { echo "$name is not registered"; exit 1; }
    as_text "$out/left.reg" | grep -F "Classes\\$name" && { echo "$name is left behind"; exit 1; }
done
as_text "$out/left.reg" | grep -iE 'TVN2x|XKTR2x|TVNINT' && { echo "left behind"; exit 1; }
echo "the registry is as it was"
