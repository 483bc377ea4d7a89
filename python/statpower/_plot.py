"""Figures: a measure over one argument, a line for each combination of others."""

from __future__ import annotations

import itertools
from collections.abc import Iterable, Mapping
from typing import TYPE_CHECKING, Any

import numpy as np

from ._catalogue import Argument, Test
from ._errors import Refused

if TYPE_CHECKING:
    from ._design import Design

# Okabe and Ito's colours, which people with any colour vision tell apart; lines differ in their dashes, too.
_COLOURS = ("#0072B2", "#D55E00", "#009E73", "#CC79A7", "#56B4E9", "#E69F00", "#000000")
_DASHES = ("-", "--", "-.", ":", (0, (5, 1, 1, 1, 1, 1)))
_POINTS = 1000  # every size up to that, or the jumps of exact powers are lost


def _label(argument: Argument) -> str:
    return argument.meaning.split(";")[0] + (f" ({argument.unit})" if argument.unit else "")


def _range(design: Design, test: Test, over: str, lines: list[dict[str, Any]], measure: str,
           target: float | None) -> Any:
    """Values of `over` that show where the targets are reached."""
    argument = test.arguments.get(over)
    if argument is None:
        raise Refused(f"{test.name} has no such argument", over)
    if over not in test.sizes:
        raise Refused("needs its values, for example " + repr({over: [1, 2, 3]}), "over")
    largest = 0.0
    for line in lines:
        goal = {measure: target} if target is not None else {}
        try:
            largest = max(largest, getattr(design._solve(over, **goal, **line), over))
        except Refused:
            continue
    largest = max(4.0, 1.3 * largest) if largest else 200.0
    largest = np.ceil(largest)
    return np.unique(np.linspace(2, largest, min(_POINTS, int(largest) - 1)).round())


def plot(design: Design, over: Any, by: Mapping[str, Any] | None, ax: Any, given: dict[str, Any]) -> Any:
    """Draws a design's power, or its half-width where targets of it are given."""
    import matplotlib.pyplot as plt

    test = design._test
    measure = "halfwidth" if given.get("halfwidth") is not None else "power"
    targets = given.pop(measure, None)
    targets = [] if targets is None else list(targets) if isinstance(targets, Iterable) else [targets]
    several = dict(by or {})
    lines = [dict(zip(several, values)) for values in itertools.product(*several.values())]
    if over is None:
        over = next(iter(test.sizes))
    if isinstance(over, Mapping):
        (name, values), = over.items()
    else:
        name = over
        goal = (max(targets) if measure == "power" else min(targets)) if targets else None
        fixed = {key: value for key, value in {**design.given, **given}.items() if key != name}
        values = _range(type(design)(**fixed), test, name, lines, measure, goal)
    values = np.asarray(values, dtype=float)

    if ax is None:
        ax = plt.figure(layout="constrained").add_subplot()
    for i, line in enumerate(lines):
        answers = getattr(design, measure)(**{**given, **line, name: values})
        label = ", ".join(f"{key} = {value:g}" if isinstance(value, (int, float)) else f"{key} = {value}"
                          for key, value in line.items())
        ax.plot(values, answers, color=_COLOURS[i % len(_COLOURS)], linestyle=_DASHES[i % len(_DASHES)],
                label=label or None)
    for target in targets:
        ax.axhline(target, color="0.45", linewidth=0.8, linestyle=(0, (1, 2)))
        ax.annotate(f"{target:g}", (1, target), xycoords=("axes fraction", "data"), xytext=(-3, 2),
                    textcoords="offset points", ha="right", va="bottom", fontsize="small", color="0.35")
    ax.set_xlabel(_label(test.arguments[name]))
    ax.set_ylabel("Power" if measure == "power" else "Half-width of the interval")
    ax.set_title(test.title)
    ax.set_xlim(values.min(), values.max())
    ax.set_ylim(0, 1.02 if measure == "power" else None)
    ax.grid(alpha=0.25)
    if several:
        ax.legend(frameon=False)
    return ax
