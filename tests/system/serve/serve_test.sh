#!/usr/bin/env bash
# A scan that is served: what its readers get, who is let in, what a taken port and Ctrl+C do.
set -euo pipefail
cd "$(dirname "$0")/../../.."
. tests/system/expect.sh serve_test
expect_exit 0 import --from 306 --to 346 --step 8 --order 256 --ber-samples 1 --max-settling-time 1 -o net.ini
expect_exit 0 network --from 306 --to 346 --step 8 --order 256 --seed 7 -o model.ini

receiver='--network model.ini --time-scale 0.001'
begin() { # ARGUMENT...: $link is where it serves
    local line=
    on_terminal serve net.ini $receiver "$@"
    link=
    while [[ $link != http* ]] && read -r -t 60 line <&4; do
        link=$(sed -nE 's|^Serving at ([^ ]*).*|\1|p' <<<"$line" | tr -d '\r')
    done
    [[ $link == http* ]] || fail "does not begin to serve"
}
serve_check() { python3 -B "$root/tests/system/serve/serve_check.py" "$@"; }
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
serve_check until ended "$link"
serve_check data "$link" "$root/docs"
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
end_by_ctrl_c 1 3000
check schema "$root/docs/result.schema.json" run.journal served.jsonl
[ "$(grep -c '"record":"channel"' run.journal)" = 12 ] || fail "does not keep every channel"
expect_exit 1 judge served.jsonl
expect_exit 0 report run.journal --result journal.csv
tail -n 8 served.csv | cmp - <(tail -n 8 journal.csv) || fail "serves another table than the journal has"

# The journal's history is there when it is gone on with, for those who have the token.
for _ in 1 2 3 4 5 6; do sed -i '$d' run.journal; done
begin --listen 0.0.0.0:0 --resume run.journal
read -r -t 20 line <&4
token=$(sed -nE 's|.*/\?token=([0-9a-f]+).*|\1|p' <<<"$line")
expect_status 401 "/api/run?token=$token"
get /api/channels/1 -H "Authorization: Bearer $token" >channel.json
grep -q '"history":\[{"pass":1,' channel.json || fail "does not bring the history along"
end_by_ctrl_c 3 3000

# Ctrl+C between two passes, with readers.
begin --listen 127.0.0.1:0 --every 1h --journal hourly.journal
for _ in 1 2 3 4 5; do
    get /events -N >/dev/null 2>&1 &
done
serve_check until waiting "$link"
end_by_ctrl_c 3 3000
check schema "$root/docs/result.schema.json" hourly.journal
[ "$(grep -c '"record":"channel"' hourly.journal)" = 6 ] || fail "does not keep every channel"

# The receiver is lost between two passes and found again: a vendor's has the place of the simulated one.
enter vendor VENDOR="$bin/vendor_driver.dll"
receiver=--as-is
expect_exit 0 import --from 306 --to 306 --step 8 --order 256 --ber-samples 1 --force -o net.ini
begin --listen 127.0.0.1:0 --every 4s --journal lost.journal
serve_check until waiting "$link"
touch unplugged
serve_check until lost "$link"
get / >page.html
grep -q 'The receiver has failed since' page.html || fail "does not say that the receiver is lost"
rm unplugged
serve_check until found "$link"
end_by_ctrl_c 3 3000
outcomes=$(grep -oE '"outcome":"\w+' lost.journal | cut -d'"' -f4 | uniq | sed -n 1,3p | xargs)
[ "$outcomes" = 'synchronised error synchronised' ] || fail "measures before and after: $outcomes"
echo "a scan is served as it should be; Ctrl+C took $took ms"
