"""The changes that are tried in classes: order, virtuality, access, defaults."""

import re

from clang.cindex import CursorKind as Kind

CLASSES = (Kind.CLASS_DECL, Kind.STRUCT_DECL)
MEMBERS = (Kind.FIELD_DECL, Kind.CXX_METHOD, Kind.DESTRUCTOR, Kind.VAR_DECL)


def classes(source):
    for cursor in source.cursors:
        if cursor.kind in CLASSES and cursor.is_definition():
            yield cursor, list(cursor.get_children())


def member(source, cursor):
    """The extent of a member with what ends it."""
    begin, end = source.extent(cursor)
    if not source.text[begin:end].endswith("}"):
        end = source.text.index(";", end) + 1
    return begin, end


def swapped(source, kind, cursors):
    for first, second in zip(cursors, cursors[1:]):
        (a, b), (c, d) = member(source, first), member(source, second)
        yield source.mutant(kind, (a, b, source.text[c:d]), (c, d, source.text[a:b]))


def swapped_members(source):
    for _, children in classes(source):
        fields = [c for c in children if c.kind == Kind.FIELD_DECL]
        yield from swapped(source, "fields swapped", fields)
        slots = [c for c in children if c.kind in (Kind.CXX_METHOD, Kind.DESTRUCTOR)
                 and c.is_virtual_method() and "override" not in source.words(c)]
        yield from swapped(source, "virtual operations swapped", slots)


def left_out_members(source):
    for _, children in classes(source):
        for child in children:
            if child.kind == Kind.FIELD_DECL:
                begin, end = member(source, child)
                yield source.mutant("member left out", (begin, end, ""))


def added_members(source):
    for _, children in classes(source):
        for child in children:
            begin, _ = source.extent(child)
            if child.kind == Kind.FIELD_DECL:
                yield source.mutant("field added", (begin, begin, "void* mAdded = nullptr; "))
        slots = [c for c in children if c.kind in (Kind.CXX_METHOD, Kind.DESTRUCTOR)]
        for child in slots[-1:]:
            end = member(source, child)[1]
            yield source.mutant("operation added", (end, end, " virtual void Added() {}"))


def other_words(source):
    for _, children in classes(source):
        for child in children:
            if child.kind in MEMBERS:
                yield from without_words(source, *member(source, child))
            elif child.kind == Kind.CXX_BASE_SPECIFIER:
                begin, _ = source.extent(child)
                if source.text[begin:].startswith("public"):
                    yield source.mutant("base hidden", (begin, begin + 6, "private"))
            elif child.kind == Kind.CXX_ACCESS_SPEC_DECL:
                begin, end = source.extent(child)
                if "public" in source.words(child):
                    yield source.mutant("operations hidden", (begin, end, "private:"))


def without_words(source, begin, end):
    text = source.text[begin:end]
    for word in ("virtual ", "static ", " = 0"):
        at = text.find(word)
        if at >= 0:
            body = " { throw 0; }" if word == " = 0" else ""
            last = end if body else begin + at + len(word)
            yield source.mutant(f"without {word.strip()}", (begin + at, last, body))
    if text.startswith("virtual") and text.endswith(";") and " = " not in text:
        yield source.mutant("made abstract", (end - 1, end - 1, " = 0"))
    for found in re.finditer(r"(?<=[(,])\s*(const )?([\w:<>]+)&", text):
        yield source.mutant("parameter by value", (begin + found.start(), begin + found.end(),
                                                   f" {found[2]}"))


def swapped_constants(source):
    for cursor in source.cursors:
        if cursor.kind == Kind.ENUM_DECL:
            names = [c for c in cursor.get_children() if c.kind == Kind.ENUM_CONSTANT_DECL]
            for first, second in zip(names, names[1:]):
                (a, b), (c, d) = source.extent(first), source.extent(second)
                yield source.mutant("constants swapped", (a, b, source.text[c:d]),
                                    (c, d, source.text[a:b]))


ALL = (swapped_members, left_out_members, added_members, other_words, swapped_constants)
