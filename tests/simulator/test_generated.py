"""Whole watches under commands that are made up: after each, the status is what a model foretells.

A run that fails is shrunk, and what is left of it is written as BUILD/generated/NAME.replay. A
replay cannot kill, so there that is a comment.
"""

import contextlib
import json
import os
import random
import shlex
import signal
import time

import pytest
from hypothesis import HealthCheck, settings, strategies as st
from hypothesis.stateful import (
    RuleBasedStateMachine, precondition, rule, run_state_machine_as_test)

from simulator.desk import BUILD, GUIDE, Desk
from simulator.watch_model import (
    APPLICATIONS, KEYS, PARTS, PROGRAMS, SETTINGS, TIMES, Model)

RUNS = int(os.environ.get("QIVO_WATCH_RUNS", "0"))
"""How many; none: only a walk that is the same each time."""

FOLDER = BUILD / "generated"
PATIENCE_S = 10
ENTRY = "[Desktop Entry]\nType=Application\nName=One\nExec=/bin/true\n"
DEEDS = ["start"] * 4 + ["stop", "kill"]
"""A start of a watch that runs is refused, and so is quick."""

NAMES = st.sampled_from(["watch", "watch", "watch", "second"])


class Watches(RuleBasedStateMachine):
    """Two watches on one desk."""

    def __init__(self):
        super().__init__()
        self._stack = contextlib.ExitStack()
        self._desk = self._stack.enter_context(Desk())
        self._desk.environment["TZ"] = "UTC"
        # A failed run's replay installs it, too.
        entries = FOLDER / "entries"
        entries.mkdir(parents=True, exist_ok=True)
        (entries / "org.example.one.desktop").write_text(ENTRY, encoding="utf-8")
        self._words = {"entries": entries, "guide": GUIDE, "cards": PROGRAMS["org.example.cards"]}
        self._models = {"watch": Model(), "second": Model()}
        self._lines = {name: [] for name in self._models}

    def teardown(self):
        self._stack.close()

    def start(self, name):
        self._give(name, self._models[name].start(), "start", "--headless")

    @rule(name=NAMES, command=st.sampled_from(KEYS))
    def press(self, name, command):
        self.give(name, command)

    @rule(name=NAMES, command=st.sampled_from(TIMES))
    def set_time(self, name, command):
        self.give(name, command)

    @rule(name=NAMES, command=st.sampled_from(SETTINGS))
    def set(self, name, command):
        self.give(name, command)

    @rule(name=NAMES, command=st.sampled_from(APPLICATIONS))
    def use(self, name, command):
        self.give(name, command)

    @precondition(lambda self: any(model.running and model.apps and not model.keys
                                   for model in self._models.values()))
    @rule()
    def kill_application(self):
        name, model = next((name, model) for name, model in self._models.items()
                           if model.running and model.apps and not model.keys)
        model.lose(model.apps[-1], 0, signal.SIGKILL)
        os.kill(self._desk.status("--name", name)["app"]["pid"], signal.SIGKILL)
        self._tell(name, "# kill the application")

    @rule(name=NAMES, deed=st.sampled_from(DEEDS), part=st.sampled_from(PARTS))
    def begin_or_end(self, name, deed, part):
        model = self._models[name]
        if deed == "start":
            self.start(name)
        elif deed == "stop" or not model.running:
            self._give(name, model.stop(), "stop")
        else:
            model.stop()
            os.kill(self._desk.status("--name", name)["processes"][part], signal.SIGKILL)
            self._tell(name, f"# kill the {part}")

    def give(self, name, command):
        words = [word.format(**self._words) for word in command.split()]
        is_done = self._models[name].take(words)
        if is_done is not None:
            self._give(name, is_done, *words)

    def _give(self, name, is_done, *words):
        result = self._desk.run("--name", name, *words)
        line = shlex.join(words)
        found = result.returncode, result.stdout, result.stderr.count("\n")
        if found != ((0, "", 0) if is_done else (1, "", 1)):
            self._fail(name, line, f"{'done' if is_done else 'refused'}, not {result}")
        self._tell(name, line if is_done else f"# refused: {line}")

    def _tell(self, name, line):
        """Notes what was done, and compares what the watches say."""
        self._lines[name].append(line)
        for known in self._models:
            self._compare(known)

    def _compare(self, name):
        deadline = time.monotonic() + PATIENCE_S
        while (difference := self._difference(name)) and time.monotonic() < deadline:
            time.sleep(0.02)  # An application ends by itself after the command.
        if difference:
            self._fail(name, "", difference)

    def _difference(self, name):
        model = self._models[name]
        result = self._desk.run("--name", name, "status", "--json")
        if not model.running:
            return "" if result.returncode == 1 else f"it should be gone: {result}"
        if result.returncode:
            return str(result)
        status = json.loads(result.stdout)
        status |= status["time"] | {"app": status["app"] and status["app"]["id"]}
        return ", ".join(f"{key} is {status[key]!r}, not {value!r}"
                         for key, value in model.expected().items() if status[key] != value)

    def _fail(self, name, line, difference):
        file = FOLDER / f"{name}.replay"
        lines = [*self._lines[name], line, f"# {difference}"]
        file.write_text("\n".join(filter(None, lines)) + "\n", encoding="utf-8")
        raise AssertionError(f"{difference} (see {file})")


@pytest.mark.skipif(RUNS > 0, reason="QIVO_WATCH_RUNS asks for long runs")
def test_a_watch_says_what_a_model_foretells():
    choice = random.Random(2).choice
    watches = Watches()
    try:
        watches.start("watch")
        for command in [choice([*KEYS, *TIMES, *SETTINGS, *APPLICATIONS * 3]) for _ in range(70)]:
            watches.give("watch", command)
        # Whatever is held is let go, and a screen that is off is woken.
        for command in ("button release back", "button release power", "button push power",
                        "button release power", "launch {cards}", "button click power",
                        "launch {cards}"):
            watches.give("watch", command)
        watches.kill_application()
        watches.begin_or_end("watch", "kill", "home")
    finally:
        watches.teardown()


@pytest.mark.skipif(RUNS == 0, reason="a long run, which QIVO_WATCH_RUNS asks for")
def test_watches_say_what_a_model_foretells_whatever_they_are_told():
    run_state_machine_as_test(Watches, settings=settings(
        max_examples=RUNS, stateful_step_count=100, deadline=None, database=None,
        print_blob=True, suppress_health_check=list(HealthCheck)))
