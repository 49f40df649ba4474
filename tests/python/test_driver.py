"""Failures of the driver, and threads, over a stand-in driver that this test steers."""

import ctypes
import os
import select
import threading

import pytest

import tarvikvi

LOST = -2147023174  # 0x800706BA: the server has gone
FAILED = -2147221503
WAIT = 25  # s; nothing waits that long unless it has gone wrong


class Steering:
    """The driver's own handles, and the two ends of its gate."""

    def __init__(self):
        self._library = ctypes.CDLL(os.environ["STEERED_DRIVER"])
        self._arrived = os.pipe()
        self._opened = os.pipe()

    def fail(self, operation, status=FAILED, text="driver failed", number=1, count=1):
        self._library.Fail(operation.encode(), number, status, text.encode(), count)

    def warn(self, text):
        self._library.Warn(text.encode())

    def put_error(self, text):
        self._library.PutError(text.encode())

    def operations(self):
        return self._library.Operations()

    def close_gate(self, operation):
        self._library.Gate(operation.encode(), self._arrived[1], self._opened[0])

    def await_arrival(self):
        assert select.select([self._arrived[0]], [], [], WAIT)[0], "the operation did not begin"
        os.read(self._arrived[0], 1)

    def open_gate(self):
        os.write(self._opened[1], b"!")

    def not_opened(self):
        return self._library.NotOpened()

    def calm(self):
        self._library.Calm()


@pytest.fixture(scope="module")
def library():
    tarvikvi.list()
    return Steering()


@pytest.fixture
def driver(library):
    library.calm()
    yield library
    library.calm()
    assert library.not_opened() == 0, "while a call of the driver ran, no other thread did"


@pytest.fixture
def pg(driver):
    with tarvikvi.open("Alpha") as instrument:
        yield instrument


def test_a_driver_is_chosen_by_its_name_for_one_session(driver, pg):
    assert "simulator" in tarvikvi.drivers()
    assert [instrument.name for instrument in tarvikvi.list(driver="simulator")][0] == "VP-210"
    with tarvikvi.open("VP-210", driver="simulator") as simulated:
        assert simulated.identity()["product"] == "VP-210 Dual Pulse Generator"
        assert [instrument.name for instrument in tarvikvi.list()] == ["Alpha"]
        assert pg.is_open and simulated.is_open


def test_a_driver_that_is_not_there_is_told_with_those_that_are(driver):
    with pytest.raises(tarvikvi.ConnectError, match="drivers to choose from: .*simulator"):
        tarvikvi.open("VP-210", driver="none")
    with pytest.raises(ValueError, match="a server has a driver of its own"):
        tarvikvi.open("VP-210", driver="simulator", server="tarvik://bench")


def test_a_failing_call_is_one_error_with_number_and_text(driver, pg):
    driver.fail("IChannelTiming.GetWidth")
    with pytest.raises(tarvikvi.DriverError) as raised:
        pg.timing.width[1]
    assert (raised.value.number, raised.value.text) == (FAILED, "driver failed")
    assert pg.is_open
    pg.timing.width[1]


def test_bad_input_is_refused_before_the_driver_sees_anything(driver, pg):
    before = driver.operations()
    for change in (
        lambda: pg.timing.width.__setitem__(1, None),
        lambda: pg.timing.width.__setitem__(1, 1e9),
        lambda: pg.timing.width.__setitem__(1, "wide"),
        lambda: pg.timing.width.__setitem__(3, 1e-7),
        lambda: pg.mode.__setattr__("trigger", "Never"),
        lambda: pg.levels.high.__setitem__(1, "3s"),
        lambda: pg.pattern.stream.__setitem__(1, [2]),
    ):
        with pytest.raises((TypeError, ValueError, IndexError)):
            change()
    assert driver.operations() == before


def test_a_transaction_that_fails_on_the_way_leaves_the_instrument_as_it_was(driver, pg):
    before = pg.setup()
    driver.fail("IChannelLevels.SetOutput")
    with pytest.raises(tarvikvi.DriverError, match="driver failed"):
        with pg.transaction():
            pg.timing.width[1] = 123e-9
    assert pg.setup() == before


def test_a_refusal_at_the_commit_tells_each_reason(driver, pg):
    before = pg.setup()
    driver.fail("IInstrument.Transaction", text='-221,"conflict";-222,"range"', number=3)
    with pytest.raises(tarvikvi.RefusedError) as raised:
        pg.timing.width[1] = 123e-9
    assert raised.value.reasons == ("-221,conflict", "-222,range")
    assert raised.value.number == FAILED
    assert pg.setup() == before


