"""What is measured, how, and in which order. Each function returns figures by name."""

import contextlib
import ctypes
import json
import os
import pathlib
import re
import signal
import statistics
import subprocess
import tempfile
import time

from support.bus import SystemBus
from support.callgrind import Profile
from support.display import Display
from support.session_bus import SessionBus
from verbs import Watch

TEXT = "Press and hold the Back key on any screen to open Qivo."
DEADLINE = 120.0
DROP_CACHES = pathlib.Path("/proc/sys/vm/drop_caches")
PR_SET_CHILD_SUBREAPER = 36


class Bench:
    """Context manager: a screen, a user with an empty home, and buses without services."""

    def __init__(self, build, is_quick, standing_s=0):
        self.build = pathlib.Path(build).resolve()
        self.is_quick = is_quick
        self.standing_s = standing_s
        self.env = None
        self.home = None
        self._stack = contextlib.ExitStack()
        self._system = None
        self.guide = self.build / "qivo-ui" / "qivo-guide-app"

    def __enter__(self):
        # What the toolkit starts in the background becomes a child of this process.
        ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        with contextlib.ExitStack() as stack:
            stack.callback(end_children)
            display = stack.enter_context(Display())
            self._system = stack.enter_context(SystemBus())
            session = stack.enter_context(SessionBus())
            self.home = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory()))
            self.env = {"PATH": os.environ["PATH"], "HOME": str(self.home), "LANG": "C.UTF-8",
                        "XDG_RUNTIME_DIR": str(self.home), "GSK_RENDERER": "cairo",
                        "QT_QUICK_BACKEND": "software",
                        **display.env, **self._system.env, **session.env}
            self._stack = stack.pop_all()
        return self

    def __exit__(self, *_):
        self._stack.close()

    def plug_charger(self):
        self._system.start_upower(charging=True)

    @contextlib.contextmanager
    def languages(self):
        """A service that says the user's language, with the function that sets it."""
        self._system.start_locale()
        yield lambda language: self._system.set_locale([f"LANG={language}.UTF-8"])
        self._system.stop_locale()

    def pages(self):
        """The command of each program that shows the page."""
        programs = self.build / "bench"
        images = self.build / "res" / "images"
        page = [images / "help_image_360.png", images / "back_key_arrow_360.png", TEXT]
        qml = pathlib.Path(__file__).with_name("qt_page.qml")
        return {"guide": [self.guide],
                "EFL": [programs / "bare-efl", *page],
                "GTK": [programs / "gtk4-page", *page],
                "Qt": [programs / "qt-page", qml, *page]}

    def watch(self, mode, *arguments):
        """What frame-watch prints."""
        run = subprocess.run([self.build / "bench" / "frame-watch", mode, *arguments],
                             env=self.env, capture_output=True, text=True)
        if run.returncode:
            raise RuntimeError(f"{' '.join(map(str, arguments))}: {run.stderr[-500:]}")
        return [float(figure) for figure in run.stdout.split()]

    @contextlib.contextmanager
    def running_guide(self, *before, **env):
        """The guide, when its first frame is drawn."""
        process = subprocess.Popen([*before, self.guide], env=self.env | env, text=True,
                                   stderr=subprocess.PIPE, errors="replace")
        try:
            if not any("first frame" in line for line in process.stderr):
                raise RuntimeError("the guide draws no frame")
            yield process
        finally:
            process.terminate()
            process.communicate()


def end_children(name=None):
    """Ends the started programs that still run, or those with one name."""
    children = pathlib.Path(f"/proc/self/task/{os.getpid()}/children").read_text().split()
    for child in map(int, children):
        if name in (None, pathlib.Path(f"/proc/{child}/comm").read_text().strip()):
            os.kill(child, signal.SIGKILL)
            os.waitpid(child, 0)


def settled_pages(bench):
    """The pages' commands, when it is known how each looks at rest."""
    pages = bench.pages()
    for name, command in pages.items():
        if not (bench.home / name).exists():
            bench.watch("settle", bench.home / name, *command)
    return pages


