"""What a replay leaves behind: the page that shows its steps, the result for a build server, and
the exit status."""

import importlib
import re
import signal
import subprocess
from html.parser import HTMLParser
from xml.etree import ElementTree

import pytest
from selenium.webdriver.common.by import By

from simulator.desk import BUILD
from support.bus import wait_until


@pytest.fixture(name="file")
def _file(tmp_path):
    return tmp_path / "run.replay"


PICTURES = """
const [screens, done] = arguments;
Promise.all(screens.map(async screen => {
    const picture = new Image();
    picture.src = getComputedStyle(screen).backgroundImage.slice(5, -2);
    await picture.decode();
    return [screen.getAttribute('aria-label'), picture.naturalWidth, picture.src];
})).then(done, error => done(String(error)));
"""
"""What a browser has decoded of the screens on a page: captions, widths, sources."""


CRASHES = """#!/bin/sh
echo WATCH_PORT: first frame >&2
sleep 0.1
kill -SEGV $$
"""


class Page(HTMLParser):
    """What a browser would load and show."""

    def __init__(self, file):
        super().__init__()
        self.tags, self.shown = [], ""
        self.source = file.read_text(encoding="utf-8")
        self.feed(self.source)

    def handle_starttag(self, tag, attrs):
        self.tags.append((tag, dict(attrs)))

    def handle_data(self, data):
        self.shown += data


def test_the_page_of_a_difference_shows_what_was_expected_and_seen(desk, file, tmp_path, browser):
    file.write_text("time freeze\ntime set 10:08\nwait still\ncompare home.png\ntime thaw\n")
    desk.do("play", file, "--update")
    file.write_text(file.read_text().replace("10:08", "10:20"))
    told = desk.refused("play", file, status=3)
    page = Page(tmp_path / "run-trace" / "index.html")
    assert told.endswith(f'(see "{tmp_path}/run-trace/index.html")')
    assert "pixels differ from" in page.shown
    failed = page.source[page.source.index('<section id="line4" class="failed">'):]
    captions = re.findall('aria-label="([^"]*)"', failed)
    assert captions == ["expected", "seen", "difference"]
    assert_browser_shows(browser, tmp_path / "run-trace" / "index.html", captions)
    assert "5 time thaw" in page.shown and "not done" in page.shown
    desk.do("time", "thaw")


def assert_browser_shows(browser, file, captions):
    """The failed step with its pictures side by side, and nothing from elsewhere."""
    browser.get(file.as_uri())
    screens = browser.find_elements(By.CSS_SELECTOR, "section.failed .screen")
    found = browser.execute_async_script(PICTURES, screens)
    assert [picture[:2] for picture in found] == [[caption, 360] for caption in captions]
    assert len({source for _, _, source in found}) == len(captions)
    assert len({screen.rect["y"] for screen in screens}) == 1
    assert all(screen.is_displayed() and screen.rect["width"] == 250 for screen in screens)
    assert "pixels differ" in browser.find_element(By.CLASS_NAME, "complaint").text
    names = browser.execute_script(
        "return performance.getEntriesByType('resource').map(entry => entry.name)")
    assert [name for name in names if not name.startswith("data:")] == []
    assert browser.get_log("browser") == []


def test_a_page_loads_nothing_and_runs_nothing(desk, file, tmp_path):
    file.write_text("launch --extra '<script>alert(1)</script>=<b>'\nwait log never -t 0.1\n")
    desk.refused("play", file, "--trace", tmp_path / "trace", status=4)
    page = Page(tmp_path / "trace" / "index.html")
    assert "<script>alert(1)</script>" in page.shown
    assert not {tag for tag, _ in page.tags} & {"script", "link", "img", "iframe", "object", "b"}
    assert [found for found in re.findall(r"url\((.{5})", page.source)
            if found != "data:"] == []
    assert ("meta", {"http-equiv": "Content-Security-Policy", "content":
            "default-src 'none'; img-src data:; style-src 'unsafe-inline'"}) in page.tags


