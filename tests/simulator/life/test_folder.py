"""Where a watch keeps what belongs to it: anywhere, and nobody else can have it exchanged."""

import contextlib
import fcntl
import os
import pathlib
import subprocess

import pytest


@pytest.fixture(name="precious")
def _precious(tmp_path):
    """A file of this user's in a folder that looks like a watch's."""
    file = tmp_path / "victim" / "watch" / "home" / "precious"
    file.parent.mkdir(parents=True, mode=0o700)
    file.write_text("mine")
    return file


@pytest.mark.parametrize("mode", [0o777, 0o1777, 0o770])
def test_a_runtime_folder_that_others_can_write_to_is_refused(desk, precious, mode):
    (desk.runtime / "qivo-watch").symlink_to(precious.parents[2])
    desk.runtime.chmod(mode)
    for words in (["start", "--headless"], ["status"], ["stop"]):
        complaint = desk.refused(*words)
        assert f"{desk.runtime} is not a folder of this user alone" in complaint
        assert f"mode {mode:o}" in complaint
    assert precious.read_text() == "mine"


@pytest.mark.parametrize("place", ["", "qivo-watch", "qivo-watch/watch"])
def test_a_link_where_a_folder_should_be_is_refused(desk, precious, place):
    runtime = desk.runtime / "runtime"
    link = runtime / place
    link.parent.mkdir(parents=True, mode=0o700, exist_ok=True)
    link.symlink_to(precious.parents[{"": 3, "qivo-watch": 2, "qivo-watch/watch": 1}[place]])
    desk.environment["XDG_RUNTIME_DIR"] = str(runtime)
    assert f"{link} is not a folder, or is a link to one" in desk.refused("start", "--headless")
    assert precious.read_text() == "mine"


def test_a_folder_of_another_user_is_refused(desk):
    if os.getuid() != 0:
        pytest.skip("only root can give a folder away")
    os.chown(desk.runtime, 65534, -1)
    assert "is not a folder of this user alone (owner 65534" in desk.refused("start", "--headless")
    os.chown(desk.runtime, os.getuid(), -1)


def test_what_a_dead_watch_has_left_is_removed_and_not_what_its_links_point_to(desk, precious):
    left = desk.runtime / "qivo-watch" / "watch" / "home"
    left.mkdir(parents=True, mode=0o700)
    for folder in (left, left.parent, left.parent.parent):
        folder.chmod(0o700)
    (left / "link").symlink_to(precious.parent)
    (left.parent / "link").symlink_to(precious.parent)
    desk.do("start", "--headless")
    assert not (left / "link").exists() and not (left.parent / "link").exists()
    assert precious.read_text() == "mine"


def test_the_place_of_a_watch_may_have_any_name(desk):
    desk.environment["XDG_RUNTIME_DIR"] = place = str(desk.runtime / "a b~%;,&<é")
    os.mkdir(place, 0o700)
    desk.do("start", "--headless")
    desk.do("launch")
    desk.do("bezel", "cw")
    desk.do("stop")
    assert not os.listdir(place)


@pytest.mark.parametrize("room", [0, 1, 2])
def test_a_disk_that_is_full_is_the_reason_that_is_given(desk, tmp_path, room):
    """room: pages of 4 KiB that are left for the folder's files."""
    (tmp_path / "run").mkdir()
    script = (f'mount -t tmpfs -o mode=700,size={4 * (room + 1)}k tmpfs "$1" && cd "$1" &&'
              'head -c 4096 /dev/zero >full && shift && XDG_RUNTIME_DIR=$PWD exec "$@"')
    started = subprocess.run(
        ["unshare", "--map-root-user", "--mount", "sh", "-c", script, "sh", tmp_path / "run",
         *desk.command("start", "--headless")],
        env=desk.environment, capture_output=True, text=True)
    if "unshare" in started.stderr:
        pytest.skip(f"no file system of one's own here: {started.stderr.strip()}")
    place = pathlib.Path(tmp_path, "run", "qivo-watch", "watch")
    assert (started.returncode, started.stderr) == (
        1, f"qivo-watch: the watch did not start: {place}: No space left on device\n")


def test_what_another_could_have_put_there_is_not_read(desk):
    """A named pipe, at which who reads it waits for ever."""
    folder = desk.runtime / "qivo-watch" / "watch"
    folder.mkdir(parents=True)
    os.mkfifo(folder / "display")
    folder.parent.chmod(0o777)
    for words in (["status"], ["list"], ["start", "--headless"]):
        assert f"{folder.parent} is not a folder of this user alone" in desk.refused(*words)
    folder.parent.chmod(0o700)
    (folder / "display").unlink()


def test_a_runtime_folder_without_an_absolute_path_is_refused(desk):
    desk.environment["XDG_RUNTIME_DIR"] = "run"
    assert 'XDG_RUNTIME_DIR is not an absolute path: "run"' in desk.refused("start", "--headless")


def test_what_is_no_watch_is_not_listed(desk, precious):
    desk.do("start", "--headless")
    base = desk.runtime / "qivo-watch"
    for folder in ("no name", "-x", "dead"):
        (base / folder).mkdir(mode=0o700)
    (base / "open").mkdir()
    (base / "open").chmod(0o777)
    (base / "file").touch()
    (base / "link").symlink_to(precious.parents[1])
    assert desk.do("list") == "watch\n"
    (base / "link").unlink()
    (base / "file").unlink()
    for folder in ("no name", "-x", "dead", "open"):
        (base / folder).rmdir()


def test_a_folder_whose_rights_were_taken_away_is_removed(desk):
    locked = desk.runtime / "qivo-watch" / "watch" / "home" / "read-only"
    (locked / "closed").mkdir(parents=True)
    (locked / "file").touch()
    for folder in (locked.parents[2], locked.parents[1]):
        folder.chmod(0o700)
    (locked / "closed").chmod(0)
    locked.chmod(0o500)
    # Root has all rights on every folder, unless it is another user to itself.
    ended = subprocess.run(["unshare", "--map-user=1000", *desk.command("stop")],
                           env=desk.environment, capture_output=True, text=True)
    if "unshare" in ended.stderr:
        pytest.skip(f"no user of one's own here: {ended.stderr.strip()}")
    assert (ended.returncode, ended.stderr) == (0, "")
    assert not list(desk.runtime.iterdir())


def test_a_watch_that_cannot_be_seen_is_not_waited_for(desk):
    folder = desk.runtime / "qivo-watch" / "watch"
    folder.mkdir(parents=True)
    for made in (folder, folder.parent):
        made.chmod(0o700)
    with contextlib.ExitStack() as held:
        lock = os.open(folder, os.O_RDONLY)
        # Also when the test is skipped: the desk ends who still holds it.
        held.callback(os.close, lock)
        fcntl.flock(lock, fcntl.LOCK_EX)
        for words in (["start", "--headless"], ["stop"]):
            told = subprocess.run(["unshare", "--map-root-user", "--pid", "--fork", "--mount-proc",
                                   *desk.command(*words)],
                                  env=desk.environment, capture_output=True, text=True, timeout=60)
            if "unshare" in told.stderr:
                pytest.skip(f"no processes of one's own here: {told.stderr.strip()}")
            assert (told.returncode, told.stderr) == (
                1, 'qivo-watch: watch "watch" is held by a process that cannot be seen or ended '
                'from here\n')
