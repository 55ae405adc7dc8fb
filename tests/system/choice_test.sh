#!/usr/bin/env bash
# Which receiver: a vendor's driver is registered, the simulated receiver beside it. The user chooses for one run, or for
# one host program.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh choice_test

settings='Software\TVN2x\Receiver'
simulated={954DD709-4EF6-496C-A462-6D3BFA2609A7}
vendor={A0000000-0000-0000-0000-000000000001}
choose() { # HIVE PROGRAM WORDS
    wine reg add "$1\\$settings" /v "$2" /d "$3" /f >/dev/null
}
enter vendor VENDOR="$bin/vendor_driver.dll"

# For one run.
is_simulated() { expect_text '(simulated)'; }
is_vendors() { grep -q 'simulated' "$work/out" && fail "takes the simulated receiver"; expect_text 'Serial number'; }
expect_exit 0 info
is_vendors
expect_exit 0 info --receiver "$vendor"
is_vendors
for which in simulated "$simulated"; do
    expect_exit 0 info --receiver "$which"
    is_simulated
done
session choice
expect_exit 0 scan "$root/examples/first-scan.ini" --receiver simulated --write --channels K44 --time-scale 0.01 --json run.jsonl \
    --network "$root/examples/first-scan-network.ini" --result result.txt
expect_text "1 channel, 1 synchronised"
grep -q '^Receiver.simulated' result.txt || fail 'the result file does not say simulated'
expect_exit 0 report run.jsonl --result again.txt
cmp result.txt again.txt || fail 'the result file of the stored run differs'

# For one host program: the plug-in and whoever stops it have the same library, and the user's word is before the machine's.
cat >host.vbs <<'END'
Set setup = CreateObject("TVN2x.clsSetup")
Set run = CreateObject("XKTR2x.clsRunControl")
stopped = False
On Error Resume Next
run.StopFlag = True ' the vendor's does not take it
stopped = run.StopFlag
Err.Clear
model = setup.Driver.Settings.NetworkModel
WScript.Echo CStr(Err.Number = 0) & " " & stopped & " " & Err.Description
END
while IFS='|' read -r hive host words answer; do
    said="$hive $host $words"
    wine reg delete "HKCU\\$settings" /f >/dev/null 2>&1 || true
    choose "$hive" "$host" "$words"
    wine cscript //nologo host.vbs | tr -d '\r' >"$work/out"
    expect_match "$answer"
done <<'END'
HKCU|tvnhost.exe|simulated|^False False
HKCU|cscript.exe|simulated|^True True
HKLM|cscript.exe|{954DD709-4EF6-496C-A462-6D3BFA2609A7}|^True True
HKCU|cscript.exe|registered|^False False
HKCU|cscript.exe|real|HKEY_CURRENT_USER.Software.TVN2x.Receiver, value cscript.exe, chooses the receiver "real": that names none
END
choose HKCU tvnhost.exe simulated
expect_exit 0 info
is_simulated
expect_exit 0 info --receiver registered
is_vendors
wine reg add "HKCU\\$settings" /v tvnhost.exe /t REG_DWORD /d 1 /f >/dev/null
expect_exit 2 info
expect_notice 'a value that is no text'
wine reg delete "HKCU\\$settings" /f >/dev/null

# One library for all three.
wine reg add "HKLM\\Software\\Classes\\CLSID\\{4AA7B9DA-F54D-464F-8BCE-D26AD76392BA}\\InprocServer32" /ve /d "$(wine_path "$bin/XKTR2x.dll")" /f >/dev/null
expect_exit 2 info
expect_notice 'have to come from one library'
echo "the chosen receiver measures"
