"""The types that the stub says, checked by mypy in a program that uses them."""

from __future__ import annotations

import importlib.util
import os
import subprocess
import sys
from pathlib import Path

import pytest

import statpower


@pytest.mark.skipif(not importlib.util.find_spec("mypy"), reason="needs mypy")
@pytest.mark.parametrize("program, errors", [("typed_program.py", 0), ("mistyped_program.py", 3)])
def test_a_program_is_checked_strictly(program: str, errors: int, tmp_path: Path) -> None:
    package = Path(statpower.__file__).parent.parent
    checked = subprocess.run(
        [sys.executable, "-m", "mypy", "--strict", f"--cache-dir={tmp_path}", Path(__file__).parent / program],
        capture_output=True, text=True,
        env=os.environ | ({} if package.name == "site-packages" else {"MYPYPATH": str(package)}))
    assert checked.stdout.count(" error: ") == errors, checked.stdout + checked.stderr
