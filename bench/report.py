#!/usr/bin/env python3
"""Prints the results of Google Benchmark programs as a table.

A benchmark named "X/Y" is compared with the benchmark "X": the ratio of the two stands beside it. Medians of the
repetitions are used.

    report.py RESULT.json...
"""

import json
import sys


def medians(paths):
    for path in paths:
        with open(path) as file:
            for run in json.load(file)["benchmarks"]:
                if run.get("aggregate_name") == "median":
                    yield run["run_name"], run["cpu_time"], run["time_unit"]


def readable(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def main():
    scale = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
    times = {name: time * scale[unit] for name, time, unit in medians(sys.argv[1:])}
    width = max(map(len, times))
    print(f"{'benchmark':{width}}  {'median':>9}  relative")
    for name, time in times.items():
        whole = times.get(name.rpartition("/")[0])
        relative = f"{time / whole:.3f} of {name.rpartition('/')[0]}" if whole else ""
        print(f"{name:{width}}  {readable(time):>9}  {relative}")


main()
