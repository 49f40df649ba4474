"""The type stubs: a type checker finds nothing in the package, nothing in a right program, and the faults of a wrong one."""

import os
import subprocess
import sys
from pathlib import Path

PACKAGE = Path(os.environ["PYTHON_PACKAGE"])

RIGHT = """
import tarvikvi

with tarvikvi.open("VP-210") as pg:
    pg.timing.width[1] = 50e-9
    pg.timing.width[2] = "50ns"
    width: float = pg.timing.width[1]
    pg.timing.period = 1e-6
    period: float = pg.timing.period
    pg.levels.output[1] = True
    pg.mode.trigger = "Gated"
    pg.mode.burst_length = 12
    pg.pattern.stream[1] = [0, 1]
    pg.pattern.strobe = b"\\xff"
    bits: tarvikvi.Pattern = pg.pattern.strobe
    with pg.transaction():
        pg.limits.high_voltage[1] = 5
    setup = pg.setup()
    names: list[str] = [difference.key for difference in setup.compare(setup.copy())]
    applied = pg.apply(setup, strict=True)
    reason: str = applied.left_out["timing.width[1]"]
"""
WRONG = """
import tarvikvi

pg = tarvikvi.open("VP-210")
pg.timing.width = 5e-9
pg.timing.girth[1] = 5e-9
pg.timing.width[1] = None
pg.levels.output[1] = 3
pg.timing.width["1"] = 5e-9
text: str = pg.timing.period
"""


def check(*arguments, cache):
    command = [sys.executable, "-m", "mypy", "--strict", "--no-error-summary", "--cache-dir", str(cache), *map(str, arguments)]
    environment = {**os.environ, "MYPYPATH": str(PACKAGE.parent)}
    environment.pop("PYTHONPATH")
    return subprocess.run(command, env=environment, capture_output=True, text=True, check=False)


def test_the_package_and_a_right_program_are_without_a_fault(tmp_path):
    (tmp_path / "right.py").write_text(RIGHT, encoding="utf-8")
    for checked in ((tmp_path / "right.py",), ("-p", "tarvikvi")):
        found = check(*checked, cache=tmp_path / "cache")
        assert (found.returncode, found.stdout, found.stderr) == (0, "", "")


def test_each_fault_of_a_wrong_program_is_found(tmp_path):
    (tmp_path / "wrong.py").write_text(WRONG, encoding="utf-8")
    found = check(tmp_path / "wrong.py", cache=tmp_path / "cache")
    lines = {int(line.split(":")[1]) for line in found.stdout.splitlines() if ": error:" in line}
    assert lines == {5, 6, 7, 8, 9, 10}
