"""The types that the stub says, checked by mypy in a program that uses them."""

from __future__ import annotations

import importlib.util
import os
import subprocess
import sys
from pathlib import Path

import pytest

import statpower


PACKAGE = Path(statpower.__file__).parent.parent
MYPY = [sys.executable, "-m", "mypy", "--strict"]


@pytest.mark.skipif(not importlib.util.find_spec("mypy"), reason="needs mypy")
@pytest.mark.parametrize("program, errors", [("typed_program.py", 0), ("mistyped_program.py", 3)])
def test_a_program_is_checked_strictly(program: str, errors: int, tmp_path: Path) -> None:
    checked = subprocess.run([*MYPY, f"--cache-dir={tmp_path}", Path(__file__).parent / program],
                             capture_output=True, text=True,
                             env=os.environ | ({} if PACKAGE.name == "site-packages" else {"MYPYPATH": str(PACKAGE)}))
    assert checked.stdout.count(" error: ") == errors, checked.stdout + checked.stderr


@pytest.mark.skipif(PACKAGE.name == "site-packages" or not importlib.util.find_spec("mypy"), reason="needs its sources")
def test_the_package_is_typed_strictly(tmp_path: Path) -> None:
    root = Path(__file__).parents[2]
    checked = subprocess.run([*MYPY, f"--cache-dir={tmp_path}", f"--config-file={root / 'pyproject.toml'}",
                              "--package", "statpower"], capture_output=True, text=True, cwd=PACKAGE)
    assert checked.returncode == 0, checked.stdout + checked.stderr
