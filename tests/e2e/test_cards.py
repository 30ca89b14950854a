"""The example of another application, on the desk watch."""

import json
import os
import pathlib
import random
import re
import subprocess
import sys
import time

import pytest

from simulator.desk import Desk
from support.bus import wait_until

ROOT = pathlib.Path(__file__).parents[2]
CARDS = pathlib.Path(os.environ["BUILD_DIR"]).resolve() / "examples" / "cards" / "cards"
REPLAYS = ROOT / "examples" / "cards"
GUIDE = "com.velmora.qivo-guide-app"

COMPLAINTS = re.compile(r"ERR<|CRI<|AddressSanitizer|LeakSanitizer|runtime error"
                        r"| E (?!QIVOUI_GUIDE)"
                        r"| E QIVOUI_GUIDE.*> (?!Delete naviframeItem|Initialize Rotary)")
"""What the log must not hold: of errors, the framework's two that are none are left out."""

SEED = int(os.environ.get("CARDS_SEED", "1"))
STEPS = int(os.environ.get("CARDS_STEPS", "40"))
WALK_S = 20.0
"""A slow machine takes fewer steps."""


def complaints(desk):
    return [line for line in desk.do("log").splitlines() if COMPLAINTS.search(line)]


@pytest.fixture(name="desk")
def _desk():
    with Desk() as desk:
        desk.do("start", "--headless")
        yield desk


def launch(desk, *request):
    desk.do("launch", CARDS, *request)


@pytest.mark.parametrize("replay", ["cards.replay", "least_amount.replay"])
def test_a_run_looks_as_it_should(desk, monkeypatch, replay):
    monkeypatch.chdir(CARDS.parent)
    desk.do("play", REPLAYS / replay)
    assert complaints(desk) == []


@pytest.mark.parametrize("size, screens", [
    ("1.0", "cards amount payment"), ("1.3", "amount history"),
    ("2.0", "cards amount payment history")])
def test_screens_pass_the_audit_at_each_text_size(desk, size, screens):
    def audit(screen):
        desk.do("wait", "still")
        if screen in screens.split():
            desk.do("audit")

    desk.do("text-size", size)
    launch(desk)
    audit("cards")
    desk.do("touch", 180, 180)
    desk.do("wait", "log", "Animation Done")
    audit("amount")
    for amount in ("1.50", "2.50"):
        launch(desk, "--operation", "pay", "--extra", "card=7706", "--extra", f"amount={amount}")
        # The payment before is done, too, and below this one while it comes.
        desk.do("wait", "text", amount)
        desk.do("wait", "still")
        desk.do("wait", "text", "Done")
        audit("payment" if amount == "2.50" else "")
    desk.do("wait", "still")
    desk.do("touch", "--text", "Done")
    desk.do("wait", "log", "SOnPause")
    launch(desk)
    desk.do("wait", "still")
    desk.do("bezel", "cw", 4)
    desk.do("wait", "still")
    desk.do("touch", "--text", "History")
    audit("history")


def test_an_empty_history_says_so_below_its_heading_in_large_letters(desk):
    desk.do("text-size", 2)
    launch(desk)
    desk.do("wait", "still")
    desk.do("bezel", "cw", 4)
    desk.do("wait", "still")
    desk.do("touch", "--text", "History")
    desk.do("wait", "still")
    (window,) = json.loads(desk.do("tree", "--json"))
    places = {part["name"]: part["place"] for part in window["children"][0]["children"]}
    _, top, _, height = places["History"]
    # Of neighbouring lines a few pixels overlap, where nothing is drawn.
    assert places["Nothing paid yet"][1] > top + height * 0.9


class Sender:
    """Another application, which waits for the answers to its requests."""

    def __init__(self, desk):
        folder = desk.status()["folder"]
        self._environment = {**desk.environment,
                             "DBUS_SESSION_BUS_ADDRESS": f"unix:path={folder}/bus"}

    def ask(self, operation, **extra):
        done = subprocess.run(
            ["gdbus", "call", "--session", "--dest", "org.example.cards", "--object-path",
             "/org/example/cards", "--method", "org.watchport.Launch1.Launch", operation,
             json.dumps(extra | {"reply": "yes"})],
            env=self._environment, capture_output=True, text=True, check=True)
        return done.stdout.strip()


def test_a_payment_that_cannot_be_made_is_refused_with_the_reason(desk):
    launch(desk)
    sender = Sender(desk)
    for amount, card, reason in (("much", "4921", "is not an amount"),
                                 ("1", "9", "is not the number of a card"),
                                 ("-1", "4921", "cannot be paid"),
                                 ("999", "4921", "cannot be paid")):
        answer = sender.ask("pay", card=card, amount=amount)
        assert answer.startswith("(-1, {'reason': ") and reason in answer
    assert sender.ask("pay", card="4921", amount="2") == "(0, @a{ss} {})"
    assert "another payment is under way" in sender.ask("pay", card="4921", amount="2")


