"""Each command of the watch for its effect, and for its refusal."""

import contextlib
import importlib
import itertools
import pathlib
import shutil
import subprocess
import time

import pytest
from PIL import Image
from Xlib import display

from simulator.desk import BUILD, GUIDE
from support.bus import wait_until


@pytest.fixture(name="call")
def _call(capsys, monkeypatch):
    """Carries out a command line in this process, which needs no watch."""
    monkeypatch.syspath_prepend(str(BUILD / "simulator"))
    main = importlib.import_module("qivo_watch.command.cli").main

    def call(*words):
        try:
            status = main(list(words))
        except SystemExit as end:
            status = end.code
        return status, *capsys.readouterr()
    return call


def screenshot(desk, tmp_path, counter=itertools.count()):
    file = tmp_path / f"{next(counter)}.png"
    desk.do("screenshot", file)
    with Image.open(file) as picture:
        return picture.copy()


def differ(one, other):
    return one.tobytes() != other.tobytes()


def launch(desk):
    desk.do("launch")
    desk.do("wait", "still")


def test_the_bezel_turns_the_page_detent_by_detent(desk, tmp_path):
    launch(desk)
    top = screenshot(desk, tmp_path)
    before = desk.status()["bezel"]
    desk.do("bezel", "cw", 3)
    desk.do("wait", "still")
    assert desk.status()["bezel"] == before + 3
    assert differ(top, screenshot(desk, tmp_path))
    desk.do("bezel", "ccw", 3, "-i", 0)
    desk.do("wait", "still")
    assert desk.status()["bezel"] == before
    assert not differ(top, screenshot(desk, tmp_path))


def test_a_back_key_on_the_last_screen_returns_when_the_application_has_ended(desk):
    desk.do("launch")
    desk.do("button", "click", "back")
    status = desk.status()
    assert status["app"] is None
    assert status["lastEnd"] == {"app": GUIDE, "status": 0, "signal": 0}


def test_a_pushed_key_stays_down_until_it_is_released(desk):
    desk.do("launch")
    desk.do("button", "push", "back")
    assert desk.status()["keysDown"] == ["back"]
    assert "already down" in desk.refused("button", "push", "back")
    assert desk.status()["app"] is not None
    desk.do("button", "release", "back")
    assert desk.status()["app"] is None
    assert "not down" in desk.refused("button", "release", "back")


def test_the_power_key_is_told_to_the_application_and_turns_the_screen_off(desk, tmp_path):
    launch(desk)
    desk.do("button", "click", "power")
    status = desk.status()
    assert status["screen"] == "off" and status["app"] is None
    log = desk.do("log")
    assert log.rindex("POWER KEY Released!") < log.rindex("OnAppPausedByPowerKey")
    assert screenshot(desk, tmp_path).convert("RGB").getbbox() is None
    desk.do("button", "click", "power")
    assert desk.status()["screen"] == "on"
    assert screenshot(desk, tmp_path).convert("RGB").getbbox() is not None


def test_a_key_that_is_released_on_a_dark_screen_is_up_for_the_applications_too(desk, monkeypatch):
    status = desk.status()
    monkeypatch.setenv("XAUTHORITY", str(pathlib.Path(status["folder"], "Xauthority")))
    with contextlib.closing(display.Display(status["display"])) as screen:
        desk.do("button", "push", "back")
        assert any(screen.query_keymap())
        desk.do("button", "click", "power")
        desk.do("button", "release", "back")
        assert not any(screen.query_keymap())


def test_two_clicks_of_power_turn_the_screen_off_and_on(desk):
    desk.do("button", "click", "power", "-n", 2, "-d", 10, "-i", 10)
    assert desk.status()["screen"] == "on"


@pytest.mark.parametrize("words", [
    ["bezel", "cw"], ["touch", 180, 180], ["swipe", 180, 200, 180, 100], ["launch"],
    ["button", "click", "back"]])
def test_a_screen_that_is_off_takes_nothing(desk, words):
    desk.do("button", "click", "power")
    before = desk.status()
    assert "the screen is off" in desk.refused(*words)
    assert desk.status()["bezel"] == before["bezel"] and desk.status()["app"] is None


