"""The planner's catalogue: what there is to ask, from the description that every door is made from."""

from __future__ import annotations

import json
import keyword
import re
from dataclasses import dataclass, field
from typing import Any

from . import _core


def spelled(word: str) -> str:
    """A word of the planner as a name of Python: odds-ratio is odds_ratio."""
    name = word.replace("-", "_")
    return name + "_" if keyword.iskeyword(name) else name


@dataclass(frozen=True)
class Argument:
    """One argument of a question."""

    word: str
    meaning: str
    kind: str  # number, whole, choice or list
    rule: str
    unit: str = ""
    default: Any = None
    choices: tuple[str, ...] = ()
    null: Any = None
    only: tuple[Any, ...] = ()

    @property
    def name(self) -> str:
        return spelled(self.word)

    @property
    def positions(self) -> dict[str | bool, int] | None:
        """The position of each word of a choice, which is its number; None where it is no choice."""
        if not self.choices:
            return None
        positions: dict[str | bool, int] = {word: i for i, word in enumerate(self.choices)}
        if self.choices == ("no", "yes"):
            positions |= {False: 0, True: 1}
        return positions


def _argument(described: dict[str, Any]) -> Argument:
    keep = {key: described[key] for key in ("meaning", "kind", "rule", "unit", "default", "null") if key in described}
    if described["kind"] == "whole" and "default" in keep:
        keep["default"] = int(keep["default"])
    return Argument(word=described["name"], choices=tuple(described.get("choices", ())),
                    only=tuple(described.get("only", ())), **keep)


Arguments = dict[str, Argument]


def _named(*groups: Any) -> Arguments:
    """The arguments of nested lists by their names, each as it is said first."""
    found: Arguments = {}
    for group in groups:
        if isinstance(group, dict):
            argument = _argument(group)
            found.setdefault(argument.name, argument)
        else:
            for name, argument in _named(*group).items():
                found.setdefault(name, argument)
    return found


@dataclass(frozen=True)
class Test:
    """What the catalogue says of a test."""

    word: str
    title: str
    family: str
    study: str
    notes: tuple[str, ...]
    sources: tuple[str, ...]
    examples: tuple[Any, ...]
    size_note: str
    exact: bool
    effects: Arguments  # standardised effects that it has names for
    sizes: Arguments  # every way to give sample sizes
    found: Arguments  # the sizes that a search finds
    questions: dict[str, Arguments] = field(default_factory=dict)  # what each question may be given

    @property
    def name(self) -> str:
        return spelled(self.word)

    @property
    def arguments(self) -> Arguments:
        """All arguments that any question may have."""
        return self.questions["solve"]


def _test(described: dict[str, Any], search: list[Any]) -> Test:
    sizes, power, precision = described["sizes"], described["power"], described.get("precision")
    questions = {
        "power": _named(power["ways"], sizes["ways"], power["options"]),
        "size": _named(power["ways"], sizes["shares"], power["options"], power["target"], search),
        "effect": _named(power["ways"], sizes["ways"], sizes["shares"], power["options"]),
    }
    everything = [power["ways"], sizes["ways"], sizes["shares"], power["options"], power["target"]]
    if precision:
        questions["halfwidth"] = _named(precision["ways"], sizes["ways"], precision["options"])
        everything += [precision["ways"], precision["options"], precision["target"]]
    questions["solve"] = _named(everything, search)
    return Test(word=described["name"], title=described["title"], family=described["family"], study=described["study"],
                notes=tuple(described["notes"]), sources=tuple(described["sources"]),
                examples=tuple(described["examples"]), size_note=sizes["note"], exact=described["exact"],
                effects=_named(described["effects"]), sizes=_named(sizes["ways"], sizes["found"]),
                found=_named(sizes["found"]), questions=questions)


def _read() -> dict[str, Test]:
    described = json.loads(_core.catalogue())
    tests = [_test(test, described["search"]) for test in described["tests"]]
    return {test.name: test for test in tests}


tests: dict[str, Test] = _read()

_words = {name for test in tests.values() for name in (test.word, *(a.word for a in test.arguments.values()))}
_hyphens = re.compile("|".join(rf"\b{word}\b" for word in sorted(_words, reverse=True) if "-" in word) or "(?!)")


def in_python(text: str) -> str:
    """A sentence of the planner with the names of tests and arguments as Python spells them."""
    return _hyphens.sub(lambda found: spelled(found[0]), text)
