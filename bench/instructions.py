#!/usr/bin/env python3
"""Counts the instructions of the standard jobs with callgrind, and writes bench/instructions.txt or compares with it.

    instructions.py PROGRAM TABLE [--check]     --check changes nothing and fails where a count has left its margin

The library's mathematical functions are those of the oldest processor that is supported, so that the counts depend on
the compiler and its libraries alone. A count below the margin fails too: it is time to write the table again.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

MARGIN = 0.05
OLDEST_PROCESSOR = {"GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX2,-AVX2_Usable,-AVX,-AVX_Usable,-FMA,-FMA_Usable,-FMA4"}


def counts(program):
    """Instructions by job, in the order of the jobs."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(
            ["valgrind", "--quiet", "--tool=callgrind", "--instr-atstart=no",
             f"--callgrind-out-file={folder}/dump", program],
            check=True, stdout=subprocess.DEVNULL, env=os.environ | OLDEST_PROCESSOR)
        dumps = sorted(pathlib.Path(folder).glob("dump.*"), key=lambda path: int(path.suffix[1:]))
        result = {}
        for text in (dump.read_text() for dump in dumps):
            job = re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.MULTILINE)
            if job:
                result[job[1]] = int(re.search(r"^totals: (\d+)$", text, re.MULTILINE)[1])
        return result


def table(measured):
    width = max(map(len, measured))
    return "".join(f"{job:{width}}  {count:>11}\n" for job, count in measured.items())


def read(path):
    rows = (line.rsplit(maxsplit=1) for line in path.read_text().splitlines() if not line.startswith("#"))
    return {job.strip(): int(count) for job, count in rows}


def check(measured, expected):
    bad = [job for job in measured.keys() | expected.keys()
           if abs(measured.get(job, 0) - expected.get(job, 0)) > MARGIN * expected.get(job, 0)]
    for job in sorted(bad):
        print(f"{job}: {measured.get(job)} instructions, in the table {expected.get(job)}", file=sys.stderr)
    return not bad


def main():
    program, path = sys.argv[1], pathlib.Path(sys.argv[2])
    measured = counts(program)
    if "--check" in sys.argv[3:]:
        sys.exit(0 if check(measured, read(path)) else "scripts/bench --instructions writes the table again")
    path.write_text("# Instructions of the standard jobs (bench/jobs.h), counted by scripts/bench --instructions\n"
                    + table(measured))
    print(table(measured), end="")


main()
