#!/usr/bin/env bash
# A scan that is served: what its readers get, who is let in, what a taken port and Ctrl+C do.
set -euo pipefail
cd "$(dirname "$0")/../../.."
. tests/system/expect.sh serve_test
check=$root/tests/system/serve/serve_check.py
job=
trap '[ -z "$job" ] || kill "$job" 2>/dev/null || true' EXIT

expect_exit 0 import --from 306 --to 346 --step 8 --order 256 --ber-samples 1 -o net.ini
expect_exit 0 network --from 306 --to 346 --step 8 --order 256 --seed 7 -o model.ini

receiver='--network model.ini --time-scale 0.001'
begin() { # ARGUMENT...: serves on a terminal, where Ctrl+C can be typed; $link is where
    rm -f keys notices
    mkfifo keys notices
    SHELL=/bin/bash script -qec "exec '$wine_program' '$bin/tvnhost.exe' serve net.ini $receiver $* \
        >'$work/out' 2>notices" /dev/null <keys >/dev/null 3>&- 4>&- &
    job=$!
    exec 3<>keys 4<>notices
    said="serve $*"
    link=
    while [[ $link != http* ]] && read -r -t 60 line <&4; do
        link=$(sed -nE 's|^Serving at ([^ ]*).*|\1|p' <<<"$line" | tr -d '\r')
    done
    [[ $link == http* ]] || fail "does not begin to serve"
}
end() { # CODE
    local pressed status=0
    pressed=$(date +%s%N)
    printf '\3' >&3
    wait "$job" || status=$?
    job=
    [ "$status" = "$1" ] || fail "ends with $status instead of $1"
    took=$((($(date +%s%N) - pressed) / 1000000))
    [ "$took" -lt 3000 ] || fail "takes $took ms to end"
    exec 3>&- 4>&-
}
get() { # PATH CURL_OPTION...
    curl -sS --max-time 20 "${link%/}$1" "${@:2}"
}
expect_status() { # CODE PATH CURL_OPTION...
    local status
    status=$(get "$2" "${@:3}" -o /dev/null -w '%{http_code}')
    [ "$status" = "$1" ] || fail "$2 ${*:3}: $status instead of $1"
}

# Two passes to their end, and what is then there to be read.
begin --listen 127.0.0.1:0 --limits outlet --repeat 2 --journal run.journal
python3 -B "$check" until ended "$link"
python3 -B "$check" data "$link" "$root/docs"
get /result.jsonl >served.jsonl
get /result.csv >served.csv
get /report.html | xmllint --noout -
expect_status 404 /../run.journal --path-as-is
expect_status 405 /api/run -X POST -d x=1
expect_status 421 / -H 'Host: elsewhere.example'
# A second one finds the port taken, and nothing of it is left.
port=${link##*:}
expect_exit 2 serve net.ini --network model.ini --listen "127.0.0.1:${port%/}" --journal second.journal
expect_notice 'another program has this port'
[ ! -e second.journal ] || fail "leaves a journal"
said='serve --repeat 2'
end 1
python3 -B "$root/tests/system/report_check.py" schema "$root/docs/result.schema.json" run.journal served.jsonl
[ "$(grep -c '"record":"channel"' run.journal)" = 12 ] || fail "does not keep every channel"
expect_exit 1 judge served.jsonl
expect_exit 0 report run.journal --result journal.csv
tail -n 8 served.csv | cmp - <(tail -n 8 journal.csv) || fail "serves another table than the journal has"

# The journal's history is there when it is gone on with, for those who have the token.
for _ in 1 2 3 4 5 6; do sed -i '$d' run.journal; done
begin --listen 0.0.0.0:0 --resume run.journal
read -r -t 20 line <&4
token=$(sed -nE 's|.*/\?token=([0-9a-f]+).*|\1|p' <<<"$line")
[ "${#token}" = 32 ] || fail "does not tell the token: $line"
expect_status 401 /api/run
expect_status 401 "/api/run?token=$token"
expect_status 200 /api/run -H "Authorization: Bearer $token"
get "/?token=$token" -c cookies -o /dev/null
expect_status 200 /api/channels/1 -b cookies
get /api/channels/1 -b cookies | grep -q '"history":\[{"pass":1,' || fail "does not bring the history along"
end 3

# Ctrl+C between two passes, with readers.
begin --listen 127.0.0.1:0 --every 1h --journal hourly.journal
for _ in 1 2 3 4 5; do
    get /events -N >/dev/null 2>&1 &
done
python3 -B "$check" until waiting "$link"
end 3
python3 -B "$root/tests/system/report_check.py" schema "$root/docs/result.schema.json" hourly.journal
[ "$(grep -c '"record":"channel"' hourly.journal)" = 6 ] || fail "does not keep every channel"

# The receiver is lost between two passes and found again.
vendor=A0000000-0000-0000-0000-00000000000
names=(clsReceiver clsRunControl clsErrorReport)
wine_reg() { "$wine_program" reg "$@" /f >/dev/null </dev/null; }
classes='HKLM\Software\Classes'
for i in 1 2 3; do
    wine_reg add "$classes\\CLSID\\{$vendor$i}\\InprocServer32" /ve /d "$(wine_path "$bin/vendor_driver.dll")"
    wine_reg add "$classes\\CLSID\\{$vendor$i}\\ProgID" /ve /d "Vendor.${names[$i - 1]}"
    wine_reg add "$classes\\Vendor.${names[$i - 1]}\\CLSID" /ve /d "{$vendor$i}"
done
receiver="--receiver {${vendor}1} --as-is"
expect_exit 0 import --from 306 --to 306 --step 8 --order 256 --ber-samples 1 --force -o net.ini
begin --listen 127.0.0.1:0 --every 4s --journal lost.journal
python3 -B "$check" until waiting "$link"
touch unplugged
python3 -B "$check" until lost "$link"
get / | grep -q 'The receiver has failed since' || fail "does not say that the receiver is lost"
rm unplugged
python3 -B "$check" until found "$link"
end 3
python3 - lost.journal <<'END' || fail "does not measure before and after"
import json, sys
outcomes = [json.loads(line).get("outcome", "") for line in open(sys.argv[1], encoding="utf-8")]
words = [word for word in outcomes if word]
runs = [word for i, word in enumerate(words) if i == 0 or words[i - 1] != word]
print(runs)
sys.exit(runs[:3] != ["synchronised", "error", "synchronised"])
END
for i in 1 2 3; do
    wine_reg delete "$classes\\CLSID\\{$vendor$i}"
    wine_reg delete "$classes\\Vendor.${names[$i - 1]}"
done

echo "a scan is served as it should be; Ctrl+C took $took ms"
