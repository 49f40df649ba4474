"""The whole surface against the simulated instruments."""

import math
import re
import warnings

import numpy
import pytest

import tarvikvi
from tarvikvi import _core, _tree

ROWS = [(group, name, row) for group, rows in _tree.rows_by_group().items() for name, row in rows.items()]


@pytest.fixture
def pg():
    with tarvikvi.open("VP-210") as instrument:
        instrument.reset()
        yield instrument


@pytest.fixture
def one_channel():
    with tarvikvi.open("VP-110") as instrument:
        instrument.reset()
        yield instrument


def test_the_list_tells_name_address_slot_and_model():
    listed = tarvikvi.list()
    assert listed[0] == ("VP-210", 24, 3, 0x0210)
    assert listed[4] == ("VB-200", 9, None, None)
    assert len(listed) == 6


def test_an_instrument_tells_who_it_is(pg):
    assert pg.name == "VP-210"
    assert pg.channels == 2
    assert pg.identity()["serial"] == "V210-00417"
    assert pg.identity()["lacks"] == []
    assert repr(pg) == "<Instrument VP-210>"


def test_the_session_ends_with_the_block():
    with tarvikvi.open("VP-210") as pg:
        assert pg.is_open
    assert not pg.is_open
    with pytest.raises(tarvikvi.ClosedError, match="^the session is closed$"):
        pg.timing.width[1]
    with pytest.raises(tarvikvi.ClosedError):
        pg.timing.width[1] = 1e-7
    with pytest.raises(tarvikvi.ClosedError):
        with pg.transaction():
            pass
    pg.close()


def test_two_sessions_stand_side_by_side(pg, one_channel):
    pg.timing.width[1] = 50e-9
    one_channel.timing.width[1] = 70e-9
    assert (pg.timing.width[1], one_channel.timing.width[1]) == (50e-9, 70e-9)


def test_an_unknown_name_is_refused_with_those_that_are_known():
    with pytest.raises(tarvikvi.UnknownInstrumentError, match='"VP-999"; the driver knows VP-210, VP-110') as raised:
        tarvikvi.open("VP-999")
    assert raised.value.number == 340
    assert isinstance(raised.value, LookupError)


def test_an_instrument_that_does_not_open_says_why():
    with pytest.raises(tarvikvi.DriverError, match="VP-210 reserved") as raised:
        tarvikvi.open("VP-210 reserved")
    assert raised.value.text == str(raised.value)


def test_the_table_has_all_its_settings_as_attributes_with_docstrings():
    keys = {row["key"] for row in _core.settings()}
    assert len(keys) == 49
    for group, name, row in ROWS:
        descriptor = getattr(_tree.GROUPS[group], _tree._python_name(name))
        assert row["caption"] in descriptor.__doc__
        if row["kind"] == "quantity":
            assert re.search(r"in (seconds|hertz|volts|amperes|ohms)", descriptor.__doc__)


def test_a_docstring_tells_unit_and_range():
    described = _tree.GROUPS["timing"].width.__doc__
    assert described == "Width, for each channel: in seconds, 1.5e-09 to 999.5."


@pytest.mark.parametrize("group, name, row", ROWS, ids=[row["key"] for _, _, row in ROWS])
def test_every_setting_reads_as_its_kind_and_takes_what_was_read(pg, group, name, row):
    types = {"switch": bool, "count": int, "choice": str, "quantity": float, "pattern": tarvikvi.Pattern}
    settings = getattr(pg, group)
    attribute = _tree._python_name(name)
    setting = getattr(settings, attribute)
    value = setting[1] if row["per_channel"] else setting
    assert type(value) is types[row["kind"]]
    if row["notation"]:
        with pytest.raises(AttributeError, match=row["key"]):
            pg[row["key"] + ("[1]" if row["per_channel"] else "")] = value
        return
    if row["key"].startswith("mode.pll"):
        value = 1.0  # tells nothing while the PLL does not arm
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", tarvikvi.UnusedSettingWarning)
        if row["per_channel"]:
            setting[1] = value
            assert setting[1] == value
        else:
            setattr(settings, attribute, value)
            if not row["key"].startswith("mode.pll"):
                assert getattr(settings, attribute) == pytest.approx(value) if row["kind"] == "quantity" else value


def test_keys_of_setup_files_name_settings_too(pg):
    pg["timing.width[2]"] = "60ns"
    assert pg["timing.width[2]"] == pg.timing.width[2] == 60e-9
    with pytest.raises(KeyError, match="timing.girth"):
        pg["timing.girth[2]"]


@pytest.mark.parametrize(
    "value", [50e-9, "50ns", " 50 ns ", "0.05us", numpy.float64(50e-9)], ids=["float", "ns", "blanks", "us", "numpy"])
def test_a_quantity_is_a_number_or_a_text_with_its_unit(pg, value):
    pg.timing.width[1] = value
    assert pg.timing.width[1] == 50e-9