def measure_start(bench):
    """Start to first complete frame and peak memory: medians of interleaved rounds.

    Bare EFL waits for its cache daemon, which the first program of a session starts and which ends
    soon after the last one. So it is measured both without the daemon ("EFL first") and with it
    ("EFL"): otherwise chance would decide.
    """
    pages = settled_pages(bench)
    figures = {name: [] for name in [*pages, "EFL first"]}
    order = list(pages)
    for _ in range(3 if bench.is_quick else 21):
        for name in order:
            command = ("measure", bench.home / name, *pages[name])
            if name == "EFL":
                end_children("efreetd")
                figures["EFL first"].append(bench.watch(*command))
            figures[name].append(bench.watch(*command))
        # So that none always runs after the same other one.
        order.append(order.pop(0))
    medians = {}
    for name, rounds in figures.items():
        frame, cpu, peak, share, private, anonymous = map(statistics.median, zip(*rounds))
        medians[name] = {"frame": frame, "cpu": cpu, "peak": peak, "share": share,
                         "private": private, "anonymous": anonymous}
    return medians


def measure_cold_start(bench):
    """Milliseconds from the start to the first complete frame when no file is in memory: medians,
    or nothing where the kernel's file cache cannot be dropped."""
    pages = settled_pages(bench)
    figures = {name: [] for name in pages}
    order = list(pages)
    try:
        for _ in range(1 if bench.is_quick else 5):
            for name in order:
                DROP_CACHES.write_text("3")
                figures[name].append(bench.watch("measure", bench.home / name, *pages[name])[0])
            order.append(order.pop(0))
    except OSError:
        return {}
    return {name: statistics.median(times) for name, times in figures.items()}


def measure_launch(bench):
    """Milliseconds that "qivo-watch launch" takes, which ends when the page is seen: the median."""
    with Watch(bench.build) as watch:
        times = []
        for _ in range(3 if bench.is_quick else 15):
            times.append(watch.seconds("launch", bench.guide)[0] * 1000)
            watch.seconds("terminate", bench.guide)
    return statistics.median(times)


def measure_share(bench):
    """The instructions from main to the first frame, and how many of them are in qivo-ui/, for
    screen readers, and to follow how the user wants the screen to look."""
    output = bench.home / "callgrind"
    with bench.running_guide("valgrind", "--tool=callgrind", f"--callgrind-out-file={output}",
                             "--toggle-collect=main", "--dump-before=*SFrameEndCB*"):
        pass
    profile = Profile(f"{output}.1")
    own = profile.total(lambda function: "/qivo-ui/" in function[1] or "QivoUi::" in function[2])

    def spent_in(names):
        return profile.total_with_calls(
            lambda function: re.match(f"WatchPort::({names})::", function[2]))

    return {"own": own, "all": profile.total(),
            "readers": spent_in("ScreenReader|Accessibility|AccessBus|AccessTree"),
            "look": spent_in("DesktopPreferences|PortalSettings")}


def await_rest(count):
    """Returns when nothing has been counted for a second.

    The arrow beckons for 1.7 seconds, and half a second after its last frame the toolkit clears up.
    """
    deadline = time.monotonic() + DEADLINE
    seen, since = count(), time.monotonic()
    while time.monotonic() - since < 1:
        time.sleep(0.05)
        if time.monotonic() > deadline:
            raise RuntimeError("the guide does not come to rest")
        if count() != seen:
            seen, since = count(), time.monotonic()


def used_by(process):
    """The wake-ups of all its threads so far, and the milliseconds of processor time."""
    tasks = [(task / "schedstat", task / "status")
             for task in pathlib.Path(f"/proc/{process.pid}/task").iterdir()]
    return (sum(int(line.split()[1]) for _, status in tasks
                for line in status.read_text().splitlines()
                if line.startswith("voluntary_ctxt_switches")),
            sum(int(times.read_text().split()[0]) for times, _ in tasks) / 1e6)


