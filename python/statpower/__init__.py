"""Statistical power analysis: power, sample sizes, half-widths, and any other number that a plan leaves out.

Each test is a class, and a design is a test with some of its arguments::

    import statpower as sp

    design = sp.t_one(d=0.5)
    design.solve(power=0.9)                      # a record: how many observations
    design.power(n=[20, 40, 80])                 # arrays in, arrays out
    design.table(n=range(20, 200, 10), alpha=[0.01, 0.05])

``statpower.tests`` lists them; ``help(statpower.t_one)`` says all about one.
"""

from __future__ import annotations

from . import _catalogue, _core
from ._design import Design, design_class
from ._errors import NoAnswer, Refused
from ._record import Record

__version__: str = _core.version

#: The class of each test by its name.
tests: dict[str, type[Design]] = {test.name: design_class(test) for test in _catalogue.tests.values()}

globals().update(tests)

__all__ = ["Design", "NoAnswer", "Record", "Refused", "tests", *tests]


def __dir__() -> list[str]:
    return [*__all__, "__version__"]
