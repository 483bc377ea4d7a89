"""What mypy --strict accepts."""

import numpy as np

import statpower as sp

design = sp.t_one(d=0.5, alternative="greater")
power: float = design.power(n=20)
powers = sp.t_one(sd=12.0).power(n=np.arange(20, 200), mean=[3, 5, 8])
record: sp.Record = design.solve(power=0.9)
sizes: list[int] = [record.n, record.guaranteed.n]
effects: sp.Named = design.effects()
tests: dict[str, type[sp.Design]] = sp.tests
try:
    design.solve("alpha", n=20, power=0.8)
except sp.NoAnswer as why:
    reason: str = why.reason
except sp.Refused as why:
    argument: str | None = why.argument
