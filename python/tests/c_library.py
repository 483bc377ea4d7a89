"""The planner's C interface as any program calls it, beside the extension module."""

from __future__ import annotations

import ctypes
import os
from typing import Any

import numpy as np

from statpower import _kernels
from statpower._catalogue import Test
from statpower._design import _column

IS_THERE = "STATPLAN_LIBRARY" in os.environ


class _Column(ctypes.Structure):
    _fields_ = [("values", ctypes.c_void_p), ("stride", ctypes.c_ssize_t), ("length", ctypes.c_size_t),
                ("inner", ctypes.c_ssize_t)]


def answer(test: Test, unknown: str, given: dict[str, Any]) -> float:
    """The first number that a question finds."""
    library = ctypes.CDLL(os.environ["STATPLAN_LIBRARY"])
    name = _kernels.answers(test.name, unknown, tuple(given))[1][0]
    values = [np.atleast_1d(np.asarray(_column(test.arguments[n], value), dtype=float)) for n, value in given.items()]
    columns = (_Column * len(values))(*[_Column(v.ctypes.data, 0, v.size, v.strides[0]) for v in values])
    words = (ctypes.c_char_p * len(values))(*[test.arguments[n].word.encode() for n in given])
    found, refusal = ctypes.c_double(), ctypes.c_char_p()
    status = library.statplan_columns(
        test.word.encode(), unknown.replace("_", "-").encode(), words, columns, ctypes.c_size_t(len(values)),
        ctypes.c_size_t(1), name.replace("_", "-").encode(), ctypes.byref(found), None, None, ctypes.byref(refusal))
    assert status == 0, refusal.value
    return found.value