def test_switches_choices_and_counts_take_words_in_any_case(pg):
    pg.levels.output[1] = "on"
    assert pg.levels.output[1] is True
    pg.levels.output[1] = numpy.bool_(False)
    assert pg.levels.output[1] is False
    pg.mode.trigger = "GATED"
    assert pg.mode.trigger == "Gated"
    pg.mode.trigger = 1
    assert pg.mode.trigger == "Triggered"
    pg.mode.pulse = "Burst"
    pg.mode.burst_length = numpy.int16(12)
    assert pg.mode.burst_length == 12


def test_offset_and_amplitude_follow_high_and_low(pg):
    with pg.transaction():
        pg.levels.offset[1] = 1.0
        pg.levels.amplitude[1] = 3.0
    assert (pg.levels.high[1], pg.levels.low[1]) == (2.5, -0.5)


def test_levels_take_amperes_where_the_channel_is_in_amperes(pg):
    with pg.transaction():
        pg.levels.unit[1] = "A"
        pg.levels.high[1] = "20mA"
        pg.levels.low[1] = 0
    assert pg.levels.high[1] == pytest.approx(0.02)
    pg.levels.high[1] = "15mA"
    assert pg.levels.high[1] == pytest.approx(0.015)
    with pytest.raises(ValueError, match="levels.high.1."):
        pg.levels.high[1] = "2V"


def test_a_channel_that_is_not_there_is_an_index_error(pg, one_channel):
    with pytest.raises(IndexError, match="there is no channel 3; channels count from 1 to 2"):
        pg.timing.width[3]
    with pytest.raises(IndexError, match="no channel 0"):
        pg.timing.width[0] = 1e-7
    with pytest.raises(IndexError, match="no channel 2"):
        one_channel.timing.width[2] = 1e-7
    with pytest.raises(IndexError, match="levels.high.2.: the instrument has one channel"):
        one_channel["levels.high[2]"]
    with pytest.raises(TypeError, match="a channel is a whole number, not str"):
        pg.timing.width["1"]
    assert list(pg.timing.width) == [1e-7, 1e-7]
    assert (len(pg.timing.width), len(one_channel.timing.width)) == (2, 1)


def test_what_the_model_lacks_is_told_apart_from_a_mistake(one_channel):
    with pytest.raises(tarvikvi.MissingSettingError, match="timing.trailing.1.: the instrument does not have it") as raised:
        one_channel.timing.trailing[1] = 1e-9
    assert raised.value.number == 438
    with pytest.raises(AttributeError):
        one_channel.timing.tail


@pytest.mark.parametrize("value", [None, True, "x", [1e-7], 1j, numpy.array([1e-7]), numpy.array(True)], ids=str)
def test_a_width_of_another_type_is_refused(pg, value):
    with pytest.raises(ValueError if isinstance(value, str) else TypeError, match="timing.width.1."):
        pg.timing.width[1] = value
    assert pg.timing.width[1] == 1e-7


@pytest.mark.parametrize("value", [0, -1e-7, 1e4, math.nan, math.inf, 10**400, "1000s"], ids=str)
def test_a_width_out_of_range_is_refused(pg, value):
    with pytest.raises((ValueError, OverflowError)):
        pg.timing.width[1] = value
    assert pg.timing.width[1] == 1e-7


def test_switches_take_no_numbers_and_words_no_truth_values(pg):
    with pytest.raises(TypeError, match="levels.output.1.: True or False is wanted, not int"):
        pg.levels.output[1] = 1
    with pytest.raises(TypeError, match="mode.trigger: a word or a whole number is wanted, not bool"):
        pg.mode.trigger = True
    with pytest.raises(ValueError, match='"Sometimes" is not Continuous, Triggered, Gated or ExtWidth'):
        pg.mode.trigger = "Sometimes"
    with pytest.raises(ValueError, match="17 is not Continuous"):
        pg.mode.trigger = 17
    with pytest.raises(ValueError, match="mode.burstLength: 4294967298 is out of range"):
        pg.mode.burst_length = 2**32 + 2


def test_a_group_and_a_setting_of_channels_cannot_be_overwritten(pg):
    with pytest.raises(AttributeError, match="timing is a group of settings"):
        pg.timing = 5
    with pytest.raises(TypeError, match="timing.width has a value for each channel"):
        pg.timing.width = 5e-9
    with pytest.raises(AttributeError):
        pg.timing.girth = 5e-9
    with pytest.raises(AttributeError):
        pg.timings = 5


def test_a_transaction_goes_as_one_and_reads_back_as_it_will_be(pg):
    with pg.transaction():
        pg.timing.period = 10e-6
        pg.timing.width[1] = 5e-6
        assert pg.timing.width[1] == 5e-6
        with tarvikvi.open("VP-210") as other:
            assert other.timing.width[1] == 1e-7
    assert pg.timing.width[1] == 5e-6


