"""Signatures and docstrings from the catalogue, in numpydoc's form."""

from __future__ import annotations

import inspect
import re
import shlex
import textwrap
from collections.abc import Callable
from typing import Any

from ._catalogue import Argument, Arguments, Test, in_python, spelled

_WIDTH = 100

#: What each method is for, and what it returns.
_METHODS = {
    "power": ("Power of a design.",
              "float or array\n    Probability that the test rejects the null hypothesis. Arrays broadcast."),
    "size": ("Sample sizes that reach a power, or the half-width of an interval.",
             "float or array, or a dict of them\n    The least sizes that reach the target by `rule`: {sizes}."),
    "halfwidth": ("Half-width of the confidence interval of a design.",
                  "float or array\n    Half the length of the interval, in the units of the estimate."),
    "effects": ("Standardised effects of a design.", "dict\n    Those that the design has. {effects}."),
    "solve": ("Finds what is left out: sizes, the power, or any other number.",
              "Record\n    The answer with all that was asked; of arrays, a dict of arrays by the answers' names."),
    "table": ("Every combination of several values.",
              "pandas.DataFrame\n    A row for each design, NaN where it has no answer; without pandas a dict of "
              "arrays."),
    "plot": ("Draws how the power varies, or the half-width where it is asked for.",
             "matplotlib.axes.Axes\n    With labelled axes, a line for each combination of `by`, and the targets."),
}

_UNKNOWN = ("unknown : str, optional\n    Name of what is found. The number that is left out unless given: sizes where "
            "none are given,\n    else the missing effect where a power is given, else the power.")
_PLOT = ("over : str or dict, optional\n    The argument along the horizontal axis, and its values: "
         "``\"{size}\"`` or\n    ``{{\"{size}\": range(10, 200)}}``. Values of a size are chosen unless given.\n"
         "by : dict, optional\n    Arguments with several values each: a line for every combination.\n"
         "ax : matplotlib.axes.Axes, optional\n    Where to draw; a new figure unless given.")
_CONTROLS = ("errors : {'raise', 'nan'}, optional\n    What a design without an answer does: raise, or be NaN. One "
             "design raises and arrays have NaN\n    unless given.\n"
             "out, where : optional\n    As in every ufunc of NumPy.")
_RAISES = ("Refused\n    An argument is wrong, missing or one too many; the message names it.\n"
           "NoAnswer\n    There is none, and why.")


def _type_of(argument: Argument) -> str:
    if argument.kind == "choice":
        return "{" + ", ".join(repr(word) for word in argument.choices) + "} or array"
    return {"list": "list, or array with the list along the last axis",
            "whole": "int or array"}.get(argument.kind, "float or array")


def _sentence(text: str, names: Arguments | None = None) -> str:
    """A sentence of the planner; an argument's name at its head stays as it is spelled."""
    head = re.split(r"[^a-z0-9-]", text)[0]
    starts = text if spelled(head) in (names or ()) else text[:1].upper() + text[1:]
    return in_python(starts).rstrip(".") + "."


def parameter(argument: Argument) -> str:
    """An argument as numpydoc describes it: unit, range and default."""
    head = f"{argument.name} : {_type_of(argument)}"
    if argument.default is not None:
        head += f", default {argument.default!r}"
    about = _sentence(argument.meaning)
    if argument.kind != "choice":
        about += " " + _sentence(argument.rule)
        if argument.unit:
            about += f" Unit: {argument.unit}."
    for only in argument.only:
        about += f" Has an effect only with {spelled(only['argument'])} {' or '.join(only['choices'])}."
    return head + "\n" + textwrap.fill(about, _WIDTH - 4, initial_indent="    ", subsequent_indent="    ")


def _section(title: str, text: str) -> str:
    return f"{title}\n{'-' * len(title)}\n{text}\n" if text else ""


def _examples(test: Test) -> str:
    lines = []
    for example in test.examples:
        lines.append("\n".join([textwrap.fill(example["study"] + ":", _WIDTH), "",
                                f">>> statpower.{call(example['command'])}.{spelled(example['answer'])}",
                                f"{example['value']:g}"]))
    return "\n\n".join(lines)


