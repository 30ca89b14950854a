"""Replays: what a file may say, and what becomes of it."""

import struct
import zlib

import pytest
from PIL import Image, ImageDraw

from simulator.desk import GUIDE


@pytest.fixture(name="replay")
def _replay(tmp_path):
    def write(text):
        file = tmp_path / "run.replay"
        file.write_text(text, encoding="utf-8")
        return file
    return write


@pytest.mark.parametrize("line, complaint", [
    ("dance", "invalid choice: 'dance'"),
    ("bezel sideways", "argument direction: invalid choice: 'sideways' (choose from 'cw', 'ccw')"),
    ("wait", "the following arguments are required: log|text|still|frame|exit"),
    ("wait log", "the following arguments are required: TEXT"),
    ("wait still -t soon", '"soon" is not from 0 to 3600'),
    ('wait log "open', "No closing quotation"),
    ("compare", "the following arguments are required: FILE"),
    ("compare page.png --tolerance 256", '"256" is not from 0 to 255'),
    ("record run.bmp", "does not end in .gif .apng .png .webp .mp4"),
    ("record run.replay", "a replay records the screen only"),
    ("swipe 9 9 9 9 --then 9,9", '"9,9" is not X,Y,MS'),
    ("play other.replay", "invalid choice: 'play'"),
    ("status --name other", "unrecognized arguments: --name other"),
    ("status --help", "unrecognized arguments: --help"),
    ("bezel cw -hi 5", "unrecognized arguments: -hi"),
    ("wait log -h", "the following arguments are required: TEXT"),
])
def test_a_mistake_is_told_with_its_line_before_anything_is_done(desk, replay, line, complaint):
    before = desk.status()["bezel"]
    file = replay(f"# a run\nbezel cw\n\n{line}\n")
    told = desk.refused("play", file, status=2)
    assert told.startswith(f"qivo-watch: {file}:4: ") and complaint in told
    assert desk.status()["bezel"] == before


def test_a_file_that_is_not_there_or_no_text_is_told(desk, tmp_path):
    assert "No such file" in desk.refused("play", tmp_path / "none.replay", status=2)
    (tmp_path / "bytes.replay").write_bytes(b"\xff\xfe")
    assert "not UTF-8" in desk.refused("play", tmp_path / "bytes.replay", status=2)


def test_the_first_command_that_fails_ends_a_replay_and_is_named(desk, replay):
    before = desk.status()["bezel"]
    file = replay("bezel cw\nlanguage '?'\nbezel cw 7\n")
    told = desk.refused("play", file)
    assert told == f"qivo-watch: {file}:2: language '?': \"?\" is not a language (such as " \
                   f'ko_KR or ar_EG.UTF-8) (see "{file.with_name("run-trace")}/index.html")'
    assert desk.status()["bezel"] == before + 1


def test_comments_and_quotes_are_as_in_a_shell(desk, replay):
    desk.do("play", replay("  # nothing but a comment\nlanguage 'de_DE' # the language\n"))
    assert desk.status()["language"] == "de_DE.UTF-8"
    desk.do("language", "en_US")


def test_a_wait_for_a_log_line_passes_over_lines_of_before(desk, replay):
    desk.do("launch", GUIDE, "--operation", "before")
    file = replay('wait log "operation:[before]" -t 0.2\n')
    assert 'no line with "operation:[before]" within 0.2 s' in desk.refused("play", file, status=4)
    file = replay('launch --operation now\nwait log "operation:[now]"\n'
                  'button click back\nwait exit\n')
    desk.do("play", file)


def test_a_wait_for_a_frame_sees_the_change_that_the_command_before_it_made(desk, replay):
    desk.do("play", replay("launch\nwait frame\nbutton click back\nwait exit\nwait frame\n"))
    assert "did not change within 0.2 s" in desk.refused(
        "play", replay("time freeze\nwait still\nlanguage en_US\nwait frame -t 0.2\n"), status=4)
    desk.do("time", "thaw")


def test_a_picture_is_compared_within_the_tolerance_and_a_difference_is_left(desk, replay,
                                                                             tmp_path):
    steps = replay("time freeze\nwait still\ncompare home.png\ntime thaw\n")
    difference = tmp_path / "home-diff.png"
    desk.do("play", steps, "--update")
    desk.do("compare", tmp_path / "home.png", "--tolerance", "255")
    with Image.open(tmp_path / "home.png") as opened:
        changed = opened.copy()
    ImageDraw.Draw(changed).rectangle((150, 150, 250, 250), fill=(255, 0, 255, 255))
    changed.save(tmp_path / "home.png")
    told = desk.refused("play", steps, status=3)
    assert f"{steps}:3: compare home.png: " in told and str(difference) in told
    with Image.open(difference) as opened:
        assert opened.getpixel((160, 160)) == (255, 0, 0, 255)
    desk.do("time", "thaw")
    desk.do("play", steps, "--update")
    desk.do("time", "freeze")
    desk.do("wait", "still")
    desk.do("compare", tmp_path / "home.png")
    assert not difference.exists()
    desk.do("time", "thaw")


