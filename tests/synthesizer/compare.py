"""Asks a model for every register bit of a design and holds the answers to the truth.

Prints one line of the table that the test shows; a wrong or missing answer is named on standard
error and makes the status 1.
"""

import json
import os
import subprocess
import sys

KINDS = ("located", "constant", "merged", "nothing")
SIGNALS_AT_ONCE = 500


def ask(model, signals):
    """For each signal its answer, or none where the model knows no such signal."""
    command = [os.environ["XRF"], "find", "--quiet", "--json", "--view", "rtl", model, *signals]
    run = subprocess.run(command, capture_output=True, text=True, check=False)
    if run.returncode not in (0, 3):
        sys.exit(f"compare.py: xrf find: {run.stderr}")
    document = json.loads(run.stdout)
    known = [signal for signal in signals if signal not in document["notFound"]]
    if len(known) == len(document["signals"]):
        return dict(zip(known, document["signals"]))
    if len(signals) == 1:
        return {}
    # Two names found one thing, or a name found a module: only one by one shows which.
    answers = {}
    for signal in known:
        answers.update(ask(model, [signal]))
    return answers


def ask_all(model, signals):
    answers = {}
    for start in range(0, len(signals), SIGNALS_AT_ONCE):
        answers.update(ask(model, signals[start : start + SIGNALS_AT_ONCE]))
    return answers


def shown(answer, index):
    """What an answer shows for an index, in the truth's terms."""
    bits = [] if answer is None else [bit for bit in answer["bits"] if bit["index"] == index]
    kind = bits[0].get("kind") if bits else None
    if kind == "STATE":
        return ("located", bits[0]["frame"], bits[0]["offset"])
    if kind == "CNST":
        return ("constant", bits[0]["value"])
    return ("nothing",)


def expected(record):
    if record["kind"] in ("located", "merged"):
        return ("located", record["frame"], record["offset"])
    if record["kind"] == "constant":
        return ("constant", record["value"])
    return ("nothing",)


def main(arguments):
    if len(arguments) != 3:
        sys.exit("usage: compare.py MODEL.xrf TRUTH.json LABEL")
    model, truth_file, label = arguments
    with open(truth_file, encoding="utf-8") as file:
        truth = json.load(file)
    answers = ask_all(model, list(dict.fromkeys(record["signal"] for record in truth)))
    counts = {kind: 0 for kind in KINDS}
    faults = {"missing": 0, "wrong": 0}
    for record in truth:
        counts[record["kind"]] += 1
        want, got = expected(record), shown(answers.get(record["signal"]), record["index"])
        if want != got:
            fault = "missing" if got == ("nothing",) else "wrong"
            faults[fault] += 1
            print(
                f"{label}: {fault}: {record['signal']}[{record['index']}]: {got} instead of {want}",
                file=sys.stderr,
            )
    numbers = [len(truth), *counts.values(), *faults.values()]
    print(f"{label:26}" + "".join(f"{number:9}" for number in numbers))
    return 1 if any(faults.values()) or not truth else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
