"""Counts instructions and allocations of fixed work, which time cannot disturb.

    count.py BUILD      counts anew what kept.json holds

The figures are those of a debug build by g++, in which each step of the source counts. What the
toolkit and the C library take does not count: it differs from version to version, and from
processor to processor.
"""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parents[1]))

from support.callgrind import Profile  # noqa: E402
from support.session_bus import SessionBus  # noqa: E402

KEPT = pathlib.Path(__file__).with_name("kept.json")
WORKLOADS = ["1000 detents", "1000 log lines", "1000 times texts", "20 screens"]
DETENTS = ["a detent of the page and one back", "1000 pictures shared with a screen"]
START = "start to first frame"
NEEDED = ["tests/counts/workloads", "tests/counts/detents", "qivo-ui/qivo-guide-app",
          "res/edje/qivoui.edj",
          "res/tables/com.velmora.qivo-app_ChangeableColorTable.xml",
          "res/tables/com.velmora.qivo-app_FontInfoTable.xml",
          "subprojects/watch-port/theme/platform.edj"]


def lack_of(build):
    """What a build folder has not built of all that the work needs, in a line; or nothing."""
    missing = [file for file in NEEDED if not (build / file).exists()]
    return f"{build} has not built {', '.join(missing)}" if missing else ""


def count_all(build):
    """{work: {"instructions": N, "allocations": N}} of a build folder.

    Of detents also {"frames": N, "memory made": N}. For the start also {"themes read": N, "fonts
    loaded": N}, both by the main thread, what is made for screen readers, and what is asked and
    waited for on the session bus.
    """
    with tempfile.TemporaryDirectory() as home, SessionBus() as bus:
        counted = {work: figures_of_program("workloads", profile)
                   for work, profile in profiles(build, home, "workloads", WORKLOADS)}
        counted |= {work: count_detents(profile)
                    for work, profile in profiles(build, home, "detents", DETENTS)}
        return counted | {START: count_start(build, home, bus)}


def profiles(build, home, name, works):
    with open(os.path.join(home, "log"), "w") as log:
        # The way to the work is not counted, and faster without the means to count.
        subprocess.run([*callgrind(home, name), "--collect-atstart=no", "--instr-atstart=no",
                        build / "tests" / "counts" / name],
                       env=environment(home), stderr=log, check=True, timeout=300)
    return [(work, Profile(f"{home}/{name}.{number}")) for number, work in enumerate(works, 1)]


def figures_of_program(name, profile):
    # With the standard library, which here works for nobody but us: streams must not come back.
    return figures(profile, lambda function: function[0].endswith(f"/{name}")
                   or "/libstdc++.so" in function[0])


def count_detents(profile):
    return figures_of_program("detents", profile) | {
        "frames": profile.calls_of(lambda function: "SFrameCB(" in function[2]),
        "memory made": profile.calls_of(
            lambda function: "/libc.so" in function[0] and function[2].startswith("shmget"))}


def count_start(build, home, bus):
    guide = build / "qivo-ui" / "qivo-guide-app"
    process = subprocess.Popen(
        [*callgrind(home, "start"), "--toggle-collect=main", "--dump-before=*SFrameEndCB*", guide],
        env=environment(home) | bus.env | {"ELM_ENGINE": "buffer"}, stderr=subprocess.PIPE,
        text=True, errors="replace")
    try:
        assert any("first frame" in line for line in process.stderr), "the guide draws no frame"
    finally:
        process.kill()
        process.communicate()
    profile = Profile(f"{home}/start.1")
    # Without the port: its work depends on the order of the loop's events. Not every
    # build folder lets callgrind see the names of the sources.
    own = figures(profile, lambda function: "/qivo-ui/" in function[1] or "QivoUi::" in function[2]
                  or function[2] == "main")

    def calls_of(library, *names):
        return profile.calls_of(lambda function: library in function[0] and function[2] in names)

    # The toolkit's own theme is the dearest thing to read, and easily read twice. Fonts are loaded
    # by another thread, and callgrind counts nothing of that here.
    return own | {
        "themes read": profile.calls_of(lambda function: function[2] == "eet_mmap",
                                        lambda function: "/libedje.so" in function[0]),
        "fonts loaded": calls_of("/libfontconfig.so", "FcInitLoadConfigAndFonts"),
        "objects for screen readers": profile.calls_of(
            lambda function: re.match(r"WatchPort::(ScreenReader|Access(Bus|Tree))::",
                                      function[2])),
        "bus calls": calls_of("/libdbus-1.so", "dbus_connection_send",
                              "dbus_connection_send_with_reply"),
        "bus waits": profile.calls_of(
            lambda function: function[2].startswith("WatchPort::BusConnection::HandleUntil("))}


def callgrind(home, name):
    return ["valgrind", "-q", "--tool=callgrind", f"--callgrind-out-file={home}/{name}"]


def environment(home):
    return {"PATH": os.environ["PATH"], "HOME": home, "XDG_RUNTIME_DIR": home, "LANG": "C.UTF-8",
            "EINA_LOG_LEVEL": "0", "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={home}/no-bus"}


def figures(profile, is_own):
    new = "operator new(unsigned long)"
    allocations = profile.calls_of(
        lambda function: function[2] in ("malloc", "calloc", "realloc", new),
        lambda function: is_own(function) and function[2] != new)
    return {"instructions": profile.total(is_own), "allocations": allocations}


def main():
    if len(sys.argv) != 2:
        sys.exit("count.py: needs a build folder")
    build = pathlib.Path(sys.argv[1])
    if lack_of(build):
        sys.exit(f"count.py: {lack_of(build)}")
    KEPT.write_text(json.dumps(count_all(build), indent=4) + "\n")


if __name__ == "__main__":
    main()
