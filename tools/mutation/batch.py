"""Many changes of one file in a single build; a run of the tests picks one of them.

All changed bodies of a function are built side by side, and the environment variable MUTANT chooses
which of them runs; without it, the unchanged one. So a file is built once or twice instead of once
for each change.
"""

import re

from source import LOG_INCLUDE

CHOICE = "MUTANT"
# A header is read many times.
HEAD = f"""#ifndef {CHOICE}_CHOSEN
#define {CHOICE}_CHOSEN
{LOG_INCLUDE}#include <cstdlib>
static const int sMutant = std::getenv("{CHOICE}") ? std::atoi(std::getenv("{CHOICE}")) : 0;
#endif
"""


def combined(original, numbered):
    """The file with these bodies, and the lines that each of them takes: (first, last, number)."""
    bodies = {}
    for number, mutant in numbered.items():
        begin, end, text = mutant.body
        bodies.setdefault((begin, end), []).append((number, text))
    out, ranges, done = HEAD, [], 0
    for (begin, end), changed in sorted(bodies.items()):
        out += original[done:begin] + "{ switch (sMutant) {"
        for number, text in changed:
            out += f"\ncase {number}:\n"
            first = out.count("\n") + 1
            out += text
            ranges.append((first, out.count("\n") + 1, number))
            out += "\nbreak;"
        out += "\ndefault:\n" + original[begin:end] + "\n} }"
        done = end
    return out + original[done:], ranges


def broken(path, ranges, output):
    """The numbers of the bodies in which the compiler found errors."""
    lines = {int(n) for n in re.findall(rf"{re.escape(path)}:(\d+):\d+: error:", output)}
    return {number for first, last, number in ranges
            if any(first <= line <= last for line in lines)}


def build(project, scratch, path, numbered):
    """Builds the changes of a file that compile; returns the numbers of those that do not."""
    original = (scratch / path).read_bytes().decode("latin-1")
    left, refused = dict(numbered), set()
    while True:
        text, ranges = combined(original, left)
        (scratch / path).write_bytes(text.encode("latin-1"))
        status, output = project.build_all(scratch)
        if status == 0:
            return refused
        wrong = broken(path, ranges, output)
        if not wrong:
            raise RuntimeError(f"{path} does not build:\n{output[-3000:]}")
        refused |= wrong
        left = {number: mutant for number, mutant in left.items() if number not in wrong}
