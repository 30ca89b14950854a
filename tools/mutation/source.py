"""A source file: its text, its syntax tree, and what encloses a place."""

import bisect
import dataclasses

from clang import cindex
from clang.cindex import CursorKind as Kind

FUNCTIONS = (Kind.CXX_METHOD, Kind.FUNCTION_DECL, Kind.CONSTRUCTOR, Kind.DESTRUCTOR,
             Kind.FUNCTION_TEMPLATE)
CLASSES = (Kind.CLASS_DECL, Kind.STRUCT_DECL, Kind.ENUM_DECL)
LOG_INCLUDE = '#include "common/Log.h"\n'


@dataclasses.dataclass(frozen=True)
class Mutant:
    """One change of one file.

    `text` is the whole changed file. When the change is in the body of one function, `body` has
    the place of the unchanged body and the text that replaces it.
    """
    path: str
    line: int
    place: str
    kind: str
    removed: tuple
    added: tuple
    text: str
    body: tuple = None

    @property
    def key(self):
        """Identifies the change by its text, so that it is found again when lines move."""
        return "\n".join([f"{self.path}: {self.place}", *("- " + line for line in self.removed),
                          *("+ " + line for line in self.added)])


class Source:
    """A parsed file; offsets count bytes, so the text is held as bytes."""

    def __init__(self, root, path, arguments):
        self.path = path
        self.text = (root / path).read_bytes().decode("latin-1")
        self.unit = cindex.Index.create().parse(str(root / path), args=["-x", "c++", *arguments])
        errors = [d.spelling for d in self.unit.diagnostics if d.severity >= d.Error]
        if errors:
            raise ValueError(f"{path} cannot be parsed: {errors[0]}")
        self._name = str(root / path)
        self._lines = [0] + [i + 1 for i, c in enumerate(self.text) if c == "\n"]
        ours = [c for c in self.unit.cursor.get_children() if self._is_ours(c)]
        self.cursors = [c for top in ours for c in top.walk_preorder() if self._is_ours(c)]
        self.tokens = list(self.unit.get_tokens(extent=self.unit.cursor.extent))
        self._places = [(self.extent(c), c) for c in self.cursors
                        if c.kind in FUNCTIONS + CLASSES]

    def _is_ours(self, cursor):
        file = cursor.extent.start.file
        return file is not None and file.name == self._name

    @staticmethod
    def extent(node):
        return node.extent.start.offset, node.extent.end.offset

    def words(self, node):
        begin, end = self.extent(node)
        return self.text[begin:end]

    def statement(self, node):
        """The extent of a statement, including its semicolon."""
        begin, end = self.extent(node)
        if not self.text[begin:end].endswith(("}", ";")):
            end = self.text.index(";", end) + 1
        return begin, end

    def line(self, offset):
        return bisect.bisect_right(self._lines, offset)

    def enclosing(self, offset):
        """The innermost function, else class, around a place."""
        around = [(end - begin, c) for (begin, end), c in self._places if begin <= offset < end]
        functions = [pair for pair in around if pair[1].kind in FUNCTIONS]
        chosen = min(functions or around, key=lambda pair: pair[0], default=None)
        return chosen and chosen[1]

    def place(self, offset):
        cursor = self.enclosing(offset)
        names = []
        while cursor is not None and cursor.kind not in (Kind.NAMESPACE, Kind.TRANSLATION_UNIT):
            names.insert(0, cursor.spelling)
            cursor = cursor.semantic_parent
        return "::".join(names) or "file"

    def mutant(self, kind, *edits):
        """The file with these edits, or nothing when they change nothing."""
        text = self.text
        for begin, end, replacement in sorted(edits, reverse=True):
            text = text[:begin] + replacement + text[end:]
        if text == self.text:
            return None
        first = edits[-1][0] if edits[0][0] == 0 else edits[0][0]
        removed, added = _difference(self.text, text)
        return Mutant(self.path, self.line(first), self.place(first), kind, removed, added, text,
                      self._body(edits))

    def _body(self, edits):
        edits = sorted(edit for edit in edits if edit[2] != LOG_INCLUDE)
        function = self.enclosing(edits[0][0])
        if function is None or function.kind not in FUNCTIONS:
            return None
        for begin, end in [self.extent(c) for c in function.get_children()
                           if c.kind == Kind.COMPOUND_STMT]:
            if begin < edits[0][0] and edits[-1][1] < end:
                text = self.text[begin:end]
                for first, last, replacement in reversed(edits):
                    text = text[:first - begin] + replacement + text[last - begin:]
                return begin, end, text
        return None


def _difference(before, after):
    """The lines from the first that differs to the last, before and after."""
    old, new = before.splitlines(), after.removeprefix(LOG_INCLUDE).splitlines()
    while old and new and old[0] == new[0]:
        del old[0], new[0]
    while old and new and old[-1] == new[-1]:
        del old[-1], new[-1]
    return (tuple(line.strip() for line in old if line.strip()),
            tuple(line.strip() for line in new if line.strip()))
