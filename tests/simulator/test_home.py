"""The home face."""

import subprocess

from simulator.watch import Watch
from support.bus import wait_until

ICON = (180, 257)


def test_a_tap_on_the_icon_launches_the_guide():
    with Watch() as watch:
        watch.start_home()
        subprocess.run(["xdotool", "mousemove", *map(str, ICON), "click", "1"], check=True,
                       env=watch.screen.env)
        watch.wait_calls("Launch", [("com.velmora.qivo-guide-app", "", {})])


def test_ends_with_the_keeper():
    with Watch() as watch:
        home = watch.start_home()
        watch.bus._stop("com.velmora.QivoWatch")
        wait_until(lambda: home.poll() is not None, "its end")
        assert home.returncode == 0
