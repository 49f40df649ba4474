"""The script of the documents, as a user runs it. The examples of docs/python.md and of the docstrings run beside it."""

import os
import runpy
from pathlib import Path

SCRIPT = Path(os.environ["SESSION_SCRIPT"])


def test_the_script_of_the_documents_runs_from_cell_to_cell(tmp_path, monkeypatch, capsys):
    monkeypatch.chdir(tmp_path)
    names = runpy.run_path(str(SCRIPT), run_name="__main__")
    printed = capsys.readouterr().out
    assert SCRIPT.read_text(encoding="utf-8").count("# %%") == 6
    assert "VP-210 Dual Pulse Generator" in printed
    assert "refused: -221,Settings conflict: period below delay plus width of channel 1" in printed
    assert [row["width"] for row in names["rows"]] == [20e-9, 50e-9, 100e-9, 200e-9]
    assert (tmp_path / "sweep.json").exists()
    assert (tmp_path / "before.json").exists()
    assert "timing.width[1]: 100.0 ns | 200.0 ns" in printed
