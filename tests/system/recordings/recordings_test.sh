#!/usr/bin/env bash
# The receiver of recorded signals in tvnhost's and in another host's hands: a good channel, a bad one with its
# constellation, one that nobody recorded, levels that nobody calibrated.
set -euo pipefail
cd "$(dirname "$0")/../../.."
. tests/system/expect.sh recordings_test

maker=$root/build/asan/bin/sample_recording
settings='Software\TVN2x'
mkdir good bad
"$maker" good 1.2 306:64:36
"$maker" bad 1.2 314:64:22
# In the folder of both the bad one is not calibrated.
mkdir both
for kind in data meta; do
    cp good/cable.sigmf-$kind both/good.sigmf-$kind
    cp bad/cable.sigmf-$kind both/bad.sigmf-$kind
done
sed -i 's/,"tvn2x:full_scale_dbuv":75//' both/bad.sigmf-meta
printf '%s\n' 'good,306,6.9,64' 'bad,314,6.9,64' 'nobody,400,6.9,64' >plan.csv
expect_exit 0 import plan.csv -o net.ini --ber-samples 1 --max-settling-time 5
printf '[mer]\nFail Below=27\n\n[rflev]\nFail Below=50\nFail Above=70\n' >limits.ini

expect_exit 1 scan net.ini --signals both --limits limits.ini --json run.jsonl --html page.html
expect_text 'Recorded signals: folder' 'bad.sigmf-data 308.75 to 319.25 MHz'
python3 - <<'END' || fail 'the readings are others'
import json
records = [json.loads(line) for line in open("run.jsonl")]
good, bad, nobody = [record for record in records if record["record"] == "channel"]
assert good["outcome"] == "synchronised" and abs(good["readings"]["mer"]["value"] - 35.5) < 1.5, good
assert abs(good["readings"]["rflev"]["value"] - 64.5) < 0.5 and good["verdict"]["result"] == "pass", good
assert bad["readings"]["rflev"]["text"] == "---" and bad["details"]["levelUnknown"], bad
assert "level" not in bad["verdict"]["reason"].lower() and bad["verdict"]["result"] == "fail", bad
assert len(bad["details"]["constellation"]) == 2048, len(bad["details"]["constellation"])
assert nobody["outcome"] == "error" and "No recording holds the channel at 400.000 MHz" in nobody["verdict"]["reason"], nobody
assert records[0]["receiver"]["recordings"]["folder"].endswith("both"), records[0]
END
grep -q '<title>Constellation of bad 314 MHz</title>' page.html || fail 'the page has no constellation of the bad channel'
grep -q '<title>Constellation of good' page.html && fail 'the page has one of the good channel'
expect_exit 0 report run.jsonl --limits limits.ini --html again.html
cmp page.html again.html || fail 'the page of the stored run differs'

# A damaged description is refused with its place; nobody else's receiver takes the folder.
printf '{"global":' >both/torn.sigmf-meta
session recordings

# Another host, by its settings alone.
cat >host.vbs <<'END'
Set setup = CreateObject("TVN2x.clsSetup")
Set driver = setup.Driver
WScript.Echo driver.Settings.Signals & "|" & setup.CheckHardware.Mode & "|" & TypeName(driver.Settings)
END
wine reg add "HKCU\\$settings\\Receiver" /v cscript.exe /d recordings /f >/dev/null
wine reg add "HKCU\\$settings\\Signals" /v cscript.exe /d "$(wine_path "$work/files/good")" /f >/dev/null
wine cscript //nologo host.vbs | tr -d '\r' >"$work/out"
expect_match 'recordings_test.files.good\|2\|IRecordingsSettings'
wine reg add "HKCU\\$settings\\Signals" /v cscript.exe /d 'C:\nowhere' /f >/dev/null
expect_exit 1 doctor
expect_text 'value cscript.exe, names the folder of recorded signals "C:\nowhere", and there is none'
echo "recorded signals are measured"
