"""A replay's journal as one page that needs nothing but a browser."""

import base64
import pathlib
from html import escape
from typing import Iterator

from qivo_watch.command.beside import beside
from qivo_watch.command.replays.journal import Entry, Failure, Journal
from qivo_watch.errors import WatchError
from qivo_watch.lines import level_of, printable

PAGE = "index.html"

_POLICY = "default-src 'none'; img-src data:; style-src 'unsafe-inline'"
_STYLE = """
body { font: 15px/1.4 sans-serif; margin: 2em auto; max-width: 62em; padding: 0 1em;
  background: #fff; color: #222 }
h1 { font-size: 1.4em } h1, p { margin: .3em 0 }
section { border-left: 4px solid #3a8a4a; margin: 1em 0; padding: .2em 1em }
section.failed { border-color: #c62828; background: #fdf0ef }
section.left { border-color: #bbb; color: #666 }
code, pre { font: 13px/1.4 monospace; white-space: pre-wrap; overflow-wrap: anywhere }
h2 { font-size: 1em; margin: .2em 0 } h2 span { float: right; font-weight: normal; color: #666 }
figure { display: inline-block; margin: .4em 1em .4em 0; text-align: center; color: #666 }
.screen { background: #000 center/contain no-repeat; border-radius: 50%; width: 180px;
  height: 180px; margin-bottom: .2em }
.failed .screen { width: 250px; height: 250px }
.complaint { color: #c62828; font-weight: bold }
.error { color: #c62828 } .warn { color: #8a5a00 }
"""


def write(journal: Journal, name: str, left: list[tuple[int, str]],
          folder: pathlib.Path) -> pathlib.Path:
    """LEFT: line and command of the steps that were not done. Returns the page's place."""
    page = folder / PAGE
    try:
        folder.mkdir(parents=True, exist_ok=True)
        with beside(str(page)) as part:
            part.write_text("\n".join(_page(journal, name, left)) + "\n", encoding="utf-8")
    except OSError as error:
        raise WatchError(f'cannot write "{page}": {error.strerror}') from None
    return page


def _page(journal: Journal, name: str, left: list[tuple[int, str]]) -> Iterator[str]:
    pictures = _Pictures()
    sections = [line for entry in journal.entries for line in _section(entry, pictures)]
    failed = next((entry for entry in journal.entries if entry.failure), None)
    seconds = sum(entry.seconds for entry in journal.entries)
    yield '<!DOCTYPE html>\n<html lang="en"><head><meta charset="utf-8">'
    yield '<meta name="viewport" content="width=device-width, initial-scale=1">'
    yield f'<meta http-equiv="Content-Security-Policy" content="{_POLICY}">'
    yield f"<title>{_text(name)}</title><style>{_STYLE}"
    yield from pictures.rules()
    yield f"</style></head><body><h1>{_text(name)}</h1>"
    result = (f'<a href="#line{failed.line}">line {failed.line} failed</a>' if failed
              else "passed")
    yield f"<p>{result}: {len(journal.entries)} steps in {seconds:.1f} s</p>"
    yield f"<p>{_text(_described(journal))}</p>"
    yield from sections
    for line, command in left:
        yield f'<section class="left"><h2>{line} <code>{_text(command)}</code>'
        yield "<span>not done</span></h2></section>"
    yield "</body></html>"


def _section(entry: Entry, pictures: "_Pictures") -> Iterator[str]:
    failure = entry.failure
    yield (f'<section id="line{entry.line}" class="{"failed" if failure else "done"}">'
           f"<h2>{entry.line} <code>{_text(entry.command)}</code>"
           f"<span>{entry.seconds:.2f} s</span></h2>")
    if failure:
        yield f'<p class="complaint">{_text(failure.text)}</p>'
    yield from (pictures.figure(picture, caption)
                for picture, caption in _shown(entry, failure) if picture)
    if entry.log:
        yield from _details(f"log, {len(entry.log)} lines", map(_log_line, entry.log), failure)
    if entry.tree:
        yield from _details("what the application tells a screen reader", map(_text, entry.tree),
                            failure)
    yield "</section>"


def _shown(entry: Entry, failure: Failure | None) -> list[tuple[bytes, str]]:
    """Pictures with their captions."""
    if failure and (failure.wanted or failure.difference):
        return [(failure.wanted, "expected"), (entry.after, "seen"),
                (failure.difference, "difference")]
    if entry.before == entry.after:
        return [(entry.after, "before and after")]
    return [(entry.before, "before"), (entry.after, "after")]


def _details(title: str, lines: Iterator[str], failure: Failure | None) -> Iterator[str]:
    yield f'<details{" open" if failure else ""}><summary>{title}</summary>'
    yield "<pre>" + "\n".join(lines) + "</pre></details>"


def _log_line(line: str) -> str:
    level = level_of(line) or ""
    return f'<span class="{level}">{_text(line)}</span>'


def _described(journal: Journal) -> str:
    state = journal.state
    if not state:
        return "no watch was there"
    app = state["app"]["id"] if state["app"] else "no application"
    return (f"{state['size']} pixels, {state['language']}, text size {state['textSize']:g}, "
            f"motion {state['motion']}, contrast {state['contrast']}; at the end {app}")


def _text(text: str) -> str:
    return escape(printable(text))


class _Pictures:
    """Each picture is in the page once, however often it is shown."""

    def __init__(self) -> None:
        self._names: dict[bytes, str] = {}

    def figure(self, picture: bytes, caption: str) -> str:
        name = self._names.setdefault(picture, f"p{len(self._names)}")
        return (f'<figure><div class="screen {name}" role="img" aria-label="{caption}"></div>'
                f"{caption}</figure>")

    def rules(self) -> Iterator[str]:
        for picture, name in self._names.items():
            data = base64.b64encode(picture).decode()
            yield f".{name} {{ background-image: url(data:image/png;base64,{data}) }}"
