#!/usr/bin/env bash
# Registration writes what it should, and unregistration leaves the registry as it was before.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh registry_test

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

trap register_all EXIT
export_classes registered.reg
unregister_all
export_classes clean.reg
unregister_all # a second time finds nothing and does no harm
register_all
register_all
export_classes again.reg
unregister_all
export_classes left.reg

cmp clean.reg left.reg
cmp registered.reg again.reg
as_text() { iconv -f UTF-16 -t UTF-8 "$1" | tr -d '\r'; }
for name in TVN2x.clsSetup TVN2x.clsSupport TVN2x.clsTimeout XKTR2x.clsReceiver XKTR2x.clsRunControl XKTR2x.clsErrorReport; do
    said=$name
    as_text again.reg | grep -F "[HKEY_LOCAL_MACHINE\\Software\\Classes\\$name\\CLSID]" >/dev/null || fail "is not registered"
    as_text left.reg | grep -F "Classes\\$name" && fail "is left behind"
done
said=registry
as_text left.reg | grep -iE 'TVN2x|XKTR2x|TVNINT' && fail "is left behind"
echo "the registry is as it was"
