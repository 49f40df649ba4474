"""Bit patterns, by themselves and on an instrument."""

import pickle

import numpy
import pytest

import tarvikvi
from tarvikvi import Pattern

BITS = [1, 0, 1, 1, 0, 0, 0, 1, 1, 1]


@pytest.mark.parametrize(
    "source",
    [
        BITS,
        tuple(BITS),
        (bit == 1 for bit in BITS),
        "1011 0001 11",
        "1011_0001_11",
        numpy.array(BITS),
        numpy.array(BITS, dtype=numpy.uint8),
        numpy.array(BITS, dtype=bool),
        numpy.array(BITS * 2, dtype=numpy.uint8)[::2][:0].tolist() + BITS,
        numpy.repeat(numpy.array(BITS, dtype=numpy.uint8), 2)[::2],
        Pattern(BITS),
    ],
    ids=["list", "tuple", "generator", "text", "underscores", "int64", "uint8", "bool", "sliced", "strided", "pattern"])
def test_all_ways_to_tell_bits_make_the_same_pattern(source):
    assert Pattern(source) == Pattern(BITS)


def test_bytes_hold_eight_bits_each_the_first_in_the_highest_place():
    assert Pattern(b"\xb1\xc0", length=10) == Pattern(BITS)
    assert Pattern(BITS).packed == bytes(Pattern(BITS)) == b"\xb1\xc0"
    assert Pattern(bytearray(b"\x80")) == Pattern(memoryview(b"\x80")) == Pattern("10000000")


def test_numpy_reads_the_bits_where_they_are():
    pattern = Pattern(BITS)
    array = numpy.asarray(pattern)
    assert array.dtype == numpy.uint8
    assert array.tolist() == BITS
    assert not array.flags.owndata
    assert not array.flags.writeable
    again = numpy.asarray(pattern)
    assert array.__array_interface__["data"] == again.__array_interface__["data"]


@pytest.mark.parametrize(
    "source, error",
    [
        ([0, 1, 2], ValueError), ([0, -1], ValueError), ([0, 1000], ValueError), ("012", ValueError), ([0.0, 1.0], TypeError),
        (numpy.array([0.5]), TypeError), (numpy.array([[0, 1]]), ValueError), (numpy.array(1), ValueError),
        (numpy.array([3], dtype=numpy.uint8), ValueError), (5, TypeError), (None, TypeError), (["1"], TypeError),
        ([0] * 16385, ValueError), (b"\0" * 2049, ValueError),
    ],
    ids=["two", "minus", "thousand", "digit", "floats", "float-array", "matrix", "scalar", "three", "number", "none", "texts",
         "long", "long-bytes"])
def test_what_is_no_pattern_is_refused(source, error):
    with pytest.raises(error):
        Pattern(source)


def test_a_length_beyond_the_bits_is_refused():
    with pytest.raises(ValueError, match="there are 8 bits and not 9"):
        Pattern(b"\0", length=9)


def test_the_longest_pattern_goes_through_bytes_and_back():
    bits = [(i * i) % 7 % 2 for i in range(16384)]
    pattern = Pattern(bits)
    assert list(Pattern(pattern.packed)) == bits
    assert repr(pattern) == "<Pattern of 16384 bits>"


def test_a_pattern_is_a_sequence_of_its_own():
    pattern = Pattern(BITS)
    assert (len(pattern), pattern[0], pattern[-1], list(pattern[1:4])) == (10, 1, 1, [0, 1, 1])
    assert pickle.loads(pickle.dumps(pattern)) == pattern
    assert {pattern: "kept"}[Pattern(BITS)] == "kept"
    assert pattern != BITS
    assert Pattern() == Pattern("") == Pattern(b"")


@pytest.mark.parametrize("length", [1, 7, 8, 9, 4096, 16384])
def test_an_instrument_gives_back_the_bits_that_it_got(length):
    bits = (numpy.arange(length) * 2654435761 >> 7 & 1).astype(numpy.uint8)
    with tarvikvi.open("VP-210") as pg:
        pg.reset()
        pg.pattern.stream[2] = bits
        pg.pattern.strobe = bits
        assert numpy.array_equal(numpy.asarray(pg.pattern.stream[2]), bits)
        assert pg.pattern.strobe == Pattern(bits)


def test_a_bad_pattern_is_refused_by_the_name_of_its_setting():
    with tarvikvi.open("VP-210") as pg:
        with pytest.raises(ValueError, match="^pattern.strobe: a bit is 0 or 1$"):
            pg.pattern.strobe = [0, 5]
        with pytest.raises(TypeError, match="^pattern.stream.1.: "):
            pg.pattern.stream[1] = 7