def test_a_tap_on_the_icon_of_the_home_face_launches_the_guide(desk):
    desk.do("touch", 180, 256)
    wait_until(lambda: desk.status()["app"], "the guide")
    assert desk.status()["app"]["id"] == GUIDE


def test_a_swipe_draws_the_page_along(desk, tmp_path):
    launch(desk)
    top = screenshot(desk, tmp_path)
    desk.do("swipe", 180, 300, 180, 120, "-d", 150)
    desk.do("wait", "still")
    assert differ(top, screenshot(desk, tmp_path))


def begin_swipe(desk, seconds):
    """Starts a swipe, and returns when the finger is down."""
    swipe = subprocess.Popen(desk.command("swipe", 180, 180, 180, 170, "-d", seconds * 1000),
                             env=desk.environment, stderr=subprocess.PIPE, text=True)
    wait_until(lambda: desk.run("touch", 180, 180).returncode == 1, "a finger on the screen")
    return swipe


def test_a_touch_during_a_swipe_is_refused(desk):
    with begin_swipe(desk, 20) as swipe:
        assert "a finger is already on the screen" in desk.refused("touch", 180, 180)
        swipe.terminate()
    wait_until(lambda: desk.run("touch", 180, 180).returncode == 0, "the finger's end")


def test_a_swipe_whose_application_ends_fails(desk):
    desk.do("launch")
    with begin_swipe(desk, 60) as swipe:
        desk.do("terminate")
        _, told = swipe.communicate(timeout=30)
    assert (swipe.returncode, told) == (
        1, f"qivo-watch: {GUIDE} ended with status 0 during the swipe\n")
    desk.do("touch", 180, 180)


@pytest.mark.parametrize("words", [["touch", 0, 0], ["touch", 359, 180 + 100],
                                   ["swipe", 180, 180, 358, 10]])
def test_a_finger_off_the_round_screen_is_refused(desk, words):
    assert "outside the round screen" in desk.refused(*words)


def test_the_battery_keeps_what_is_not_given(desk):
    desk.do("battery", "--percent", "42.5", "--charging")
    assert desk.status()["battery"] == {"percent": 42.5, "state": "charging"}
    desk.do("battery", "--full")
    assert desk.status()["battery"] == {"percent": 42.5, "state": "full"}
    desk.do("battery", "--percent", "7")
    assert desk.status()["battery"] == {"percent": 7, "state": "full"}


def test_the_guide_follows_the_charger(desk, tmp_path):
    launch(desk)
    shown = screenshot(desk, tmp_path)
    desk.do("battery", "--charging")
    desk.do("wait", "still")
    assert differ(shown, screenshot(desk, tmp_path))
    desk.do("battery", "--discharging")
    desk.do("wait", "still")
    assert not differ(shown, screenshot(desk, tmp_path))


def test_the_guide_follows_the_language(desk):
    desk.do("launch")
    desk.do("language", "ar_EG")
    assert desk.status()["language"] == "ar_EG.UTF-8"
    desk.do("wait", "log", "currentLanguage:[ar_EG")


@pytest.mark.parametrize("zone", ["Mars/Base", "../etc/passwd", "Europe", ""])
def test_what_is_no_time_zone_is_refused(desk, zone):
    before = desk.status()["time"]["zone"]
    assert f'"{zone}" is not a time zone (such as Asia/Seoul)' in desk.refused("time", "zone", zone)
    assert desk.status()["time"]["zone"] == before


def test_charge_and_charger_that_are_set_at_a_time_are_both_set(desk):
    for charge in range(10):
        state = ("charging", "discharging")[charge % 2]
        both = [subprocess.Popen(desk.command("battery", *words), env=desk.environment)
                for words in (["--percent", str(charge)], [f"--{state}"])]
        assert [setting.wait() for setting in both] == [0, 0]
        assert desk.status()["battery"] == {"percent": charge, "state": state}


def test_a_setting_waits_for_the_application_to_take_it(desk):
    desk.do("launch")
    before = desk.do("log").count("currentLanguage:[ar_EG")
    desk.do("language", "ar_EG")
    assert desk.do("log").count("currentLanguage:[ar_EG") > before


def test_words_that_are_no_text_are_refused(desk):
    told = desk.refused("language", "\udcff", status=2)
    assert told == r"qivo-watch: '\udcff' is not UTF-8"


