"""Pictures on a disk that is full: what was there stays, and nothing is left beside it."""

import pathlib
import shlex
import subprocess

import pytest


NAMESPACE = ["unshare", "--map-root-user", "--mount"]


def start_beside_small_disk(desk, folder):
    """Starts a watch; its programs see a disk of 16 KiB in the folder, with a picture on it."""
    mount = (f"mount -t tmpfs -o size=16k none {shlex.quote(str(folder))} && "
             f"echo before >{shlex.quote(str(folder))}/watch.png && ")
    probe = subprocess.run([*NAMESPACE, "sh", "-c", f"{mount}true"], capture_output=True,
                           text=True, check=False)
    if probe.returncode:
        pytest.skip(f"no disk of one's own: {probe.stderr.strip()}")
    subprocess.run([*NAMESPACE, "sh", "-c", f'{mount}exec "$@"', "sh",
                    *desk.command("start", "--headless")], env=desk.environment, check=True)


def test_a_picture_of_the_body_that_does_not_fit_leaves_the_one_before(desk, tmp_path):
    start_beside_small_disk(desk, tmp_path)
    body = desk.status()["processes"]["body"]
    seen = pathlib.Path(f"/proc/{body}/root{tmp_path}")
    told = desk.refused("screenshot", "--body", tmp_path / "watch.png")
    assert told == f'qivo-watch: "{tmp_path}/watch.png" cannot be written'
    assert [file.name for file in seen.iterdir()] == ["watch.png"]
    assert (seen / "watch.png").read_text() == "before\n"


def test_a_picture_of_the_screen_that_does_not_fit_leaves_the_one_before(desk, tmp_path):
    start_beside_small_disk(desk, tmp_path)
    body = desk.status()["processes"]["body"]
    seen = pathlib.Path(f"/proc/{body}/root{tmp_path}")
    result = subprocess.run(
        ["nsenter", "--user", "--mount", "--preserve-credentials", "--target", str(body), "--",
         *desk.command("screenshot", tmp_path / "watch.png")],
        env=desk.environment, capture_output=True, text=True, check=False)
    assert result.returncode == 1 and "No space left on device" in result.stderr
    assert [file.name for file in seen.iterdir()] == ["watch.png"]
    assert (seen / "watch.png").read_text() == "before\n"
