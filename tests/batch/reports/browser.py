# SPDX-License-Identifier: MIT
"""Chromium without a window, steered over a pipe with its DevTools protocol."""

import base64
import json
import os
import shutil
import subprocess
import tempfile


class Browser:
    """A browser with one page, which has no network."""

    def __init__(self, program):
        self.profile = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        commands, self.commands = os.pipe()
        self.answers, answers = os.pipe()
        self.process = subprocess.Popen(
            [program, "--headless=new", "--no-sandbox", "--disable-gpu", "--no-first-run",
             "--disable-background-networking", "--disable-dev-shm-usage",
             "--host-resolver-rules=MAP * ~NOTFOUND", "--remote-debugging-pipe",
             f"--user-data-dir={self.profile.name}", "about:blank"],
            preexec_fn=lambda: _descriptors_3_and_4(commands, answers), close_fds=False,
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(commands)
        os.close(answers)
        self.received = b""
        self.number = 0
        self.page = None
        self.events = []
        targets = self.call("Target.getTargets")["targetInfos"]
        page = next(target for target in targets if target["type"] == "page")
        self.page = self.call("Target.attachToTarget", targetId=page["targetId"],
                                 flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(f"{domain}.enable")

    def close(self):
        self.call("Browser.close")
        self.process.wait()
        os.close(self.commands)
        os.close(self.answers)
        self.profile.cleanup()

    def call(self, method, **parameters):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters}
        if self.page:
            message["sessionId"] = self.page
        data = json.dumps(message).encode() + b"\0"
        while data:
            data = data[os.write(self.commands, data):]
        while True:
            answer = self._receive()
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']}")
                return answer["result"]
            self.events.append(answer)

    def _receive(self):
        while b"\0" not in self.received:
            block = os.read(self.answers, 1 << 20)
            if not block:
                raise RuntimeError("the browser has ended")
            self.received += block
        message, self.received = self.received.split(b"\0", 1)
        return json.loads(message)

    def wait_for(self, method):
        while True:
            for event in self.events:
                if event["method"] == method:
                    return event
            self.events.append(self._receive())

    def show(self, path, width=1400, height=900):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height,
                  deviceScaleFactor=1, mobile=False)
        self.events.clear()
        self.call("Page.navigate", url=path.resolve().as_uri())
        self.wait_for("Page.loadEventFired")

    def value(self, expression):
        """The value of a JavaScript expression, after the page has drawn."""
        drawn = "new Promise(done => requestAnimationFrame(() => requestAnimationFrame(done)))"
        answer = self.call("Runtime.evaluate", expression=f"{drawn}.then(() => ({expression}))",
                           awaitPromise=True, returnByValue=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(f"{expression}: {answer['exceptionDetails']}")
        return answer["result"].get("value")

    def press(self, key, text="", modifiers=0):
        for kind in ("keyDown", "keyUp"):
            self.call("Input.dispatchKeyEvent", type=kind, key=key, modifiers=modifiers,
                      **({"text": text} if text and kind == "keyDown" else {}))

    def prefer(self, scheme):
        self.call("Emulation.setEmulatedMedia",
                  features=[{"name": "prefers-color-scheme", "value": scheme}])

    def screenshot(self, path):
        image = self.call("Page.captureScreenshot", format="png")["data"]
        path.write_bytes(base64.b64decode(image))

    def complaints(self):
        """What went wrong in the page, or tried to leave it."""
        found = []
        for event in self.events:
            method, parameters = event["method"], event["params"]
            if method in ("Runtime.exceptionThrown", "Log.entryAdded"):
                found.append(json.dumps(parameters))
            elif method == "Network.requestWillBeSent":
                url = parameters["request"]["url"]
                if not url.startswith("file:"):
                    found.append(url)
        return found


def _descriptors_3_and_4(commands, answers):
    # Through numbers that neither of them has.
    first, second = os.dup(commands), os.dup(answers)
    os.dup2(first, 3)
    os.dup2(second, 4)


def find():
    return shutil.which("chromium")
