#!/usr/bin/env python3
"""Runs the standard jobs by this library and by its peers in turns, and prints median processor times and ratios.

    compare.py PROGRAM [EARLIER_LIBRARIES]

EARLIER_LIBRARIES: folders, separated by colons, with the libraries of an earlier build; they are measured as well.
"""

import os
import pathlib
import statistics
import subprocess
import sys

ROUNDS = 3


def run(command, **environment):
    text = subprocess.run(command, check=True, capture_output=True, text=True, env=os.environ | environment).stdout
    return {job: (float(answer), float(time)) for job, answer, time in (line.split("\t") for line in text.splitlines())}


def main():
    here, program = pathlib.Path(__file__).parent, sys.argv[1]
    runs = {"statpower": lambda: run([program])}
    if len(sys.argv) > 2:
        runs["earlier"] = lambda: run([program], LD_LIBRARY_PATH=sys.argv[2])
    runs["R"] = lambda: run(["Rscript", here / "jobs.R"])
    runs["scipy"] = lambda: run(["/usr/bin/python3", here / "jobs.py"])
    rounds = [{name: one() for name, one in runs.items()} for _ in range(ROUNDS)]
    print(f"{'microseconds':26}" + "".join(f"{name:>12}" for name in runs)
          + "".join(f"{name + ' ratio':>14}" for name in list(runs)[1:]) + "  largest difference of answers")
    for job, (ours, _) in rounds[0]["statpower"].items():
        times = [statistics.median(r[name][job][1] for r in rounds) for name in runs]
        difference = max(abs(rounds[0][name][job][0] - ours) for name in runs)
        print(f"{job:26}" + "".join(f"{time:12.4g}" for time in times)
              + "".join(f"{time / times[0]:14.1f}" for time in times[1:]) + f"  {difference:.1g}")


main()
