#!/usr/bin/env python3
"""Puts one-line faults into the adapter, one at a time, and counts those that the tests do not catch.

Usage: tools/mutate.py [--sample N] [--seed N] [--only TEXT] [--lines N,N...] [--list]

The faults are in tools/adapter_faults.tsv. The tool works on a copy of the tree below build/mutants and leaves the tree
itself alone. For each fault it builds and runs host_tests, and when these pass, plugin_tests. It prints every fault that
survived and ends with exit code 1 when more than 5 % of the counted ones did. Faults that the compiler rejects and
faults that change nothing observable are not counted.
"""

import argparse
import collections
import pathlib
import random
import shutil
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
COPY = ROOT / "build/mutants"
BUILD = COPY / "build/release"
TESTS = ["host_tests", "plugin_tests"]  # the fast one first
LIMIT = 0.05

Fault = collections.namedtuple("Fault", "number file old new equivalent")


def read_faults(path):
    """The faults of the table. Ends the program when a fault does not fit the sources."""
    faults = []
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if not line or line.startswith("#"):
            continue
        fields = [field.replace("\\n", "\n") for field in line.split("\t")]
        if len(fields) not in (3, 4):
            sys.exit(f"{path}:{number}: error: three or four columns were expected, not {len(fields)}")
        file, old, new = fields[:3]
        found = (ROOT / file).read_text().count(old) if (ROOT / file).exists() else -1
        if found != 1:
            reason = "no such file" if found < 0 else f"the text occurs {found} times in {file} instead of once"
            sys.exit(f"{path}:{number}: error: {reason}: {old}")
        faults.append(Fault(number, file, old, new, fields[3] if len(fields) == 4 else ""))
    return faults


def copy_tree():
    names = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True, capture_output=True, text=True
    ).stdout.splitlines()
    for name in names:
        source, target = ROOT / name, COPY / name
        if not source.is_file():
            continue
        if target.exists() and target.read_bytes() == source.read_bytes():
            continue
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(source, target)  # with a new time, so that a fault of an interrupted run is built again


def build(target):
    command = ["cmake", "--build", str(BUILD), "--target", target]
    return subprocess.run(command, capture_output=True, text=True)


def passes(test):
    """True when a test program ends with success within its time limit."""
    try:
        program = BUILD / "tests" / test.removesuffix("_tests") / test
        return subprocess.run([program], cwd=COPY, capture_output=True, timeout=120).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def prepare():
    copy_tree()
    subprocess.run(["cmake", "--preset", "release"], cwd=COPY, check=True, stdout=subprocess.DEVNULL)
    for test in TESTS:
        result = build(test)
        if result.returncode != 0 or not passes(test):
            sys.exit(f"{test} must build and pass before faults are put in\n{result.stdout[-2000:]}")


def outcome(fault):
    """'rejected', 'survived', or the name of the test program that caught the fault."""
    file = COPY / fault.file
    original = file.read_text()
    file.write_text(original.replace(fault.old, fault.new))
    try:
        for test in TESTS:
            if build(test).returncode != 0:
                return "rejected"
            if not passes(test):
                return test
        return "survived"
    finally:
        file.write_text(original)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sample", type=int, metavar="N", help="put in only N faults, chosen at random")
    parser.add_argument("--seed", type=int, default=1, metavar="N", help="of the random choice")
    parser.add_argument("--only", default="", metavar="TEXT", help="put in only faults whose file or text contains TEXT")
    parser.add_argument("--lines", metavar="N,N...", help="put in only the faults on these lines of the table")
    parser.add_argument("--list", action="store_true", help="check the table and print the faults")
    arguments = parser.parse_args()

    faults = read_faults(ROOT / "tools/adapter_faults.tsv")
    faults = [fault for fault in faults if arguments.only in fault.file + fault.old]
    if arguments.lines:
        lines = {int(line) for line in arguments.lines.split(",")}
        faults = [fault for fault in faults if fault.number in lines]
    if arguments.sample is not None:
        faults = random.Random(arguments.seed).sample(faults, min(arguments.sample, len(faults)))
    if arguments.list:
        print("\n".join(f"{fault.number}: {fault.file}: {fault.old.strip()}" for fault in faults))
        return 0

    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))  # outcome() then takes the fault out again
    prepare()
    counts = collections.Counter()
    started = time.monotonic()
    for fault in faults:
        result = outcome(fault)
        if result == "survived" and fault.equivalent:
            result = "equivalent"
        counts[result] += 1
        text = " ".join(fault.old.split())
        print(f"{result:12} {fault.number:4} {fault.file}: {text} -> {' '.join(fault.new.split())}", flush=True)
    counted = sum(counts.values()) - counts["rejected"] - counts["equivalent"]
    share = counts["survived"] / counted if counted else 0
    print(", ".join(f"{name} {count}" for name, count in sorted(counts.items())))
    print(f"{counts['survived']} of {counted} counted faults survived ({share:.1%}), {time.monotonic() - started:.0f} s")
    return 1 if share > LIMIT else 0


if __name__ == "__main__":
    sys.exit(main())
