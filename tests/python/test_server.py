"""Instruments of a driver server on this machine, and a server that dies."""

import os
import subprocess

import pytest

import tarvikvi


@pytest.fixture
def server():
    with subprocess.Popen(
        [os.environ["SERVER"], "--insecure", "--listen", "127.0.0.1", "--port", "0"],
        stdout=subprocess.PIPE, text=True) as process:
        line = process.stdout.readline()
        process.url = "tarvik+insecure://127.0.0.1:" + line.strip().rpartition(":")[2]
        yield process
        process.kill()


def test_a_servers_instruments_are_listed_and_set(server):
    assert [instrument.name for instrument in tarvikvi.list(server=server.url)][:2] == ["VP-210", "VP-110"]
    with tarvikvi.open("VP-210", server=server.url) as pg:
        with pg.transaction():
            pg.timing.width[1] = "50ns"
            pg.levels.high[2] = 3.3
        assert (pg.timing.width[1], pg.levels.high[2]) == (50e-9, 3.3)
        with tarvikvi.open("VP-210") as here:
            here.reset()
            assert here.timing.width[1] == 1e-7
        assert pg.setup().levels.high[2] == 3.3


def test_a_server_that_dies_is_one_error_and_closes_the_session(server):
    pg = tarvikvi.open("VP-210", server=server.url)
    setup = pg.setup()
    server.kill()
    server.wait()
    with pytest.raises(tarvikvi.ConnectionLostError) as raised:
        pg.apply(setup)
    assert raised.value.number < 0
    assert not pg.is_open
    with pytest.raises(tarvikvi.ClosedError):
        pg.setup()


def test_a_server_that_is_not_there_is_a_connect_error():
    with pytest.raises(tarvikvi.ConnectError) as raised:
        tarvikvi.open("VP-210", server="tarvik+insecure://127.0.0.1:1")
    assert raised.value.number != 0
