"""A run of the watch as an animated picture; ffmpeg does the work."""

import contextlib
import errno
import os
import pathlib
import queue
import shutil
import subprocess
import threading
import time
from typing import Callable

from qivo_watch.command.beside import beside, part_of
from qivo_watch.command.screen.eye import Eye
from qivo_watch.command.screen.pictures import disc_mask, make_round
from qivo_watch.errors import ScreenGone, UsageError, WatchError
from qivo_watch.processes import kill_group

FORMATS = {
    ".gif": ["-filter_complex",
             "split[a][b];[a]palettegen=reserve_transparent=1[p];[b][p]paletteuse",
             "-loop", "0", "-f", "gif"],
    ".apng": ["-plays", "0", "-f", "apng"],
    ".png": ["-plays", "0", "-f", "apng"],
    ".webp": ["-c:v", "libwebp_anim", "-lossless", "1",
              "-compression_level", "1", "-loop", "0", "-f", "webp"],
    ".mp4": ["-vf", "premultiply=inplace=1,format=yuv420p", "-movflags", "+faststart", "-f", "mp4"],
}
USUAL_RATE = 30
REPLAY = ".replay"

HANG_S = 10.0
"""Seconds that an encoder may use neither processor nor new memory while it has work: on a busy
machine it may wait for its libraries from the disk for some."""

MOST_WAITING = 200
"""Pictures that may wait for the encoder, half a megabyte each."""


def is_replay(file: str) -> bool:
    """Whether what is done is recorded, not the screen."""
    return pathlib.Path(file).suffix.lower() == REPLAY


def check_file(file: str) -> None:
    """Fails for a file that cannot be written, before anything is recorded."""
    if pathlib.Path(file).suffix.lower() not in FORMATS:
        raise UsageError(f'"{file}" does not end in {" ".join(FORMATS)} {REPLAY}')
    part = part_of(file)
    try:
        if os.path.isdir(file):
            raise IsADirectoryError(errno.EISDIR, os.strerror(errno.EISDIR))
        part.touch()
        part.unlink()
    except OSError as error:
        raise WatchError(f'cannot record "{file}": {error.strerror}') from None


def record(eye: Eye, file: str, rate: int, is_over: Callable[[float], bool]) -> None:
    """Records until is_over(SECONDS SO FAR), asked between frames; the file is then complete."""
    if not shutil.which("ffmpeg"):
        raise WatchError("ffmpeg is not installed (package ffmpeg)")
    try:
        with beside(file) as part:
            _encode(eye, file, part, rate, is_over)
    except OSError as error:
        raise WatchError(f'cannot record "{file}": {error.strerror}') from None


def _encode(eye: Eye, file: str, part: pathlib.Path, rate: int,
            is_over: Callable[[float], bool]) -> None:
    """Records into a part of the file."""
    command = ["ffmpeg", "-v", "error", "-y", "-f", "rawvideo", "-pix_fmt", "rgba",
               "-s", f"{eye.size}x{eye.size}", "-r", str(rate), "-i", "-",
               *FORMATS[pathlib.Path(file).suffix.lower()], str(part)]
    # Ctrl-C ends the recording in order, and ffmpeg with it.
    with subprocess.Popen(command, stdin=subprocess.PIPE, stderr=subprocess.PIPE,
                          start_new_session=True) as encoder:
        with _Supervisor(encoder) as supervisor:
            try:
                _feed(eye, encoder, supervisor, rate,
                      lambda seconds: is_over(seconds) or encoder.poll() is not None)
            finally:
                supervisor.is_at_work.set()
                _, complaint = encoder.communicate()
    if encoder.returncode != 0:
        lines = complaint.decode("utf-8", "replace").strip().splitlines() or [
            "ffmpeg hangs" if supervisor.has_hung else "ffmpeg failed"]
        raise WatchError(f'cannot record "{file}": {lines[-1]}')


