"""A replay's journal in the form that build servers read: a test case for each step."""

from xml.etree import ElementTree

from qivo_watch.command.beside import beside
from qivo_watch.command.replays.journal import Journal
from qivo_watch.errors import WatchError
from qivo_watch.lines import printable


def write(journal: Journal, name: str, left: list[tuple[int, str]], file: str) -> None:
    """LEFT: line and command of the steps that were not done."""
    name = printable(name)
    failed = sum(bool(entry.failure) for entry in journal.entries)
    suite = ElementTree.Element("testsuite", {
        "name": name, "tests": str(len(journal.entries) + len(left)), "failures": str(failed),
        "errors": "0", "skipped": str(len(left)),
        "time": f"{sum(entry.seconds for entry in journal.entries):.3f}"})
    for entry in journal.entries:
        case = _case(suite, name, entry.line, entry.command, entry.seconds)
        if entry.failure:
            told = ElementTree.SubElement(case, "failure", {
                "type": entry.failure.kind, "message": printable(entry.failure.text)})
            told.text = "\n".join(map(printable, entry.log))
    for line, command in left:
        ElementTree.SubElement(_case(suite, name, line, command, 0), "skipped")
    try:
        with beside(file) as part:
            ElementTree.ElementTree(suite).write(part, "UTF-8", xml_declaration=True)
    except OSError as error:
        raise WatchError(f'cannot write "{file}": {error.strerror}') from None


def _case(suite: ElementTree.Element, name: str, line: int, command: str,
          seconds: float) -> ElementTree.Element:
    return ElementTree.SubElement(suite, "testcase", {
        "classname": name, "name": f"{line}: {printable(command)}", "time": f"{seconds:.3f}"})
