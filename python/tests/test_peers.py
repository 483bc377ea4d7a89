"""Answers beside those of statsmodels and scipy (peers.py). As a program it prints a table of the differences."""

from __future__ import annotations

import itertools
from collections.abc import Iterator
from typing import Any

import c_library
import numpy as np
import pytest
from questions import QUESTIONS, name_of, our_answer

import statpower as sp
from statpower import _catalogue
from statpower._catalogue import tests

peers = pytest.importorskip("peers", reason="needs statsmodels and scipy")

Question = tuple[_catalogue.Test, str, dict[str, Any]]


def with_every_choice(question: Question) -> Iterator[Question]:
    """A power or half-width with each combination of the choices that it has."""
    test, measure, given = question
    choices = {name: argument.choices for name, argument in test.questions[measure].items() if argument.choices}
    for words in itertools.product(*choices.values()):
        chosen = {**given, **dict(zip(choices, words))}
        try:
            getattr(sp.tests[test.name](**chosen), measure)()
        except sp.Refused:  # what does not go together
            continue
        yield test, measure, chosen


MEASURED = [question for asked in QUESTIONS if asked[1] in ("power", "halfwidth") for question in with_every_choice(asked)]
SOLVED = [question for question in QUESTIONS if question[1] not in ("power", "halfwidth")]


def reached(question: Question) -> tuple[str, dict[str, Any], float]:
    """The measure of a question, the whole design with what was found, and the measure's value there."""
    test, unknown, given = question
    if unknown in ("power", "halfwidth"):
        return unknown, given, getattr(sp.tests[test.name](**given), unknown)()
    measure = "halfwidth" if "halfwidth" in given else "power"
    answer = sp.tests[test.name](**given).solve(unknown).answer
    allowed = test.questions[measure]
    found = {name: value for name, value in answer.items() if name in allowed and name not in (measure, "total")}
    whole = {**{name: value for name, value in given.items() if name in allowed and name != measure}, **found}
    return measure, whole, answer.get(measure, given[measure])


def tolerance(question: Question) -> float:
    test, measure = question[0].name, reached(question)[0]
    critical = measure == "power" and test in ("t_one", "t_paired", "t_two") and not peers.T_OF_SCIPY_IS_PRECISE
    return 1e-8 if critical else 1e-9


@pytest.mark.parametrize("question", MEASURED + SOLVED, ids=name_of)
def test_a_peer_finds_the_same_power_or_halfwidth(question: Question) -> None:
    measure, whole, ours = reached(question)
    try:
        theirs = peers.said_by_a_peer(question[0].name, measure, whole)
    except NotImplementedError:
        pytest.skip("no peer has it")
    assert theirs == pytest.approx(ours, abs=tolerance(question), rel=0)


@pytest.mark.parametrize("question", [question for question in SOLVED if question[1] == "size"], ids=name_of)
def test_by_a_peer_no_smaller_size_reaches_the_target(question: Question) -> None:
    test, _, given = question
    measure, whole, _ = reached(question)
    less = {name: [n - 1 for n in value] if name == "sizes" else value - 1 if name in ("n", "n1", "n2") else value
            for name, value in whole.items()}
    try:
        theirs = peers.said_by_a_peer(test.name, measure, less)
    except NotImplementedError:
        pytest.skip("no peer has it")
    assert theirs > given[measure] if measure == "halfwidth" else theirs < given[measure]


def table() -> Iterator[str]:
    """A line for each test and kind of question."""
    kinds = {"power": "power", "halfwidth": "half-width", "size": "size"}
    rows: dict[tuple[str, str], list[Question]] = {}
    for question in MEASURED + SOLVED:
        rows.setdefault((question[0].name, kinds.get(question[1], "any other")), []).append(question)
    yield f"{'test':12} {'question':11} {'asked':>5} {'= C library':>11} {'by a peer':>9} {'largest difference':>18}  peer"
    for (test, kind), asked in sorted(rows.items(), key=lambda row: list(tests).index(row[0][0])):
        same = sum(c_library.answer(*question) == our_answer(*question) for question in asked) if c_library.IS_THERE else "-"
        differences = []
        for question in asked:
            measure, whole, ours = reached(question)
            try:
                differences.append(abs(peers.said_by_a_peer(test, measure, whole) - ours))
            except NotImplementedError:
                pass
        largest = f"{np.max(differences):.1e}" if differences else "-"
        yield (f"{test:12} {kind:11} {len(asked):5} {same:>11} {len(differences):9} {largest:>18}  "
               f"{peers.PEERS[test][2] if differences else '-'}")


if __name__ == "__main__":
    print("\n".join(table()))
