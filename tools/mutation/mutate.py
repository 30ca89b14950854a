"""Mutation testing: changes qivo-ui/ one place at a time and prints what no contract test notices.

Each change is made in a scratch copy, built and tried: first with the tests that are named after
the changed file, then with all others. Results are kept in build/mutation, so an interrupted run
goes on where it was; it starts again when a source or a test has changed since. The exit status is
1 when a change went unnoticed without a reason in tools/mutation/explained.txt, or when an entry
there explains nothing.
"""

import argparse
import fcntl
import hashlib
import pathlib
import random
import signal
import sys

import explained
import trial
from project import ROOT, Guide

BUILD = ROOT / "build" / "mutation"
EXPLAINED = pathlib.Path(__file__).with_name("explained.txt")


def positive(text):
    number = int(text) if text.isascii() and text.isdigit() else 0
    if not 1 <= number <= 999999:
        raise argparse.ArgumentTypeError(f'takes a number from 1 to 999999 (got "{text}")')
    return number


class Parser(argparse.ArgumentParser):
    def error(self, message):
        print(f"script/mutate: {message}", file=sys.stderr)
        sys.exit(2)


def arguments():
    parser = Parser(prog="script/mutate", description=__doc__, allow_abbrev=False,
                    formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sample", type=positive, metavar="N", help="try only N changes")
    parser.add_argument("--seed", type=positive, metavar="S", default=1,
                        help="which changes the sample takes (default: 1)")
    parser.add_argument("--only", action="append", metavar="PATH",
                        help="change only this file or folder (repeatable)")
    parser.add_argument("--again", action="store_true",
                        help="skip what the last run noticed: for when tests were added")
    parser.add_argument("--jobs", type=positive, metavar="J", default=2,
                        help="how many scratch copies to work in (default: 2)")
    parser.add_argument("--list", action="store_true", help="print the changes, try none")
    parser.add_argument("--report", action="store_true",
                        help="print the results of the last runs, try none")
    return parser.parse_args()


def chosen_sources(project, only):
    sources = project.sources()
    for path in only or []:
        if not any(in_reach(s, path) for s in sources):
            print(f'script/mutate: no source at "{path}" (a file or folder of qivo-ui/)',
                  file=sys.stderr)
            sys.exit(2)
    return [s for s in sources if not only or any(in_reach(s, path) for path in only)]


def in_reach(source, path):
    return source == path or source.startswith(path.rstrip("/") + "/")


def fingerprint(root):
    """A digest of everything that a result depends on."""
    digest = hashlib.sha256()
    for folder in ("qivo-ui", "tests/contract", "tools/mutation", "subprojects", "res"):
        for file in sorted(f for f in (root / folder).rglob("*") if f.is_file()):
            if file.suffix not in (".pyc", ".txt"):
                digest.update(f"{file.relative_to(root)}\n".encode() + file.read_bytes())
    return digest.hexdigest()


def hold(folder):
    """Keeps other runs out of the scratch copies: each begins by undoing the changes in them."""
    folder.mkdir(parents=True, exist_ok=True)
    lock = (folder / "lock").open("w")
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        print(f"script/mutate: another run works in {folder}", file=sys.stderr)
        sys.exit(2)
    return lock


def opened_record(options):
    """The record of the last run, without what no longer holds."""
    kept, mark = BUILD / "results.jsonl", BUILD / "fingerprint"
    if options.report:
        return trial.Record(kept)
    now = fingerprint(ROOT)
    if not options.again and (not mark.exists() or mark.read_text() != now):
        kept.unlink(missing_ok=True)
    mark.write_text(now)
    record = trial.Record(kept)
    if options.again:
        record.forget("unnoticed")
    return record


def tell(mutant, result, left):
    if result not in ("noticed", "did not compile"):
        print(f"{result}: {mutant.path}:{mutant.line} {mutant.kind} ({left} left)", flush=True)


def report(mutants, record, reasons):
    """Prints what went unnoticed and the figures; returns whether all is well."""
    results = [record.results.get(trial.identity(m)) for m in mutants]
    unnoticed = [m for m, r in zip(mutants, results) if r == "unnoticed" and m.key not in reasons]
    for mutant in unnoticed:
        print(f"\nunnoticed: line {mutant.line}, {mutant.kind}\n\n{mutant.key}")
    count = {r: results.count(r) for r in ("noticed", "timed out", "unnoticed", "did not compile")}
    told = count["unnoticed"] - len(unnoticed)
    noticed = count["noticed"] + count["timed out"]
    share = 100 * noticed / ((noticed + len(unnoticed)) or 1)
    print(f"\nscript/mutate: {sum(count.values())} of {len(mutants)} changes tried,"
          f" {count['did not compile']} did not compile,"
          f" {noticed} noticed ({count['timed out']} by running out of time),"
          f" {told} unnoticed for a reason, {len(unnoticed)} unnoticed:"
          f" {share:.2f} % noticed of what can be")
    return not unnoticed


def main():
    options = arguments()
    # So an interrupted run puts the scratch copies back as well.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    project = Guide()
    sources = chosen_sources(project, options.only)
    reasons = explained.read(EXPLAINED)
    copies = 1 if options.list or options.report else options.jobs
    scratches = [BUILD / f"copy{n}" for n in range(1, copies + 1)]
    lock = hold(BUILD)
    project.prepare(scratches[0])
    mutants = trial.mutants_of(project, scratches[0], sources)
    if options.list:
        for mutant in mutants:
            print(f"{mutant.path}:{mutant.line} {mutant.kind}")
        return 0
    record = opened_record(options)
    if options.sample:
        rng = random.Random(options.seed)
        taken = rng.sample(range(len(mutants)), min(options.sample, len(mutants)))
        # In the order of the files, so little is built again.
        mutants = [mutants[i] for i in sorted(taken)]
    if not options.report:
        trial.try_all(project, scratches, mutants, record, tell)
    is_well = report(mutants, record, reasons)
    if not (options.sample or options.only):
        results = [record.results.get(trial.identity(m)) for m in mutants]
        for key, fault in explained.stale(reasons, mutants, results):
            print(f"script/mutate: an explained change {fault}:\n{key}", file=sys.stderr)
            is_well = False
    lock.close()
    return 0 if is_well else 1


if __name__ == "__main__":
    sys.exit(main())
