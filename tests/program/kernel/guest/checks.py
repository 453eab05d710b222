#!/usr/bin/python3
# SPDX-License-Identifier: LicenseRef-Proprietary
"""The checks that only a real kernel can make, run by root in the virtual machine. Each prints
"passed NAME" or "FAILED NAME" and adds that line to checks.txt."""

import contextlib
import os
import pathlib
import re
import shutil
import stat
import subprocess
import sys
import time
import traceback

RESULTS = pathlib.Path("/results")
LENT = pathlib.Path("/opt/lent")
UPDATER = LENT / "updater/bin/AquenSolvarUpdater"
CONTROL = pathlib.Path("/tmp/control")
DEVICES = pathlib.Path("/sys/bus/usb/devices")
UNITS = ("aquen", "solvar", "aquen-dfu", "solvar-dfu")
HOME = pathlib.Path("/home/member")


class CheckError(Exception):
    """An expected event did not occur."""


def wait(what, condition, seconds=120):
    """Waits generously: the processor is an emulated one."""
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise CheckError(f"not seen within {seconds} s: {what}")
        time.sleep(0.2)


def prepare():
    """A user in the group plugdev, udev without the project's rule, and the lent programs."""
    shutil.copytree(RESULTS / "lent", LENT, symlinks=True)
    os.makedirs("/tmp/.X11-unix", mode=0o1777)
    os.chmod("/tmp/.X11-unix", 0o1777)
    with open("/etc/passwd", "a", encoding="utf-8") as passwd:
        passwd.write(f"member:x:1500:1500::{HOME}:/bin/bash\n")
    HOME.mkdir()
    os.chown(HOME, 1500, 1500)
    groups = pathlib.Path("/etc/group").read_text(encoding="utf-8")
    groups = re.sub(r"(?m)^(plugdev:.*:)(.*)$", r"\1member", groups)
    pathlib.Path("/etc/group").write_text(groups, encoding="utf-8")
    for folder in ("/etc/udev/rules.d", "/lib/udev/rules.d"):
        for rule in pathlib.Path(folder).glob("*aquen-solvar*"):
            rule.unlink()
    subprocess.run(["/lib/systemd/systemd-udevd", "--daemon"], check=True, timeout=60)


def as_member(*command):
    return ["setpriv", "--reuid=1500", "--regid=1500", "--init-groups", "env", f"HOME={HOME}", *command]


def order(line):
    CONTROL.write_text(line + "\n", encoding="utf-8")


@contextlib.contextmanager
def units(*setups):
    """Units on the kernel's bus; their final report is units.txt."""
    command = [LENT / "virtualbus", "--kernel", "--report", RESULTS / "units.txt", "--control", CONTROL]
    for setup in setups:
        command += ["--unit", setup]
    # The bus lives until the command, which reads from this pipe, reaches its end.
    with subprocess.Popen([*command, "--", "cat"], stdin=subprocess.PIPE) as bus:
        wait("the control pipe", CONTROL.exists)
        CONTROL.chmod(0o622)
        yield
        bus.stdin.close()
        if bus.wait(60) != 0:
            raise CheckError(f"virtualbus ended with status {bus.returncode}")


@contextlib.contextmanager
def updater(name):
    """A run of the updater by the user; gives a function that waits for a pattern in its log."""
    home = HOME / name

    def wait_for_log(pattern):
        wait(f"{pattern!r} in the log of {name}", lambda: any(
            re.search(pattern, log.read_text("utf-8", "replace")) for log in home.rglob("Logs/*")))

    with open(RESULTS / f"{name}.txt", "wb") as output, subprocess.Popen(
            as_member(f"XDG_DATA_HOME={home}", "QT_QPA_PLATFORM=offscreen", UPDATER),
            stdout=output, stderr=output) as process:
        try:
            yield wait_for_log
        finally:
            process.terminate()
            for log in home.rglob("Logs/*"):
                shutil.copy(log, RESULTS / f"{name}.log")


def nodes():
    """The device nodes of the attached units."""
    subprocess.run(["udevadm", "settle"], check=True, timeout=120)
    found = [folder for folder in DEVICES.iterdir() if (folder / "idVendor").exists() and
             (folder / "idVendor").read_text() == "16d0\n"]
    return [pathlib.Path("/dev/" + re.search("DEVNAME=(.*)", (folder / "uevent").read_text())[1])
            for folder in found]


def access():
    """The rule gives access when a unit is plugged in, and a unit has one user at a time."""
    with units(*UNITS), updater("access") as wait_for_log:
        wait_for_log(r"Could not open the .*LIBUSB_ERROR_ACCESS.*udev rule")
        wait("four units", lambda: len(nodes()) == 4)
        shutil.copy(LENT / "70-aquen-solvar-updater.rules", "/etc/udev/rules.d")
        subprocess.run(["udevadm", "control", "--reload"], check=True, timeout=60)
        for unit in UNITS:
            order(f"replug {unit} 0.5")
        wait_for_log(r"List of devices have changed: 4")
        for node in nodes():
            facts = f"{stat.filemode(node.stat().st_mode)} {node.group()}"
            tags = subprocess.run(["udevadm", "info", node], stdout=subprocess.PIPE, text=True,
                                  check=True).stdout
            if facts != "crw-rw---- plugdev" or ":uaccess:" not in tags:
                raise CheckError(f"{node}: {facts}, {tags}")
        with updater("second") as wait_for_second_log:
            wait_for_second_log("LIBUSB_ERROR_BUSY")


def update():
    """The user updates a unit from the window; it leaves in the middle and is resumed."""
    with units("aquen:firmware=1.2.0:plugged=no", "solvar:firmware=1.3.1:plugged=no"):
        subprocess.run(as_member(
            "UPDATER_DRIVER_PATIENCE=4", LENT / "virtual-display.sh", LENT / "updater_driver.py",
            "--folder", HOME / "update", "--interrupt", CONTROL, "--", UPDATER), check=True)


def main():
    os.environ.update(LC_ALL="C.UTF-8", QT_QUICK_BACKEND="software",
                      DBUS_SYSTEM_BUS_ADDRESS="disabled:")
    prepare()
    for check in (access, update):
        started = time.monotonic()
        try:
            check()
            result = "passed"
        except Exception:  # the next check runs after any failure
            traceback.print_exc()
            result = "FAILED"
        line = f"{result} {check.__name__} ({time.monotonic() - started:.0f} s)"
        print(line, flush=True)
        with open(RESULTS / "checks.txt", "a", encoding="utf-8") as record:
            record.write(line + "\n")
    if (HOME / "update").exists():
        shutil.copytree(HOME / "update", RESULTS / "update")


if __name__ == "__main__":
    sys.exit(main())
