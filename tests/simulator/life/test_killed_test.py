"""A test that is killed leaves no watch behind."""

import os
import pathlib
import subprocess
import sys

from support.bus import wait_until

TESTS = pathlib.Path(__file__).parents[2]
BEGIN_OF_A_TEST = """
import sys
from simulator.desk import Desk
with Desk() as desk:
    desk.do("start", "--headless")
    print("started", flush=True)
    sys.stdin.read()
"""


def test_a_watch_and_its_place_go_with_the_test_that_is_killed(desk):
    """Its place is in this test's own, where its processes are known by that."""
    with subprocess.Popen([sys.executable, "-B", "-c", BEGIN_OF_A_TEST], cwd=TESTS, text=True,
                          env={**os.environ, "TMPDIR": str(desk.runtime)},
                          stdin=subprocess.PIPE, stdout=subprocess.PIPE) as killed:
        assert killed.stdout.readline() == "started\n"
        assert desk.processes()
        killed.kill()
        wait_until(lambda: not desk.processes() and not list(desk.runtime.iterdir()),
                   "the end of the watch")
