"""The watch in a browser."""

import contextlib
import re
import socket
import subprocess
import urllib.parse
import urllib.request

import pytest
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.common.actions.wheel_input import ScrollOrigin

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


def test_a_browser_sees_the_page_scrolls_it_and_leaves_it(fresh, browser):
    address = fresh.do("start", "--web").strip()
    fresh.do("launch")
    fresh.do("wait", "still")
    browser.get(address)
    wait_until(lambda: browser.execute_script(LIT_PIXELS) > 500, "the page in the browser")
    top = browser.execute_script(TOP_OF_SCREEN)
    canvas = browser.find_element(By.TAG_NAME, "canvas")
    origin = ScrollOrigin.from_element(canvas)
    ActionChains(browser).scroll_from_origin(origin, 0, 400).perform()
    wait_until(lambda: fresh.status()["bezel"] > 0, "the bezel turned by the browser's wheel")
    wait_until(lambda: browser.execute_script(TOP_OF_SCREEN) != top, "the scrolled page")
    browser.execute_script("arguments[0].focus()", canvas)
    ActionChains(browser).send_keys(Keys.ESCAPE).perform()
    wait_until(lambda: fresh.status()["app"] is None, "the application left by the browser's key")


def listening_ports(fresh):
    """Addresses and ports that the watch's processes listen at."""
    listening = subprocess.run(["ss", "-ltnpH"], check=True, capture_output=True, text=True).stdout
    own = fresh.processes()
    return {tuple(line.split()[3].rsplit(":", 1)) for line in listening.splitlines()
            if any(int(process) in own for process in re.findall(r"pid=(\d+)", line))}


def answer_to_upgrade(port, origin):
    """What a page of ORIGIN gets that asks for the watch's screen: until the VNC server greets, or
    the connection ends."""
    lines = ["GET /websockify HTTP/1.1", f"Host: 127.0.0.1:{port}", "Upgrade: websocket",
             "Connection: Upgrade", "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==",
             "Sec-WebSocket-Version: 13", "Sec-WebSocket-Protocol: binary"]
    lines += [f"Origin: {origin}"] if origin else []
    with socket.create_connection(("127.0.0.1", port), timeout=30) as connection:
        connection.sendall("\r\n".join([*lines, "", ""]).encode())
        answer = b""
        while b"RFB 003" not in answer:
            piece = connection.recv(4096)
            if not piece:
                break
            answer += piece
    return answer


def test_the_page_is_for_this_machine_alone_and_asks_for_the_password(fresh, tmp_path):
    (tmp_path / "password").write_text("letmein1\nnothing of this\n", encoding="ascii")
    address = fresh.do("start", "--web", "--password-file", tmp_path / "password").strip()
    found = re.fullmatch(r"http://127\.0\.0\.1:(\d+)/vnc\.html\?.*#password=letmein1", address)
    assert found and urllib.request.urlopen(address).status == 200
    assert listening_ports(fresh) == {("127.0.0.1", found[1])}
    assert not any(b"letmein1" in command for command in fresh.processes().values())


def test_a_password_is_read_from_standard_input(fresh):
    result = subprocess.run(fresh.command("start", "--web", "--password-file", "-"), text=True,
                            input="Q8wertzu\n", env=fresh.environment, capture_output=True)
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout.endswith("#password=Q8wertzu\n")


@pytest.mark.parametrize("text", ["", "x", "seven77", "nine99999", "no-words", "\u00e9ightsss"])
def test_what_is_no_password_of_8_letters_and_digits_is_refused(fresh, tmp_path, text):
    (tmp_path / "password").write_text(text, encoding="utf-8")
    told = fresh.refused("start", "--web", "--password-file", tmp_path / "password")
    assert 'password" is not a password (8 of A-Z a-z 0-9)' in told
    assert not fresh.processes()


def test_a_password_file_that_cannot_be_read_is_told(fresh):
    told = fresh.refused("start", "--web", "--password-file", "/nowhere")
    assert 'cannot read the password from "/nowhere": No such file or directory' in told


def test_a_password_on_the_command_line_is_refused(fresh):
    fresh.refused("start", "--web", "--password", "letmein1", status=2)


def test_only_the_page_itself_gets_the_screen(fresh):
    port = urllib.parse.urlsplit(fresh.do("start", "--web")).port
    for origin in (None, "null", "http://example.org", f"http://example.org:{port}",
                   f"https://127.0.0.1:{port}", "http://127.0.0.1:1"):
        assert b"403 Invalid Origin" in answer_to_upgrade(port, origin), origin
    for host in ("127.0.0.1", "localhost"):
        assert b"RFB 003" in answer_to_upgrade(port, f"http://{host}:{port}")


def test_more_idle_connections_than_a_server_bears_do_not_end_the_watch(fresh):
    port = urllib.parse.urlsplit(fresh.do("start", "--web")).port
    with contextlib.ExitStack() as stack:
        for _, listening in listening_ports(fresh):
            for _ in range(1042):
                stack.enter_context(socket.create_connection(("127.0.0.1", listening), timeout=60))
        assert fresh.status()["running"]
    assert b"RFB 003" in answer_to_upgrade(port, f"http://127.0.0.1:{port}")


def test_a_fresh_password_is_made_for_each_start(fresh):
    passwords = set()
    for _ in range(2):
        passwords.add(fresh.do("start", "--web").strip().partition("#password=")[2])
        fresh.do("stop")
    assert len(passwords) == 2 and all(re.fullmatch(r"\w{8}", word) for word in passwords)


def test_a_port_that_is_taken_is_told(fresh):
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))
        taken.listen()
        port = taken.getsockname()[1]
        told = fresh.refused("start", "--web", "--port", port)
    assert f"cannot listen at port {port}: Address already in use" in told
    assert not fresh.processes()