def test_a_picture_of_another_size_and_one_that_is_none_are_refused(desk, tmp_path):
    Image.new("RGBA", (10, 10)).save(tmp_path / "small.png")
    assert "has 10x10 pixels, the screen 360x360" in desk.refused(
        "compare", tmp_path / "small.png")
    (tmp_path / "none.png").write_text("no picture", encoding="utf-8")
    assert "cannot read the picture" in desk.refused("compare", tmp_path / "none.png")


@pytest.mark.parametrize("side", [10_000, 50_000])
def test_a_picture_that_claims_to_be_huge_is_refused_in_one_line(desk, tmp_path, side):
    header = b"IHDR" + struct.pack(">2I5B", side, side, 8, 6, 0, 0, 0)
    (tmp_path / "huge.png").write_bytes(
        b"\x89PNG\r\n\x1a\n" + struct.pack(">I", 13) + header
        + struct.pack(">I", zlib.crc32(header)) + struct.pack(">I", 0) + b"IDAT"
        + struct.pack(">I", zlib.crc32(b"IDAT")))
    assert "cannot read the picture" in desk.refused("compare", tmp_path / "huge.png")


def test_a_replay_records_itself(desk, replay, tmp_path):
    file = tmp_path / "run.gif"
    desk.do("play", replay(f"record {file}\nlaunch\nwait still\nbezel cw 5\nwait still\n"
                           "record stop\nbutton click back\n"))
    with Image.open(file) as picture:
        assert picture.n_frames > 3
    assert "no recording is running" in desk.refused("play", replay("record stop\n"))


def test_a_replay_starts_and_stops_a_watch_of_its_own(desk, replay):
    desk.do("--name", "own", "play", replay(
        "start --headless --size 454\nbezel ccw 2\nstop\n"))
    assert "is not running" in desk.refused("--name", "own", "status")


@pytest.mark.parametrize("text, complaint", [
    ("# a comment\u0085bezel cw", "1: U+0085 is not allowed in a replay"),
    ("# a comment\u2028bezel cw", "1: U+2028 is not allowed in a replay"),
    ("bezel cw\nlaunch a\0b", "2: U+0000 is not allowed in a replay"),
    ("bezel cw\nlaunch '\033[31m'", "2: U+001B is not allowed in a replay"),
    ("bezel cw\nlaunch " + "x" * 1_000_000, "2: the line is longer than 8192 characters"),
])
def test_what_an_editor_hides_and_endless_words_are_refused(desk, replay, text, complaint):
    before = desk.status()["bezel"]
    assert complaint in desk.refused("play", replay(text), status=2)
    assert desk.status()["bezel"] == before


def test_lines_may_end_as_on_another_system(desk, replay):
    file = replay("")
    file.write_bytes(b"# a run\r\nbezel cw\r\n")
    before = desk.status()["bezel"]
    desk.do("play", file)
    assert desk.status()["bezel"] == before + 1


def test_a_file_without_an_end_is_refused(desk):
    assert '"/dev/zero" is longer than 1048576 bytes' in desk.refused(
        "play", "/dev/zero", status=2)


def test_a_recording_that_cannot_be_written_is_told_before_anything_is_done(desk, replay,
                                                                            tmp_path):
    before = desk.status()["bezel"]
    file = replay(f"bezel cw\nrecord {tmp_path}/nowhere/run.gif\n")
    assert f"{file}:2: cannot record" in desk.refused("play", file)
    assert desk.status()["bezel"] == before


def test_a_picture_that_is_named_twice_is_compared_with_its_update(desk, replay):
    file = replay("time freeze\ntime set 10:08\nwait still\ncompare home.png\n"
                  "time set 10:20\nwait still\ncompare home.png\n")
    told = desk.refused("play", file, "--update", status=3)
    assert f"{file}:7: compare home.png: " in told and "pixels differ from" in told
    desk.do("time", "thaw")


def test_a_replay_that_fails_ends_the_watch_that_it_has_started(desk, replay):
    file = replay("start --headless\nlanguage '?'\nstop\n")
    assert f"{file}:2: " in desk.refused("--name", "own", "play", file)
    assert "is not running" in desk.refused("--name", "own", "status")
    assert desk.do("list") == "watch\n"


def test_a_replay_that_fails_leaves_the_watch_that_was_there(desk, replay):
    file = replay("start --headless\n")
    assert "is already running" in desk.refused("play", file)
    assert desk.do("list") == "watch\n"


def test_the_log_of_a_watch_that_is_started_again_is_read_from_its_beginning(desk, replay):
    desk.do("--name", "own", "play", replay(
        'start --headless\nlaunch\nterminate\nwait log "SOnAppTerminate"\nstop\n'
        'start --headless\nwait log "the watch is ready"\nstop\n'))


def test_a_replay_takes_the_settings_and_lists_the_watches(desk, replay):
    out = desk.do("play", replay("region de_DE\ntime hours 24\nlist\nlaunch --env A=1 -t 60\n"
                                 "terminate\nregion auto\n"))
    assert out == "watch\n"