def test_a_wanted_page_shows_each_step_with_log_and_tree(desk, file, tmp_path):
    file.write_text("launch\nwait still\nbezel cw 2\nbutton click back\n")
    desk.do("play", file, "--trace", tmp_path / "trace")
    page = Page(tmp_path / "trace" / "index.html")
    assert [attributes["id"] for tag, attributes in page.tags if tag == "section"] == [
        "line1", "line2", "line3", "line4"]
    assert "SOnAppCreate" in page.shown and "SOnAppTerminate" in page.shown
    assert 'frame "qivo-guide-app" 0,0 360x360' in page.shown
    assert "passed: 4 steps" in page.shown
    pictures = re.findall(r"^\.p(\d+) ", page.source, re.MULTILINE)
    assert 2 <= len(pictures) < page.source.count("<figure>")


def test_a_replay_that_passes_takes_the_page_of_its_last_failure_away(desk, file, tmp_path):
    file.write_text("language '?'\n")
    desk.refused("play", file)
    assert (tmp_path / "run-trace" / "index.html").exists()
    file.write_text("bezel cw\n")
    desk.do("play", file)
    assert not (tmp_path / "run-trace").exists()


def test_a_page_that_cannot_be_written_hides_no_failure(desk, file, tmp_path):
    file.write_text("language '?'\n")
    (tmp_path / "run-trace").write_text("a file")
    assert desk.refused("play", file).endswith("(such as ko_KR or ar_EG.UTF-8)")


def test_a_page_is_as_wide_as_a_telephone(desk, file, tmp_path):
    file.write_text("bezel cw\n")
    desk.do("play", file, "--trace", tmp_path / "trace")
    assert ("meta", {"name": "viewport", "content": "width=device-width, initial-scale=1"}) in Page(
        tmp_path / "trace" / "index.html").tags


def test_a_replay_that_passes_with_a_page_takes_that_of_its_last_failure_away(desk, file,
                                                                              tmp_path):
    (tmp_path / "run-trace").mkdir()
    (tmp_path / "run-trace" / "index.html").write_text("of a failure")
    file.write_text("bezel cw\n")
    desk.do("play", file, "--trace", tmp_path / "trace")
    assert not (tmp_path / "run-trace").exists() and (tmp_path / "trace" / "index.html").exists()


def test_a_replay_that_is_interrupted_leaves_page_and_result(desk, file, tmp_path):
    file.write_text("bezel cw\nwait log never -t 600\nbezel ccw\n")
    before, result = desk.status()["bezel"], tmp_path / "result.xml"
    with subprocess.Popen(desk.command("play", file, "--trace", tmp_path, "--junit", result),
                          env=desk.environment, stderr=subprocess.PIPE) as playing:
        wait_until(lambda: desk.status()["bezel"] == before + 1, "the first step")
        playing.terminate()
        assert (playing.communicate()[1], playing.returncode) == (b"", 128 + signal.SIGTERM)
    # The first step may still be looked at.
    failed, *left = [part for case in ElementTree.parse(result).getroot() for part in case]
    assert (failed.tag, failed.get("type")) == ("failure", "interrupted")
    assert left and {part.tag for part in left} == {"skipped"}
    assert "it was interrupted" in Page(tmp_path / "index.html").shown


@pytest.mark.parametrize("lines, kind, status", [
    ("language '?'", "refused", 1), ("wait log never -t 0.1", "time", 4),
    ("launch /bin/false", "application", 5)])
def test_a_failure_has_a_kind_for_the_build_server_and_the_shell(desk, file, tmp_path, lines, kind,
                                                                 status):
    file.write_text(f"bezel cw\n{lines}\nbezel ccw\n")
    result = tmp_path / "result.xml"
    desk.refused("play", file, "--junit", result, status=status)
    suite = ElementTree.parse(result).getroot()
    assert (suite.tag, suite.get("tests"), suite.get("failures"), suite.get("skipped")) == (
        "testsuite", "3", "1", "1")
    passed, failed, skipped = suite
    assert passed.get("name") == "1: bezel cw" and not list(passed)
    assert [part.get("type") for part in failed] == [kind]
    assert [part.tag for part in skipped] == ["skipped"]


