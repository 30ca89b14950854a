"""Runs a Python program as often as wanted, each time in a process of its own, but reads its
modules once: for a short program they are most of the time.

    with ForkServer(program, modules) as server:
        server.run(["--help"], os.environ, 60)     # a subprocess.CompletedProcess

The other end is this file, run as a program.
"""

import contextlib
import gc
import importlib
import json
import os
import runpy
import signal
import socket
import subprocess
import sys
import tempfile


class ForkServer:
    """Context manager: the process that forks for each run. It ends with the test's process."""

    def __init__(self, program, modules=()):
        self._program = program
        self._here, there = socket.socketpair(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        with there:
            self._process = subprocess.Popen(
                [sys.executable, __file__, str(there.fileno()), program, *modules],
                pass_fds=[there.fileno()], stdin=subprocess.DEVNULL)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._here.close()
        self._process.wait()

    def run(self, words, environment, timeout):
        """As subprocess.run() of the program would, with no input and its output as text."""
        order = json.dumps([[*map(str, words)], dict(environment), os.getcwd()]).encode()
        here, there = socket.socketpair()
        with here, tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
            with there:
                self._send(order, there, out, err)
            here.settimeout(timeout)
            answer = here.makefile("r")
            process = self._number(answer)
            try:
                status = self._number(answer)
            except TimeoutError as error:
                os.kill(process, signal.SIGKILL)
                raise subprocess.TimeoutExpired([self._program, *words], timeout) from error
            texts = []
            for file in (out, err):
                file.seek(0)
                texts.append(file.read().decode())
            return subprocess.CompletedProcess([self._program, *words], status, *texts)

    def _send(self, order, *files):
        try:
            socket.send_fds(self._here, [order], [file.fileno() for file in files])
        except ConnectionError:
            raise self._death() from None

    def _number(self, answer):
        """The next line of an answer, which ends early when who should give it dies."""
        line = answer.readline()
        if not line:
            raise self._death()
        return int(line)

    def _death(self):
        try:
            how = f"has ended with status {self._process.wait(timeout=1)}"
        except subprocess.TimeoutExpired:
            how = "lives, but the process that ran a command of it has died"
        return RuntimeError(f"the fork server of {self._program} {how}")


def serve(orders, program, *modules):
    """Forks for each order, until its sender has gone."""
    sys.path.insert(0, os.path.dirname(program))
    for module in modules:
        importlib.import_module(module)
    gc.freeze()
    while True:
        order, files, *_ = socket.recv_fds(orders, 1 << 20, 3)
        if not order:
            return
        if os.fork() == 0:
            orders.close()
            attend(program, *json.loads(order), *files)
        for file in files:
            os.close(file)
        # Of those who attended, so many as have ended.
        with contextlib.suppress(ChildProcessError):
            while os.waitpid(-1, os.WNOHANG)[0]:
                pass


def attend(program, words, environment, folder, answer, out, err):
    """Runs the program in a child, and answers with its id and then with its status."""
    child = os.fork()
    if child:
        os.write(answer, f"{child}\n".encode())
        status = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
        os.write(answer, f"{status}\n".encode())
        os._exit(0)
    os.close(answer)
    for file, stream in ((out, 1), (err, 2)):
        os.dup2(file, stream)
        os.close(file)
    os.chdir(folder)
    os.environ.clear()
    os.environ.update(environment)
    # As its first line has it.
    signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGINT])
    sys.argv = [program, *words]
    try:
        runpy.run_path(program, run_name="__main__")
    except SystemExit as end:
        if not isinstance(end.code, int):
            raise
        sys.stdout.flush()
        sys.stderr.flush()
        # An interpreter that ends visits all its objects, which takes longer than a command.
        os._exit(end.code)


if __name__ == "__main__":
    with socket.socket(fileno=int(sys.argv[1])) as connection:
        serve(connection, *sys.argv[2:])
