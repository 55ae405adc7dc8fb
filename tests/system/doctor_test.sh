#!/usr/bin/env bash
# What tvnhost doctor finds: nothing in a good installation, and everything that is wrong in a bad one, with a remedy.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh doctor_test

add() { wine reg add "$@" /f >/dev/null; }
classes='HKLM\Software\Classes'
server() { echo "$classes\\CLSID\\{$1}\\InprocServer32"; }
reporting=F60EAA99-ED47-46F7-B093-B7D58BB6116F # XKTR2xSim.clsErrorReport
give_back() {
    rm -rf "$work/old" "$work/text.dll"
    for key in 'HKCU\Software\TVN2x\Receiver' 'HKCU\Software\Classes\CLSID' "$classes\\CLSID\\{8DBCBD16-FAA0-4D4C-983F-09C300D8FF93}"; do
        wine reg delete "$key" /f >/dev/null 2>&1 || true
    done
    wine reg delete "$classes\\CLSID\\{$reporting}" /reg:32 /f >/dev/null 2>&1 || true
    add 'HKCU\Control Panel\International' /v sDecimal /d .
    wine "$bin/tvnhost.exe" register >/dev/null
    for name in XKTR2x TVN2x XKIQ2x; do wine regsvr32 /s "$(wine_path "$bin/$name.dll")"; done
}

expect_exit 0 doctor
expect_text 'Nothing is wrong' 'TVN2x.clsSetup' 'TVNINT (type library)' '(simulated)'

mkdir "$work/old"
echo text >"$work/text.dll"
python3 - "$bin/TVN2x.dll" "$work/old/TVN2x.dll" <<'END'
import struct, sys
data = bytearray(open(sys.argv[1], "rb").read())
place = data.index(struct.pack("<I", 0xFEEF04BD)) + 8  # the version in numbers
data[place:place + 8] = struct.pack("<HHHH", 9, 0, 0, 3)
open(sys.argv[2], "wb").write(data)
END
enter broken OLD="$work/old/TVN2x.dll" TEXT="$work/text.dll" PLUGIN="$bin/TVN2x.dll"
add "$(server "$reporting")" /ve /d "$(wine_path "$root/build/win64/bin/XKTR2x.dll")" /reg:32
cd /proc
LC_ALL=ja_JP.UTF-8 expect_exit 1 doctor --json 2>/dev/null # the shell does not know that language
cd "$work/files"
session doctor
python3 - "$work/out" "$bits" <<'END'
import json, sys
told = json.load(open(sys.argv[1], encoding="utf-8"))
assert not told["healthy"] and all(complaint["remedy"] for complaint in told["complaints"])
assert told["facts"]["Bits"] == sys.argv[2] and any(item["bits"] == 32 for item in told["registered"])
END

give_back
for name in TVN2x XKTR2x XKIQ2x; do wine regsvr32 /s /u "$(wine_path "$bin/$name.dll")"; done
add 'HKCU\Control Panel\International' /v sDecimal /d '..'
expect_exit 1 doctor
expect_text 'The decimal mark is ".."' "The plug-in is not registered for $bits-bit programs" 'The instrument driver is not registered'
give_back
expect_exit 0 doctor --receiver simulated
echo "every fault is named"
