"""The home face."""

import subprocess
import time

import dbus
import pytest

from simulator.programs.watch import KEEPER, TEN_PAST_TEN, Watch, times_woken
from support.bus import wait_until

ICON = (180, 257)

QUIET = 1.5
"""Seconds that no second hand, no polling and no animation would leave undisturbed."""


def look(display):
    return subprocess.run(["import", "-display", display.name, "-window", "root", "-depth", "8",
                           "rgb:-"], check=True, capture_output=True).stdout


def wait_change(display, before):
    wait_until(lambda: look(display) != before, "another picture")
    return look(display)


@pytest.mark.parametrize("size", [360, 390, 454])
def test_a_tap_on_the_icon_launches_the_guide(size):
    with Watch(size) as watch:
        watch.start_home()
        place = [coordinate * size // 360 for coordinate in ICON]
        watch.screen.xdotool("mousemove", *place, "click", 1)
        watch.wait_calls("Launch", [({"app": "com.velmora.qivo-guide-app"},)])


def apps(*ids, icon=""):
    return dbus.Array([(app_id, f"Name of {app_id}", icon) for app_id in ids], signature="(sss)")


@pytest.mark.parametrize("detents, launched", [(1, "org.b"), (-1, "org.c"), (1003, "org.b")])
def test_the_bezel_picks_the_application_that_a_tap_launches(detents, launched):
    with Watch() as watch:
        watch.start_home()
        before = look(watch.screen)
        watch.set(Apps=apps("org.a", "org.b", "org.c"))
        wait_change(watch.screen, before)
        watch.screen.xdotool("mousemove", *ICON, "click", "--repeat", abs(detents), "--delay", 0,
                             5 if detents > 0 else 4, "click", 1)
        watch.wait_calls("Launch", [({"app": launched},)])


@pytest.mark.parametrize("others, picked", [(["org.new", "org.a", "org.b"], "org.b"),
                                            (["org.a"], "org.a")])
def test_the_picked_application_stays_picked_while_it_is_there(others, picked):
    with Watch() as watch:
        watch.start_home()
        picture = look(watch.screen)
        watch.set(Apps=apps("org.a", "org.b"))
        picture = wait_change(watch.screen, picture)
        watch.screen.xdotool("mousemove", *ICON, "click", 5)
        picture = wait_change(watch.screen, picture)
        watch.set(Apps=apps(*others))
        wait_change(watch.screen, picture)
        watch.screen.xdotool("click", 1)
        watch.wait_calls("Launch", [({"app": picked},)])


def test_names_and_icons_are_shown_and_a_picture_that_is_none_is_a_letter(tmp_path):
    (tmp_path / "wrong.png").write_bytes(b"no picture")
    subprocess.run(["convert", "xc:red", "-resize", "48x48!", tmp_path / "red.png"], check=True)
    subprocess.run(["convert", "-size", "5000x4", "xc:red", tmp_path / "wide.png"], check=True)
    with Watch() as watch:
        watch.start_home()
        before = look(watch.screen)
        watch.set(Apps=apps("org.a"))
        letter = wait_change(watch.screen, before)
        watch.set(Apps=apps("org.a", icon=str(tmp_path / "red.png")))
        red = wait_change(watch.screen, letter)
        assert red.count(b"\xff\0\0") > 2000
        for none in ("wrong.png", "wide.png", "nothing.png"):
            watch.set(Apps=apps("org.a", icon=str(tmp_path / none)))
            wait_until(lambda: look(watch.screen) == letter, "the letter")
            watch.set(Apps=apps("org.a", icon=str(tmp_path / "red.png")))
            wait_until(lambda: look(watch.screen) == red, "the icon")


def test_follows_time_battery_and_charger():
    with Watch() as watch:
        watch.start_home()
        before = look(watch.screen)
        for change in ({"Time": dbus.Int64(TEN_PAST_TEN + 3_600_000)}, {"Percentage": 12.0},
                       {"Charging": True}):
            watch.set(**change)
            before = wait_change(watch.screen, before)


def test_text_follows_its_size_and_contrast():
    with Watch() as watch:
        watch.start_home()
        usual = before = look(watch.screen)
        for change in ({"TextSize": 2.0}, {"TextSize": 1.0, "ContrastHigh": True}):
            watch.set(**change)
            before = wait_change(watch.screen, before)
        watch.set(ContrastHigh=False)
        wait_until(lambda: look(watch.screen) == usual, "the usual face")


def test_with_reduced_motion_the_bolt_is_simply_there():
    with Watch() as watch:
        watch.start_home()
        watch.set(MotionReduced=True)
        unplugged = look(watch.screen)
        seen = set()
        for _ in range(3):
            watch.set(Charging=True)
            seen.add(wait_change(watch.screen, unplugged))
            watch.set(Charging=False)
            wait_until(lambda: look(watch.screen) == unplugged, "no bolt")
        assert len(seen) == 1


def test_the_hands_move_when_the_watchs_own_minute_is_full():
    with Watch(time=TEN_PAST_TEN + 59_000, frozen=True) as watch:
        watch.start_home()
        before = look(watch.screen)
        watch.set(TimeFrozen=False)
        wait_change(watch.screen, before)


def test_covers_an_app_in_black_while_the_screen_is_off_and_stays_above_it():
    with Watch() as watch:
        watch.start_home()
        face = look(watch.screen)
        app = subprocess.Popen(["setpriv", "--pdeathsig", "KILL", "xlogo"],
                               env=watch.screen.env, stderr=subprocess.DEVNULL)
        try:
            wait_change(watch.screen, face)
            watch.set(ScreenOn=False)
            wait_until(lambda: not any(look(watch.screen)), "darkness")
            watch.set(ScreenOn=True)
            wait_until(lambda: look(watch.screen) == face, "the face")
        finally:
            app.kill()
            app.wait()


def test_takes_no_tap_while_the_screen_is_off():
    with Watch() as watch:
        watch.start_home()
        watch.set(ScreenOn=False)
        wait_until(lambda: not any(look(watch.screen)), "darkness")
        tap = ["mousemove", *ICON, "click", 1]
        watch.screen.xdotool(*tap)
        watch.set(ScreenOn=True)
        wait_until(lambda: any(look(watch.screen)), "light")
        watch.screen.xdotool(*tap)
        watch.wait_calls("Launch", [({"app": "com.velmora.qivo-guide-app"},)])


def test_sleeps_between_full_minutes_and_the_body_with_it():
    with Watch(frozen=False) as watch:
        programs = [watch.start_home(), watch.start_body()]
        seen = {"woken": None, "since": 0.0}

        def are_asleep():
            woken = [times_woken(program) for program in programs]
            if woken != seen["woken"]:
                seen.update(woken=woken, since=time.monotonic())
            return time.monotonic() - seen["since"] > QUIET

        wait_until(are_asleep, f"{QUIET} s without a wake-up")


def test_ends_with_the_keeper():
    with Watch() as watch:
        home = watch.start_home()
        watch.bus._stop(KEEPER)
        assert home.wait(timeout=10) == 0
