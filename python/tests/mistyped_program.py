"""What mypy refuses: no such argument, no such test, no such method."""

import statpower as sp

sp.t_one(delta=0.5)
sp.t_seven(d=0.5)
sp.t_one(d=0.5).powers(n=20)
