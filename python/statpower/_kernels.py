"""NumPy ufuncs of the planner: one for each test, unknown and choice of arguments, made when it is first asked for.

A ufunc's name says which it is, ``t_one__power__of__n__d``, so that it can be pickled by name and found again in
another process.
"""

from __future__ import annotations

import json
from collections.abc import Callable
from typing import Any

import numpy as np

from . import _core
from ._catalogue import spelled, tests
from ._errors import refuse

#: One design of plain numbers and words: a float, a tuple of floats, or None where they are not plain.
One = Callable[..., Any]

_SEARCHED = "found"  # an unknown that is whatever is left out


def _made(test: str, unknown: str, given: tuple[str, ...], answers: tuple[str, ...], name: str) -> tuple[np.ufunc, One]:
    described = tests[test]
    arguments = described.arguments

    def word(argument: str) -> str:
        known = arguments.get(argument) or described.effects.get(argument)
        return known.word if known else argument.replace("_", "-")

    lists = [argument in arguments and arguments[argument].kind == "list" for argument in given + answers]
    words = tuple(arguments[argument].positions if argument in arguments else None for argument in given)
    signature = ""
    if any(lists):
        cores = ["(k)" if is_list else "()" for is_list in lists]
        signature = ",".join(cores[:len(given)]) + "->" + ",".join(cores[len(given):])
    about = f"{described.title}: {', '.join(answers)} of {', '.join(given)}. A choice is the position of its word."
    try:
        return _core.kernel(described.word, word(unknown) if unknown else "", tuple(map(word, given)),
                            tuple(map(word, answers)), words, tuple(lists), name, signature, about)
    except ValueError as refused:
        if type(refused) is not ValueError or not str(refused).startswith("{"):
            raise
        refuse(json.loads(str(refused))["refusal"])


_ones: dict[str, One] = {}


def kernel(test: str, unknown: str, given: tuple[str, ...], answers: tuple[str, ...]) -> tuple[np.ufunc, One]:
    """The ufunc of a question, and the same for plain numbers.

    Parameters
    ----------
    test : str
        Name of a test.
    unknown : str
        What is found: power, size, halfwidth, effect or an argument; empty for the number that is left out.
    given, answers : tuple of str
        Names of the ufunc's inputs and outputs, in this order.
    """
    name = "__".join((test, unknown or _SEARCHED, "of", *given))
    if answers != (unknown,):
        name = "__".join((name, "to", *answers))
    if name not in _ones:
        made, _ones[name] = _made(test, unknown, given, answers, name)
        globals()[name] = made
    return globals()[name], _ones[name]


def __getattr__(name: str) -> np.ufunc:
    """Makes the ufunc that a name of `kernel` says: pickles of another process hold names."""
    head, of, rest = name.partition("__of__")
    test, _, unknown = head.partition("__")
    if not of or test not in tests:
        raise AttributeError(f"module {__name__!r} has no attribute {name!r}")
    given, _, answers = rest.partition("__to__")
    found = tuple(answers.split("__")) if answers else (unknown,)
    return kernel(test, "" if unknown == _SEARCHED else unknown, tuple(given.split("__")), found)[0]


def answers(test: str, unknown: str, given: tuple[str, ...]) -> tuple[str, tuple[str, ...]]:
    """Which question that is, and the names of what it finds.

    Raises
    ------
    Refused
        The arguments do not fit together.
    """
    described = tests[test]
    words = tuple(described.arguments[name].word if name in described.arguments else name.replace("_", "-")
                  for name in given)
    known = described.arguments.get(unknown)
    found = json.loads(_core.answers(described.word, known.word if known else unknown, words))
    if "refusal" in found:
        refuse(found["refusal"])
    return found["question"], tuple(spelled(word) for word in found["answers"])