def test_an_output_that_is_full_is_told(desk):
    with open("/dev/full", "w", encoding="ascii") as full:
        buffered = {key: value for key, value in desk.environment.items()
                    if key != "PYTHONUNBUFFERED"}
        result = subprocess.run(desk.command("status"), env=buffered, stdout=full,
                                stderr=subprocess.PIPE, text=True, check=False)
    assert (result.returncode, result.stderr) == (
        1, "qivo-watch: output: No space left on device\n")


def test_what_is_no_language_is_refused(desk):
    assert '"klingon!" is not a language' in desk.refused("language", "klingon!")
    assert desk.status()["language"] == "en_US.UTF-8"


def test_an_application_has_the_machines_time_as_the_help_says(desk, tmp_path):
    program = tmp_path / "clock"
    program.write_text("#!/bin/sh\ndate +'the year is %Y'\n", encoding="utf-8")
    program.chmod(0o755)
    desk.do("time", "set", "2001-02-03T04:05")
    desk.refused("launch", program)
    assert f"the year is {time.localtime().tm_year}" in desk.do("log")
    desk.do("time", "set", time.strftime("%FT%T"))
    for words in (["time"], ["time", "set"], ["time", "freeze"]):
        assert "machine's time" in " ".join(desk.do(*words, "--help").split())


def test_the_time_is_set_and_stands_until_it_is_let_go(desk, tmp_path):
    desk.do("time", "freeze")
    desk.do("time", "set", "2026-03-01T07:00")
    assert desk.do("time") == "2026-03-01T07:00:00\n"
    desk.do("wait", "still")
    early = screenshot(desk, tmp_path)
    desk.do("time", "set", "10:09:30")
    desk.do("wait", "still")
    assert desk.do("time") == "2026-03-01T10:09:30\n"
    assert differ(early, screenshot(desk, tmp_path))
    assert "already frozen" in desk.refused("time", "freeze")
    desk.do("time", "thaw")
    assert "not frozen" in desk.refused("time", "thaw")
    assert desk.do("time").startswith("2026-03-01T10:09:")


def test_a_picture_of_the_screen_is_round_and_alike_in_its_four_quadrants(desk, tmp_path):
    alpha = screenshot(desk, tmp_path).getchannel("A")
    assert alpha.size == (360, 360)
    for turn in (Image.Transpose.FLIP_LEFT_RIGHT, Image.Transpose.FLIP_TOP_BOTTOM,
                 Image.Transpose.TRANSPOSE):
        assert alpha.tobytes() == alpha.transpose(turn).tobytes()
    assert alpha.getpixel((0, 0)) == 0 and alpha.getpixel((180, 180)) == 255
    seen = sum(alpha.histogram()[level] * level / 255 for level in range(256))
    assert abs(seen - 3.14159265 * 180 ** 2) < 3
    assert sum(alpha.histogram()[1:255]) > 500


def test_a_picture_with_the_body_shows_the_whole_watch(desk, tmp_path):
    file = tmp_path / "watch.png"
    desk.do("screenshot", "--body", file)
    with Image.open(file) as picture:
        assert picture.mode == "RGBA" and min(picture.size) > 360
        assert picture.getchannel("A").getextrema() == (0, 255)


@pytest.mark.parametrize("moment", ["1960-01-01T00:00", "9999-12-31T23:59"])
def test_a_time_that_no_watch_can_tell_is_refused(desk, moment):
    before = desk.do("time")[:4]
    assert "is not a time for a watch (the years 1970 to 2999)" in desk.refused(
        "time", "set", moment)
    assert desk.do("time")[:4] == before


def test_a_picture_that_cannot_be_written_is_refused(desk, tmp_path):
    for words in (["screenshot"], ["screenshot", "--body"]):
        assert "nowhere/x.png" in desk.refused(*words, tmp_path / "nowhere" / "x.png")
    assert "does not end in .png" in desk.refused("screenshot", "x.jpg", status=2)


@pytest.mark.parametrize("ending, kind", [
    (".gif", "GIF"), (".apng", "PNG"), (".webp", "WEBP"), (".mp4", None)])
