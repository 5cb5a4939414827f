"""The page in headless Chromium: a server for its files, a browser with a log of its requests, and actions of a user."""
import base64
import functools
import http.server
import pathlib
import subprocess
import tempfile
import threading
import unittest

from web import SITE

try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common import utils
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys  # noqa: F401  (for tests, as browser.Keys)
    from selenium.webdriver.support.ui import Select, WebDriverWait  # noqa: F401
except ImportError:
    webdriver = None


def needs_driver(test):
    """Skips a class of tests where there is no browser to drive."""
    return unittest.skipIf(webdriver is None, "no Selenium for this Python: script/test installs it")(test)


def needs_browser(test):
    """Skips a class of tests where there is none, or the page has not been built."""
    built = (SITE / "zorvela.wasm").exists()
    return unittest.skipUnless(built, f"no page in {SITE}: script/web build makes it")(needs_driver(test))


class Server:
    """The site on a port of the loopback address."""

    def __init__(self, folder=SITE):
        class Handler(http.server.SimpleHTTPRequestHandler):
            def log_message(self, *arguments):
                pass

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), functools.partial(Handler, directory=folder))
        self.address = f"http://127.0.0.1:{self._server.server_address[1]}/"
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def stop(self):
        self._server.shutdown()
        self._server.server_close()


def driver_service():
    """Chromium's driver at the loopback address: a bare machine does not know the name localhost."""
    class Driver(Service):
        @property
        def service_url(self):
            return f"http://127.0.0.1:{self.port}"

        def is_connectable(self):
            return utils.is_connectable(self.port, "127.0.0.1")

    return Driver("/usr/bin/chromedriver")


def start(*arguments):
    """A headless Chromium without its own network traffic."""
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--hide-scrollbars",
                     "--disable-background-networking", "--disable-component-update", "--disable-extensions",
                     "--no-first-run", *arguments):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(options=options, service=driver_service())


def print_to(driver, path):
    """Prints what the browser shows on A4 paper, into a PDF file."""
    printed = driver.execute_cdp_cmd("Page.printToPDF", {"paperWidth": 8.27, "paperHeight": 11.69})
    pathlib.Path(path).write_bytes(base64.b64decode(printed["data"]))


def printed(driver):
    """The text of each page that the browser prints."""
    with tempfile.NamedTemporaryFile(suffix=".pdf") as file:
        print_to(driver, file.name)
        text = subprocess.run(["pdftotext", "-layout", file.name, "-"], capture_output=True, text=True, check=True).stdout
    return text.split("\f")[:-1]


def set_scheme(driver, dark):
    driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {
        "features": [{"name": "prefers-color-scheme", "value": "dark" if dark else "light"}]})


def set_size(driver, width, height):
    driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                           {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})


def violations(driver, axe):
    """Returns the findings of axe-core, given as its source, on the current document: a line for each rule and element."""
    driver.execute_script(axe)
    return driver.execute_async_script("""
        const done = arguments[0];
        axe.run(document, { iframes: false }).then(
          ({ violations }) => done(violations.flatMap(({ id, nodes }) =>
            nodes.map(({ target, failureSummary }) => `${id}: ${target}: ${failureSummary.split("\\n").slice(1)}`))),
          (error) => done([String(error)]));""")