class _Supervisor:
    """Ends an encoder that hangs: it has work, and uses neither processor nor new memory."""

    def __init__(self, encoder: subprocess.Popen):
        self.is_at_work = threading.Event()
        self.has_hung = False
        self._encoder = encoder
        self._end = threading.Event()
        self._thread = threading.Thread(target=self._watch)

    def __enter__(self) -> "_Supervisor":
        self._thread.start()
        return self

    def __exit__(self, *_: object) -> None:
        self._end.set()
        self._thread.join()

    def _watch(self) -> None:
        used, since = "", time.monotonic()
        while not self._end.wait(HANG_S / 10):
            now = _resources(self._encoder.pid)
            if now != used or not self.is_at_work.is_set():
                used, since = now, time.monotonic()
            elif time.monotonic() - since > HANG_S:
                self.has_hung = True
                kill_group(self._encoder.pid)
                return


def _resources(process: int) -> str:
    """The page faults and the processor time of a process so far."""
    try:
        fields = pathlib.Path(f"/proc/{process}/stat").read_text(encoding="ascii").split()
    except OSError:
        return ""
    return " ".join(fields[9:15])


def _feed(eye: Eye, encoder: subprocess.Popen, supervisor: _Supervisor, rate: int,
          is_over: Callable[[float], bool]) -> None:
    """Takes one picture for each frame of the rate; a slower encoder catches up later."""
    frames: queue.Queue[tuple[bytes, int] | None] = queue.Queue(MOST_WAITING)
    writer = threading.Thread(target=_write, args=(encoder, supervisor, frames))
    writer.start()
    try:
        _look(eye, rate, is_over, frames)
    finally:
        frames.put(None)
        writer.join()


def _look(eye: Eye, rate: int, is_over: Callable[[float], bool], frames: queue.Queue) -> None:
    """Queues pictures, each with the number of frames that it was shown for."""
    mask = disc_mask(eye.size)
    begin = time.monotonic()
    told = 0
    is_last = False
    seen = eye.look()
    while not is_last:
        shown = seen
        frame = make_round(shown, mask).tobytes()
        while seen.tobytes() == shown.tobytes() and not is_last:
            is_last = is_over(time.monotonic() - begin)
            _sleep_until(begin + (int((time.monotonic() - begin) * rate) + 1) / rate)
            try:
                seen = eye.look()
            except ScreenGone:
                is_last = True  # The recording ends with the watch.
        count = max(1, int((time.monotonic() - begin) * rate) - told)
        frames.put((frame, count))
        told += count


def _sleep_until(moment: float) -> None:
    time.sleep(max(0.0, moment - time.monotonic()))


def _write(encoder: subprocess.Popen, supervisor: _Supervisor, frames: queue.Queue) -> None:
    """Feeds the encoder; one that has failed gets nothing more."""
    while (item := frames.get()) is not None:
        frame, count = item
        supervisor.is_at_work.set()
        with contextlib.suppress(BrokenPipeError):
            for _ in range(count):
                encoder.stdin.write(frame)
        supervisor.is_at_work.clear()


class Recording:
    """A recording beside other work; it has its first frame when it is made."""

    def __init__(self, eye: Eye, file: str, rate: int):
        self._end = threading.Event()
        self._news = threading.Event()
        self._error: WatchError | None = None
        self._thread = threading.Thread(target=self._record, args=(eye, file, rate))
        try:
            self._thread.start()
            self._news.wait()
        except BaseException:
            # Nobody else can end what is not made, and the process would wait for its end.
            self._end.set()
            raise

    def finish(self) -> None:
        """Ends it; fails if the recording has failed."""
        self._end.set()
        self._thread.join()
        if self._error:
            raise self._error

    def _record(self, eye: Eye, file: str, rate: int) -> None:
        try:
            record(eye, file, rate, self._is_over)
        except (WatchError, ScreenGone) as error:
            self._error = error if isinstance(error, WatchError) else WatchError(
                "the watch ended while it was recorded")
        finally:
            self._news.set()
            eye.close()

    def _is_over(self, _seconds: float) -> bool:
        self._news.set()
        return self._end.is_set()
