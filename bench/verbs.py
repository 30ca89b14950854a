"""Measures the desk watch's verbs, each in a process of its own, and prints a table.

    verbs.py [--quick] BUILD
"""

import argparse
import os
import pathlib
import resource
import statistics
import subprocess
import tempfile
import time

LOOP = 'for i in $(seq "$2"); do "$1" bezel cw -i 0 || exit; done'
VERBS = """
bezel cw
button click back -d 0
touch 180 180
battery --percent 50
language en_US
region auto
time set 10:08
time hours 24
time zone Asia/Seoul
text-size 1
motion full
contrast normal
install {folder}
uninstall org.example.none
status
status --json
time
apps
list
log
wait log ready
wait exit
tree
screenshot {folder}/a.png
screenshot --body {folder}/b.png
compare {folder}/a.png
""".strip().splitlines()
"""With the home face; `tree` with the guide."""

ENTRY = "[Desktop Entry]\nType=Application\nName=None\nExec=/bin/true\n"


class Watch:
    """Context manager: a headless watch in a folder of its own."""

    def __init__(self, build):
        self.command = pathlib.Path(build).resolve() / "simulator" / "qivo-watch"
        self._folder = tempfile.TemporaryDirectory(prefix="verbs-")
        self.folder = self._folder.name
        self._environment = {key: value for key, value in os.environ.items()
                             if key != "DISPLAY"} | {"XDG_RUNTIME_DIR": self.folder}

    def __enter__(self):
        self.seconds("start", "--headless")
        return self

    def __exit__(self, *_):
        self.seconds("stop")
        self._folder.cleanup()

    def seconds(self, *words):
        """How long a verb takes, and how much processor time the command uses of it."""
        return self.seconds_of([self.command, *words])

    def seconds_of(self, command):
        used, begin = processor_time(), time.monotonic()
        subprocess.run(command, env=self._environment, check=True, stdout=subprocess.DEVNULL)
        return time.monotonic() - begin, processor_time() - used


def processor_time():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def row(words, rounds):
    seconds, used = zip(*rounds)
    figures = statistics.median(seconds), min(seconds), statistics.median(used)
    return f"| `{words}` | " + " | ".join(f"{figure * 1000:.0f}" for figure in figures) + " |"


def measure_verbs(watch, rounds):
    """The verbs in turn, so that a busy moment falls on all alike."""
    entry = pathlib.Path(watch.folder, "org.example.none.desktop")
    entry.write_text(ENTRY, encoding="utf-8")
    watch.seconds("launch")
    watch.seconds("button", "click", "back")
    found = {line: [] for line in VERBS}
    for _ in range(rounds):
        for line in VERBS:
            if line == "tree":
                watch.seconds("launch")
            found[line].append(watch.seconds(*line.format(folder=watch.folder).split()))
            if line == "tree":
                watch.seconds("terminate")
    for line, seconds in found.items():
        yield row(line.replace("{folder}/", "").format(folder="FOLDER"), seconds)


def measure_lives(build, rounds):
    found = {"start --headless": [], "stop": []}
    for _ in range(rounds):
        watch = Watch(build)
        for words, seconds in found.items():
            seconds.append(watch.seconds(*words.split()))
    for words, seconds in found.items():
        yield row(words, seconds)


def main():
    parser = argparse.ArgumentParser(prog="script/bench --verbs")
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("build")
    arguments = parser.parse_args()
    loops, rounds, lives = (20, 2, 1) if arguments.quick else (1000, 21, 11)
    print("| Verb | median ms | fastest | processor time of the command |\n|---|---|---|---|")
    for line in measure_lives(arguments.build, lives):
        print(line)
    with Watch(arguments.build) as watch:
        for line in measure_verbs(watch, rounds):
            print(line)
        loop = watch.seconds_of(["sh", "-c", LOOP, "sh", watch.command, str(loops)])[0]
    load = pathlib.Path("/proc/loadavg").read_text(encoding="ascii").split()[0]
    print(f"\n{loops} verbs from a shell loop: {loop:.1f} s; load of the last minute {load}")


if __name__ == "__main__":
    main()