def test_a_recording_moves_and_is_of_the_kind_of_its_name(desk, tmp_path, ending, kind):
    file = tmp_path / f"run{ending}"
    replay = tmp_path / "run.replay"
    replay.write_text(f"record {file} --fps 10\nbutton click power\nwait still\n"
                      "button click power\nrecord stop\n",
                      encoding="utf-8")
    desk.do("play", replay)
    if kind:
        with Image.open(file) as picture:
            assert (picture.format, picture.size) == (kind, (360, 360))
            assert picture.n_frames > 1
    else:
        probed = subprocess.run(
            ["ffprobe", "-v", "error", "-show_entries", "stream=width,height,pix_fmt", "-of",
             "csv=p=0", file], capture_output=True, text=True, check=True)
        assert probed.stdout.strip() == "360,360,yuv420p"


def duration_of(file):
    probed = subprocess.run(
        ["ffprobe", "-v", "error", "-show_entries", "format=duration", "-of", "csv=p=0", file],
        capture_output=True, text=True, check=True)
    return float(probed.stdout)


def test_a_recording_lasts_as_long_as_it_is_told(desk, tmp_path):
    file = tmp_path / "second.mp4"
    desk.do("record", file, "-d", "1", "--fps", "20")
    assert 0.9 < duration_of(file) < 3


@pytest.mark.parametrize("place", ["nowhere/run.gif", "folder.gif"])
def test_a_recording_that_cannot_be_written_is_told_without_being_stopped(desk, tmp_path, place):
    (tmp_path / "folder.gif").mkdir()
    words = ["-d", "3600"] if place == "folder.gif" else []
    assert "cannot record" in desk.refused("record", tmp_path / place, *words)
    assert [path.name for path in tmp_path.rglob("*")] == ["folder.gif"]


@pytest.fixture(name="take_encoder")
def _take_encoder(desk, tmp_path, monkeypatch):
    """Has a shell script stand in for ffmpeg; returns its file."""
    def take(script):
        encoder = tmp_path / "ffmpeg"
        encoder.write_text(f"#!/bin/sh\n{script}\n", encoding="utf-8")
        encoder.chmod(0o700)
        monkeypatch.setitem(desk.environment, "PATH", f"{tmp_path}:{desk.environment['PATH']}")
        return encoder
    return take


def run_signalled(desk, take_encoder, number, *command):
    """Carries out a command that gets the signal when its recording begins."""
    take_encoder(f'kill -{number} $PPID\nexec {shutil.which("ffmpeg")} "$@"')
    return subprocess.run(command, env=desk.environment, stdin=subprocess.DEVNULL,
                          capture_output=True, text=True, timeout=30, check=False)


def test_a_signal_that_the_caller_ignores_does_not_end_a_recording(desk, tmp_path, take_encoder):
    file = tmp_path / "second.mp4"
    result = run_signalled(desk, take_encoder, "HUP", "nohup",
                           *desk.command("record", file, "-d", "1", "--fps", "20"))
    assert result.returncode == 0 and duration_of(file) > 0.9


def test_a_replay_that_a_signal_ends_while_its_recording_begins_ends(desk, tmp_path, take_encoder):
    file, replay = tmp_path / "run.gif", tmp_path / "run.replay"
    replay.write_text(f"record {file}\nwait log 'never said'\n", encoding="utf-8")
    result = run_signalled(desk, take_encoder, "TERM", *desk.command("play", replay))
    assert (result.returncode, result.stderr) == (143, "")
    assert {path.name for path in tmp_path.iterdir()} == {
        "ffmpeg", "run.gif", "run.replay", "run-trace"}


def test_an_encoder_that_hangs_is_told(desk, tmp_path, take_encoder):
    # The shell waits for a child, which keeps the encoder's outputs open.
    encoder = take_encoder("sleep 60\nexit 1")
    begin = time.monotonic()
    told = desk.refused("record", tmp_path / "run.gif", "-d", "0.1")
    assert told.endswith("run.gif\": ffmpeg hangs") and time.monotonic() - begin < 40
    assert list(tmp_path.iterdir()) == [encoder]


def test_a_file_of_the_users_beside_a_picture_stays(desk, tmp_path):
    names = ("home.png.part", "run.gif.part", "body.png.part.png")
    for name in names:
        (tmp_path / name).write_text("mine", encoding="utf-8")
    desk.do("screenshot", tmp_path / "home.png")
    desk.do("screenshot", "--body", tmp_path / "body.png")
    desk.do("record", tmp_path / "run.gif", "-d", "0.1")
    assert {file.name for file in tmp_path.iterdir()} == {
        "home.png", "body.png", "run.gif", *names}
    for name in names:
        assert (tmp_path / name).read_text(encoding="utf-8") == "mine"