def measure_standing(bench, seconds):
    """Wake-ups of all threads of the guide in so many seconds in which it stands still, and the
    milliseconds of processor time that they take."""
    with bench.running_guide() as guide:
        await_rest(lambda: used_by(guide)[0])
        before = used_by(guide)
        time.sleep(seconds)
        return tuple(after - first for after, first in zip(used_by(guide), before))


def measure_language_change(bench):
    """Milliseconds of the guide's processor time from a change of the language to rest."""
    used = []
    with bench.languages() as set_language, bench.running_guide(LANG="") as guide:
        await_rest(lambda: used_by(guide)[0])
        for language in ("ko_KR", "en_US") * (1 if bench.is_quick else 5):
            before = used_by(guide)[1]
            set_language(language)
            await_rest(lambda: used_by(guide)[0])
            used.append(used_by(guide)[1] - before)
    return statistics.median(used)


def measure_detents(bench):
    """Milliseconds from each detent to the next change of the screen."""
    count = 60 if bench.is_quick else 1000
    latencies = sorted(bench.watch("detents", str(count), bench.guide))
    dropped = count - len(latencies)
    return {"median": statistics.median(latencies), "p99": latencies[len(latencies) * 99 // 100],
            "most": latencies[-1], "dropped": dropped, "count": count}


def measure_energy(bench):
    """{(milliseconds between detents, program): figures}: processor time in milliseconds a detent
    of the program and of the X server, and frames: medians of interleaved rounds.

    All move by a quarter of the screen in 0.3 seconds, except "EFL", which has its own length.
    """
    pages = bench.pages()
    pages["EFL, same motion"] = [*pages["EFL"], "0.3"]
    speeds = {800: 5 if bench.is_quick else 15, 33: 90}
    figures = {}
    order = list(pages)
    for _ in range(1 if bench.is_quick else 3):
        for name in order:
            for interval, count in speeds.items():
                used = bench.watch("energy", str(count), str(interval), *pages[name])
                figures.setdefault((interval, name), []).append([part / count for part in used])
        order.append(order.pop(0))
    return {key: dict(zip(("own", "server", "frames"), map(statistics.median, zip(*rounds))))
            for key, rounds in figures.items()}


def measure_operations(bench):
    """Processor time in nanoseconds of each operation, medians of interleaved repetitions."""
    program = bench.build / "bench" / "in-process"
    options = ["--benchmark_format=json", "--benchmark_enable_random_interleaving=true",
               f"--benchmark_repetitions={3 if bench.is_quick else 9}",
               f"--benchmark_min_time={0.02 if bench.is_quick else 0.1}"]

    def run(level, pattern):
        with tempfile.TemporaryFile(dir=bench.build) as log:
            result = subprocess.run([program, *options, f"--benchmark_filter={pattern}"],
                                    env=bench.env | {"DLOG_LEVEL": level}, check=True,
                                    stdout=subprocess.PIPE, stderr=log)
        return {entry["run_name"].split("/iterations")[0]: entry
                for entry in json.loads(result.stdout)["benchmarks"]
                if entry.get("aggregate_name") == "median"}

    dropped = run("silent", ".")
    written = run("debug", "log_line")
    figures = {name: entry["cpu_time"] for name, entry in dropped.items()}
    figures["log_line/written"] = written["log_line"]["cpu_time"]
    for name in ("push_pop", "push_pop/bare"):
        figures[name + "/kept"] = dropped[name]["kept"]
    return figures


def measure_size(bench):
    """Bytes of code and data in the objects of qivo-ui/."""
    libraries = sorted((bench.build / "qivo-ui").glob("lib*.a"))
    sizes = subprocess.run(["size", "-t", *libraries], text=True, check=True,
                           stdout=subprocess.PIPE).stdout.splitlines()[-1]
    return int(sizes.split()[3])
