"""Figures say what they show."""

from __future__ import annotations

import numpy as np
import pytest

import statpower as sp

pytest.importorskip("matplotlib").use("agg")


def test_a_line_for_each_combination_with_targets_and_labels() -> None:
    axes = sp.t_two(sd=12).plot(over="n", by={"diff": [3, 5, 8]}, power=[0.8, 0.9])
    lines = axes.get_lines()
    assert [line.get_label() for line in lines[:3]] == ["diff = 3", "diff = 5", "diff = 8"]
    assert len({line.get_color() for line in lines[:3]}) == len({line.get_linestyle() for line in lines[:3]}) == 3
    assert [line.get_ydata()[0] for line in lines[3:]] == [0.8, 0.9]
    assert axes.get_xlabel() == "Size of each group (observations)" and axes.get_ylabel() == "Power"
    n, power = lines[1].get_data()
    assert np.array_equal(power, sp.t_two(sd=12, diff=5).power(n=n), equal_nan=True)
    assert n.max() > sp.t_two(sd=12, diff=3).size(power=0.9).n1  # the range shows where every target is reached


def test_every_size_of_an_exact_test_is_drawn() -> None:
    n, power = sp.prop_one(p1=0.6, p0=0.5, method="exact").plot(power=0.8).get_lines()[0].get_data()
    assert np.array_equal(n, np.arange(2, n[-1] + 1)) and n[-1] > 200
    assert np.any(np.diff(power) < 0)


def test_any_argument_along_the_axis_and_half_widths() -> None:
    axes = sp.t_one(n=30).plot(over={"d": np.linspace(0, 1, 11)})
    assert axes.get_lines()[0].get_ydata()[0] == pytest.approx(0.05)
    axes = sp.t_one(sd=2).plot(over="n", halfwidth=0.5)
    assert axes.get_ylabel().startswith("Half-width")
    with pytest.raises(sp.Refused, match="^over: needs its values"):
        sp.t_one(n=30).plot(over="d")


@pytest.mark.parametrize("name", list(sp.tests))
def test_every_test_draws(name: str) -> None:
    from questions import QUESTIONS

    given = next(given for test, unknown, given in QUESTIONS if test.name == name and unknown == "size")
    axes = sp.tests[name](**{key: value for key, value in given.items() if key != "power"}).plot(power=given["power"])
    assert np.nanmax(axes.get_lines()[0].get_ydata()) >= given["power"]
