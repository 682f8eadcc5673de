"""A real Chromium, headless, driven over the WebDriver protocol with nothing but the standard library.

Each Browser has a chromedriver on a port of its own choice, and a profile of its own in a folder that goes
with it. Whatever is waited for has a deadline; nothing sleeps for a fixed time to be on the safe side.
"""

import base64
import json
import os
import re
import shutil
import signal
import subprocess
import tempfile
import threading
import time
import urllib.error
import urllib.request

DEADLINE = 120  # seconds, for anything: the machine may be busy
ELEMENT = "element-6066-11e4-a52e-4f735466cecf"

# Chromium's own connections to the network have no place in a test.
ARGUMENTS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync",
             "--disable-dev-shm-usage", "--force-color-profile=srgb", "--hide-scrollbars"]

KEYS = {"Left": "\ue012", "Up": "\ue013", "Right": "\ue014", "Down": "\ue015", "Home": "\ue011",
        "End": "\ue010", "PageUp": "\ue00e", "PageDown": "\ue00f", "Tab": "\ue004", "Enter": "\ue007"}


def needed(program):
    path = shutil.which(program)
    if path is None:
        raise FileNotFoundError(f"{program} is missing: scripts/dependencies test installs it")
    return path


def until(question, what):
    """Asks until the answer is true, and returns it."""
    deadline = time.monotonic() + DEADLINE
    while True:
        answer = question()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise TimeoutError(f"waited {DEADLINE} s for {what}")
        time.sleep(0.02)


class Driver:
    """A chromedriver process, on a free port of the loopback interface."""

    def __init__(self, folder):
        environment = dict(os.environ, TMPDIR=folder, HOME=folder)
        # A group of its own: what is left of the browser ends with it.
        self.process = subprocess.Popen([needed("chromedriver"), "--port=0"], stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL, text=True, env=environment,
                                        start_new_session=True)
        self.port = None
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        until(lambda: self.port or self.process.poll() is not None, "chromedriver's port")
        if self.port is None:
            raise RuntimeError(f"chromedriver ended with {self.process.returncode}")

    def _read(self):
        for line in self.process.stdout:
            started = re.search(r"started successfully on port (\d+)", line)
            if started:
                self.port = int(started[1])

    def request(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(f"http://127.0.0.1:{self.port}{path}", data=data, method=method,
                                         headers={"Content-Type": "application/json"})
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        try:
            with opener.open(request, timeout=DEADLINE) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise RuntimeError(f"{method} {path}: {error.read().decode()[:500]}") from None

    def close(self):
        os.killpg(self.process.pid, signal.SIGTERM)
        try:
            self.process.wait(DEADLINE)
        except subprocess.TimeoutExpired:
            os.killpg(self.process.pid, signal.SIGKILL)
            self.process.wait()
        self._reader.join()
        self.process.stdout.close()


class Browser:
    def __init__(self, width=1120, height=900, javascript=True):
        self.folder = tempfile.mkdtemp(prefix="raidmonitor-browser-")
        self.driver = None
        try:
            self.driver = Driver(self.folder)
            options = {
                "binary": needed("chromium"),
                "args": ARGUMENTS + [f"--user-data-dir={self.folder}/profile", f"--window-size={width},{height}"],
                "perfLoggingPrefs": {"enableNetwork": True},
            }
            if not javascript:
                options["prefs"] = {"profile.managed_default_content_settings.javascript": 2}
            wanted = {"browserName": "chrome", "goog:chromeOptions": options,
                      "goog:loggingPrefs": {"browser": "ALL", "performance": "ALL"},
                      "unhandledPromptBehavior": "ignore"}
            session = self.driver.request("POST", "/session", {"capabilities": {"alwaysMatch": wanted}})
            self.path = f"/session/{session['sessionId']}"
        except BaseException:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self.driver.request("DELETE", self.path)
        finally:
            self.close()

    def close(self):
        if self.driver is not None:
            self.driver.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    def post(self, command, **body):
        return self.driver.request("POST", self.path + command, body)

    def open(self, file):
        self.post("/url", url="file://" + os.path.abspath(file))

    def run(self, script, *arguments):
        return self.post("/execute/sync", script=script, args=list(arguments))

    def find(self, selector):
        return self.post("/element", using="css selector", value=selector)[ELEMENT]

    def click(self, selector):
        self.post(f"/element/{self.find(selector)}/click")

    def text(self, selector):
        return self.run("return document.querySelector(arguments[0]).textContent", selector)

    def texts(self, selector):
        return self.run("return [...document.querySelectorAll(arguments[0])].map(e => e.textContent)", selector)

    def press(self, *keys):
        """To whatever has the focus, as a keyboard does."""
        actions = []
        for key in keys:
            value = KEYS.get(key, key)
            actions += [{"type": "keyDown", "value": value}, {"type": "keyUp", "value": value}]
        self.post("/actions", actions=[{"type": "key", "id": "keyboard", "actions": actions}])

    def prefer(self, scheme):
        self.post("/goog/cdp/execute", cmd="Emulation.setEmulatedMedia",
                  params={"features": [{"name": "prefers-color-scheme", "value": scheme}]})

    def picture(self, file):
        with open(file, "wb") as image:
            image.write(base64.b64decode(self.driver.request("GET", self.path + "/screenshot")))

    def printed(self):
        """The PDF that printing gives."""
        return base64.b64decode(self.post("/print", background=True))

    def log(self, kind):
        return self.post("/se/log", type=kind)

    def alert(self):
        try:
            return self.driver.request("GET", self.path + "/alert/text")
        except RuntimeError as error:
            if "no such alert" in str(error):
                return None
            raise
