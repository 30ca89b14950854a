"""The guide on a whole watch, from launch to exit."""

import subprocess

import pytest

from e2e.watch import Desktop
from support.shared_memory import segments_of

WHITE = (255, 255, 255)
BLACK = (0, 0, 0)
MARK = " ###"


def test_a_launch_logs_its_steps_in_order(watch):
    app = watch.launch()
    for function, text in [("main", MARK), ("SOnAppCreate", MARK),
                           ("SOnAppControl", "operation:["), ("ActivateRotateEvent", "object :0x"),
                           ("SOnAppResume", MARK)]:
        app.wait_log(" QIVOUI_GUIDE: ", f": {function}(", text)
    assert not any(" E QIVOUI_GUIDE" in line for line in app.log), app.tail()


def test_the_page_fills_the_round_screen_with_a_picture_and_white_text(watch):
    watch.launch()
    picture = watch.still_picture()
    hero = picture.colours(bottom=152)
    text = picture.colours(top=158)
    assert len(hero) > 50
    assert text.get(WHITE, 0) > 100 and text.get(BLACK, 0) > 1000


def test_a_users_settings_of_the_toolkit_leave_the_page_as_it_is(watch):
    plain = watch.launch()
    page = watch.still_picture()
    plain.terminate()
    plain.wait_end()
    watch.environment |= {"ELM_SCALE": "3", "ELM_FINGER_SIZE": "150", "ELM_THEME": "flat",
                          "ELM_PROFILE": "mobile", "EVAS_FONT_DPI": "200"}
    watch.launch()
    assert watch.still_picture() == page


def test_the_bezel_scrolls_the_page_and_stops_at_both_ends(watch):
    app = watch.launch()
    top = watch.still_picture()
    watch.turn_bezel(1)
    watch.wait_picture(lambda picture: picture != top, "the page scrolled by one detent")
    watch.turn_bezel(30)
    bottom = watch.still_picture()
    assert bottom != top
    watch.turn_bezel(5)
    assert watch.still_picture() == bottom
    watch.turn_bezel(-30)
    watch.wait_picture(lambda picture: picture == top, "the top of the page again")
    watch.turn_bezel(-5)
    assert watch.still_picture() == top
    assert not app.has("elm_layout_add failed.")


def test_the_frames_of_a_motion_are_drawn_into_the_same_memory(watch):
    app = watch.launch()
    watch.turn_bezel(1)
    used = set()
    there_and_back = ["click", "5", "sleep", "0.05", "click", "4", "sleep", "0.05"]
    with subprocess.Popen(["xdotool", *there_and_back * 10], env=watch.environment) as turning:
        while turning.poll() is None:
            used |= segments_of([app.process.pid])
    # Two in turn; and those of a motion before.
    assert 2 <= len(used) <= 4


def test_one_turn_back_at_the_end_scrolls_back_at_once(watch):
    watch.launch()
    watch.turn_bezel(40)
    bottom = watch.still_picture()
    watch.turn_bezel(-1)
    watch.wait_picture(lambda picture: picture != bottom, "the page scrolled back")


def test_the_arrow_is_hidden_while_the_charger_is_plugged_in(watch):
    watch.launch()
    shown = watch.still_picture()
    watch.plug_charger()
    watch.wait_picture(lambda picture: picture != shown, "a change by the charger")
    hidden = watch.still_picture()
    left, top, right, bottom = hidden.differing(shown)
    assert left > 180 and top > 20 and right <= 360 and bottom < 180
    watch.unplug_charger()
    watch.wait_picture(lambda picture: picture == shown, "the arrow again")


def test_a_launch_while_charging_shows_no_arrow(watch):
    watch.plug_charger()
    watch.launch()
    hidden = watch.still_picture()
    watch.unplug_charger()
    watch.wait_picture(lambda picture: picture != hidden, "the arrow")


def test_a_change_of_the_language_replaces_the_text_alone(watch):
    app = watch.launch()
    english = watch.still_picture()
    watch.set_language("ko_KR")
    app.wait_log("currentLanguage:[ko_KR")
    watch.wait_picture(lambda picture: picture != english, "the text in Korean")
    _, top, _, _ = watch.still_picture().differing(english)
    assert top > 152
    watch.set_language("en_US")
    app.wait_log("currentLanguage:[en_US")
    watch.wait_picture(lambda picture: picture == english, "the text in English")


