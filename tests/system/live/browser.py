"""A headless Chromium, driven over its own protocol through two pipes."""
import base64
import collections
import json
import os
import select
import subprocess
import time


class Browser:
    """One browser with one page. What goes wrong in the page is kept in `faults`, what it asks for in `requests`."""

    def __init__(self, profile):
        to_read, self._write = os.pipe()
        self._read, to_write = os.pipe()
        self._process = subprocess.Popen(
            ["bash", "-c", f'exec chromium "$@" 3<&{to_read} 4>&{to_write}', "chromium", "--headless=new", "--no-sandbox",
             "--disable-gpu", "--remote-debugging-pipe", f"--user-data-dir={profile}", "--hide-scrollbars", "about:blank"],
            pass_fds=(to_read, to_write), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(to_read)
        os.close(to_write)
        self._buffer = b""
        self._next = 0
        self._session = None
        self._answers = {}
        self._loads = 0
        self.faults = []
        self.requests = collections.Counter()
        pages = self.call("Target.getTargets")["targetInfos"]
        page = next(target for target in pages if target["type"] == "page")
        self._session = self.call("Target.attachToTarget", targetId=page["targetId"], flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(f"{domain}.enable")

    def close(self):
        self._process.kill()
        self._process.wait()
        os.close(self._read)
        os.close(self._write)

    def _receive(self, deadline):
        while b"\0" not in self._buffer:
            if not select.select([self._read], [], [], max(0, deadline - time.monotonic()))[0]:
                raise TimeoutError("the browser says nothing")
            part = os.read(self._read, 1 << 20)
            if not part:
                raise EOFError("the browser has ended")
            self._buffer += part
        text, self._buffer = self._buffer.split(b"\0", 1)
        return json.loads(text)

    def _take(self, message):
        method, params = message.get("method"), message.get("params", {})
        if "id" in message:
            self._answers[message["id"]] = message
        elif method == "Page.loadEventFired":
            self._loads += 1
        elif method == "Runtime.exceptionThrown":
            details = params["exceptionDetails"]
            self.faults.append(details.get("exception", {}).get("description") or details["text"])
        elif method == "Runtime.consoleAPICalled" and params["type"] in ("error", "warning"):
            self.faults.append(str([argument.get("value") for argument in params["args"]]))
        elif method == "Log.entryAdded" and params["entry"]["level"] in ("error", "warning"):
            self.faults.append(params["entry"]["text"] + " " + params["entry"].get("url", ""))
        elif method == "Network.requestWillBeSent":
            self.requests[params["request"]["url"]] += 1

    def call(self, method, within=60, **params):
        self._next += 1
        number = self._next
        message = {"id": number, "method": method, "params": params}
        if self._session:
            message["sessionId"] = self._session
        os.write(self._write, json.dumps(message).encode() + b"\0")
        deadline = time.monotonic() + within
        while number not in self._answers:
            self._take(self._receive(deadline))
        answer = self._answers.pop(number)
        if "error" in answer:
            raise RuntimeError(f"{method}: {answer['error']['message']}")
        return answer["result"]

    def ask(self, expression, within=60):
        """The value of an expression in the page, or of the promise that it is."""
        result = self.call("Runtime.evaluate", within=within + 10, expression=expression, awaitPromise=True,
                           returnByValue=True)
        if "exceptionDetails" in result:
            raise RuntimeError(f"{expression}: {result['exceptionDetails']['exception'].get('description')}")
        return result["result"].get("value")

    def until(self, condition, within=60):
        """Returns when a condition holds in the page."""
        held = self.ask(f"new Promise(done => {{ const end = Date.now() + {within * 1000}; const look = () => "
                        f"({condition}) ? done(true) : Date.now() > end ? done(false) : setTimeout(look, 30); look(); }})",
                        within)
        if not held:
            raise AssertionError(f"never: {condition}; focused {self.ask('document.activeElement.outerHTML.slice(0, 200)')}; the page has {self.ask('document.body.innerText')[:2000]}")

    def open(self, address):
        loads = self._loads
        self.call("Page.navigate", url=address)
        deadline = time.monotonic() + 60
        while self._loads == loads:
            self._take(self._receive(deadline))

    def show(self, width, height=900, dark=False, script=True):
        """How wide the window is, in which colours, and whether scripts run."""
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1,
                  mobile=False)
        self.call("Emulation.setEmulatedMedia",
                  features=[{"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])
        self.call("Emulation.setScriptExecutionDisabled", value=not script)

    def press(self, key, code, text=""):
        for kind in ("keyDown", "keyUp"):
            self.call("Input.dispatchKeyEvent", type=kind, key=key, windowsVirtualKeyCode=code,
                      **({"text": text} if text and kind == "keyDown" else {}))

    def picture(self, path, whole=False):
        clip = {}
        if whole:
            size = self.call("Page.getLayoutMetrics")["cssContentSize"]
            clip = {"captureBeyondViewport": True,
                    "clip": {"x": 0, "y": 0, "width": size["width"], "height": size["height"], "scale": 1}}
        data = self.call("Page.captureScreenshot", format="png", **clip)["data"]
        with open(path, "wb") as file:
            file.write(base64.b64decode(data))
