"""Setups: files, snapshots, comparisons, and thousands of random ones."""

import copy
import json
import os
import pickle
import random

import pytest

import tarvikvi
from tarvikvi import Pattern, Setup, _core

RANDOM_SETUPS = int(os.environ.get("TARVIK_RANDOM_SETUPS", "300"))
ROWS = _core.settings()


@pytest.fixture(scope="module", params=["VP-210", "VP-110", "VP-250F"])
def base(request):
    with tarvikvi.open(request.param) as pg:
        pg.reset()
        return pg.setup()


@pytest.fixture
def pg():
    with tarvikvi.open("VP-210") as instrument:
        instrument.reset()
        yield instrument


def random_value(row, key, setup, rng):
    if row["kind"] == "switch":
        return rng.random() < 0.5
    if row["kind"] == "count":
        return rng.randint(int(row["min"]), int(row["max"]))
    if row["kind"] == "choice":
        return rng.choice(row["words"])
    if row["kind"] == "pattern":
        return Pattern([rng.randint(0, 1) for _ in range(rng.randint(0, 200))])
    if row["key"] == "timing.leading" and "FreeLeadingEdge" in setup.identity()["lacks"]:
        return rng.choice([0.8e-9, 1.6e-9])
    low, high = row["min"], row["max"]
    if low > 0:
        return min(max(low * (high / low) ** rng.random(), low), high)
    return rng.uniform(low, high)


def changed_at_random(setup, rng):
    setup = setup.copy()
    rows = {row["key"]: row for row in ROWS}
    for key in setup.keys():
        row = rows.get(key) or rows[key[: key.index("[")]]
        if row["notation"]:
            continue
        try:
            setup[key] = random_value(row, key, setup, rng)
        except ValueError as error:
            assert "the instrument does not have" in str(error)
    return setup


def test_random_setups_come_back_bit_for_bit_from_text_snapshot_and_pickle(base):
    rng = random.Random(20)
    for _ in range(RANDOM_SETUPS):
        setup = changed_at_random(base, rng)
        assert Setup.from_snapshot(setup.snapshot()) == setup
        assert pickle.loads(pickle.dumps(setup)) == setup
        assert setup.compare(setup.copy(), exact=True) == []


def test_random_setups_come_back_from_files(base, tmp_path):
    rng = random.Random(21)
    path = tmp_path / "setup.json"
    for _ in range(max(RANDOM_SETUPS // 10, 1)):
        setup = changed_at_random(base, rng)
        setup.save(path)
        assert Setup.load(path) == setup
        assert json.loads(path.read_text(encoding="utf-8")) == setup.snapshot()


def test_random_changes_are_just_the_differences(base):
    rng = random.Random(22)
    keys = [key for key in base.keys() if key.startswith("timing.width") or key.startswith("limits.high")]
    for _ in range(RANDOM_SETUPS):
        chosen = [key for key in keys if rng.random() < 0.5]
        other = base.copy()
        for key in chosen:
            other[key] = base[key] * 1.5
        assert [difference.key for difference in base.compare(other)] == chosen
        assert (base == other) == (not chosen)


@pytest.mark.filterwarnings("ignore::tarvikvi.InstrumentWarning")
def test_an_instrument_that_took_a_random_setup_tells_it_again(pg):
    rng = random.Random(23)
    taken = refused = 0
    for _ in range(max(RANDOM_SETUPS // 3, 30)):
        before = pg.setup()
        wanted = before.copy()
        wanted.timing.period = rng.choice([1e-6, 1e-5, 1e-4])
        for channel in (1, 2):
            wanted.timing.width[channel] = 10 ** rng.uniform(-8, -5)
            wanted.levels.high[channel] = rng.uniform(-1, 3)
            wanted.levels.low[channel] = rng.uniform(-3, 1)
            wanted.pattern.stream[channel] = [rng.randint(0, 1) for _ in range(16)]
        try:
            pg.apply(wanted)
        except tarvikvi.RefusedError as error:
            refused += 1
            assert error.reasons
            assert pg.setup() == before
        else:
            taken += 1
            assert pg.setup().compare(wanted) == []
    print(f"{taken} setups taken, {refused} refused with the instrument unchanged")
    assert taken and refused


def test_a_setup_changes_by_itself(pg):
    setup = pg.setup()
    setup.timing.width[1] = "50ns"
    assert (setup.timing.width[1], pg.timing.width[1]) == (50e-9, 1e-7)
    with pytest.raises(IndexError):
        setup.timing.width[3] = 1
    with pytest.raises(ValueError, match="timing.width.1.: 1ns is out of the range 1.5ns to 999.5s"):
        setup.timing.width[1] = 1e-9


def test_copies_are_independent(pg):
    setup = pg.setup()
    for other in (setup.copy(), copy.copy(setup), copy.deepcopy(setup)):
        other.levels.high[1] = 1.0
        assert setup.levels.high[1] == 2.5
        assert other != setup
    assert setup != "a setup"
    with pytest.raises(TypeError, match="unhashable"):
        hash(setup)


def test_a_setup_prints_as_a_table_with_a_column_for_each_channel(pg):
    lines = str(pg.setup()).splitlines()
    assert lines[0] == "VP-210 Dual Pulse Generator, serial V210-00417"
    assert [line.split() for line in lines if line.startswith("timing.width")] == [
        ["timing.width", "100.0", "ns", "100.0", "ns"]]
    assert len(lines) == 45
    assert repr(pg.setup()) == "<Setup of VP-210 Dual Pulse Generator, serial V210-00417>"


def test_a_file_that_is_not_there_is_an_os_error(tmp_path):
    with pytest.raises(tarvikvi.SetupFileError, match="Cannot load .*none.json: ") as raised:
        Setup.load(tmp_path / "none.json")
    assert isinstance(raised.value, OSError)
    assert raised.value.number == 53


def test_a_folder_that_is_not_there_takes_no_file(pg, tmp_path):
    with pytest.raises(tarvikvi.SetupFileError, match="Cannot save "):
        pg.setup().save(tmp_path / "none" / "setup.json")


def test_a_bad_file_is_refused_with_all_reasons_and_their_lines(pg, tmp_path):
    snapshot = pg.snapshot()
    snapshot["settings"]["timing.width[1]"] = 1
    snapshot["settings"]["timing.girth[2]"] = 1e-7
    snapshot["settings"]["timing.width[2]"] = 5000
    path = tmp_path / "bad.json"
    path.write_text(json.dumps(snapshot, indent=1), encoding="utf-8")
    with pytest.raises(tarvikvi.SetupContentError) as raised:
        Setup.load(path)
    assert raised.value.number == 321
    assert len(raised.value.reasons) == 2
    assert "timing.girth[2]" in str(raised.value)
    assert isinstance(raised.value, ValueError)


@pytest.mark.parametrize("snapshot", [{}, [], "text", {"format": "tarvikvi-setup"}, {"x": float("nan")}, {"x": {1, 2}}], ids=str)
def test_a_snapshot_that_is_none_is_refused(snapshot):
    with pytest.raises((ValueError, TypeError)):
        Setup.from_snapshot(snapshot)


def test_a_snapshot_is_made_of_plain_values(pg):
    def plain(value):
        if isinstance(value, dict):
            return all(type(key) is str and plain(one) for key, one in value.items())
        if isinstance(value, list):
            return all(map(plain, value))
        return type(value) in (str, int, float, bool)

    assert plain(pg.snapshot())
