"""Answers of one design."""

from __future__ import annotations

import html
import math
from collections.abc import Mapping
from typing import Any

from ._catalogue import Argument, Test, in_python, spelled, tests


class Named(dict[str, Any]):
    """A dict whose values are attributes, too: ``sizes["n1"]`` is ``sizes.n1``."""

    def __getattr__(self, name: str) -> Any:
        try:
            return self[name]
        except KeyError:
            raise AttributeError(f"there is no {name} among {', '.join(self)}") from None

    def __dir__(self) -> list[str]:
        return [*super().__dir__(), *self]


def _value(argument: Argument | None, value: Any) -> Any:
    """A value of a record: whole numbers are int only where the argument is a count."""
    if value is None:
        return math.nan
    if isinstance(value, (int, float)) and (argument is None or argument.kind == "number"):
        return float(value)
    return value


def _named(test: Test, items: Mapping[str, Any]) -> Named:
    known = test.sizes | test.arguments
    return Named({spelled(word): _value(known.get(spelled(word)), value) for word, value in items.items()})


def _shown(value: Any) -> str:
    if isinstance(value, float):
        return f"{value:.6g}"
    if isinstance(value, list):
        return "[" + ", ".join(_shown(element) for element in value) + "]"
    return str(value)


def _listed(items: Mapping[str, Any]) -> str:
    return ", ".join(f"{name} = {_shown(value)}" for name, value in items.items())


class Record:
    """The answer of one design, with everything that was asked.

    Every answer and every argument is an attribute by its name: ``record.n1``, ``record.power``, ``record.alpha``.

    Attributes
    ----------
    test, title : str
        The test's name and title.
    question, unknown : str
        Which question was answered, and what was found.
    answer : dict
        What was found, and the power or half-width that it reaches.
    asked : dict
        Every argument that matters, defaults too.
    guaranteed : dict
        Of a search for sizes: the least from which every larger one reaches the target, too.
    enrolled : dict
        Of a search for sizes with a dropout: how many to enrol.
    other : dict
        A second solution, on the other side of the null hypothesis.
    effects : dict
        The standardised effects of the design.
    method : str
        How the power is computed.
    notes, sources : list of str
        What a planner should know, and where the formulas are from.
    note : str
        The notes as one text.
    """

    def __init__(self, record: dict[str, Any]) -> None:
        self._record = record
        name = spelled(record["test"])
        test = tests[name]
        self.test: str = name
        self.title: str = record["title"]
        self.question: str = record["question"]
        self.unknown: str = spelled(record["unknown"])
        self.asked = _named(test, record["asked"])
        self.answer = _named(test, record["answer"])
        self.guaranteed = _named(test, record.get("guaranteed", {}))
        self.enrolled = _named(test, record.get("enrolled", {}))
        self.other = _named(test, record.get("other", {}))
        self.effects = _named(test, record.get("effects", {}))
        self.method: str = record.get("method", "")
        self.notes: list[str] = [in_python(note) for note in record["notes"]]
        self.sources: list[str] = record["sources"]

    @property
    def note(self) -> str:
        return " ".join(self.notes)

    def report(self) -> str:
        """The answer as a sentence for a protocol or a paper."""
        return str(self._record.get("report", ""))

    def to_dict(self) -> dict[str, Any]:
        """All of the record as plain dicts, lists, texts and numbers."""
        plain = {name: dict(value) if isinstance(value, Named) else value
                 for name, value in vars(self).items() if not name.startswith("_")}
        return {"version": self._record["statpower"], **plain, "report": self.report()}

    def __getattr__(self, name: str) -> Any:
        if not name.startswith("_"):
            for items in (self.answer, self.asked):
                if name in items:
                    return items[name]
        raise AttributeError(f"this answer has no {name}; it has {', '.join({**self.answer, **self.asked})}"
                             if not name.startswith("_") else name)

    def __dir__(self) -> list[str]:
        return [*super().__dir__(), *self.answer, *self.asked]

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Record) and self._record == other._record

    __hash__ = None  # type: ignore[assignment]

    def __reduce__(self) -> tuple[type[Record], tuple[dict[str, Any]]]:
        return Record, (self._record,)

    def _lines(self) -> list[tuple[str, str]]:
        lines = [(name, _shown(value)) for name, value in self.answer.items()]
        for name in ("guaranteed", "enrolled", "other", "effects", "asked"):
            said = name == "guaranteed" and self.guaranteed.items() <= self.answer.items()
            if getattr(self, name) and not said:
                lines.append((name, _listed(getattr(self, name))))
        if self.method:
            lines.append(("method", self.method))
        return lines + [("note", note) for note in self.notes]

    def __repr__(self) -> str:
        lines = self._lines()
        width = max(len(name) for name, _ in lines)
        return "\n".join([f"{self.title}: {self.unknown}", *(f"  {name:<{width}}  {text}" for name, text in lines)])

    def _repr_html_(self) -> str:
        rows = "".join(f"<tr><th style='text-align:left'>{html.escape(name)}</th>"
                       f"<td style='text-align:left'>{html.escape(text)}</td></tr>" for name, text in self._lines())
        title = html.escape(f"{self.title}: {self.unknown}")
        return f"<table><caption style='text-align:left'>{title}</caption>{rows}</table>"
