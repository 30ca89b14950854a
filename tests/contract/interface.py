"""Prints what the classes of qivo-ui/ promise to those who use them and derive from them.

    BUILD_DIR=BUILD python3 tests/contract/interface.py

For each header: its classes with their bases, their operations and fields in order, and its free
functions. The order of virtual operations and of fields is part of the promise; of the private
members only these count. interface.txt holds what was promised; test_interface.py compares.
"""

import json
import os
import pathlib
import shlex
import sys

from clang import cindex
from clang.cindex import AccessSpecifier, CursorKind as Kind

ROOT = pathlib.Path(__file__).resolve().parents[2]
KEPT = pathlib.Path(__file__).with_name("interface.txt")

CLASSES = (Kind.CLASS_DECL, Kind.STRUCT_DECL)
OPERATIONS = (Kind.CXX_METHOD, Kind.CONSTRUCTOR, Kind.DESTRUCTOR)
ALIASES = (Kind.TYPEDEF_DECL, Kind.TYPE_ALIAS_DECL)
INDENT = "    "


def arguments(build):
    """How the build compiles the application's sources, without what says where to."""
    commands = json.loads((build / "compile_commands.json").read_text())
    command = next(c["command"] for c in commands if c["file"].endswith("/NaviFrame.cpp"))
    words = shlex.split(command)
    kept = [w for w in words if w.startswith(("-D", "-std=", "-pthread"))]
    folders = [w[2:] for w in words if w.startswith("-I")]
    folders += [w[len("-isystem"):] for w in words if w.startswith("-isystem/")]
    return [*kept, *(f"-I{(build / folder).resolve()}" for folder in folders)]


def words_of(cursor):
    return [token.spelling for token in cursor.get_tokens()]


def parameter(cursor):
    words = words_of(cursor)
    default = " = " + " ".join(words[words.index("=") + 1:]) if "=" in words else ""
    return cursor.type.spelling + default


def operation(cursor):
    words = words_of(cursor)
    before = [word for word, given in (("static", cursor.is_static_method()),
                                       ("explicit", "explicit" in words),
                                       ("virtual", cursor.is_virtual_method())) if given]
    after = [word for word, given in (("const", cursor.is_const_method()),
                                      ("noexcept", "noexcept" in words),
                                      ("override", "override" in words),
                                      ("= 0", cursor.is_pure_virtual_method()),
                                      ("= delete", words[-2:] == ["=", "delete"])) if given]
    result = [] if cursor.kind in (Kind.CONSTRUCTOR, Kind.DESTRUCTOR) else [
        cursor.result_type.spelling]
    taken = ", ".join(parameter(argument) for argument in cursor.get_arguments())
    return " ".join([*before, *result, f"{cursor.spelling}({taken})", *after])


def member(cursor):
    """The lines of a member; nothing for one that is nobody's business."""
    access = cursor.access_specifier
    hidden = access == AccessSpecifier.PRIVATE
    if cursor.kind in CLASSES and cursor.is_definition():
        return [f"{access.name.lower()} {line}" if i == 0 else line
                for i, line in enumerate(described_class(cursor))]
    if cursor.kind in OPERATIONS and not (hidden and not cursor.is_virtual_method()):
        return [f"{access.name.lower()} {operation(cursor)}"]
    if cursor.kind == Kind.FIELD_DECL:
        return [f"{access.name.lower()} {cursor.type.spelling} {cursor.spelling}"]
    if cursor.kind == Kind.VAR_DECL:
        return [f"{access.name.lower()} static {cursor.type.spelling} {cursor.spelling}"]
    if cursor.kind == Kind.ENUM_DECL:
        constants = [f"{c.spelling} = {c.enum_value}" for c in cursor.get_children()]
        return [f"{access.name.lower()} enum {cursor.spelling} {{ {', '.join(constants)} }}"]
    if cursor.kind in ALIASES and not hidden:
        return [alias(cursor)]
    return []


def alias(cursor):
    return f"using {cursor.spelling} = {cursor.underlying_typedef_type.spelling}"


def described_class(cursor):
    children = list(cursor.get_children())
    bases = [f"{c.access_specifier.name.lower()} {c.type.spelling}"
             for c in children if c.kind == Kind.CXX_BASE_SPECIFIER]
    abstract = " [abstract]" if cursor.is_abstract_record() else ""
    yield f"class {cursor.spelling}{' : ' if bases else ''}{', '.join(bases)}{abstract}"
    for child in children:
        yield from (INDENT + line for line in member(child))


def described(cursors, ours):
    for cursor in cursors:
        if cursor.kind == Kind.NAMESPACE:
            lines = list(described(cursor.get_children(), ours))
            if lines:
                yield f"namespace {cursor.spelling or '(unnamed)'}"
                yield from (INDENT + line for line in lines)
        elif cursor.location.file is None or cursor.location.file.name != ours:
            continue
        elif cursor.kind in CLASSES and cursor.is_definition():
            yield from described_class(cursor)
        elif cursor.kind == Kind.FUNCTION_DECL:
            yield operation(cursor)
        elif cursor.kind == Kind.USING_DECLARATION:
            yield " ".join(words_of(cursor))
        elif cursor.kind in ALIASES:
            yield alias(cursor)


def parsed(root, headers, build):
    """All headers in one unit, as a source that includes each of them."""
    text = "".join(f'#include "{header}"\n' for header in headers)
    unit = cindex.Index.create().parse("all.cpp", args=[f"-I{root}/qivo-ui", *arguments(build)],
                                       unsaved_files=[("all.cpp", text)])
    errors = [d for d in unit.diagnostics if d.severity >= d.Error]
    if errors:
        raise ValueError(f"the headers of {root}/qivo-ui cannot be parsed: {errors[0]}")
    return list(unit.cursor.get_children())


def interface(root, build):
    """What the headers below a root promise, as text."""
    headers = sorted((root / "qivo-ui").rglob("*.h"), key=str)
    cursors = parsed(root, headers, build)
    lines = []
    for header in headers:
        lines += [f"{header.relative_to(root / 'qivo-ui')}:", *described(cursors, str(header)), ""]
    return "\n".join(lines)


if __name__ == "__main__":
    sys.stdout.write(interface(ROOT, pathlib.Path(os.environ["BUILD_DIR"]).resolve()))
