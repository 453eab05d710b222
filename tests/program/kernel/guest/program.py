"""The shipped program in the virtual machine: started as an ordinary user, watched by its log file,
and driven by the pointer and the keyboard of an X server, as ./demo does it."""

import importlib.machinery
import importlib.util
import os
import pathlib
import re
import select
import shutil
import subprocess

from units import PATIENCE, CheckError

PROGRAM = "/opt/updater/bin/AquenSolvarUpdater"
FIRMWARES = pathlib.Path("/opt/updater/lib/aquen-solvar-updater/Resources/Firmwares")


def load_driver(project):
    """The parts of scripts/demo-driver, which has no ending that Python looks for."""
    loader = importlib.machinery.SourceFileLoader("demo_driver", f"{project}/scripts/demo-driver")
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("demo_driver", loader))
    loader.exec_module(module)
    return module


def as_user(user, *command):
    return ["setpriv", f"--reuid={user}", f"--regid={user}", "--init-groups", *command]


def may_open(user, node):
    """Whether the kernel lets that user open the node for reading and writing."""
    return subprocess.run(as_user(user, "bash", "-c", 'exec 3<>"$0"', str(node)), check=False,
                          stderr=subprocess.DEVNULL).returncode == 0


class Display:
    """An X server without a monitor. It needs a while to start: make it early, wait late."""

    def __init__(self, results):
        os.makedirs("/tmp/.X11-unix", mode=0o1777, exist_ok=True)
        self._ready, ready = os.pipe()
        with open(results / "display.txt", "wb") as messages:
            self._server = subprocess.Popen(
                ["Xvfb", "-displayfd", str(ready), "-ac", "-screen", "0", "1024x768x24",
                 "-nolisten", "tcp"],
                stdout=messages, stderr=messages, stdin=subprocess.DEVNULL, pass_fds=[ready])
        os.close(ready)

    def wait(self):
        """Makes it the display of all that is started from now on."""
        if "DISPLAY" in os.environ:
            return
        readable, _, _ = select.select([self._ready], [], [], 120)
        number = os.read(self._ready, 16).decode().strip() if readable else ""
        if not number:
            raise CheckError(f"no X server (status {self._server.poll()}); see display.txt")
        os.environ["DISPLAY"] = ":" + number


class Program:
    """One run of the program by a user; ended at the end of a `with` statement."""

    def __init__(self, results, driver, name, user, platform):
        home = pathlib.Path("/home") / user
        data = home / "runs" / name
        subprocess.run(as_user(user, "mkdir", "-p", str(data)), check=True)
        # The cache of compiled documents is the user's and serves all runs.
        environment = {
            "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "HOME": str(home), "USER": user,
            "XDG_DATA_HOME": str(data), "XDG_CONFIG_HOME": str(home / "config"),
            "XDG_CACHE_HOME": str(home / "cache"), "XDG_RUNTIME_DIR": str(home),
            "DBUS_SESSION_BUS_ADDRESS": "disabled:", "QT_QPA_PLATFORM": platform,
            "QT_QUICK_BACKEND": "software", "DISPLAY": os.environ.get("DISPLAY", "")}
        self._results = results
        self._name = name
        self._data = data
        with open(results / f"{name}.output.txt", "wb") as output:
            self.process = subprocess.Popen(as_user(user, PROGRAM), env=environment, cwd=home,
                                            stdin=subprocess.DEVNULL, stdout=output,
                                            stderr=subprocess.STDOUT)
        self.log = driver.Log(data)
        self.log.show = self._show
        pictures = results / name
        pictures.mkdir(exist_ok=True)
        self.session = driver.Session(self.process, self.log, pictures)
        self.session.patience = PATIENCE
        self.session.fatal = None  # the checks say themselves which error they expect

    @staticmethod
    def _show(line):
        if re.search(r"\] \"?(\w+State\b|Hotplug|List of|Dfu device|Firmware download|Could not)",
                     line):
            print("    " + line, flush=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(10 * PATIENCE)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        for path in self._data.rglob("Logs/*"):
            shutil.copy(path, self._results / f"{self._name}.log")

    def wait_for_log(self, pattern, seconds):
        """The next line, after those waited for before, whose text begins like that."""
        return self.session.wait_for_log(pattern, seconds)

    def saw(self, pattern):
        """How many lines of the log so far hold the pattern."""
        self.log.poll()
        return sum(1 for line in self.log.lines if re.search(pattern, line))

    def require_not(self, pattern):
        if self.saw(pattern):
            raise CheckError(f"the log says {pattern!r}")
