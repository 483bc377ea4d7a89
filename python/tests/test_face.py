"""What a person meets: arrays, refusals, records, tables, help. One mean stands for all tests."""

from __future__ import annotations

import inspect
import pickle
import pydoc
import subprocess
import sys

import numpy as np
import pytest
from questions import EXAMPLES, answer_of

import statpower as sp
from statpower._catalogue import tests


def test_arrays_broadcast() -> None:
    power = sp.t_one(sd=12).power(n=np.arange(20, 200)[:, None], mean=[3, 5, 8])
    assert power.shape == (180, 3)
    assert power[10, 1] == sp.t_one(sd=12).power(n=30, mean=5)


def test_out_and_where_are_those_of_every_ufunc() -> None:
    out = np.full(3, -1.0)
    found = sp.t_one(d=0.5).power(n=np.array([20, 30, 40]), out=out, where=np.array([True, False, True]))
    assert found is out
    assert out.tolist() == [sp.t_one(d=0.5).power(n=20), -1, sp.t_one(d=0.5).power(n=40)]


def test_any_strides_and_number_types_are_read() -> None:
    n = np.arange(10, 40, dtype=np.int16)
    whole = sp.t_one(d=0.5).power(n=n)
    assert np.array_equal(sp.t_one(d=0.5).power(n=n[::-3]), whole[::-3])
    assert np.array_equal(sp.t_one(d=0.5).power(n=n.astype(">f8")), whole)
    assert np.array_equal(sp.t_one(d=0.5).power(n=range(10, 40)), whole)


def test_words_of_choices_come_in_arrays_too() -> None:
    found = sp.t_one(d=0.5, n=20).power(alternative=["two-sided", "one-sided", "no such word"])
    assert found[:2].tolist() == [sp.t_one(d=0.5, n=20).power(),
                                  sp.t_one(d=0.5, n=20).power(alternative="one-sided")]
    assert np.isnan(found[2])


def test_a_bad_element_is_nan_or_refused_with_its_place() -> None:
    design = sp.t_one(d=0.5)
    assert np.isnan(design.power(n=[20, -1, 30])).tolist() == [False, True, False]
    with pytest.raises(sp.Refused, match="^n: -1 is not .*in element 1") as refused:
        design.power(n=[20, -1, 30], errors="raise")
    assert refused.value.argument == "n"


@pytest.mark.parametrize("given, argument", [
    ({"n": 20, "d": "large"}, "d"), ({"n": -1, "d": 0.5}, "n"), ({"n": 20.5, "d": 0.5}, "n"),
    ({"n": float("nan"), "d": 0.5}, "n"), ({"n": float("inf"), "d": 0.5}, "n"), ({"n": 10**400, "d": 0.5}, "n"),
    ({"n": 20, "d": 1j}, "d"), ({"n": 20, "d": None}, "d"), ({"n": 20, "d": 0.5, "sd": 2}, "d"),
    ({"n": 20, "d": 0.5, "alternative": "lower"}, "alternative"), ({"n": 20, "d": 0.5, "alfa": 0.1}, "alfa"),
    ({"n": 20, "d": 0.5, "alpha": 2}, "alpha"), ({"n": [[1], [2, 3]], "d": 0.5}, "n"),
    ({"n": 20, "d": 0.5, "errors": "maybe"}, "errors")])
def test_what_cannot_be_meant_is_refused_by_the_arguments_name(given: dict[str, object], argument: str) -> None:
    for _ in range(2):  # the second time by the shorter way of plain numbers
        with pytest.raises(sp.Refused) as refused:
            sp.t_one().power(**given)
        assert refused.value.argument == argument
        assert str(refused.value).startswith(argument + ": ")
    assert isinstance(refused.value, ValueError)


def test_an_argument_that_there_is_not_gets_the_nearest_name_or_all_of_them() -> None:
    with pytest.raises(sp.Refused, match="t_one has no such argument; did you mean alpha?"):
        sp.t_one(alhpa=0.1)
    for name in ("effect_size", "size"):
        with pytest.raises(sp.Refused, match="no such argument; it has mean, sd, null, d, n, "):
            sp.t_one(**{name: 0.5})
    with pytest.raises(TypeError, match=r"t_one\.__init__\(\)"):
        sp.t_one(0.5)  # type: ignore[call-arg]


def test_no_answer_says_why() -> None:
    with pytest.raises(sp.NoAnswer, match="no effect"):
        sp.t_one(d=0).solve()
    with pytest.raises(sp.NoAnswer, match="no effect"):
        sp.t_one(d=0).size()