def test_a_payment_that_waits_can_be_given_up_at_any_moment(desk):
    launch(desk)
    sender = Sender(desk)
    for _ in range(3):
        # At once: the screen's own push may be moving.
        sender.ask("pay", card="4921", amount="2")
        sender.ask("cancel")
    sender.ask("home")
    desk.do("wait", "still")
    assert "paid :" not in desk.do("log")
    assert complaints(desk) == []


def test_nothing_is_paid_unseen(desk):
    launch(desk, "--operation", "pay", "--extra", "card=4921", "--extra", "amount=2")
    desk.do("button", "click", "power")
    desk.do("button", "click", "power")
    desk.do("launch")
    desk.do("terminate")
    desk.do("wait", "still")
    assert "paid :" not in desk.do("log")
    assert complaints(desk) == []


def test_the_guide_is_launched_with_extra_data(desk, tmp_path):
    launch(desk)
    folder = desk.status()["folder"]
    calls = tmp_path / "calls"
    service = ROOT / "tests" / "port" / "app-control" / "application_service.py"
    with subprocess.Popen([sys.executable, service, f"unix:path={folder}/bus", GUIDE, calls]) as it:
        try:
            wait_until(lambda: GUIDE in names(folder), "the guide's stand-in")
            desk.do("bezel", "cw", 5)
            desk.do("wait", "still")
            desk.do("touch", 180, 180)
            wait_until(lambda: calls.exists() and calls.read_text(), "the request")
        finally:
            it.terminate()
    assert "org.example.cards" in calls.read_text()


def test_the_wallets_button_shows_the_guide(desk):
    desk.do("install", CARDS.parent)
    desk.do("launch", "org.example.cards")
    desk.do("bezel", "cw", 5)
    desk.do("wait", "still")
    desk.do("touch", 180, 180)
    wait_until(lambda: (desk.status()["app"] or {}).get("id") == GUIDE, "the guide")
    desk.do("wait", "text", "Press and hold")
    desk.do("wait", "still")
    desk.do("button", "click", "back")
    wait_until(lambda: desk.status()["app"]["id"] == "org.example.cards", "the wallet")
    assert complaints(desk) == []


def names(folder):
    return subprocess.run(["gdbus", "call", "--address", f"unix:path={folder}/bus", "--dest",
                           "org.freedesktop.DBus", "--object-path", "/", "--method",
                           "org.freedesktop.DBus.ListNames"], capture_output=True, text=True).stdout


def test_payments_are_kept_for_the_next_run_and_wrong_lines_left_out(desk):
    launch(desk, "--operation", "pay", "--extra", "card=7706", "--extra", "amount=2.80")
    desk.do("wait", "log", "paid : 2.80")
    desk.do("wait", "log", "Delete naviframeItem")
    desk.do("terminate")
    history = pathlib.Path(desk.status()["folder"]) / "home/.local/share/cards/history.txt"
    assert history.read_text() == "7706;280\n"
    history.write_text("7706;280\nwrong\n7706;-1\n7706;1000000\n9;1\n\n")
    launch(desk)
    assert desk.do("log").count("wrong line : ") == 4
    launch(desk, "--operation", "pay", "--extra", "card=7706", "--extra", "amount=39.95")
    desk.do("wait", "log", "paid : 39.95")
    # Until its screen has gone, the payment is under way.
    desk.do("wait", "still")
    launch(desk, "--operation", "pay", "--extra", "card=7706", "--extra", "amount=0.01")
    desk.do("wait", "log", "refused : 0.01 cannot be paid with this card")


PLACES = [(180, 180), (180, 300), (180, 292), (180, 100), (180, 60), (40, 180)]
LANGUAGES = ["en_US", "de_DE", "ko_KR", "ar_EG"]


def steps(chance):
    """What a hand may do, and another application."""
    yield "bezel", chance.choice(["cw", "ccw"]), chance.randint(1, 4), "-i", 1
    yield "touch", *chance.choice(PLACES)
    yield "touch", *chance.choice(PLACES)
    yield "swipe", 180, 250, 180, chance.choice([60, 150, 350]), "-d", 60
    yield "button", "click", "back"
    yield "language", chance.choice(LANGUAGES)
    yield ("launch", CARDS, "--operation", chance.choice(["pay", "pay", "cancel", "home"]),
           "--extra", f"card={chance.choice(['4921', '0370'])}", "--extra", "amount=0.10")


def test_a_random_walk_finds_no_complaint(desk):
    """CARDS_SEED chooses another one, CARDS_STEPS the most steps."""
    chance = random.Random(SEED)
    launch(desk)
    walked = []
    end = time.monotonic() + WALK_S
    while len(walked) < STEPS and time.monotonic() < end:
        if desk.status()["app"] is None:
            assert desk.status()["lastEnd"] == {"app": "org.example.cards", "status": 0,
                                                "signal": 0}, (SEED, walked)
            launch(desk)
        step = chance.choice(list(steps(chance)))
        walked.append(step)
        done = desk.run(*step)
        # The finger may still be busy, or the application may leave under it.
        assert done.returncode == 0 or "swipe" in step or "touch" in step, (SEED, walked, done)
    if desk.status()["app"]:
        desk.do("terminate")
    assert complaints(desk) == [], (SEED, walked)
