"""The memory that processes share with an X server (shmget(2)), and that may outlive them."""

import pathlib


def segments_of(processes):
    """Ids of the segments that living processes have made and are attached to."""
    return {int(row["shmid"]) for row in _rows()
            if int(row["cpid"]) in processes and int(row["nattch"]) > 0}


def are_left(segments):
    """Whether any of these segments is still in the system."""
    return any(int(row["shmid"]) in segments for row in _rows())


def _rows():
    names, *rows = pathlib.Path("/proc/sysvipc/shm").read_text().splitlines()
    return [dict(zip(names.split(), row.split())) for row in rows]