class Page:
    """The page in its own browser, with a folder for saved files."""

    def __init__(self, address, width=1200, height=900, dark=False, arguments=()):
        self.folder = tempfile.TemporaryDirectory()
        self.driver = start(f"--user-data-dir={self.folder.name}/profile", f"--window-size={width},{height}", *arguments)
        self.driver.execute_cdp_cmd("Browser.setDownloadBehavior",
                                    {"behavior": "allow", "downloadPath": self.folder.name})
        set_size(self.driver, width, height)
        set_scheme(self.driver, dark)
        self.address = address
        self.open()

    def open(self):
        self.driver.get(self.address)
        self.wait(lambda: self.text("version") != "")

    def close(self):
        self.driver.quit()
        self.folder.cleanup()

    # The content of the page

    def wait(self, condition, seconds=60):
        return WebDriverWait(self.driver, seconds, poll_frequency=0.05).until(lambda _: condition())

    def ask(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def find(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def element(self, name):
        return self.find("#" + name)

    def text(self, name):
        return self.element(name).get_property("textContent").strip()

    def texts(self, selector):
        return self.ask("return [...document.querySelectorAll(arguments[0])].map((found) => found.textContent)", selector)

    def status(self):
        return self.text("status")

    def wait_for_result(self, seconds=60):
        self.wait(lambda: self.status().endswith("."), seconds)
        return self.status()

    def report(self):
        """The text of the report in its frame."""
        frame = "document.getElementById('report').contentDocument"
        return self.ask(f"return {frame}.body ? {frame}.body.textContent : ''")

    # Actions of a user

    def clear_status(self):
        self.ask("document.getElementById('status').textContent = ''")

    def choose(self, *paths):
        self.clear_status()
        self.element("files").send_keys("\n".join(str(path) for path in paths))
        return self.wait_for_result()

    def click(self, name):
        self.clear_status()
        self.element(name).click()
        return self.wait_for_result()

    def drop(self, files):
        """Drops files, {name: bytes} or pairs of these, onto the box as a mouse would."""
        self.clear_status()
        self.ask("""
            const transfer = new DataTransfer();
            for (const [name, bytes] of arguments[0]) transfer.items.add(new File([new Uint8Array(bytes)], name));
            for (const type of ["dragenter", "dragover", "drop"])
              document.getElementById("drop").dispatchEvent(
                new DragEvent(type, {dataTransfer: transfer, bubbles: true, cancelable: true}));
            """, [[name, list(content)] for name, content in (files.items() if isinstance(files, dict) else files)])
        return self.wait_for_result()

    def drop_from_disk(self, *paths):
        """Drops files onto the box with the pointer of the browser."""
        self.clear_status()
        box = self.element("drop").rect
        for kind in ("dragEnter", "dragOver", "drop"):
            self.driver.execute_cdp_cmd("Input.dispatchDragEvent", {
                "type": kind, "x": box["x"] + 20, "y": box["y"] + 20 - self.scrolled(),
                "data": {"items": [], "files": [str(path) for path in paths], "dragOperationsMask": 1}})
        return self.wait_for_result()

    def paste(self, text):
        """Pastes text with the keyboard into the element with the focus."""
        self.driver.execute_cdp_cmd("Browser.grantPermissions", {
            "permissions": ["clipboardReadWrite", "clipboardSanitizedWrite"]})
        self.driver.execute_async_script("navigator.clipboard.writeText(arguments[0]).then(arguments[1])", text)
        self.driver.execute_cdp_cmd("Input.dispatchKeyEvent", {
            "type": "rawKeyDown", "key": "v", "code": "KeyV", "modifiers": 2, "windowsVirtualKeyCode": 86, "commands": ["paste"]})
        self.driver.execute_cdp_cmd("Input.dispatchKeyEvent", {"type": "keyUp", "key": "v", "code": "KeyV", "modifiers": 2})

    def click_in_report(self, selector, index=0):
        """Moves the pointer to an element of the report and presses its button there."""
        x, y = self.ask("""
            const [selector, index] = arguments;
            const frame = document.getElementById("report");
            const target = frame.contentDocument.querySelectorAll(selector)[index];
            const place = () => [frame, target].map((element) => element.getBoundingClientRect());
            const [, before] = place();
            scrollBy(0, frame.getBoundingClientRect().top + before.top - innerHeight / 2);
            const [outer, inner] = place();
            return [outer.left + 1 + inner.left + Math.min(inner.width / 2, 20), outer.top + 1 + inner.top + inner.height / 2];
            """, selector, index)
        for kind in ("mouseMoved", "mousePressed", "mouseReleased"):
            self.driver.execute_cdp_cmd("Input.dispatchMouseEvent", {
                "type": kind, "x": x, "y": y, "button": "none" if kind == "mouseMoved" else "left", "clickCount": 1})
        self.settle()

    def settle(self):
        """Waits until the browser has drawn what changed."""
        self.driver.execute_async_script("""
            const done = arguments[0];
            let left = 10;
            (function wait() { --left > 0 ? requestAnimationFrame(wait) : done(); })();""")

    def resize(self, width, height):
        set_size(self.driver, width, height)
        self.settle()

    def scrolled(self):
        return self.ask("return scrollY")

    def press(self, *keys):
        webdriver.ActionChains(self.driver).send_keys(*keys).perform()

    def select(self, name, text):
        self.clear_status()
        Select(self.element(name)).select_by_visible_text(text)
        return self.wait_for_result()

    def save(self, what):
        """The name and the bytes of the file that a button saves."""
        before = set(self.saved())
        self.find(f"[data-save={what}]").click()
        path = self.wait(lambda: next((path for path in set(self.saved()) - before if path.stat().st_size > 0), None))
        content = path.read_bytes()
        path.unlink()
        return path.name, content

    def saved(self):
        """The files that are saved; none while one is being written."""
        paths = [path for path in pathlib.Path(self.folder.name).iterdir()
                 if path.is_file() and not path.name.startswith(".")]
        return [] if any(path.suffix == ".crdownload" for path in paths) else paths

    # Messages of the browser

    def console(self):
        return [entry["message"] for entry in self.driver.get_log("browser") if entry["level"] in ("SEVERE", "WARNING")]
