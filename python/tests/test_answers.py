"""Every test and question of the catalogue, asked in each way, has the same answer to the last bit."""

from __future__ import annotations

import json
import math
from typing import Any

import c_library
import numpy as np
import pytest
from questions import EXAMPLES, QUESTIONS, answer_of, name_of, our_answer

import statpower as sp
from statpower import _catalogue, _core, _kernels
from statpower._catalogue import tests
from statpower._design import _column


@pytest.mark.parametrize("test, example", EXAMPLES, ids=lambda value: getattr(value, "name", None) or value["command"])
def test_each_worked_example_has_its_published_answer(test: _catalogue.Test, example: dict[str, Any]) -> None:
    found = getattr(answer_of(example), example["answer"].replace("-", "_"))
    first = found[0] if isinstance(found, list) else found
    assert first == pytest.approx(example["value"], abs=example["tolerance"] + 1e-12, rel=0)


def test_each_test_has_a_worked_example_and_questions() -> None:
    assert {test.name for test, _ in EXAMPLES} == set(sp.tests)
    assert {test.name for test, _, _ in QUESTIONS} == set(sp.tests)
    for test in tests.values():
        asked = {unknown for other, unknown, _ in QUESTIONS if other is test}
        assert {"power", "size"} <= asked
        assert ("halfwidth" in asked) == ("halfwidth" in test.questions)


def _number(value: Any) -> float:
    return math.nan if value is None else float(value)


@pytest.mark.parametrize("question", QUESTIONS, ids=name_of)
def test_arrays_plain_numbers_and_records_have_equal_answers(question: tuple[_catalogue.Test, str, dict[str, Any]]) -> None:
    test, unknown, given = question
    names = _kernels.answers(test.name, unknown, tuple(given))[1]
    record = sp.tests[test.name](**given).solve(unknown)
    expected = [getattr(record, name) for name in names]

    ufunc, one = _kernels.kernel(test.name, unknown, tuple(given), names)
    columns = [np.stack([np.asarray(_column(test.arguments[name], value))] * 3) for name, value in given.items()]
    found = ufunc(*columns)
    for column, value in zip(found if len(names) > 1 else (found,), expected):
        assert column.tolist() == [value] * 3

    plain = one(*given.values())
    if not any(test.arguments[name].kind == "list" for name in given):
        assert (plain if len(names) > 1 else (plain,)) == tuple(expected)
    else:
        assert plain is None  # lists are the ufunc's


@pytest.mark.skipif(not c_library.IS_THERE, reason="needs the planner as a shared library")
@pytest.mark.parametrize("question", QUESTIONS, ids=name_of)
def test_answers_equal_those_of_the_c_library(question: tuple[_catalogue.Test, str, dict[str, Any]]) -> None:
    test, unknown, given = question
    expected = c_library.answer(test, unknown, given)
    assert our_answer(test, unknown, given) == expected


def test_the_planners_json_is_what_a_record_says() -> None:
    test, unknown, given = next(question for question in QUESTIONS if question[1] == "power")
    request = {"test": test.word, "question": "power", **{name.replace("_", "-"): v for name, v in given.items()}}
    answer = json.loads(_core.ask(json.dumps(request)))
    record = sp.tests[test.name](**given).solve(unknown)
    assert record.power == answer["answer"]["power"]
    assert record.report() == answer["report"]
    assert record.to_dict()["version"] == sp.__version__