def test_a_refused_transaction_raises_the_reasons_and_leaves_the_instrument_as_it_was(pg):
    before = pg.setup()
    with pytest.raises(tarvikvi.RefusedError, match="period below delay plus width of channel 1") as raised:
        with pg.transaction():
            pg.levels.high[2] = 3.3
            pg.timing.width[1] = 2e-6
    assert raised.value.number < 0
    assert raised.value.reasons == ("-221,Settings conflict: period below delay plus width of channel 1",)
    assert pg.setup() == before
    pg.timing.width[1] = 2e-7
    assert pg.timing.width[1] == 2e-7


def test_a_refused_assignment_raises_too(pg):
    with pytest.raises(tarvikvi.RefusedError):
        pg.timing.width[1] = 2e-6
    assert pg.timing.width[1] == 1e-7


def test_a_block_that_is_left_by_an_exception_sends_nothing(pg):
    before = pg.setup()
    with pytest.raises(ZeroDivisionError):
        with pg.transaction():
            pg.timing.width[1] = 5e-8
            1 / 0
    assert pg.setup() == before


def test_transactions_do_not_nest(pg):
    with pg.transaction():
        with pytest.raises(RuntimeError, match="a transaction is open already"):
            with pg.transaction():
                pass
        with pytest.raises(RuntimeError, match="apply is one of its own"):
            pg.apply(tarvikvi.Setup.from_snapshot(pg.snapshot()))
        pg.timing.width[1] = 5e-8
    assert pg.timing.width[1] == 5e-8


def test_a_change_of_mode_keeps_formats_pulse_types_and_outputs(pg):
    pg.pattern.rz[1] = False
    with pg.transaction():
        pg.mode.pulse_type[2] = "Double"
        pg.timing.delay[2] = "300ns"
    pg.levels.output[1] = True
    pg.mode.pulse = "Pattern"
    assert (pg.pattern.rz[1], pg.pattern.rz[2], pg.levels.output[1]) == (False, True, True)
    pg.mode.pulse = "Stream"
    assert (pg.mode.pulse_type[1], pg.mode.pulse_type[2]) == ("Single", "Double")
    assert (pg.levels.output[1], pg.levels.output[2]) == (True, False)


def test_what_the_modes_do_not_use_is_told_as_a_warning_of_the_callers_line(pg):
    with pytest.warns(tarvikvi.UnusedSettingWarning, match="mode.burstLength: not used in these modes") as caught:
        pg.mode.burst_length = 5
    assert caught[0].filename == __file__


def test_an_instruments_warning_is_a_python_warning(pg):
    with pytest.warns(tarvikvi.InstrumentWarning) as caught:
        with pg.transaction():
            pg.levels.unit[1] = "V"
            pg.timing.period = 1e-6
            pg.limits.enabled[1] = True
            pg.limits.high_voltage[1] = 2.5
            pg.levels.high[1] = 2.5
            pg.levels.output[1] = True
            pg.timing.leading[1] = 5e-7
            pg.timing.width[1] = 1e-7
    assert caught[0].filename == __file__


def test_self_test_calibration_and_error_queue(pg):
    assert isinstance(pg.selftest(), str)
    pg.calibrate()
    assert pg.errors() == []


def test_the_timeout_is_in_seconds(pg):
    pg.timeout = 2.5
    assert pg.timeout == 2.5
    with pytest.raises(ValueError, match="timeout: -1 is out of the range"):
        pg.timeout = -1


def test_a_pseudo_random_sequence_goes_into_a_pattern(pg):
    sequence = pg.prbs(7, 127)
    assert len(sequence) == 127
    assert sum(sequence) == 64
    pg.pattern.stream[1] = sequence
    assert pg.pattern.stream[1] == sequence
    with pytest.raises(ValueError, match="length: 0 is out of the range 1 to 16384"):
        pg.prbs(7, 0)


def test_a_setup_of_another_model_leaves_out_what_is_not_there(pg, one_channel):
    pg.timing.width[1] = 77e-9
    with pytest.warns(tarvikvi.LeftOutWarning) as caught:
        applied = one_channel.apply(pg.setup())
    assert one_channel.timing.width[1] == 77e-9
    assert applied.left_out["timing.width[2]"] == "the instrument has one channel"
    assert len(caught) == len(applied.left_out)
    one_channel.timing.width[1] = 55e-9
    with pytest.raises(tarvikvi.RefusedError, match="levels.high.2.: the instrument has one channel"):
        one_channel.apply(pg.setup(), strict=True)
    assert one_channel.timing.width[1] == 55e-9


def test_no_driver_is_one_error(monkeypatch):
    with pytest.raises(tarvikvi.ConnectError) as raised:
        tarvikvi.list(server="no such server at all")
    assert raised.value.text
