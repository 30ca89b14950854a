"""Values and messages as they travel on a message bus.

The command has a client of its own: GLib's takes longer to load than a verb takes to be done.

A variant is written from a pair, its type and its value, and read as its value alone. A structure
is a tuple, an array a list, or a map if it has entries.
"""

from __future__ import annotations

import struct

TYPE_CHECKING = False  # typing itself takes long to load.
if TYPE_CHECKING:
    from typing import Any, Iterator

CALL, ANSWER, ERROR, SIGNAL = 1, 2, 3, 4
NO_AUTO_START = 2
HEAD_SIZE = 16
"""Bytes of a message that tell how long it is."""

_PATH, _INTERFACE, _MEMBER, _ERROR_NAME, _ANSWERED, _DESTINATION, _SENDER, _SIGNATURE = range(1, 9)
_TYPES = {_PATH: "o", _INTERFACE: "s", _MEMBER: "s", _DESTINATION: "s", _SIGNATURE: "g"}
_FIXED = {"y": ("B", 1), "b": ("I", 4), "n": ("h", 2), "q": ("H", 2), "i": ("i", 4), "u": ("I", 4),
          "h": ("I", 4), "x": ("q", 8), "t": ("Q", 8), "d": ("d", 8)}
_ALIGNMENTS = {"s": 4, "o": 4, "g": 1, "v": 1, "a": 4, "(": 8, "{": 8}


class Message:
    """One that has come. VALUES are its arguments, of the types in SIGNATURE."""

    def __init__(self, kind: int, fields: dict[int, Any], values: tuple):
        self.kind = kind
        self.answered = fields.get(_ANSWERED, 0)
        self.destination = fields.get(_DESTINATION, "")
        self.member = fields.get(_MEMBER, "")
        self.error = fields.get(_ERROR_NAME, "")
        self.signature = fields.get(_SIGNATURE, "")
        self.values = values


def call(serial: int, destination: str, path: str, interface: str, method: str,
         signature: str = "", *values: Any) -> bytes:
    """A call that starts no service."""
    body = _Writer()
    for kind, value in zip(_split(signature), values):
        body.write(kind, value)
    fields = {_PATH: path, _INTERFACE: interface, _MEMBER: method, _DESTINATION: destination}
    if signature:
        fields[_SIGNATURE] = signature
    head = _Writer()
    head.data += struct.pack("<cBBBII", b"l", CALL, NO_AUTO_START, 1, len(body.data), serial)
    head.write("a(yv)", [(number, (_TYPES[number], text)) for number, text in fields.items()])
    head.pad(8)
    return bytes(head.data + body.data)


def size_of(head: bytes) -> int:
    """The length of the message that begins with HEAD_SIZE bytes."""
    body, _, fields = struct.unpack(_order(head) + "3I", head[4:])
    return HEAD_SIZE + fields + -fields % 8 + body


def read(data: bytes) -> Message:
    reader = _Reader(data, _order(data))
    reader.place = HEAD_SIZE - 4
    fields = dict(reader.read("a(yv)"))
    reader.pad(8)
    return Message(data[1], fields, tuple(map(reader.read, _split(fields.get(_SIGNATURE, "")))))


def _order(head: bytes) -> str:
    return "<" if head[:1] == b"l" else ">"


def _split(signature: str) -> Iterator[str]:
    """The types in a signature."""
    place = 0
    while place < len(signature):
        end = _end(signature, place)
        yield signature[place:end]
        place = end


def _end(signature: str, place: int) -> int:
    """Where the type that begins at PLACE ends."""
    if signature[place] == "a":
        return _end(signature, place + 1)
    if signature[place] in "({":
        place += 1
        while signature[place] not in ")}":
            place = _end(signature, place)
    return place + 1


def _alignment(kind: str) -> int:
    return _FIXED[kind][1] if kind in _FIXED else _ALIGNMENTS[kind[0]]


class _Writer:
    def __init__(self) -> None:
        self.data = bytearray()

    def pad(self, size: int) -> None:
        self.data += bytes(-len(self.data) % size)

    def write(self, kind: str, value: Any) -> None:
        self.pad(_alignment(kind))
        if kind in _FIXED:
            self.data += struct.pack("<" + _FIXED[kind][0], value)
        elif kind in "sog":
            text = value.encode()
            self.data += struct.pack("<B" if kind == "g" else "<I", len(text)) + text + b"\0"
        elif kind == "v":
            self.write("g", value[0])
            self.write(*value)
        elif kind[0] == "a":
            self._write_array(kind[1:], value.items() if kind[1] == "{" else value)
        else:
            for part, item in zip(_split(kind[1:-1]), value):
                self.write(part, item)

    def _write_array(self, kind: str, items: Any) -> None:
        place = len(self.data)
        self.data += bytes(4)
        self.pad(_alignment(kind))
        begin = len(self.data)
        for item in items:
            self.write(kind, item)
        struct.pack_into("<I", self.data, place, len(self.data) - begin)


class _Reader:
    def __init__(self, data: bytes, order: str):
        self._data = data
        self._order = order
        self.place = 0

    def pad(self, size: int) -> None:
        self.place += -self.place % size

    def read(self, kind: str) -> Any:
        self.pad(_alignment(kind))
        if kind in _FIXED:
            value = self._number(kind)
            return bool(value) if kind == "b" else value
        if kind in "sog":
            size = self._number("y" if kind == "g" else "u")
            text = self._data[self.place:self.place + size].decode()
            self.place += size + 1
            return text
        if kind == "v":
            return self.read(self.read("g"))
        if kind[0] == "a":
            return self._array(kind[1:])
        return tuple(map(self.read, _split(kind[1:-1])))

    def _number(self, kind: str) -> Any:
        letter, size = _FIXED[kind]
        self.place += size
        return struct.unpack_from(self._order + letter, self._data, self.place - size)[0]

    def _array(self, kind: str) -> Any:
        size = self._number("u")
        self.pad(_alignment(kind))
        end = self.place + size
        items = []
        while self.place < end:
            items.append(self.read(kind))
        return dict(items) if kind[0] == "{" else items
