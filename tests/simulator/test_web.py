"""The watch in a browser."""

import re
import socket
import subprocess
import urllib.request

import pytest
from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.actions.wheel_input import ScrollOrigin

from simulator.desk import Desk
from support.bus import wait_until

LIT_PIXELS = """
const canvas = document.querySelector('canvas');
if (!canvas || canvas.width < 400) return 0;
const pixels = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height).data;
let lit = 0;
for (let i = 0; i < pixels.length; i += 4)
    lit += pixels[i] + pixels[i + 1] + pixels[i + 2] > 600;
return lit;
"""
TOP_OF_SCREEN = """
const canvas = document.querySelector('canvas');
const pixels = canvas.getContext('2d').getImageData(
    canvas.width * 0.4, canvas.height * 0.3, canvas.width * 0.3, canvas.height * 0.4).data;
return Array.from(pixels).reduce((sum, value) => (sum * 31 + value) % 1000000007, 7);
"""


@pytest.fixture(name="desk")
def _desk():
    with Desk() as desk:
        yield desk


@pytest.fixture(name="browser")
def _browser(tmp_path):
    options = webdriver.ChromeOptions()
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--window-size=900,900",
                     f"--user-data-dir={tmp_path}/profile"):
        options.add_argument(argument)
    browser = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
    yield browser
    browser.quit()


def test_a_browser_sees_the_page_and_scrolls_it(desk, browser):
    address = desk.do("start", "--web").strip()
    desk.do("launch")
    desk.do("wait", "still")
    browser.get(address)
    wait_until(lambda: browser.execute_script(LIT_PIXELS) > 500, "the page in the browser")
    top = browser.execute_script(TOP_OF_SCREEN)
    canvas = browser.find_element(By.TAG_NAME, "canvas")
    origin = ScrollOrigin.from_element(canvas)
    ActionChains(browser).scroll_from_origin(origin, 0, 400).perform()
    wait_until(lambda: desk.status()["bezel"] > 0, "the bezel turned by the browser's wheel")
    wait_until(lambda: browser.execute_script(TOP_OF_SCREEN) != top, "the scrolled page")


def test_the_page_is_for_this_machine_alone_and_asks_for_the_password(desk):
    address = desk.do("start", "--web", "--password", "letmein1").strip()
    found = re.fullmatch(r"http://127\.0\.0\.1:(\d+)/vnc\.html\?.*#password=letmein1", address)
    assert found and urllib.request.urlopen(address).status == 200
    listening = subprocess.run(["ss", "-ltnpH"], check=True, capture_output=True, text=True).stdout
    processes = desk.status()["processes"]
    own = [line for line in listening.splitlines()
           if any(f"pid={process}," in line for process in processes.values())]
    assert any(f" 127.0.0.1:{found[1]} " in line for line in own), own
    assert all(re.search(r" (127\.0\.0\.1|\[::1\]):\d+ ", line) for line in own), own
    assert not any(b"letmein1" in command for command in desk.processes().values())


def test_a_fresh_password_is_made_for_each_start(desk):
    passwords = set()
    for _ in range(2):
        passwords.add(desk.do("start", "--web").strip().partition("#password=")[2])
        desk.do("stop")
    assert len(passwords) == 2 and all(re.fullmatch(r"\w{8}", word) for word in passwords)


def test_a_port_that_is_taken_is_told(desk):
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))
        taken.listen()
        port = taken.getsockname()[1]
        told = desk.refused("start", "--web", "--port", port)
    assert f"cannot listen at port {port}: Address already in use" in told
    assert not desk.processes()
