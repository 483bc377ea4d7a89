#!/usr/bin/env python3
"""Prints the results of Google Benchmark programs as a table.

A benchmark named "X/Y" is compared with the benchmark "X": the ratio of the two stands beside it. One named "X at N"
is compared with the last smaller N: the exponent stands beside it with which the time grew. Medians of the
repetitions are used.

    report.py RESULT.json...
"""

import json
import math
import re
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


def growths(times):
    """For "X at N" and "X at N/Y" the exponent of the growth since the last N."""
    result, last = {}, {}
    for name, time in times.items():
        match = re.fullmatch(r"(.* at )(\d+)(/.*)?", name)
        if match:
            series, size = (match[1], match[3]), int(match[2])
            if series in last:
                last_size, last_time = last[series]
                result[name] = math.log(time / last_time) / math.log(size / last_size)
            last[series] = size, time
    return result


def in_order(name):
    """Names in the order of the numbers in them; a benchmark stands before what is compared with it."""
    return [(int(part), "") if part.isdigit() else (0, part) for part in re.split(r"(\d+)", name)]


def main():
    scale = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
    measured = {name: time * scale[unit] for name, time, unit in medians(sys.argv[1:])}
    times = {name: measured[name] for name in sorted(measured, key=in_order)}
    width = max(map(len, times))
    growth = growths(times)
    print(f"{'benchmark':{width}}  {'median':>9}  {'growth':6}  relative")
    for name, time in times.items():
        whole = times.get(name.rpartition("/")[0])
        relative = f"{time / whole:.3f} of {name.rpartition('/')[0]}" if whole else ""
        exponent = f"N^{growth[name]:.1f}" if name in growth else ""
        print(f"{name:{width}}  {readable(time):>9}  {exponent:6}  {relative}")


main()
