"""Questions of every test, found from the catalogue: its worked examples, and all that follows from them."""

from __future__ import annotations

from typing import Any

import statpower as sp
from statpower import _docs, _kernels
from statpower._catalogue import Test, tests

EXAMPLES = [(test, example) for test in tests.values() for example in test.examples]


def answer_of(example: dict[str, Any]) -> sp.Record:
    return eval("sp." + _docs.call(example["command"]), {"sp": sp})


def whole_designs() -> list[tuple[Test, dict[str, Any]]]:
    """For each worked example all of its arguments, sizes too, so that any one of them can be left out."""
    found = []
    for test, example in EXAMPLES:
        record = answer_of(example)
        given = {name: value for name, value in record.asked.items()
                 if name not in ("power", "halfwidth", "rule", "dropout", "max_n", "weights")}
        if record.unknown == "size":
            given |= {name: value for name, value in record.answer.items() if name in test.sizes and name != "total"}
            given.pop("ratio", None)
        found.append((test, given))
    return found


def questions() -> list[tuple[Test, str, dict[str, Any]]]:
    """(test, unknown, given) of every question that the worked examples lead to and that has an answer."""
    found = []
    for test, whole in whole_designs():
        measures = {}
        for measure in ("power", "halfwidth"):
            allowed = test.questions.get(measure, {})
            given = {name: value for name, value in whole.items() if name in allowed}
            if "groups" in allowed and "means" in whole and "means" not in allowed:
                given["groups"] = len(whole["means"])
            reached = None
            while allowed and reached is None:
                try:
                    reached = getattr(sp.tests[test.name](**given).solve(measure), measure)
                except sp.Refused as refused:  # an interval needs a standard deviation where the power had d
                    if "is needed" not in refused.reason or refused.argument in given:
                        break
                    given[refused.argument] = 0.5
            if reached is not None:
                measures[measure] = given, reached
                found.append((test, measure, given))
        for measure, (given, reached) in measures.items():
            unsized = {name: value for name, value in given.items() if name not in test.sizes}
            for unknown, rest in [("size", unsized)] + [
                    (name, {other: value for other, value in given.items() if other != name}) for name in given
                    if test.arguments[name].kind in ("number", "whole")]:
                question = {**rest, measure: reached}
                try:
                    sp.tests[test.name](**question).solve(unknown)
                except sp.Refused:  # a whole number that no search finds, a size that is lost in the noise
                    continue
                found.append((test, unknown, question))
    return found


QUESTIONS = questions()


def our_answer(test: Test, unknown: str, given: dict[str, Any]) -> float:
    """The first number that a question finds, by the method that people call."""
    design = sp.tests[test.name](**given)
    found = getattr(design, unknown)() if unknown in ("power", "halfwidth", "size") else design.solve(unknown)
    if isinstance(found, (dict, sp.Record)):
        return float(getattr(found, _kernels.answers(test.name, unknown, tuple(given))[1][0]))
    return float(found)


def name_of(question: tuple[Test, str, dict[str, Any]]) -> str:
    test, unknown, given = question
    return f"{test.name}-{unknown}-of-{'-'.join(given)}"
