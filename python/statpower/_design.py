"""Designs: a test with some of its arguments. Each test's class is made from what the catalogue says of it."""

from __future__ import annotations

import json
import math
import sys
import types
from collections.abc import Callable, Mapping
from typing import Any, ClassVar

import numpy as np

from . import _core, _docs, _kernels
from ._catalogue import Argument, Test
from ._errors import NoAnswer, Refused, answered
from ._record import Named, Record

#: What a method takes besides the arguments of its question.
_CONTROLS = ("errors", "out", "where")


def _column(argument: Argument, value: Any) -> Any:
    """The values of an argument as its ufuncs read them: numbers, and of a choice the positions of words."""
    positions = argument.positions
    if positions is not None:
        if isinstance(value, (str, bool, np.bool_)):
            word = bool(value) if isinstance(value, np.bool_) else value
            if word not in positions:
                raise Refused(f"{value!r} is not {argument.rule}", argument.name)
            return float(positions[word])
        if not hasattr(value, "__array_ufunc__"):
            value = np.asarray(value)
        found = np.frompyfunc(positions.get, 1, 1)(value)
        return found.astype(float) if hasattr(found, "astype") else math.nan  # no such word: NaN
    refused = Refused(f"{value!r} is not {argument.rule}" if isinstance(value, (str, bytes, complex))
                      else "is not an array of numbers", argument.name)
    if not hasattr(value, "__array_ufunc__"):
        try:
            value = np.asarray(value)
        except ValueError:  # ragged
            raise refused from None
    if isinstance(value, (np.ndarray, np.generic)) and not np.can_cast(value.dtype, float, "same_kind"):
        try:
            value = np.asarray(value, dtype=float) if value.dtype == object else None
        except (TypeError, ValueError, OverflowError):
            value = None
        if value is None:
            raise refused
    dimensions = getattr(value, "ndim", 0)
    if argument.kind == "list" and dimensions == 0:
        raise Refused(f"is not a list: {argument.rule}", argument.name)
    return value


def _alike(columns: dict[str, Any]) -> dict[str, Any]:
    """Columns of which several are pandas' as columns that all are: its ufuncs align nothing else."""
    pandas = sys.modules.get("pandas")
    if pandas is None:
        return columns
    series = [column for column in columns.values() if isinstance(column, pandas.Series)]
    if len(series) < 2:
        return columns
    return {name: column if isinstance(column, pandas.Series) else pandas.Series(column, index=series[0].index)
            for name, column in columns.items()}


def _counted(test: Test, name: str, column: Any) -> Any:
    """Sizes as whole numbers, unless some design has none."""
    argument = test.found.get(name)
    is_count = name == "total" or (argument is not None and argument.kind == "whole")
    return column.astype(int) if is_count and np.all(np.isfinite(column)) else column


def _is_one(argument: Argument, column: Any) -> bool:
    """Is that one design's value, not several designs'?"""
    return getattr(column, "ndim", 0) == (1 if argument.kind == "list" else 0)


def _in_json(value: Any) -> Any:
    if isinstance(value, np.generic):
        value = value.item()
    elif hasattr(value, "__array__"):
        value = np.asarray(value).tolist()
    if isinstance(value, (list, tuple, range)):
        return [_in_json(element) for element in value]
    if isinstance(value, (bool, str)) or value is None:
        return value
    try:
        number = float(value)
    except (TypeError, ValueError, OverflowError):
        return str(value)
    return number if math.isfinite(number) else str(number)  # JSON has no name for them; the planner refuses these


def _asked(test: Test, question: str, given: Mapping[str, Any], unknown: str = "") -> dict[str, Any]:
    """The planner's record of one design; raises what it refuses."""
    request = {test.arguments[name].word if name in test.arguments else name.replace("_", "-"): _in_json(value)
               for name, value in given.items()}
    if unknown:
        request["solve-for"] = test.arguments[unknown].word if unknown in test.arguments else unknown
    return answered(_core.ask(json.dumps({"test": test.word, "question": question, **request})))


_QUESTIONS = {"power": "power", "size": "size", "halfwidth": "precision", "effect": "effect"}


