#!/usr/bin/env python3
"""What serve_test.sh cannot say in shell: waiting for a moment of the scan, data against their schema."""
import json
import sys
import urllib.request

import jsonschema


def get(link, path):
    with urllib.request.urlopen(link + path, timeout=30) as answer:
        return json.load(answer)


def until(word, link):
    """Follows the events until the scan is in a phase, or its receiver "lost" or "found"."""
    while True:
        with urllib.request.urlopen(link + "events", timeout=60) as events:
            for line in events:
                if line.startswith(b"id:"):
                    now = get(link, "api/run")["now"]
                    if word in (now["phase"], "lost" if now.get("fault") else "found"):
                        return


def data(link, docs):
    """The data is what its schema says, and complete."""
    texts = [open(f"{docs}/{name}", encoding="utf-8").read() for name in ("live.schema.json", "result.schema.json")]
    if [get(link, name) for name in ("live.schema.json", "result.schema.json")] != [json.loads(text) for text in texts]:
        sys.exit("other schemas are served than the documented ones")
    # One schema of both, so that no reference leads out of it.
    within = '"#/definitions/result/definitions/'
    live = json.loads(texts[0].replace('"result.schema.json#/definitions/', within))
    live["definitions"]["result"] = json.loads(texts[1].replace('"#/definitions/', within))
    del live["definitions"]["result"]["$id"]
    validator = jsonschema.Draft7Validator(live)
    run, channels, one = (get(link, path) for path in ("api/run", "api/channels", "api/channels/2"))
    for value in (run, channels, one):
        for error in validator.iter_errors(value):
            sys.exit(f"{error.message[:300]} {[e.message[:200] for e in error.context][:8]}")
    if run["now"]["passesDone"] != 2 or [point["pass"] for point in one["history"]] != [1, 2]:
        sys.exit("not both passes are told")
    if [channel["latest"]["pass"] for channel in channels] != [2] * 6:
        sys.exit("not every channel has its latest measurement")


if __name__ == "__main__":
    {"until": until, "data": data}[sys.argv[1]](*sys.argv[2:])
