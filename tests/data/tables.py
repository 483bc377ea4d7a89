"""Writes the tables of this folder: comma-separated, one heading line, lists in the last column."""

import csv


def write_table(path, heading, rows):
    with open(path, "w", newline="") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(heading)
        writer.writerows(rows)


def joined(*lists):
    """Lists of numbers as one cell: separated by semicolons, their numbers by spaces."""
    return ";".join(" ".join(repr(float(v)) for v in values) for values in lists)