def test_a_right_to_left_language_does_not_mirror_the_page(watch):
    app = watch.launch()
    english = watch.still_picture()
    watch.set_language("ar_EG")
    app.wait_log("currentLanguage:[ar_EG")
    watch.wait_picture(lambda picture: picture != english, "the text in Arabic")
    _, top, _, _ = watch.still_picture().differing(english)
    assert top > 152


@pytest.mark.parametrize("key", ["XF86Back", "Escape"])
def test_the_back_key_lowers_the_window_and_the_guide_ends(watch, key):
    app = watch.launch()
    watch.press_key(key)
    app.wait_log(" W QIVOUI_GUIDE", "mNaviFrmaeLowerEventListener is NULL")
    app.wait_log("SOnAppPause", MARK)
    app.wait_log("SOnAppTerminate", MARK)
    assert app.wait_end() == 0
    assert not app.has("OnAppPausedByPowerKey")


@pytest.mark.parametrize("manager", ["openbox", "xfwm4"])
def test_the_back_key_ends_the_guide_on_an_empty_desktop(manager):
    with Desktop(manager) as desktop:
        app = desktop.launch()
        desktop.press_key("XF86Back")
        ends_in_order(app, ("PopItem", "mNaviFrmaeLowerEventListener is NULL"))


@pytest.mark.parametrize("manager, has_home", [("openbox", True), ("openbox", False),
                                               ("xfwm4", False)])
def test_a_closed_window_ends_the_guide_in_order(manager, has_home):
    with Desktop(manager) as desktop:
        if has_home:
            desktop.open_window("home")
        app = desktop.launch()
        desktop.close_window()
        ends_in_order(app)


def ends_in_order(app, *first):
    """Pause and terminate follow, the process succeeds, and the toolkit has nothing to say."""
    for function, text in [*first, ("SOnAppPause", MARK), ("SOnAppTerminate", MARK)]:
        app.wait_log(" QIVOUI_GUIDE: ", f": {function}(", text)
    assert app.wait_end() == 0
    assert not app.has("ERR<") and not app.has("CRI<"), app.tail()


def test_the_power_key_is_told_to_the_pause_that_follows(watch):
    app = watch.launch()
    watch.press_power()
    app.wait_log(" I QIVOUI_GUIDE", "POWER KEY Released!")
    watch.open_window("clock")
    app.wait_log("SOnAppPause", MARK)
    app.wait_log("OnAppPausedByPowerKey", " BEGIN >>>>")
    app.wait_log("OnAppPausedByPowerKey", " END <<<<")
    app.wait_log("SOnAppTerminate", MARK)
    assert app.wait_end() == 0


def test_any_other_key_is_passed_over(watch):
    app = watch.launch()
    page = watch.still_picture()
    watch.press_key("a")
    watch.press_key("XF86AudioRaiseVolume")
    watch.press_power()
    app.wait_log("POWER KEY Released!")
    assert sum("OnKeyReleasedCB" in line for line in app.log) == 1
    assert watch.still_picture() == page


def test_a_window_on_top_ends_the_guide(watch):
    app = watch.launch()
    watch.open_window("clock")
    app.wait_log("SOnAppPause", MARK)
    assert app.wait_end() == 0
    assert not app.has("OnAppPausedByPowerKey")


def test_a_request_to_terminate_ends_the_guide_in_order(watch):
    app = watch.launch()
    app.terminate()
    app.wait_log("SOnAppTerminate", MARK)
    assert app.wait_end() == 0


def test_any_launch_request_shows_the_same_page(watch):
    first = watch.launch()
    page = watch.still_picture()
    first.terminate()
    first.wait_end()
    second = watch.launch("--operation", "http://example.org/operation/view",
                          "--extra", "card=1", "--extra", "empty=")
    second.wait_log("operation:[http://example.org/operation/view]")
    assert watch.still_picture() == page
