"""Becomes a program once a debugger is there: `debuggee.py PROGRAM ARGUMENT...`.

So the debugger sees the program from its first instruction, and the program is the keeper's child
like every other. It runs in the program's environment, without the watch's modules.
"""

import ctypes
import os
import pathlib
import sys
import time

PR_SET_PTRACER = 0x59616D61
PR_SET_PTRACER_ANY = ctypes.c_ulong(-1)
PATIENCE_S = 5.0


def main() -> None:
    # Where the kernel lets only parents trace.
    ctypes.CDLL(None).prctl(PR_SET_PTRACER, PR_SET_PTRACER_ANY, 0, 0, 0)
    deadline = time.monotonic() + PATIENCE_S
    while "TracerPid:\t0\n" in pathlib.Path("/proc/self/status").read_text(encoding="ascii"):
        if time.monotonic() > deadline:
            sys.exit(f"no debugger within {PATIENCE_S:g} s")
        time.sleep(0.01)
    os.execv(sys.argv[1], sys.argv[1:])


if __name__ == "__main__":
    main()
