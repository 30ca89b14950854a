"""Prints which lines, functions and branches of qivo-ui/ the contract tests never reach.

coverage.py BUILD: a build folder made with -Db_coverage=true whose contract tests have run.

gcov's counts are added up over all programs and objects. The bodies that the compiler makes of one
destructor or constructor count as one function. Branches that only an exception takes are left out,
as each call has one. unreachable.txt lists what else cannot be reached, with reasons; an entry
there that no longer holds is an error.
"""

import collections
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
UNREACHABLE = pathlib.Path(__file__).with_name("unreachable.txt")
KINDS = ("line", "function", "branch")


class Counts:
    """How often each line, function and branch ran."""

    def __init__(self):
        self.runs = {kind: collections.Counter() for kind in KINDS}
        self.functions = {}

    def add(self, file):
        name = file["file"][file["file"].index("qivo-ui/"):]
        starts = []
        for function in file["functions"]:
            spelled = short(function["demangled_name"])
            self.runs["function"][name, function["start_line"], spelled] += (
                function["execution_count"])
            starts.append((function["start_line"], function["end_line"], spelled))
        for line in file["lines"]:
            number = line["line_number"]
            around = [s for s in starts if s[0] <= number <= s[1]]
            self.functions[name, number] = max(around)[2] if around else "file"
            self.runs["line"][name, number] += line["count"]
            for i, branch in enumerate(b for b in line["branches"] if not b["throw"]):
                at = name, number, line.get("function_name"), i
                self.runs["branch"][at] += branch["count"]

    def missed(self):
        """What never ran, as (kind, file, line)."""
        for kind in KINDS:
            for place in sorted({p[:2] for p, count in self.runs[kind].items() if count == 0}):
                yield kind, *place


def short(function):
    """"QivoUi::NaviFrame::PopItem(Elm_Object_Item*, ...)[abi:cxx11]" -> "NaviFrame::PopItem"."""
    bare = re.sub(r"\(anonymous namespace\)::|QivoUi::|\[abi:\w+\]", "", function)
    return re.sub(r"<.*", "", bare.split("(")[0]).split(" ")[-1]


def counted(build):
    counts = Counts()
    for data in sorted((build / "tests" / "contract").rglob("*.gcda")) + sorted(
            (build / "qivo-ui").rglob("*.gcda")):
        done = subprocess.run(["gcov", "--json-format", "--stdout", "--branch-probabilities",
                               "--demangled-names", data], cwd=build, check=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        for report in done.stdout.splitlines():
            for file in json.loads(report)["files"]:
                if re.match(r"(\.\./)*qivo-ui/|" + re.escape(f"{ROOT}/qivo-ui/"), file["file"]):
                    counts.add(file)
    return counts


def unreachable():
    """The listed places, each "KIND FILE: FUNCTION: TEXT", under their reasons."""
    lines = UNREACHABLE.read_text().splitlines()
    return [line for line in lines if line and not line.startswith("#")]


def main():
    if len(sys.argv) != 2 or not (pathlib.Path(sys.argv[1]) / "build.ninja").is_file():
        print(f'coverage.py: needs a build folder (got "{" ".join(sys.argv[1:])}")',
              file=sys.stderr)
        return 2
    counts = counted(pathlib.Path(sys.argv[1]).resolve())
    listed, told, fault = unreachable(), set(), False
    missed, excused = collections.Counter(), collections.Counter()
    for kind, name, number in counts.missed():
        text = (ROOT / name).read_text().splitlines()[number - 1].strip()
        entry = f"{kind} {name}: {counts.functions.get((name, number), 'file')}: {text}"
        many = sum(count == 0 for place, count in counts.runs[kind].items()
                   if place[:2] == (name, number))
        if entry in listed:
            told.add(entry)
            excused[kind] += many
        else:
            fault = True
            missed[kind] += many
            print(f"never reached ({name}:{number}):\n{entry}")
    for entry in [e for e in listed if e not in told]:
        fault = True
        print(f"script/coverage: listed as unreachable, but reached or gone:\n{entry}")
    figures = []
    for kind, plural in zip(KINDS, ("lines", "functions", "branches")):
        reachable = len(counts.runs[kind]) - excused[kind]
        figures.append(f"{plural} {reachable - missed[kind]} of {reachable}"
                       f" ({excused[kind]} unreachable)")
    print("script/coverage: " + ", ".join(figures))
    return 1 if fault else 0


if __name__ == "__main__":
    sys.exit(main())
