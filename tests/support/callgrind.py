"""Reads what valgrind's callgrind has counted."""

import collections
import re


class Profile:
    """Instructions and calls of a run, or of the part of it that a file holds.

    instructions: by function, as (object, file, name); what it called is not in it.
    calls: by caller and callee, each as above.
    spent: instructions of those calls, with what the callee called.
    """

    def __init__(self, path):
        self._names = {"ob": {}, "fl": {}, "fn": {}}
        self.instructions = collections.Counter()
        self.calls = collections.Counter()
        self.spent = collections.Counter()
        with open(path, encoding="utf-8", errors="replace") as lines:
            self._read(lines)

    def total(self, accept=lambda function: True):
        """The instructions of the functions that accept() takes."""
        return sum(count for function, count in self.instructions.items() if accept(function))

    def calls_of(self, callee, caller=lambda function: True):
        """How often functions with one of these names were called by what caller() takes."""
        return sum(count for (calling, called), count in self.calls.items()
                   if callee(called) and caller(calling))

    def total_with_calls(self, accept):
        """The instructions of the functions that accept() takes, and of all that they called."""
        return sum(count for (calling, called), count in self.spent.items()
                   if accept(called) and not accept(calling))

    def _name(self, kind, text):
        """A name is given once, as "(7) name"; then its number stands for it."""
        number, name = re.match(r"\((\d+)\)(?: (.*))?", text).groups()
        if name is not None:
            self._names[kind][number] = name
        return self._names[kind][number]

    def _read(self, lines):
        own = {"ob": "", "fl": "", "fn": ""}
        called = {}
        calls = None
        for line in lines:
            kind, _, text = line.rstrip("\n").partition("=")
            if kind in own:
                own[kind] = self._name(kind, text)
                called = {}
            elif kind in ("cob", "cfi", "cfl", "cfn"):
                kind = {"cob": "ob", "cfn": "fn"}.get(kind, "fl")
                called[kind] = self._name(kind, text)
            elif kind in ("fi", "fe"):
                self._name("fl", text)
            elif kind == "calls":
                calls = int(text.split()[0])
            elif re.match(r"[+*\-\d]", line):
                function = (own["ob"], own["fl"], own["fn"])
                if calls is None:
                    self.instructions[function] += int(line.split()[1])
                    continue
                # The line after a call has what the callee took.
                callee = (called.get("ob", own["ob"]), called.get("fl", own["fl"]), called["fn"])
                self.calls[function, callee] += calls
                self.spent[function, callee] += int(line.split()[1])
                calls, called = None, {}
