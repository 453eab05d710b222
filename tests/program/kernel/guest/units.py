"""Virtual units on the kernel's bus, as long as the simulator runs."""

import os
import pathlib
import subprocess
import tempfile
import time

PORTS = pathlib.Path("/sys/devices/platform/vhci_hcd.0/status")
DEVICES = pathlib.Path("/sys/bus/usb/devices")
VENDOR = "16d0"
# An emulated processor on a busy machine can be many times slower than a real one. What never comes
# is still noticed: by this, and by the time limit of the whole machine.
PATIENCE = 4


class CheckError(Exception):
    """What was to be seen was not."""


def wait_until(what, seconds, condition, pause=0.1):
    """The first true answer of the condition."""
    end = time.monotonic() + seconds * PATIENCE
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise CheckError(f"not seen within {seconds} s: {what}")
        time.sleep(pause)


def attached_units():
    """The units that the kernel has: product id to sysfs folder."""
    units = {}
    for folder in DEVICES.iterdir():
        try:
            if (folder / "idVendor").read_text().strip() == VENDOR:
                units[(folder / "idProduct").read_text().strip()] = folder
        except OSError:
            continue  # no device, or one that leaves at this moment
    return units


def node_of(folder):
    """The device node of a unit, when udev is done with it."""
    subprocess.run(["udevadm", "settle", f"--timeout={20 * PATIENCE}"], check=True)
    return pathlib.Path("/dev") / next(
        line[len("DEVNAME="):] for line in (folder / "uevent").read_text().splitlines()
        if line.startswith("DEVNAME="))


class Units:
    """`virtualbus --kernel` with these units; use it in a `with` statement."""

    def __init__(self, program, *units):
        self._folder = tempfile.TemporaryDirectory()
        self._report = os.path.join(self._folder.name, "report")
        self._control = os.path.join(self._folder.name, "control")
        self._errors = os.path.join(self._folder.name, "errors")
        os.mkfifo(self._control)
        command = [program, "--kernel", "--report", self._report, "--control", self._control]
        for unit in units:
            command += ["--unit", unit]
        # The bus lives until the command, which reads from here, meets the end.
        with open(self._errors, "wb") as errors:
            self._process = subprocess.Popen([*command, "--", "cat"], stdin=subprocess.PIPE,
                                             stdout=subprocess.DEVNULL, stderr=errors)
        self.facts = {}

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        if self._process.poll() is None:
            try:
                self.finish()
            except (CheckError, subprocess.TimeoutExpired):
                self._process.kill()
                self._process.wait()
                if kind is None:
                    raise
        self._folder.cleanup()

    def tell(self, line):
        """Gives the simulator a control line; it is carried out at once."""
        if self._process.poll() is not None:
            raise CheckError(f"the simulator ended: {self._messages()}")
        with open(self._control, "w", encoding="utf-8") as pipe:
            pipe.write(line + "\n")

    def wait_for(self, product, seconds=15):
        """The sysfs folder of the unit with that product id."""
        return wait_until(f"a unit {VENDOR}:{product} in the kernel", seconds,
                          lambda: attached_units().get(product))

    def wait_for_none(self, product, seconds=15):
        wait_until(f"no unit {VENDOR}:{product} in the kernel", seconds,
                   lambda: product not in attached_units())

    def finish(self):
        """Takes all units off and gives what has become of them: label to facts."""
        self._process.stdin.close()
        status = self._process.wait(20 * PATIENCE)
        if status != 0:
            raise CheckError(f"the simulator ended with {status}: {self._messages()}")
        with open(self._report, encoding="utf-8") as report:
            for line in report:
                facts = dict(word.split("=", 1) for word in line.split())
                self.facts[facts["unit"]] = facts
        wait_until("no unit left in the kernel", 15, lambda: not attached_units())
        return self.facts

    def _messages(self):
        with open(self._errors, encoding="utf-8") as errors:
            return errors.read().strip()
