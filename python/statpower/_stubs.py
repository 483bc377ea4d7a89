"""Writes the types of the package: ``python -m statpower._stubs FILE``.

What the package makes from the catalogue at import is written out here, so that editors and type checkers see
every test, argument and answer by name.
"""

from __future__ import annotations

import inspect
import sys
from pathlib import Path

from . import _docs
from ._catalogue import Argument, Arguments, Test, tests

_HEAD = '''\
# Written from the catalogue by statpower._stubs.
from collections.abc import Mapping
from typing import Any, Literal

from numpy.typing import ArrayLike

from ._design import Design as Design
from ._errors import NoAnswer as NoAnswer, Refused as Refused
from ._record import Named as Named
from ._record import Record as Record

__version__: str
tests: dict[str, type[Design]]
__all__: list[str]
'''

# NumPy's arrays and what is array-like; the arrays of other libraries are any.
_RETURNS = {"table": "Any", "plot": "Any", "effects": "Named"}


def _type_of(argument: Argument) -> str:
    if argument.kind == "choice":
        words = ", ".join(repr(word) for word in argument.choices)
        flag = "bool | " if argument.choices == ("no", "yes") else ""
        return f"{flag}Literal[{words}] | Any"
    return "ArrayLike | Any"


def _parameters(arguments: Arguments) -> str:
    return "".join(f", {argument.name}: {_type_of(argument)} = ..." for argument in arguments.values())


def _method(name: str, arguments: Arguments) -> str:
    extra = {"solve": ", unknown: str = ..., /", "table": ", unknown: str = ..., /",
             "plot": ", over: str | Mapping[str, Any] | None = ..., by: Mapping[str, Any] | None = ..., ax: Any = ..."
             }.get(name, "")
    controls = ("" if name in ("table", "plot", "effects") else
                ', errors: Literal["raise", "nan"] | None = ..., out: Any = ..., where: Any = ...')
    return (f"    def {name}(self{extra}, *{_parameters(arguments)}{controls}) -> {_RETURNS.get(name, 'Any')}: ...")


def _class(test: Test) -> str:
    lines = [f"class {test.name}(Design):",
             '    """' + inspect.cleandoc(_docs.class_doc(test)).split("\n")[0] + '"""',
             f"    def __init__(self, *{_parameters(test.arguments)}) -> None: ..."]
    lines += [_method(name, arguments) for name, arguments in _docs.methods(test).items()]
    return "\n".join(lines)


def stub() -> str:
    """The text of ``__init__.pyi``."""
    return _HEAD + "\n" + "\n\n".join(map(_class, tests.values())) + "\n"


if __name__ == "__main__":
    Path(sys.argv[1]).write_text(stub())
