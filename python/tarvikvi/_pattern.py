"""Bit patterns."""

from __future__ import annotations

import operator
from collections.abc import Iterable, Iterator, Sequence
from typing import Any, Union, overload

from . import _core

Bits = Union["Pattern", bytes, bytearray, memoryview, str, Iterable[int], Iterable[bool]]
"""What a pattern is made of."""

_TO_DIGITS = bytes.maketrans(b"\0\1", b"01")
_FROM_DIGITS = bytes.maketrans(b"01", b"\0\1")


def _unpacked(packed: bytes, length: int) -> bytes:
    marked = int.from_bytes(b"\1" + packed, "big")
    return bin(marked)[3 : 3 + length].encode("ascii").translate(_FROM_DIGITS)


def _of_text(text: str) -> bytes:
    digits = text.replace(" ", "").replace("_", "")
    if digits.strip("01"):
        raise ValueError(f"{text!r} has other characters than 0, 1, blanks and underscores")
    return digits.encode("ascii").translate(_FROM_DIGITS)


def _of_array(array: Any) -> bytes | None:
    """The bytes of an array whose elements are bytes, straight from its memory."""
    dimensions = len(array.shape)
    if dimensions != 1:
        raise ValueError(f"an array of one dimension is wanted, not of {dimensions}")
    if array.dtype.kind not in "bui":
        raise TypeError(f"an array of whole numbers or truth values is wanted, not of {array.dtype}")
    return array.tobytes() if array.dtype.itemsize == 1 else None


def _of_elements(elements: Iterable[Any]) -> bytes:
    try:
        return bytes(operator.index(element) for element in elements)
    except ValueError:
        raise ValueError("a bit is 0 or 1") from None


def _unpacked_of(bits: Bits) -> bytes:
    if isinstance(bits, Pattern):
        return bits._bits
    if isinstance(bits, (bytes, bytearray, memoryview)):
        packed = bytes(bits)
        return _unpacked(packed, 8 * len(packed))
    if isinstance(bits, str):
        return _of_text(bits)
    if hasattr(bits, "__array_interface__"):
        unpacked = _of_array(bits)
        if unpacked is not None:
            return unpacked
    return _of_elements(bits)


class Pattern(Sequence[int]):
    """A stream of bits, from the first address on. It does not change.

    Made from a text or a sequence of 0 and 1, from a numpy array of them, or from bytes, which hold eight bits each with
    the first in the highest place. `length` cuts the bits behind the last one that counts.

    >>> Pattern("1010 0001")
    Pattern('10100001')
    >>> Pattern([1, 0, 1]).packed
    b'\\xa0'
    >>> Pattern(b"\\xff\\x00", length=10)
    Pattern('1111111100')
    >>> len(Pattern(b"\\xff\\x00")), Pattern("0110")[1], Pattern("0110")[2:]
    (16, 1, Pattern('10'))

    numpy sees the bits where they are, one element for each, without a copy:

    >>> import numpy
    >>> numpy.asarray(Pattern("0110"))
    array([0, 1, 1, 0], dtype=uint8)
    """

    __slots__ = ("_bits",)
    _bits: bytes

    def __init__(self, bits: Bits = (), *, length: int | None = None) -> None:
        unpacked = _unpacked_of(bits)
        if unpacked.strip(b"\0\1"):
            raise ValueError("a bit is 0 or 1")
        if length is not None:
            if not 0 <= operator.index(length) <= len(unpacked):
                raise ValueError(f"there are {len(unpacked)} bits and not {length}")
            unpacked = unpacked[:length]
        if len(unpacked) > _core.LONGEST_PATTERN:
            raise ValueError(f"{len(unpacked)} bits are more than {_core.LONGEST_PATTERN}")
        self._bits = unpacked

    @property
    def packed(self) -> bytes:
        """The bits in bytes, the first in the highest place; bits behind the end are 0."""
        count = (len(self._bits) + 7) // 8
        digits = self._bits.translate(_TO_DIGITS).ljust(8 * count, b"0")
        return int(digits or b"0", 2).to_bytes(count, "big")

    @property
    def __array_interface__(self) -> dict[str, Any]:
        return {"shape": (len(self._bits),), "typestr": "|u1", "data": self._bits, "version": 3}

    def __bytes__(self) -> bytes:
        return self.packed

    def __len__(self) -> int:
        return len(self._bits)

    @overload
    def __getitem__(self, index: int) -> int: ...
    @overload
    def __getitem__(self, index: slice) -> Pattern: ...
    def __getitem__(self, index: int | slice) -> int | Pattern:
        if isinstance(index, slice):
            return Pattern(list(self._bits[index]))
        return self._bits[index]

    def __iter__(self) -> Iterator[int]:
        return iter(self._bits)

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Pattern):
            return NotImplemented
        return self._bits == other._bits

    def __hash__(self) -> int:
        return hash(self._bits)

    def __str__(self) -> str:
        return self._bits.translate(_TO_DIGITS).decode("ascii")

    def __repr__(self) -> str:
        return f"Pattern('{self}')" if len(self) <= 64 else f"<Pattern of {len(self)} bits>"

    def __reduce__(self) -> tuple[Any, ...]:
        return Pattern, (str(self),)


def _pattern_of(raw: tuple[int, bytes]) -> Pattern:
    """The pattern that the core hands out as its length and its bytes."""
    return Pattern(raw[1], length=raw[0])