def test_a_recording_of_an_unknown_kind_is_refused(desk, tmp_path):
    assert "does not end in" in desk.refused("record", tmp_path / "x.bmp", status=2)
    assert "nowhere" in desk.refused("record", tmp_path / "nowhere" / "x.gif", "-d", "0.1")


def test_the_log_is_filtered_by_level_and_coloured_on_demand(desk):
    desk.do("launch")
    desk.do("button", "click", "back")
    every, warnings = desk.do("log"), desk.do("log", "--level", "warn")
    assert " I QIVOUI_GUIDE" in every and "\033" not in every
    assert " I QIVOUI_GUIDE" not in warnings and " W QIVOUI_GUIDE" in warnings
    coloured = desk.do("log", "--color", "always")
    assert "> \033[1;35m ###\033[0m" in coloured
    assert "\033[1;33mmNaviFrmaeLowerEventListener is NULL\033[0m" in coloured


def test_no_escape_of_a_program_or_a_caller_reaches_the_terminal(desk, tmp_path):
    program = tmp_path / "\033]0;evil\a"
    program.write_text("#!/bin/sh\nprintf '\\033[2J\\233\\n'\n"
                       "echo '00:00:00.000 I X: WATCH_PORT: first frame'\nexec sleep 600\n",
                       encoding="utf-8")
    program.chmod(0o700)
    desk.do("launch", program)
    told = [desk.do("log", "--color", "never"), desk.do("status"), desk.refused("launch", program),
            desk.refused("status", "\033[31m", status=2)]
    assert "\ufffd]0;evil\ufffd" in told[1]
    assert not any(letter in text for text in told for letter in "\033\a\233")


def test_text_of_all_languages_stands_in_the_log_and_what_turns_a_line_does_not(desk, tmp_path):
    program = tmp_path / "talker"
    program.write_text("#!/bin/sh\necho 'a\u00a0b\u202fc\u3000d\u200ce\u200df\u200fg'\n"
                       "echo 'h\u202ei\u2066j\u2028k'\n", encoding="utf-8")
    program.chmod(0o700)
    assert "talker ended with status 0 before" in desk.refused("launch", program)
    log = desk.do("log")
    assert "a\u00a0b\u202fc\u3000d\u200ce\u200df\u200fg" in log
    assert "h\ufffdi\ufffdj\ufffdk" in log


def test_a_followed_log_goes_on_as_it_grows(desk):
    with subprocess.Popen(desk.command("log", "--follow"), env=desk.environment, text=True,
                          stdout=subprocess.PIPE) as following:
        desk.do("launch", GUIDE, "--operation", "followed")
        assert any("operation:[followed]" in line for line in following.stdout)
        following.terminate()


def test_a_wait_for_a_new_line_passes_over_those_that_are_there(desk):
    desk.do("launch", GUIDE, "--operation", "old")
    desk.do("wait", "log", "operation:[old]")
    assert 'no line with "operation:[old]" within 0.2 s' in desk.refused(
        "wait", "log", "--new", "operation:[old]", "-t", "0.2")


def test_a_wait_fails_when_its_time_is_over(desk):
    assert 'no line with "never" within 0.1 s' in desk.refused("wait", "log", "never", "-t", "0.1")
    assert "was not still" in desk.refused("wait", "still", "-t", "0.1")
    desk.do("launch")
    assert "did not end within 0.1 s" in desk.refused("wait", "exit", "-t", "0.1")


def test_an_application_that_is_killed_fails_the_wait_for_its_end(desk):
    desk.do("launch")
    pid = desk.status()["app"]["pid"]
    subprocess.run(["kill", "-SEGV", str(pid)], check=True)
    assert "was killed by SIGSEGV" in desk.refused("wait", "exit")
    assert f" E QIVO_WATCH: {GUIDE} was killed by SIGSEGV" in desk.do("log")
    assert desk.status()["lastEnd"]["signal"] == 11


