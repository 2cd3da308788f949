"""A headless browser on one page, and what went wrong in it."""
import contextlib
import json
import pathlib
import time

from selenium import webdriver
from selenium.common.exceptions import WebDriverException
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

SHELL = "/usr/bin/chromium-headless-shell"
DRIVER = "/usr/bin/chromedriver"


class Browser:
    """One browser; `open` shows a page of a local file."""

    def __init__(self, downloads):
        options = webdriver.ChromeOptions()
        options.binary_location = SHELL
        for argument in ("--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--hide-scrollbars",
                         "--force-color-profile=srgb"):
            options.add_argument(argument)
        options.add_experimental_option("prefs", {"download.default_directory": str(downloads)})
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        self.driver = webdriver.Chrome(service=Service(DRIVER), options=options)
        self.driver.execute_cdp_cmd("Page.setDownloadBehavior",
                                    {"behavior": "allow", "downloadPath": str(downloads)})
        self.size(1280, 800)

    def close(self):
        # The driver's end alone leaves the browser running, and the browser's end breaks off the call.
        with contextlib.suppress(WebDriverException):
            self.driver.execute_cdp_cmd("Browser.close", {})
        self.driver.quit()

    def size(self, width, height, scale=1):
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": scale, "mobile": width < 600})

    def media(self, scheme="light", medium=""):
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "media": medium, "features": [{"name": "prefers-color-scheme", "value": scheme}]})

    def open(self, path, place=""):
        self.driver.get("about:blank")
        self.complaints()
        self.driver.get(pathlib.Path(path).resolve().as_uri() + place)
        self.settle()

    def go(self, place):
        self.run("location.hash = arguments[0]", place)
        self.settle()

    def run(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def settle(self):
        """Waits until the page has drawn what changed."""
        self.driver.execute_async_script(
            "const done = arguments[0];"
            "setTimeout(() => requestAnimationFrame(() => requestAnimationFrame(() => done())), 80)")

    def find(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def all(self, selector):
        return self.driver.find_elements(By.CSS_SELECTOR, selector)

    def texts(self, selector):
        return self.run("return [...document.querySelectorAll(arguments[0])].map((node) => node.textContent)", selector)

    def click(self, selector, text=None):
        for element in self.all(selector):
            if text is None or text in element.text:
                element.click()
                self.settle()
                return
        raise AssertionError(f"nothing to click: {selector} {text or ''}")

    def type(self, *keys):
        self.driver.switch_to.active_element.send_keys(*keys)
        self.settle()

    def search(self, text):
        box = self.find("#search")
        box.clear()
        box.send_keys(text or " ", *([] if text else [Keys.BACKSPACE]))
        self.settle()

    def complaints(self):
        """Messages of the console, and requests for anything but the page and its own download."""
        found = [entry["message"] for entry in self.driver.get_log("browser")]
        for entry in self.driver.get_log("performance"):
            message = json.loads(entry["message"])["message"]
            if message["method"] == "Network.requestWillBeSent":
                parameters = message["params"]
                url = parameters["request"]["url"]
                is_page = parameters.get("type") == "Document" and url.startswith(("file:", "about:"))
                if not is_page and not url.startswith("blob:"):
                    found.append(f"request: {url[:200]}")
        return found

    def picture(self, path):
        self.settle()
        self.driver.save_screenshot(str(path))


def wait_for(condition, seconds=10):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("it did not happen")
        time.sleep(0.02)
