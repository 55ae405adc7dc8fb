#!/usr/bin/env python3
"""What report_test.sh cannot say in shell: result files against their schema, reports against each other."""
import decimal
import json
import sys
import xml.etree.ElementTree as xml

import jsonschema


def records(path):
    with open(path, encoding="utf-8") as file:
        return [json.loads(line) for line in file]


def schema(schema_path, *paths):
    """Every line is what the schema says, and the lines are in their order."""
    validator = jsonschema.Draft7Validator(json.load(open(schema_path, encoding="utf-8")))
    for path in paths:
        for number, record in enumerate(records(path), 1):
            for error in validator.iter_errors(record):
                sys.exit(f"{path}:{number}: {error.message[:300]} {[e.message for e in error.context][:8]}")
        kinds = [record["record"] for record in records(path)]
        if kinds[0] != "run" or kinds.count("run") != 1 or kinds[-1] not in ("end", "verdict"):
            sys.exit(f"{path}: the lines are {kinds}")


def channels(path):
    return [record for record in records(path) if record["record"] == "channel"]


def shows(text, value):
    """A text shows a value where it differs by half of its last digit at most."""
    number = decimal.Decimal(text)
    half = decimal.Decimal((0, (5,), number.as_tuple().exponent - 1))
    return abs(decimal.Decimal(repr(value)) - number) <= half


def agree(result, html, junit):
    """The three reports of one run have the same channels, numbers and verdicts."""
    rows = channels(result)
    table = xml.parse(html).getroot().findall(".//{*}section[@class='wide']//{*}tbody/{*}tr")
    cases = xml.parse(junit).getroot().findall(".//testcase")
    if not len(rows) == len(table) == len(cases):
        sys.exit(f"{len(rows)} channels in JSON, {len(table)} in HTML, {len(cases)} in JUnit")
    for row, cells, case in zip(rows, table, cases):
        texts = ["".join(cell.itertext()) for cell in cells]
        lines = (case.findtext("system-out") or "").splitlines()
        for name, reading in row["readings"].items():
            if reading["text"] not in texts:
                sys.exit(f"{row['label']}: HTML lacks {name} {reading['text']}")
            unit = "" if reading["value"] is None else reading["unit"] if reading["unit"] == "°" else f" {reading['unit']}"
            if not any(line.endswith(f": {reading['text']}{unit}".rstrip()) for line in lines):
                sys.exit(f"{row['label']}: JUnit lacks {name} {reading['text']}")
            text = reading["text"].lstrip("<>")
            if reading["value"] is not None and not shows(text, reading["value"]):
                sys.exit(f"{row['label']}: {name} reads {text} and is {reading['value']}")
        verdict = row["verdict"]["result"]
        failed = case.find("failure") is not None
        if texts[1] != verdict or failed != (verdict == "fail"):
            sys.exit(f"{row['label']}: {verdict} in JSON, {texts[1]} in HTML, failed in JUnit: {failed}")


def same(left, right, *timed):
    """Two runs measured the same channels with the same results, whenever that was, but for what is counted over time."""
    def timeless(path):
        result = []
        for row in channels(path):
            for key in ("began", "seconds", "timeStamp", "verdict"):
                row.pop(key, None)
            # Errored seconds over whole seconds: they follow the clock.
            for name in ("sy", "de", *timed):
                row["readings"].pop(name, None)
            result.append(row)
        return result

    one, other = timeless(left), timeless(right)
    if [row["number"] for row in one] != [row["number"] for row in other]:
        sys.exit(f"channels {[row['number'] for row in one]} and {[row['number'] for row in other]}")
    for a, b in zip(one, other):
        if a != b:
            sys.exit(f"{left} and {right} differ:\n{a}\n{b}")


def count(path, expected):
    """A result has this many channel lines, each channel of each pass once."""
    turns = [(row["pass"], row["number"]) for row in channels(path)]
    if len(turns) != int(expected) or len(set(turns)) != len(turns):
        sys.exit(f"{path}: {turns}")


if __name__ == "__main__":
    {"schema": schema, "agree": agree, "same": same, "count": count}[sys.argv[1]](*sys.argv[2:])
