"""Designs on a real scheduler with two worker processes."""

from __future__ import annotations

import importlib.util
import subprocess
import sys
from pathlib import Path

import pytest

EXAMPLE = Path(__file__).parents[2] / "examples" / "million_designs.py"

pytestmark = pytest.mark.skipif(not importlib.util.find_spec("distributed"), reason="needs distributed")


@pytest.mark.parametrize("options", [[], ["--kill-a-worker"]], ids=["whole", "a-worker-is-killed"])
def test_answers_of_a_cluster_equal_those_of_one_process(options: list[str]) -> None:
    run = subprocess.run([sys.executable, EXAMPLE, "--designs", "400000", *options], capture_output=True, text=True,
                         timeout=300)
    assert run.returncode == 0, run.stderr
    assert "equal to one process bit for bit" in run.stdout
    assert "NOT" not in run.stdout
    assert ("Killed worker" in run.stderr) == bool(options)