def call(command: str) -> str:
    """A worked example of the command as Python: ``t-one size --d 0.5`` is ``t_one(d=0.5).solve()``."""
    test, question, *words = shlex.split(command)
    given, unknown = [], {"power": "'power'", "size": "'size'", "effect": "'effect'"}.get(question, "")
    for option, text in zip(words[::2], words[1::2]):
        if option == "--solve-for":
            unknown = repr(spelled(text))
            continue
        values = text.split(",")
        shown = [value if _is_number(value) else repr(value) for value in values]
        given.append(f"{spelled(option[2:])}={shown[0] if len(values) == 1 else '[' + ', '.join(shown) + ']'}")
    if question == "precision" and not any(option == "--halfwidth" for option in words[::2]):
        unknown = "'halfwidth'"
    return f"{spelled(test)}({', '.join(given)}).solve({unknown})"


def _is_number(text: str) -> bool:
    try:
        float(text)
    except ValueError:
        return False
    return True


def method_doc(test: Test, name: str, arguments: Arguments) -> str:
    about, returned = _METHODS[name]
    size = next(iter(test.sizes))
    parameters = [parameter(argument) for argument in arguments.values()]
    if name in ("solve", "table"):
        parameters.insert(0, _UNKNOWN)
    if name == "plot":
        parameters.insert(0, _PLOT.format(size=size))
    if name in ("power", "size", "halfwidth", "solve"):
        parameters.append(_CONTROLS)
    found = ", ".join("total" if argument.kind == "list" else name for name, argument in test.found.items())
    effects = "; ".join(f"`{effect.name}`: {effect.meaning}" for effect in test.effects.values())
    return "\n".join(part for part in [
        about, "",
        f"{test.title}. What the design was given need not be given again.", "",
        _section("Parameters", "\n".join(parameters)),
        _section("Returns", returned.format(sizes=found, effects=effects)),
        _section("Raises", _RAISES)] if part is not None)


def class_doc(test: Test) -> str:
    notes = "\n\n".join(textwrap.fill(_sentence(note, test.arguments), _WIDTH) for note in (*test.notes, test.size_note) if note)
    references = "\n".join(f".. [{i}] {source}" for i, source in enumerate(test.sources, 1))
    return "\n".join([
        f"{test.title}: a design of this test.", "", textwrap.fill(test.study, _WIDTH), "",
        "Numbers may be arrays, which broadcast; what is not given has its default or is found.", "",
        _section("Parameters", "\n".join(parameter(argument) for argument in test.arguments.values())),
        _section("Notes", notes), _section("References", references), _section("Examples", _examples(test))])


def signature(arguments: Arguments, name: str) -> inspect.Signature:
    keyword, positional = inspect.Parameter.KEYWORD_ONLY, inspect.Parameter.POSITIONAL_ONLY
    parameters = [inspect.Parameter("self", positional if name in ("solve", "table")
                                    else inspect.Parameter.POSITIONAL_OR_KEYWORD)]
    if name in ("solve", "table"):
        parameters.append(inspect.Parameter("unknown", positional, default=""))
    if name == "plot":
        parameters += [inspect.Parameter(extra, inspect.Parameter.POSITIONAL_OR_KEYWORD, default=None)
                       for extra in ("over", "by", "ax")]
    parameters += [inspect.Parameter(argument.name, keyword, default=argument.default)
                   for argument in arguments.values()]
    if name in ("power", "size", "halfwidth", "solve"):
        parameters += [inspect.Parameter(extra, keyword, default=None) for extra in ("errors", "out", "where")]
    return inspect.Signature(parameters)


def methods(test: Test) -> dict[str, Arguments]:
    """The arguments of each method that asks a question."""
    found = {name: test.questions[name] for name in ("power", "size", "halfwidth") if name in test.questions}
    if test.effects:
        found["effects"] = test.questions["effect"]
    return found | {name: test.arguments for name in ("solve", "table", "plot")}


def describe(made: Any, test: Test) -> None:
    """Gives a test's class and its methods their signatures and docstrings."""
    made.__doc__ = class_doc(test)
    made.__init__.__signature__ = signature(test.arguments, "__init__")
    made.__init__.__doc__, made.__init__.__qualname__ = None, f"{made.__name__}.__init__"
    for name, arguments in methods(test).items():
        function: Callable[..., Any] = made.__dict__[name]
        function.__name__, function.__qualname__ = name, f"{made.__name__}.{name}"
        function.__doc__ = method_doc(test, name, arguments)
        function.__signature__ = signature(arguments, name)  # type: ignore[attr-defined]
