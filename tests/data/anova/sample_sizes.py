"""Sample sizes of a one-way design that reach a power, searched with exact powers."""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
from high_precision import mpf  # noqa: E402
from mpmath import ceil  # noqa: E402


def search(power, weights, target):
    """The smallest total N whose shares w N / W reach the target, to 1e-9, by bisection of power(sizes).

    Also the power of the allocation that gives each group the ceiling of its share, and the power of the
    largest total that gives some group one observation less.
    """
    shares = [mpf(w) / sum(mpf(v) for v in weights) for w in weights]

    def power_of_total(total):
        return power([share * total for share in shares])

    low, high = mpf(2 * len(weights)), mpf(2 * len(weights) + 400)
    while power_of_total(high) < target:
        low, high = high, 2 * high
    while high - low > mpf(10) ** -9:
        middle = (low + high) / 2
        low, high = (middle, high) if power_of_total(middle) < target else (low, middle)
    sizes = [ceil(share * high) for share in shares]
    one_less = max((n - 1) / share for n, share in zip(sizes, shares))
    return float(high), float(power(sizes)), float(power_of_total(one_less))
