"""A place for watches of a test's own, and a browser."""

import pytest
from selenium import webdriver
from selenium.webdriver.chrome.service import Service

from simulator.desk import Desk


@pytest.fixture(name="fresh")
def _fresh():
    """A place without a watch."""
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
