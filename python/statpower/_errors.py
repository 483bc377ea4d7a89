"""Why a question is not answered."""

from __future__ import annotations

import json
from typing import Any, NoReturn

from ._catalogue import in_python, spelled


class Refused(ValueError):
    """A question that makes no sense: an argument is wrong, missing or one too many.

    Attributes
    ----------
    argument : str or None
        The argument that is wrong; None where it is none in particular.
    reason : str
        What is wrong with it, and what would do.
    """

    def __init__(self, reason: str, argument: str | None = None) -> None:
        super().__init__(reason, argument)
        self.reason = reason
        self.argument = argument

    def __str__(self) -> str:
        return f"{self.argument}: {self.reason}" if self.argument else self.reason


class NoAnswer(Refused):
    """A question that makes sense but has no answer; `reason` says why: no size reaches the power, for example."""


def refuse(refusal: dict[str, Any]) -> NoReturn:
    """Raises what the planner refused with."""
    kind = NoAnswer if refusal["kind"] == "no-answer" else Refused
    argument = refusal.get("argument")
    raise kind(in_python(refusal["reason"]), spelled(argument) if argument else None)


def answered(text: str) -> dict[str, Any]:
    """An answer of the planner in JSON, or its refusal raised."""
    answer: dict[str, Any] = json.loads(text)
    if "refusal" in answer:
        refuse(answer["refusal"])
    return answer