def test_status_is_described_for_people(desk):
    text = desk.do("status")
    assert "battery   80 %, discharging" in text and "app       none" in text


@pytest.mark.parametrize("words, complaint", [
    (["dance"], "invalid choice: 'dance'"),
    (["bezel", "up"], "invalid choice: 'up'"),
    (["bezel", "cw", "0"], '"0" is not from 1 to 1000'),
    (["button", "push", "back", "-d", "50"], "arguments: -d 50 (see qivo-watch button push -"),
    (["button", "release", "back", "-n", "1"], "arguments: -n 1 (see qivo-watch button release -"),
    (["launch", "--env", "A"], '"A" is not KEY=VALUE'),
    (["time", "hours", "13"], "invalid choice: 13"),
    (["button", "click"], "the following arguments are required: key"),
    (["touch", "1", "x"], '"x" is not from 0 to'),
    (["battery"], "battery needs --percent"),
    (["battery", "--full", "--charging"], "not allowed with"),
    (["battery", "--percent", "101"], '"101" is not from 0 to 100'),
    (["time", "set", "25:00"], '"25:00" is not a time'),
    (["time", "set", "2026-00-10T00:00"], '"2026-00-10T00:00" is not a time'),
    (["time", "set", "0000-01-10T00:00"], '"0000-01-10T00:00" is not a time'),
    (["launch", "--extra", "=1"], '"=1" is not KEY=VALUE'),
    (["wait"], "the following arguments are required"),
    (["log", "--level", "loud"], "invalid choice: 'loud'"),
    (["start", "--size", "400"], "invalid choice: 400"),
    (["start", "--text-size", "2.1"], '"2.1" is not from 0.8 to 2'),
    (["text-size", "large"], '"large" is not from 0.8 to 2'),
    (["text-size", "nan"], '"nan" is not from 0.8 to 2'),
    (["text-size"], "the following arguments are required: FACTOR"),
    (["motion", "none"], "invalid choice: 'none'"),
    (["contrast", "1"], "invalid choice: '1'"),
    (["start", "--headless", "--web"], "cannot be combined"),
    (["start", "--headless", "--zoom", "2"], "--zoom needs a window or --web"),
    (["start", "--port", "80"], "--port and --password-file need --web"),
    (["button", "-d", "50", "click", "back"], "button: -d comes after the word that follows"),
    (["--name", "a", "wait", "-t", "3", "log", "x"], "wait: -t comes after the word that follows"),
    (["wait", "text", "button", "-t", "x"], "argument -t/--timeout"),
    (["button", "--name", "a"], "required"),
    (["launch", "--wrap", " "], '" " is not a command'),
    (["launch", "--wrap", "a 'b"], "is not a command: No closing quotation"),
    (["launch", "--wrap"], "expected one argument"),
    (["launch", "--gdb", "--wrap", "a"], "--gdb cannot be combined with --wrap or --timeout"),
    (["launch", "--gdb", "-t", "3"], "--gdb cannot be combined with --wrap or --timeout"),
    (["--name", "a/b", "status"], '"a/b" is not a name for a watch'),
    (["screenshot", "picture"], '"picture" does not end in .png'),
    (["status", "--xml"], "unrecognized arguments: --xml"),
])
def test_wrong_use_is_one_line_with_status_2(call, words, complaint):
    status, out, error = call(*words)
    assert (status, out) == (2, "")
    assert error.count("\n") == 1 and error.startswith("qivo-watch: ") and complaint in error


@pytest.mark.parametrize("verb", [
    [], ["start"], ["launch"], ["terminate"], ["bezel"], ["button"], ["button", "click"],
    ["button", "push"], ["touch"], ["swipe"], ["battery"], ["language"], ["region"], ["time"],
    ["time", "set"], ["time", "zone"], ["time", "hours"], ["text-size"], ["motion"],
    ["contrast"], ["list"], ["install"], ["uninstall"], ["apps"], ["reload"], ["screenshot"],
    ["record"], ["log"], ["wait"], ["wait", "log"], ["wait", "text"], ["tree"], ["audit"],
    ["compare"], ["play"], ["status"], ["stop"], ["new"]])
def test_every_command_explains_itself(call, verb):
    status, out, error = call(*verb, "--help")
    assert (status, error) == (0, "") and out.startswith("usage: qivo-watch")
