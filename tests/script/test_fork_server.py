"""The server that runs the desk watch's commands for the tests: what a test sees when it dies."""

import os

import pytest

from support.fork_server import ForkServer

PROGRAM = """import os, signal, sys
print("said")
if sys.argv[1:] == ["kill", "attendant"]:
    os.kill(os.getppid(), signal.SIGKILL)
sys.exit(3)
"""


@pytest.fixture(name="server")
def _server(tmp_path):
    program = tmp_path / "program"
    program.write_text(PROGRAM)
    with ForkServer(str(program)) as server:
        yield server


def test_a_command_returns_what_it_printed_and_its_status(server):
    done = server.run([], os.environ, 60)
    assert (done.returncode, done.stdout, done.stderr) == (3, "said\n", "")


def test_a_server_that_has_died_is_named_with_its_status(server):
    server.run([], os.environ, 60)
    server._process.kill()
    server._process.wait()
    with pytest.raises(RuntimeError, match="fork server of .*/program has ended with status -9"):
        server.run([], os.environ, 60)


def test_a_command_whose_attendant_dies_says_that_the_server_lives(server):
    with pytest.raises(RuntimeError, match="fork server of .*/program lives, but the process that"):
        server.run(["kill", "attendant"], os.environ, 60)
