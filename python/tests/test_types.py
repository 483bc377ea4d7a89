"""The types that the stub says, checked by mypy in a program that uses them, and those of the package itself."""

from __future__ import annotations

import importlib.util
import os
import re
import subprocess
import sys
from collections import Counter
from pathlib import Path

import pytest

import statpower

PACKAGE = Path(statpower.__file__).parent.parent
TESTS = Path(__file__).parent
IN_TREE = PACKAGE.name != "site-packages"

pytestmark = pytest.mark.skipif(not importlib.util.find_spec("mypy"), reason="needs mypy")


@pytest.fixture(scope="module")
def errors(tmp_path_factory: pytest.TempPathFactory) -> Counter[str]:
    """How many errors mypy --strict finds in each file: all in one run, which reads NumPy's types once."""
    checked = ["typed_program", "mistyped_program"]
    command = [sys.executable, "-m", "mypy", "--strict", f"--cache-dir={tmp_path_factory.mktemp('mypy')}"]
    if IN_TREE:
        command.append(f"--config-file={TESTS.parents[1] / 'pyproject.toml'}")
        checked += ["statpower." + module.stem for module in (PACKAGE / "statpower").glob("_[a-z]*.py*")]
    for module in checked:
        command += ["-m", module]
    path = os.pathsep.join(map(str, [TESTS, PACKAGE] if IN_TREE else [TESTS]))
    run = subprocess.run(command, capture_output=True, text=True, env=os.environ | {"MYPYPATH": path}, cwd=TESTS)
    print(run.stdout)
    assert re.search("^(Found|Success)", run.stdout, re.MULTILINE), run.stderr
    return Counter(Path(line.split(":")[0]).name for line in run.stdout.splitlines() if " error: " in line)


def test_a_program_that_is_right_has_no_errors(errors: Counter[str]) -> None:
    assert errors["typed_program.py"] == 0


def test_each_mistake_of_a_program_is_found(errors: Counter[str]) -> None:
    assert errors["mistyped_program.py"] == 3


@pytest.mark.skipif(not IN_TREE, reason="needs its sources")
def test_the_package_is_typed_strictly(errors: Counter[str]) -> None:
    assert not {file for file in errors if file.startswith("_")}
