#!/usr/bin/env bash
# What tvnhost doctor finds: nothing in a good installation, and everything that is wrong in a bad one, with a remedy.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh doctor_test

wine() { "$wine_program" "$@" </dev/null; }
add() { wine reg add "$@" /f >/dev/null; }
classes='HKLM\Software\Classes'
server() { echo "$classes\\CLSID\\{$1}\\InprocServer32"; }
setup=488198DB-6507-4E93-AE94-D262381549D9
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
trap give_back EXIT

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
text=$(wine_path "$work/text.dll")
add "HKCU\\Software\\Classes\\CLSID\\{$setup}\\InprocServer32" /ve /d "$(wine_path "$work/old/TVN2x.dll")"
add "$(server EE9A43BD-E7FB-478D-B539-9F580EB92A66)" /ve /d 'C:\windows\system32\kernel32.dll'
wine reg delete "$classes\\CLSID\\{5B2622DA-C857-4F03-8E87-91151E8C1508}" /f >/dev/null
add "$(server "$reporting")" /ve /d "$(wine_path "$root/build/win64/bin/XKTR2x.dll")" /reg:32
add "$classes\\TVN2x.clsSetup\\CLSID" /ve /d '{00000000-0000-0000-0000-000000000001}'
add "$(server 954DD709-4EF6-496C-A462-6D3BFA2609A7)" /ve /d 'C:\gone\XKTR2x.dll'
add "$(server D1C7CA13-4926-4058-A065-F03C4B3C1505)" /ve /d "$text"
add "$(server 8DBCBD16-FAA0-4D4C-983F-09C300D8FF93)" /ve /d "$(wine_path "$bin/TVN2x.dll")"
add "$classes\\TypeLib\\{3FDAA093-87E3-4470-A985-DE23B8CB2B3F}\\1.0\\0\\win$bits" /ve /d "$text"
wine reg delete "$classes\\TypeLib\\{CCFB3DDF-7A82-4F26-92C6-0E7D10C02784}" /f >/dev/null
wine reg delete "$classes\\Interface\\{11CA90EB-888C-47C3-A8ED-1EC3A8FB9395}" /f >/dev/null
add 'HKCU\Software\TVN2x\Receiver' /v other.exe /d real
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