class Design:
    """A test with some of its arguments given. What is given later is added to them, or replaces them."""

    __slots__ = ("_given",)

    _test: ClassVar[Test]

    def __init__(self, **given: Any) -> None:
        test = self._test
        for name, value in given.items():
            if name not in test.arguments:
                _kernels.answers(test.name, "", (name,))  # raises: what nearly has that name, or which there are
            if value is not None:
                _column(test.arguments[name], value)  # raises what cannot be meant
        self._given = {name: value for name, value in given.items() if value is not None}

    @property
    def given(self) -> dict[str, Any]:
        """The arguments that were given."""
        return dict(self._given)

    def __repr__(self) -> str:
        return f"{type(self).__name__}({', '.join(f'{name}={value!r}' for name, value in self._given.items())})"

    def __eq__(self, other: object) -> bool:
        return (isinstance(other, Design) and type(self) is type(other) and self._given.keys() == other._given.keys()
                and all(np.array_equal(value, other._given[name]) for name, value in self._given.items()))

    __hash__ = None  # type: ignore[assignment]

    def __reduce__(self) -> tuple[Any, ...]:
        return _again, (type(self), self._given)

    @classmethod
    def ufunc(cls, unknown: str, *given: str, answers: tuple[str, ...] | None = None) -> np.ufunc:
        """The NumPy ufunc that answers a question.

        Parameters
        ----------
        unknown : str
            What is found: ``"power"``, ``"size"``, ``"halfwidth"`` or the name of any number argument.
        *given : str
            Names of the arguments that are the ufunc's inputs, in their order. A choice is the position of its
            word there; lists are along the last axis.
        answers : tuple of str, optional
            Names of the outputs; what is found unless given.

        Returns
        -------
        numpy.ufunc
            A row that is refused or has no answer is NaN. It can be pickled.
        """
        if answers is None:
            found = _kernels.answers(cls._test.name, unknown, given)[1]
            answers = found[:-1] or found
        return _kernels.kernel(cls._test.name, unknown, given, answers)[0]

    def _columns(self, unknown: str, values: dict[str, Any], answers: tuple[str, ...] | None,
                 fast: dict[Any, Any] | None = None) -> tuple[tuple[str, ...], tuple[Any, ...]]:
        """What is found for arrays of designs: the names of the answers, and the answers."""
        test = self._test
        controls = {name: values[name] for name in _CONTROLS if values.get(name) is not None}
        errors = controls.pop("errors", None)
        if errors not in (None, "raise", "nan"):
            raise Refused(f"{errors!r} is not 'raise' or 'nan'", "errors")
        given = {name: value for name, value in values.items() if value is not None and name not in _CONTROLS}
        _, found = _kernels.answers(test.name, unknown, tuple(given))
        names = answers or found[:-1] or found
        ufunc, one = _kernels.kernel(test.name, unknown, tuple(given), names)
        columns = {name: _column(test.arguments[name], value) for name, value in given.items()}
        is_one = all(_is_one(test.arguments[name], column) for name, column in columns.items())
        if fast is not None and not controls and errors is None and len(given) == len(values):
            fast[tuple(given)] = one
        try:
            result = ufunc(*_alike(columns).values(), **controls)
        except (TypeError, NotImplementedError):
            if len(names) == 1 or controls:
                raise
            # Arrays of a type that takes no ufuncs of several outputs.
            result = tuple(_kernels.kernel(test.name, unknown, tuple(given), (name,))[0](*columns.values())
                           for name in names)
        results = result if len(names) > 1 else (result,)
        if unknown != "effect" and (errors == "raise" or (is_one and errors is None)):
            self._raise_first(unknown, given, columns, results[0], is_one)
        return names, tuple(float(x) for x in results) if is_one and not controls else results

    def _raise_first(self, unknown: str, given: dict[str, Any], columns: dict[str, Any], result: Any,
                     is_one: bool) -> None:
        """Raises why the first design without an answer has none."""
        missing = np.argwhere(np.isnan(np.asarray(result)))
        if not len(missing):
            return
        test = self._test
        index = tuple(int(i) for i in missing[0])
        if not is_one:
            shape = np.shape(result)
            picked = {}
            for name, value in given.items():
                argument = test.arguments[name]
                several = np.asarray(value)
                core = several.shape[-1:] if argument.kind == "list" else ()
                picked[name] = value if isinstance(value, (str, bool)) else np.broadcast_to(
                    several, shape + core)[index]
            given = picked
        question = _QUESTIONS.get(unknown, "solve")
        if unknown == "size" and "halfwidth" in given:
            question = "precision"
        try:
            _asked(test, question, given, "" if unknown in _QUESTIONS else unknown)
        except Refused as refused:
            if is_one:
                raise refused from None
            where = ", ".join(map(str, index))
            raise type(refused)(f"{refused.reason} (in element {where})", refused.argument) from None

    def _solve(self, unknown: str = "", /, **given: Any) -> Any:
        """See the classes of the tests."""
        values = {**self._given, **given}
        asked = {name: value for name, value in values.items() if value is not None and name not in _CONTROLS}
        test = self._test
        known = all(name in test.arguments for name in asked)
        if known and not all(_is_one(test.arguments[name], _column(test.arguments[name], value))
                             for name, value in asked.items()):
            found = _kernels.answers(test.name, unknown, tuple(asked))[1]
            names, columns = self._columns(unknown, values, found)
            return Named(zip(names, columns))
        return Record(_asked(test, "solve", asked, unknown))

    def _table(self, unknown: str = "", /, **given: Any) -> Any:
        """See the classes of the tests."""
        test = self._test
        values = {name: value for name, value in {**self._given, **given}.items() if value is not None}
        found = _kernels.answers(test.name, unknown, tuple(values))[1]
        over = {}
        for name, value in values.items():
            argument = test.arguments[name]
            column = np.asarray(_column(argument, value))
            if not _is_one(argument, column):
                if column.ndim != (2 if argument.kind == "list" else 1):
                    raise Refused("has more than one dimension; a table makes every combination", name)
                over[name] = len(column)
        rows = np.indices(list(over.values())).reshape(len(over), math.prod(over.values()))
        grid = {name: np.asarray(values[name])[row] for name, row in zip(over, rows)}
        names, columns = self._columns(unknown, {**values, **grid, "errors": "nan"}, found)
        table = {**{name: list(map(tuple, column)) if column.ndim > 1 else column for name, column in grid.items()},
                 **{"reached" if name in grid else name: _counted(test, name, np.atleast_1d(column))
                    for name, column in zip(names, columns)}}
        try:
            import pandas
        except ImportError:
            return table
        return pandas.DataFrame(table)

    def _plot(self, over: Any = None, by: Mapping[str, Any] | None = None, ax: Any = None, **given: Any) -> Any:
        """See the classes of the tests."""
        from ._plot import plot

        return plot(self, over, by, ax, given)


