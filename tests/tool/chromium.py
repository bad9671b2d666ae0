"""Drives a Chromium without a window, through its pipe of messages in JSON, each ended by a NUL."""

import base64
import itertools
import json
import os
import select
import shutil
import signal
import subprocess
import tempfile
import time


def find():
    """The path of Chromium, or None."""
    for name in ("chromium", "chromium-browser", "google-chrome"):
        path = shutil.which(name)
        if path:
            return path
    return None


class NotStarted(Exception):
    """A browser that is installed but does not run, for example because it may not start processes."""


class Browser:
    """One page of one browser. The browser ends when the `with` block is left."""

    patience = 60  # seconds for a response or a condition, far more than any takes

    def __init__(self, program):
        self.program = program
        self.numbers = itertools.count(1)
        self.waiting = b""
        self.session = None
        self.events = []

    def __enter__(self):
        self.directory = tempfile.mkdtemp(prefix="chromium-")
        to_read, self.to_browser = os.pipe()
        self.from_browser, to_write = os.pipe()

        def take_pipes():
            # Each descriptor may have the number that the other one must get.
            read_end, write_end = os.dup(to_read), os.dup(to_write)
            os.dup2(read_end, 3)
            os.dup2(write_end, 4)

        self.process = subprocess.Popen(
            [self.program, "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
             "--disable-extensions", "--disable-background-networking", "--hide-scrollbars", "--remote-debugging-pipe",
             "--user-data-dir=" + self.directory, "about:blank"],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            preexec_fn=take_pipes, pass_fds=(3, 4), start_new_session=True)
        os.close(to_read)
        os.close(to_write)
        try:
            targets = self.call("Target.getTargets")["targetInfos"]
        except (RuntimeError, OSError) as error:
            self.__exit__()
            raise NotStarted(str(error)) from error
        page = next(target for target in targets if target["type"] == "page")
        self.session = self.call("Target.attachToTarget", targetId=page["targetId"], flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(domain + ".enable")
        return self

    def __exit__(self, *_):
        try:
            os.killpg(self.process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        self.process.wait()
        os.close(self.to_browser)
        os.close(self.from_browser)
        shutil.rmtree(self.directory, ignore_errors=True)

    def call(self, method, **parameters):
        """Sends a command and returns the response; events that arrive meanwhile are added to `events`."""
        number = next(self.numbers)
        message = {"id": number, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        data = json.dumps(message).encode() + b"\0"
        while data:
            data = data[os.write(self.to_browser, data):]
        while True:
            answer = self.receive()
            if answer.get("id") != number:
                self.events.append(answer)
            elif "error" in answer:
                raise RuntimeError(method + ": " + answer["error"]["message"])
            else:
                return answer["result"]

    def receive(self):
        while b"\0" not in self.waiting:
            if not select.select([self.from_browser], [], [], self.patience)[0]:
                raise RuntimeError("the browser does not answer")
            piece = os.read(self.from_browser, 1 << 20)
            if not piece:
                raise RuntimeError("the browser ended")
            self.waiting += piece
        message, self.waiting = self.waiting.split(b"\0", 1)
        return json.loads(message)

    def open(self, url):
        """Goes to a page and waits until it is loaded."""
        self.call("Page.navigate", url=url)
        self.wait_for("document.readyState === 'complete' && location.href.split('#')[0] === %s" % json.dumps(
            url.split("#")[0]))

    def run(self, script):
        """The value of an expression in the page."""
        answer = self.call("Runtime.evaluate", expression=script, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(answer["exceptionDetails"]["exception"].get("description", script))
        return answer["result"].get("value")

    def wait_for(self, condition):
        """Waits until an expression is true."""
        end = time.monotonic() + self.patience
        while not self.run(condition):
            if time.monotonic() > end:
                raise RuntimeError("never came true: " + condition)
            time.sleep(0.02)

    def click(self, element):
        """Clicks with the mouse in the middle of the element that is the value of an expression."""
        # Elements that come near the window may then be drawn and move the element.
        self.run("(async () => { for (let i = 0; i < 3; ++i) { %s.scrollIntoView({ block: 'center' }); await new "
                 "Promise(requestAnimationFrame); } })()" % element)
        x, y = self.run("(() => { const r = %s.getClientRects()[0]; return [r.x + r.width / 2, r.y + r.height / 2]; "
                        "})()" % element)
        for kind in ("mousePressed", "mouseReleased"):
            self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)

    def type(self, text):
        """Types into the element with the focus."""
        self.call("Input.insertText", text=text)

    def press(self, key, code=0):
        text = {"Enter": "\r"}.get(key, key if len(key) == 1 else "")
        for kind in ("keyDown", "keyUp"):
            self.call("Input.dispatchKeyEvent", type=kind, key=key, windowsVirtualKeyCode=code,
                      **({"text": text} if text and kind == "keyDown" else {}))

    def look(self, width, height, scheme="light"):
        """Sets the size of the window in pixels and the light or dark scheme."""
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)
        self.call("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])

    def screenshot(self, file):
        with open(file, "wb") as out:
            out.write(base64.b64decode(self.call("Page.captureScreenshot", format="png")["data"]))

    def print(self):
        """The page as PDF."""
        return base64.b64decode(self.call("Page.printToPDF", printBackground=False)["data"])

    def complaints(self):
        """The complaints of the browser about the page: script errors, violations of its policy, and requests."""
        self.run("0")
        found = []
        for event in self.events:
            parameters = event.get("params", {})
            if event["method"] == "Runtime.exceptionThrown":
                found.append(json.dumps(parameters["exceptionDetails"]))
            elif event["method"] == "Log.entryAdded":
                found.append(parameters["entry"]["text"])
            elif event["method"] == "Network.requestWillBeSent" and parameters.get("type") != "Document":
                found.append(parameters["request"]["url"])
        return found


SKIPPED = 77  # exit status of a test that cannot be run here


def expect(found, expected):
    if found != expected:
        raise AssertionError("%r instead of %r" % (found, expected))


def _run_each(tests, page):
    failures = 0
    for name in [name for name in vars(tests) if not name.startswith("_")]:
        try:
            page.begin()
            getattr(tests(page), name)()
            expect(page.browser.complaints(), [])
            print("PASS  ", name)
        except Exception as failure:  # the other tests continue
            failures += 1
            print("FAIL  ", name, "\n       ", failure)
        page.browser.events.clear()
    print(failures, "failed")
    return 1 if failures else 0


def run_tests(tests, make_page):
    """Runs each operation of the class `tests` on a page that `make_page` makes from a browser and a directory, and
    that its begin() opens before each one. Returns the exit status."""
    program = find()
    if not program:
        print("there is no Chromium here")
        return SKIPPED
    try:
        with tempfile.TemporaryDirectory() as directory, Browser(program) as browser:
            browser.look(1280, 900)
            return _run_each(tests, make_page(browser, directory))
    except NotStarted as error:
        print(program, "does not run here:", error)
        return SKIPPED