def test_what_is_left_out_is_found() -> None:
    record = sp.t_one(d=0.5).solve(power=0.9)
    assert (record.unknown, record.n, record.guaranteed.n) == ("size", 44, 44)
    mean = sp.t_one(sd=12).solve(n=60, power=0.8).mean
    assert sp.t_one(sd=12, mean=mean).power(n=60) == pytest.approx(0.8, abs=1e-12)
    alpha = sp.t_one(d=0.5).solve("alpha", n=30, power=0.8).alpha
    assert sp.t_one(d=0.5, alpha=alpha).power(n=30) == pytest.approx(0.8, abs=1e-12)
    assert sp.t_one(sd=2).solve(halfwidth=0.5).n == sp.t_one(sd=2).size(halfwidth=0.5) == 64


def test_a_record_prints_converts_and_reports() -> None:
    record = sp.t_one(d=0.5).solve(power=0.9)
    assert "44" in repr(record) and "0.900031" in repr(record)
    assert "<table>" in record._repr_html_()
    assert record.report().startswith("With 44 observations")
    assert record.to_dict()["answer"] == {"n": 44, "power": record.power}
    assert record.sources and "Cohen" in record.sources[0]
    assert "n" in dir(record)
    with pytest.raises(AttributeError, match="no m;"):
        record.m


def test_a_record_prints_the_guaranteed_size_where_it_is_another() -> None:
    assert "guaranteed" not in repr(sp.t_one(d=0.5).solve())
    exact = sp.prop_one(p1=0.95, p0=0.9, method="exact", alternative="one-sided", alpha=0.025).solve(power=0.9)
    assert exact.guaranteed.n > exact.n
    assert f"guaranteed  n = {exact.guaranteed.n}" in repr(exact)


def test_arrays_solve_for_a_dict_of_arrays() -> None:
    found = sp.t_one(d=[0.3, 0.5]).solve(power=0.9)
    assert found.n.tolist() == [sp.t_one(d=0.3).size(power=0.9), 44]


def test_a_table_has_every_combination() -> None:
    table = sp.t_one(d=0.5).table(n=range(20, 50, 10), alternative=["two-sided", "greater"])
    assert list(table) == ["n", "alternative", "power"]
    assert len(table["n"]) == 6
    assert table["power"][3] == sp.t_one(d=0.5).power(n=30, alternative="greater")
    assert list(table["alternative"][:2]) == ["two-sided", "greater"]


def test_sizes_of_a_table_are_whole_numbers_where_all_are_found() -> None:
    assert list(map(str, sp.t_one(d=[0.3, 0.5]).table()["n"])) == ["90", "34"]
    assert list(map(str, sp.t_one(d=[0.0, 0.5]).table()["n"])) == ["nan", "34.0"]
    assert list(map(str, sp.anova(f=[0.25], groups=4).table()["total"])) == ["180"]


def test_a_table_of_one_design_has_one_row() -> None:
    table = sp.t_one(d=0.5).table(n=20)
    assert list(table) == ["power"]
    assert table["power"].tolist() == [sp.t_one(d=0.5).power(n=20)]


def test_effects_are_those_that_a_record_has() -> None:
    for _, example in EXAMPLES:
        record = answer_of(example)
        if record.question == "power":
            allowed = tests[record.test].questions["effect"]
            given = {name: value for name, value in record.asked.items() if name in allowed}
            assert sp.tests[record.test](**given).effects() == record.effects


def test_every_test_has_help_with_all_of_its_arguments() -> None:
    assert set(sp.tests) <= set(dir(sp))
    for test in tests.values():
        made = sp.tests[test.name]
        text = pydoc.render_doc(made, renderer=pydoc.plaintext)
        assert test.title in text
        for argument in test.arguments.values():
            assert f"{argument.name} : " in text
            assert argument.name in inspect.signature(made).parameters
        for name in test.questions["power"]:
            assert name in inspect.signature(made.power).parameters


def test_sentences_of_the_help_keep_the_spelling_of_arguments() -> None:
    assert "\nn is the number in each group." in (sp.t_two.__doc__ or "")
    assert "by `rule`: n1, n2." in (sp.t_two.size.__doc__ or "")
    assert "by `rule`: total." in (sp.anova.size.__doc__ or "")


def test_designs_records_and_ufuncs_can_be_pickled() -> None:
    for _, example in EXAMPLES:
        record = answer_of(example)
        assert pickle.loads(pickle.dumps(record)) == record
    design = sp.t_one(d=np.array([0.3, 0.5]))
    assert pickle.loads(pickle.dumps(design)) == design
    ufunc = sp.t_one.ufunc("power", "n", "d")
    assert pickle.loads(pickle.dumps(ufunc)) is ufunc
    program = "import pickle, sys; print(pickle.load(sys.stdin.buffer)(20, 0.5))"
    elsewhere = subprocess.run([sys.executable, "-c", program], input=pickle.dumps(ufunc), capture_output=True,
                               check=True)
    assert float(elsewhere.stdout) == sp.t_one(d=0.5).power(n=20)