def test_a_warning_reaches_the_warnings_of_the_caller(driver, pg):
    driver.warn("width is near its end")
    with pytest.warns(tarvikvi.InstrumentWarning, match="^width is near its end$") as caught:
        pg.timing.width[1] = 123e-9
    assert caught[0].filename == __file__
    assert pg.timing.width[1] == 123e-9


def test_the_error_queue_is_read_entry_by_entry(driver, pg):
    driver.put_error('-100,"first";-200,"second"')
    assert pg.errors() == ["-100,first", "-200,second"]
    assert pg.errors() == []


def test_a_driver_that_dies_is_one_error_and_ends_the_session(driver):
    pg = tarvikvi.open("Alpha")
    driver.fail("IChannelTiming.SetWidth", status=LOST, text="the server has gone", count=1000)
    driver.fail("IInstrument", status=LOST, text="still gone", number=1000, count=1000)
    with pytest.raises(tarvikvi.ConnectionLostError) as raised:
        pg.timing.width[1] = 123e-9
    assert (raised.value.number, raised.value.text) == (LOST, "the server has gone")
    assert not pg.is_open
    with pytest.raises(tarvikvi.ClosedError):
        pg.timing.width[1]
    pg.close()
    driver.calm()
    with tarvikvi.open("Alpha") as again:
        assert again.is_open


def test_a_driver_that_dies_in_a_transaction_frees_the_thread_and_the_block(driver):
    pg = tarvikvi.open("Alpha")
    with pytest.raises(tarvikvi.ConnectionLostError):
        with pg.transaction():
            pg.timing.width[1] = 123e-9
            driver.fail("IInstrument.Transaction", status=LOST, text="gone", number=2, count=1000)
    assert not pg.is_open


def in_thread(action):
    outcome = {}

    def run():
        try:
            outcome["result"] = action()
        except BaseException as error:  # handed to the test
            outcome["error"] = error

    thread = threading.Thread(target=run)
    thread.start()
    return thread, outcome


def test_other_threads_run_while_a_driver_call_does(driver, pg):
    driver.close_gate(".Reset(")
    thread, outcome = in_thread(pg.reset)
    driver.await_arrival()
    counted = sum(1 for _ in range(100_000))
    driver.open_gate()
    thread.join(WAIT)
    assert counted == 100_000
    assert not thread.is_alive()
    assert outcome == {"result": None}


def test_a_counter_in_another_thread_goes_on_during_a_slow_call(driver, pg):
    driver.close_gate(".Reset(")
    counted = []

    def count_and_open():
        driver.await_arrival()
        counted.extend(range(10_000))
        driver.open_gate()

    thread, outcome = in_thread(count_and_open)
    pg.reset()  # returns when the other thread has counted and opened the gate
    thread.join(WAIT)
    assert len(counted) == 10_000
    assert outcome == {"result": None}


def test_a_busy_instrument_is_a_clear_error_in_another_thread(driver, pg):
    driver.close_gate(".Reset(")
    thread, outcome = in_thread(pg.reset)
    driver.await_arrival()
    with pytest.raises(tarvikvi.BusyError, match="^the instrument is in use by another thread$") as raised:
        pg.timing.width[1]
    with pytest.raises(tarvikvi.BusyError):
        pg.timing.width[1] = 1e-7
    with pytest.raises(tarvikvi.BusyError):
        pg.close()
    driver.open_gate()
    thread.join(WAIT)
    assert outcome == {"result": None}
    assert raised.value.number == 70
    pg.timing.width[1] = 150e-9
    assert pg.timing.width[1] == 150e-9


def test_a_transaction_keeps_other_threads_out(driver, pg):
    before = pg.timing.width[2]
    with pg.transaction():
        pg.timing.width[1] = 150e-9
        thread, outcome = in_thread(lambda: pg.timing.width.__setitem__(2, 1e-6))
        thread.join(WAIT)
        assert isinstance(outcome["error"], tarvikvi.BusyError)
    assert (pg.timing.width[1], pg.timing.width[2]) == (150e-9, before)


def test_threads_take_turns(driver, pg):
    thread, outcome = in_thread(lambda: pg.timing.width.__setitem__(1, 250e-9))
    thread.join(WAIT)
    assert outcome == {"result": None}
    assert pg.timing.width[1] == 250e-9


def test_two_instruments_work_in_two_threads_at_once(driver, pg):
    with tarvikvi.open("Alpha") as other:
        driver.close_gate(".Reset(")
        thread, outcome = in_thread(pg.reset)
        driver.await_arrival()
        assert other.is_open
        assert other.identity()["channels"] == 2
        driver.open_gate()
        thread.join(WAIT)
        assert outcome == {"result": None}
