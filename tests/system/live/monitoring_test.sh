#!/usr/bin/env bash
# What monitoring makes of three served scans, with the configuration, rules and dashboard that docs/monitoring gives: a
# real Prometheus reads them, finds the broken channel and nothing to complain of.
set -euo pipefail
cd "$(dirname "$0")/../../.."
. tests/system/expect.sh monitoring_test
jobs=()
at_end 'kill "${jobs[@]}" 2>/dev/null'

channels=(--from 346 --to 410 --step 32 --order 256)
expect_exit 0 import "${channels[@]}" --ber-samples 1 --max-settling-time 1 -o net.ini
expect_exit 0 network "${channels[@]}" --clean -o clean.ini
awk '/^Level/ && !broken++ { $0 = "Level (dBuV)=45\r" } { print }' clean.ini >broken.ini

# A file for a text-file collector, also of a run that was stopped by nothing.
expect_exit 1 scan net.ini --network broken.ini --time-scale 0.001 --limits outlet --metrics run.prom
promtool check metrics <run.prom || fail "writes what promtool complains of"
grep -q 'tvn2x_verdict{.*frequency="346".*"fail"} 1' run.prom || fail "does not tell of the weak channel"
! grep -q receiver_up run.prom || fail "tells of the receiver when the scan has ended"
expect_exit 2 scan net.ini --network broken.ini --metrics net.ini
expect_notice 'would be written twice, or replace'

echo 0123456789abcdef >token
serve() { # SITE MODEL: its address goes to $targets
    said="serve --site $1"
    mkfifo "$1.notices"
    "$wine_program" "$bin/tvnhost.exe" serve net.ini --network "$2" --time-scale 0.001 --every 1s --limits outlet \
        --site "$1" --token-file token --listen 127.0.0.1:0 >"$1.out" 2>"$1.notices" </dev/null &
    jobs+=($!)
    exec {notices}<>"$1.notices"
    local line='' link=''
    while [ -z "$link" ] && read -r -t 60 line <&$notices; do
        link=$(sed -nE 's|^Serving at http://([^/ ]*).*|\1|p' <<<"$line")
    done
    [ -n "$link" ] || fail "does not begin to serve"
    targets+=${targets:+, }"'$link'"
}
targets=
serve hill broken.ini
serve 'mill "2"' broken.ini
serve lake clean.ini

cp "$root/docs/monitoring/alerts.yml" .
credentials='    authorization:\n      credentials_file: token'
sed "s/'127.0.0.1:8087'/$targets/; s/scrape_interval: 30s/scrape_interval: 1s\n  evaluation_interval: 1s/;
    s/.*job_name: tvn2x/&\n$credentials/" \
    "$root/docs/monitoring/prometheus.yml" >prometheus.yml
promtool check config prometheus.yml >/dev/null
: >prometheus.log # is read below, perhaps before the program is there to write it
prometheus --config.file=prometheus.yml --storage.tsdb.path=data --web.listen-address=127.0.0.1:0 2>>prometheus.log &
jobs+=($!)

said=Prometheus
address=
answered() { # QUESTION...: each has an answer before long
    local question
    for question; do
        for _ in {1..450}; do
            [ -z "$(promtool query instant "http://$address" "$question")" ] || continue 2
            read -r -t 0.2 <> <(:) || true # nobody tells when it is there
        done
        fail "never answers $question: $(promtool query instant "http://$address" '{__name__=~"up|ALERTS"}')"
    done
}
until [ -n "$address" ]; do
    address=$(sed -nE 's/.*msg="Listening on" address=(127\.0\.0\.1:[0-9]+).*/\1/p' prometheus.log)
    kill -0 "${jobs[-1]}" || fail "$(cat prometheus.log)"
    read -r -t 0.2 <> <(:) || true
done
answered 'sum(up) == 3' 'count(tvn2x_rflev_dbuv) == 9' # every channel of the three sites
for rule in ChannelFails ReadingBeyondLimit; do
    firing="ALERTS{alertname='$rule',alertstate='firing'"
    answered "count($firing,frequency='346',site=~'hill|mill \"2\"'}) == 2"
    [ -n "$(promtool query instant "http://$address" "count($firing}) == 2")" ] || fail "$rule fires where nothing is broken"
done
# Every question of the dashboard is understood and answered.
python3 -c '
import json, sys
for panel in json.load(open(sys.argv[1], encoding="utf-8"))["panels"]:
    for target in panel["targets"]:
        print(target["expr"].replace("$site", ".*").replace("$channel", ".*"))
' "$root/docs/monitoring/dashboard.json" >questions
mapfile -t questions <questions
answered "${questions[@]}"