@pytest.mark.parametrize("lines, status", [
    ("touch --text x", 5), ("wait exit", 5), ("language '?'", 1),
    ("launch\nwait log never -t 0.1", 4)])
def test_a_crash_is_to_blame_for_what_needs_the_application(desk, file, tmp_path, lines, status):
    (tmp_path / "crash").write_text(CRASHES)
    (tmp_path / "crash").chmod(0o755)
    file.write_text(f"launch {tmp_path}/crash\nwait log SIGSEGV\n{lines}\n")
    desk.refused("play", file, status=status)


def test_a_result_can_be_read_whatever_the_replay_says(desk, tmp_path):
    result = tmp_path / "result.xml"
    for name in ("a\x01b", "a\udc80b"):
        file = tmp_path / f"{name}.replay"
        file.write_text("bezel cw\nlaunch --operation '\ufffe\uffff'\nlanguage '\uffff'\n",
                        encoding="utf-8")
        desk.refused("play", file, "--junit", result)
        assert ElementTree.parse(result).getroot().get("name") == "a\ufffdb"


def test_without_a_watch_a_replay_has_a_status_of_its_own(fresh, file, tmp_path):
    file.write_text("bezel cw\n")
    fresh.refused("play", file, "--junit", tmp_path / "result.xml", status=6)
    suite = ElementTree.parse(tmp_path / "result.xml").getroot()
    assert suite.find("testcase/failure").get("type") == "watch"


def test_a_command_that_cannot_write_leaves_a_page(desk, file, tmp_path):
    file.write_text("log\n")
    with open("/dev/full", "w", encoding="utf-8") as full:
        result = subprocess.run(desk.command("play", file), env=desk.environment, stdout=full,
                                stderr=subprocess.PIPE, text=True)
    assert result.returncode == 1 and ":1: log: output: No space left on device" in result.stderr
    assert "No space left" in Page(tmp_path / "run-trace" / "index.html").shown


def test_a_picture_that_has_gone_meanwhile_leaves_a_difference(tmp_path, monkeypatch):
    monkeypatch.syspath_prepend(str(BUILD / "simulator"))
    journal = importlib.import_module("qivo_watch.command.replays.journal").Journal(None, False)
    errors = importlib.import_module("qivo_watch.errors")
    gone = errors.Differs("9 pixels differ", tmp_path / "a.png", tmp_path / "a-diff.png")
    assert journal.end(1, "compare a.png", gone) == ("difference", "9 pixels differ", b"", b"")


def test_a_result_that_cannot_be_written_is_told(desk, file, tmp_path):
    file.write_text("bezel cw\n")
    assert "cannot write" in desk.refused("play", file, "--junit", tmp_path / "no" / "result.xml",
                                          "--trace", tmp_path / "trace")
    assert (tmp_path / "trace" / "index.html").exists()
    assert "cannot write" in desk.refused("play", file, "--trace", file / "trace")
    file.write_text("wait log never -t 0.1\n")
    told = desk.refused("play", file, "--trace", file / "trace", status=4)
    assert "no line with" in told and "cannot write" in told


@pytest.mark.parametrize("lines, complaint, status", [
    ("bezel cw\n", ":2: record stop: cannot record", 1),
    ("bezel cw\nwait log never -t 0.1\n", ":3: wait log never -t 0.1: no line with", 4)])
def test_a_recording_that_fails_hides_no_failure_and_no_result(desk, file, tmp_path, monkeypatch,
                                                               lines, complaint, status):
    encoder, result = tmp_path / "ffmpeg", tmp_path / "result.xml"
    encoder.write_text("#!/bin/sh\nexit 1\n", encoding="utf-8")
    encoder.chmod(0o755)
    monkeypatch.setitem(desk.environment, "PATH", f"{tmp_path}:{desk.environment['PATH']}")
    file.write_text(f"record {tmp_path / 'run.gif'}\n{lines}", encoding="utf-8")
    told = desk.refused("play", file, "--junit", result, status=status)
    assert complaint in told and "run-trace/index.html" in told
    assert ElementTree.parse(result).getroot().get("failures") == "1"
