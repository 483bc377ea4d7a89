"""Designs on a real scheduler with two worker processes."""

from __future__ import annotations

import importlib.util
import subprocess
import sys
from pathlib import Path

import pytest

EXAMPLE = Path(__file__).parents[2] / "examples" / "million_designs.py"

pytestmark = pytest.mark.skipif(not importlib.util.find_spec("distributed"), reason="needs distributed")


def test_answers_of_a_cluster_equal_those_of_one_process_even_if_a_worker_is_killed() -> None:
    run = subprocess.run([sys.executable, EXAMPLE, "--designs", "400000", "--kill-a-worker"], capture_output=True,
                         text=True, timeout=300)
    assert run.returncode == 0, run.stderr
    assert "Killed worker" in run.stderr
    assert run.stdout.count("equal to one process bit for bit") == 2
    assert "NOT" not in run.stdout