def _again(test: type[Design], given: dict[str, Any]) -> Design:
    design = test.__new__(test)
    design._given = given
    return design


def _answering(test: Test, unknown: str) -> Callable[..., Any]:
    """The method that answers one question of a test."""
    fast: dict[tuple[str, ...], _kernels.One] = {}

    def answer(self: Design, **given: Any) -> Any:
        values = {**self._given, **given} if given else self._given
        one = fast.get(tuple(values))
        if one is not None:
            found = one(*values.values())
            if found is not None:
                return found
        return self._columns(unknown, values, None, fast)[1][0]

    return answer


def _size(self: Design, **given: Any) -> Any:
    names, found = self._columns("size", {**self._given, **given}, None)
    return Named(zip(names, found)) if len(names) > 1 else found[0]


def _effects(self: Design, **given: Any) -> Any:
    values = {**self._given, **given}
    asked = tuple(name for name, value in values.items() if value is not None)
    found = zip(*self._columns("effect", values, _kernels.answers(self._test.name, "effect", asked)[1]))
    return Named({name: effect for name, effect in found if not (isinstance(effect, float) and math.isnan(effect))})


def _own(function: Any) -> Any:
    """A copy of a function, to be described on its own."""
    copy = types.FunctionType(function.__code__, function.__globals__, function.__name__, function.__defaults__,
                              function.__closure__)
    copy.__kwdefaults__ = function.__kwdefaults__
    return copy


def design_class(test: Test) -> type[Design]:
    """The class of a test's designs."""
    methods: dict[str, Callable[..., Any]] = {"power": _answering(test, "power"), "size": _own(_size)}
    if "halfwidth" in test.questions:
        methods["halfwidth"] = _answering(test, "halfwidth")
    if test.effects:
        methods["effects"] = _own(_effects)
    for name in ("solve", "table", "plot", "__init__"):
        methods[name] = _own(getattr(Design, name if name == "__init__" else "_" + name))
    made = type(test.name, (Design,), {"__slots__": (), "__module__": "statpower", "_test": test, **methods})
    _docs.describe(made, test)
    return made
