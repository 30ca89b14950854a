"""The guide with too little memory: it ends soon, and says so once.

Where C code of the toolkit is refused memory, it may crash; what must not be is a guide that
neither works nor ends. LIMITS=400 tries more limits than the suite does.
"""

import os

import pytest

from e2e.app import GUIDE, App
from e2e.watch import bare_environment

LIMITS = int(os.environ.get("LIMITS", 12))
PATIENCE = 5.0
"""Seconds to wait for a guide that says nothing."""

MARKER = "SOnOutOfMemory"
LAST_LINE = "the memory is exhausted"
OUT_OF_MEMORY = 246

pytestmark = pytest.mark.skipif(
    b"__asan_init" in GUIDE.read_bytes(),
    reason="the address sanitizer takes more addresses than any limit leaves")


@pytest.fixture(name="environment")
def _environment(tmp_path):
    return {**bare_environment(str(tmp_path)), "ELM_ENGINE": "buffer"}


def least_need(environment):
    """The bytes of addresses that the guide takes up to its first frame, but for its threads."""
    with App({**environment, "MALLOC_ARENA_MAX": "1"}) as app:
        app.wait_log("first frame")
        return app.peak_of_addresses()


def limited(environment, limit):
    return App(environment, ["--core=0", f"--as={limit}", GUIDE], "prlimit")


def test_whatever_it_lacks_it_ends_and_says_so_once(environment):
    need = least_need(environment)
    told = 0
    for number in range(LIMITS):
        limit = int(need * (1.1 + 0.22 * number / LIMITS))
        with limited(environment, limit) as app:
            app.wait_log_or_end("first frame", PATIENCE)
            app.terminate()
            status = app.wait_end()
        assert app.count(MARKER) <= 1, f"limit {limit}\n{app.tail()}"
        assert app.count(LAST_LINE) == (status == OUT_OF_MEMORY), f"limit {limit}\n{app.tail()}"
        told += app.count(MARKER)
    print(f"{LIMITS} limits, in {told} of which the application was told")
