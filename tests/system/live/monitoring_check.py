#!/usr/bin/env python3
"""What a Prometheus has come to know.   monitoring_check.py ITS_LOG DASHBOARD"""
import json
import re
import select
import sys
import time
import urllib.error
import urllib.parse
import urllib.request


def until(what, look, within=90):
    """The first value of `look` that is not empty; asked for again and again, because nobody tells when it is there."""
    deadline = time.monotonic() + within
    while time.monotonic() < deadline:
        value = look()
        if value:
            return value
        select.select([], [], [], 0.2)
    sys.exit(f"never: {what}")


def ask(path, **query):
    try:
        with urllib.request.urlopen(f"http://{address}/api/v1/{path}?{urllib.parse.urlencode(query)}") as answer:
            return json.load(answer)["data"]
    except urllib.error.HTTPError as error:
        sys.exit(f"{path} {query}: {error.read().decode()}")


def listening():
    found = re.findall(r'msg="Listening on" address=(127\.0\.0\.1:\d+)', open(sys.argv[1], encoding="utf-8").read())
    return found and found[0]


def healthy():
    targets = ask("targets")["activeTargets"]
    wrong = [target["lastError"] for target in targets if target["lastError"]]
    if wrong:
        sys.exit(f"a target cannot be read: {wrong}")
    return [target["health"] for target in targets] == ["up"] * 3


def firing(name):
    return {(alert["labels"]["site"], alert["labels"]["frequency"]) for alert in ask("alerts")["alerts"]
            if alert["labels"]["alertname"] == name and alert["state"] == "firing"}


def measured():
    """Every channel of the three sites."""
    return len(ask("query", query="tvn2x_rflev_dbuv")["result"]) == 9


def dashboard():
    """Every question of the dashboard is understood, and all but those about what is not there are answered."""
    for panel in json.load(open(sys.argv[2], encoding="utf-8"))["panels"]:
        for target in panel["targets"]:
            question = target["expr"].replace("$site", ".*").replace("$channel", ".*")
            until(f"an answer to {question}", lambda: ask("query", query=question)["result"])


address = until("where it listens", listening)
until("all three are read", healthy)
until("all channels are measured", measured)
wanted = {("hill", "346"), ('mill "2"', "346")}
for rule in ("ChannelFails", "ReadingBeyondLimit"):
    until(f"{rule} fires for the weak channel", lambda: wanted <= firing(rule))
    if firing(rule) != wanted:
        sys.exit(f"{rule} fires where nothing is broken: {firing(rule)}")
dashboard()
