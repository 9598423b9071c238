#!/usr/bin/env python3
"""Opens a printer's page of bristel-printer-app in headless Chromium and checks what an
operator sees there.

    printer-page.py PAGE_URL JOB_ID JOB_NAME STATUS EXPECTED_PNG PROFILE_DIR [SCREENSHOT]

The page must show STATUS as the printer's status, list job JOB_ID under the name JOB_NAME as
text (a name holding markup must not become markup), and show the job's picture: loaded by
the browser, and byte for byte EXPECTED_PNG when fetched from the address the page gives it.
PROFILE_DIR is the browser's private profile. SCREENSHOT, when given, is where a picture of
the page goes. Chromium and its driver are those of the system; either one missing is a
failure, not a reason to skip.
"""

import os
import sys
import urllib.request

from selenium import webdriver
from selenium.common.exceptions import StaleElementReferenceException, TimeoutException
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.support.ui import WebDriverWait

CHROMIUM = "/usr/bin/chromium"
CHROMEDRIVER = "/usr/bin/chromedriver"
# The page reloads itself every few seconds: a check that meets the old page while the new one
# loads is made again on the new one, a bounded number of times.
ATTEMPTS = 5
# How long the browser may take to show the page and load its picture.
WAIT_SECONDS = 30


def fail(message):
    print("printer-page.py: " + message, file=sys.stderr)
    sys.exit(1)


def start_browser(profile_dir):
    for program in (CHROMIUM, CHROMEDRIVER):
        if not os.access(program, os.X_OK):
            fail(program + " is missing: install chromium and chromium-driver")
    options = webdriver.ChromeOptions()
    options.binary_location = CHROMIUM
    options.add_argument("--headless=new")
    options.add_argument("--user-data-dir=" + profile_dir)
    options.add_argument("--window-size=1000,700")
    options.add_argument("--disable-gpu")
    options.add_argument("--no-first-run")
    if os.geteuid() == 0:
        # Chromium refuses to run as root inside its sandbox.
        options.add_argument("--no-sandbox")
    # The driver is named: without it, Selenium would go looking for one on the network.
    service = Service(executable_path=CHROMEDRIVER, log_path=os.path.join(profile_dir, "chromedriver.log"))
    return webdriver.Chrome(service=service, options=options)


def picture_loaded(browser, picture):
    return browser.execute_script(
        "return arguments[0].complete && arguments[0].naturalWidth > 0;", picture)


def check_page(browser, job_id, job_name, status):
    """What the page shows; the picture's address, once the picture has loaded."""
    shown = browser.find_element(By.ID, "printer-status").text
    if shown != status:
        fail("the page says the printer is \"%s\", not \"%s\"" % (shown, status))
    row = browser.find_element(By.ID, "job-%s" % job_id)
    name = row.find_element(By.CLASS_NAME, "job-name").text
    if name != job_name:
        fail("job %s is listed as \"%s\", not \"%s\"" % (job_id, name, job_name))
    if browser.execute_script("return typeof window.injected !== 'undefined';"):
        fail("the job's name ran as a script")
    picture = row.find_element(By.CSS_SELECTOR, "img.job-picture")
    try:
        WebDriverWait(browser, WAIT_SECONDS).until(lambda _: picture_loaded(browser, picture))
    except TimeoutException:
        fail("the picture of job %s did not load (%s)" % (job_id, picture.get_attribute("src")))
    return picture.get_attribute("src")


def main():
    if len(sys.argv) not in (7, 8):
        fail("usage: printer-page.py PAGE_URL JOB_ID JOB_NAME STATUS EXPECTED_PNG PROFILE_DIR [SCREENSHOT]")
    url, job_id, job_name, status, expected_png, profile_dir = sys.argv[1:7]
    screenshot = sys.argv[7] if len(sys.argv) == 8 else None
    browser = start_browser(profile_dir)
    try:
        browser.get(url)
        source = None
        for _ in range(ATTEMPTS):
            try:
                source = check_page(browser, job_id, job_name, status)
                break
            except StaleElementReferenceException:
                continue
        if source is None:
            fail("the page kept changing under the checks")
        if screenshot:
            browser.save_screenshot(screenshot)
    finally:
        browser.quit()
    with urllib.request.urlopen(source) as response:
        picture = response.read()
        kind = response.headers.get("Content-Type")
    if kind != "image/png":
        fail("the picture comes as %s, not image/png" % kind)
    with open(expected_png, "rb") as expected:
        if picture != expected.read():
            fail("the picture at %s is not what bristel-preview draws for the printed bytes" % source)
    print("printer-page.py: the page shows the status, the job and its picture")


if __name__ == "__main__":
    main()
