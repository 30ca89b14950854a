"""Tries changes, each in a scratch copy, and records the results."""

import concurrent.futures
import hashlib
import json
import queue
import re

import batch
import changes
import declarations
from project import run
from source import Source

BUILDERS = ("ninja", "c++")


def mutants_of(project, scratch, paths):
    """Every change of these files, in the order of the files, no two the same."""
    seen, found = set(), []
    for path in paths:
        source = Source(scratch, path, project.arguments(scratch, path))
        ours = [m for change in (*changes.ALL, *declarations.ALL) for m in change(source) if m]
        for mutant in sorted(ours, key=lambda m: (m.line, m.kind, m.key, m.text)):
            name = identity(mutant)
            if name not in seen:
                seen.add(name)
                found.append(mutant)
    return found


def identity(mutant):
    """Identifies the change by its file's code, without the comments."""
    code = re.sub(r'("(?:[^"\\\n]|\\.)*")|//[^\n]*|/\*.*?\*/', lambda found: found[1] or "",
                  mutant.text, flags=re.DOTALL)
    lines = [line.strip() for line in code.splitlines() if line.strip()]
    return hashlib.sha256("\n".join([mutant.path, *lines]).encode()).hexdigest()[:16]


class Record:
    """The result of each change so far, in a file that a later run goes on with."""

    def __init__(self, file):
        self._file = file
        self.results = {}
        if file.exists():
            for line in file.read_text().splitlines():
                entry = json.loads(line)
                self.results[entry["change"]] = entry["result"]

    def forget(self, result):
        self.results = {c: r for c, r in self.results.items() if r != result}

    def add(self, mutant, result, by):
        self.results[identity(mutant)] = result
        entry = {"change": identity(mutant), "result": result, "by": by, "kind": mutant.kind,
                 "where": f"{mutant.path}:{mutant.line}"}
        with self._file.open("a") as out:
            out.write(json.dumps(entry) + "\n")


def meaning_of(command, output):
    """What failed in a step: a test, or the build."""
    if command[0] in BUILDERS:
        return "did not compile", ""
    failed = re.search(r"\[  FAILED  \] (\S+)", output)
    return "noticed", failed[1] if failed else "its end"


def passes(steps, scratch, environment):
    """The result of these steps, and the test that noticed the change."""
    for command in steps:
        status, output = run(command, scratch, environment)
        if status is None:
            return "timed out", ""
        if status != 0:
            return meaning_of(command, output)
    return "unnoticed", ""


def try_one(project, scratch, mutant):
    """Builds and tries one change by itself."""
    file = scratch / mutant.path
    original = file.read_bytes()
    file.write_bytes(mutant.text.encode("latin-1"))
    try:
        return passes(project.steps(mutant.path), scratch, project.environment(scratch))
    finally:
        file.write_bytes(original)


def prepare_all(project, scratches, path):
    """If the suite fails without any change, every change would count as noticed."""
    for scratch in scratches:
        project.prepare(scratch)
        result = passes(project.steps(path), scratch, project.environment(scratch))
        if result[0] != "unnoticed":
            raise RuntimeError(f"{path} without any change: {' '.join(result)}")


def in_parallel(workers, items, work):
    """Does work(worker, item) for all items, one at a time for each worker."""
    waiting = queue.Queue()
    for item in items:
        waiting.put(item)

    def serve(worker):
        while True:
            try:
                item = waiting.get_nowait()
            except queue.Empty:
                return
            work(worker, item)

    with concurrent.futures.ThreadPoolExecutor(len(workers)) as pool:
        try:
            for done in [pool.submit(serve, worker) for worker in workers]:
                done.result()
        finally:
            waiting.queue.clear()


def try_together(project, scratches, path, mutants, told):
    """Tries changes of bodies, all in one build of the first scratch copy."""
    numbered = dict(enumerate(mutants, 1))
    scratch = scratches[0]
    original = (scratch / path).read_bytes()
    environment = project.environment(scratch)

    def work(_, number):
        told(numbered[number], *passes(project.tests(path), scratch,
                                       dict(environment, **{batch.CHOICE: str(number)})))

    try:
        refused = batch.build(project, scratch, path, numbered)
        for number in refused:
            told(numbered[number], "did not compile", "")
        result = passes(project.tests(path), scratch, environment)
        if result[0] != "unnoticed":
            raise RuntimeError(f"{path} without any change: {' '.join(result)}")
        in_parallel(scratches, [n for n in numbered if n not in refused], work)
    finally:
        (scratch / path).write_bytes(original)


def is_chosen_late(mutant):
    """Whether a run can pick the change; the log's own function runs in the compiler."""
    return mutant.body and not mutant.path.endswith("/Log.h")


def try_all(project, scratches, mutants, record, tell):
    """Tries the changes that are not in the record."""
    waiting = [m for m in mutants if identity(m) not in record.results]
    alone = [m for m in waiting if not is_chosen_late(m)]
    left = iter(range(len(waiting) - 1, -1, -1))

    def told(mutant, result, by):
        record.add(mutant, result, by)
        tell(mutant, result, next(left))

    together = [m for m in waiting if m not in alone]
    for path in dict.fromkeys(m.path for m in together):
        try_together(project, scratches, path, [m for m in together if m.path == path], told)
    if alone:
        prepare_all(project, scratches, alone[-1].path)
    in_parallel(scratches, alone, lambda scratch, m: told(m, *try_one(project, scratch, m)))
