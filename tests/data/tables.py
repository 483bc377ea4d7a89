"""Writes the tables of this folder: comma-separated, one heading line, lists in the last column."""

import csv

from mpmath import mpf


def write_table(path, heading, rows):
    """heading: a list of names, or one text that holds them. Numbers of mpmath are rounded to doubles."""
    with open(path, "w", newline="") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(heading.split() if isinstance(heading, str) else heading)
        writer.writerows([float(v) if isinstance(v, mpf) else v for v in row] for row in rows)


def joined(*lists):
    """Lists of numbers as one cell: separated by semicolons, their numbers by spaces."""
    return ";".join(" ".join(repr(float(v)) for v in values) for values in lists)
