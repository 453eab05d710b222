#!/usr/bin/python3
# SPDX-License-Identifier: LicenseRef-Proprietary
"""Drives the updater under Wine from outside: presses where its user sees a button, follows its log,
takes pictures. Wine reports no controls to assistive programs.

  drive.py FOLDER PROGRAM CHECK…

WINEPREFIX is the Wine prefix. Each check gets a folder of its name below FOLDER; it contains "passed"
when all steps were seen, and the bus's report."""

import collections
import os
import pathlib
import re
import subprocess
import sys

sys.path.append(str(pathlib.Path(__file__).resolve().parents[3] / "scripts"))
from updater_driver import (DriverError, ENDS_WELL, LIST_HEIGHT, Log, RETURNS, Session,
                            STARTS_IN_APPLICATION, UPDATE_HEIGHT, run)

FOLDER, PROGRAM = pathlib.Path(sys.argv[1]), sys.argv[2]
USERS = pathlib.Path(os.environ["WINEPREFIX"]) / "drive_c/users"

# Where they are in the window, in pixels.
Control = collections.namedtuple("Control", "name x y width height")
FIRST_UNIT = Control("the first unit's button", 460, 74, 120, 24)
QUIT = Control("Quit", 14, 366, 70, 24)
NOTICE = Control("the notice", 100, 366, 400, 24)
BAR = Control("the progress bar", 10, 20, 580, 30)
DONE = Control("Done", 512, 88, 70, 16)


class Program(Session):
    """One run with these units."""

    def __init__(self, test, *units, prefix=(), expect=("DefaultState",)):
        """The command begins with the prefix; the lines that are expected come in the log first."""
        self._bus = FOLDER / test
        self._bus.mkdir()
        self._updates = 1
        (self._bus / "control").write_text("".join(f"unit {unit}\n" for unit in units))
        os.environ["VIRTUALBUS_FOLDER"] = f"Z:{self._bus}"
        for log in USERS.rglob("Logs/*.log*"):
            log.unlink()
        super().__init__([*prefix, "/usr/lib/wine/wine64", PROGRAM], self._bus, by_actions=False)
        self._log = Log(USERS)
        self.find_window()
        self.wait_for_log(*expect)
        if any(line.startswith("ERROR") for line in self._log.lines()):
            raise DriverError(f"an error at the start: {self._log.lines()}")

    def _area(self, item):
        return item[1:]

    def picture(self, name):
        return super().picture(f"{self._updates}-{name}")

    def signature(self):
        return run("identify", "-format", "%#", str(self.picture("list.png")))

    def order(self, line):
        with open(self._bus / "control", "a", encoding="utf-8") as control:
            control.write(line + "\n")

    def click(self, item):
        print(f"Click {item.name}", flush=True)
        run("xdotool", "mousemove", "--window", self._window,
            str(item.x + item.width // 2), str(item.y + item.height // 2), "click", "1")

    def keys(self, *names):
        run("xdotool", "key", "--delay", "200", *names)

    def wait_for_notice(self, name, shown=True):
        """Waits for a text beside "Quit"; for none if not shown."""
        area = "{2}x{3}+{0}+{1}".format(*self._area(NOTICE))
        self.wait(f"a notice: {shown}", 30, lambda: shown == (int(run(
            "convert", str(self.picture(name)), "-crop", area, "-format", "%k", "info:")) > 1))

    def wait_for_end(self):
        super().wait_for_end()
        awake = re.findall(r"Call KERNEL32.SetThreadExecutionState\((\w+)", self.calls())
        downloads = sum("] TaskState" in line for line in self._log.lines())
        if self.calls() and awake != ["80000001", "80000000"] * downloads:  # kept awake, released
            raise DriverError(f"{downloads} downloads called SetThreadExecutionState so: {awake}")

    def kill(self):
        self._process.kill()
        self._process.wait()

    def calls(self):
        """What Wine printed of the program's calls."""
        return self._output.read_text("utf-8", "replace")

    def require_debugger_lines(self):
        """The debugger got each line of the log, and an end of line after each."""
        calls, lines = self.calls(), self._log.lines()
        for line in lines:
            text = line.replace("\\", "\\\\").replace('"', '\\"')
            text = re.sub("[^ -~]", lambda character: f"\\{ord(character[0]):04x}", text)
            if f' L"{text[:200]}' not in calls:
                raise DriverError(f"the debugger did not get: {line}")
        ends = len(re.findall(r'OutputDebugStringW\(\w+ L"\\n"\)', calls))
        if ends != len(lines):
            raise DriverError(f"the debugger got {ends} ends of line for {len(lines)} lines")

    def start_update(self, *first_states):
        self.picture_of("list.png", FIRST_UNIT, 0.5, 1)
        self.click(FIRST_UNIT)
        self.wait_for_log(*first_states)
        self.wait_for_height(UPDATE_HEIGHT)
        self.picture_of("progress.png", BAR, 0.3, 0.97)

    def finish_update(self):
        self.wait_for_log(*ENDS_WELL)
        self.picture_of("successful.png", DONE, 0.7, 1)
        self.leave_update()
        self.picture_of("up-to-date.png", FIRST_UNIT, 0, 0.1)
        self.click(QUIT)
        self.wait_for_end()

    def leave_update(self):
        self.keys("Return")  # "Done" has the focus
        self.wait_for_log(*RETURNS)
        self.wait_for_height(LIST_HEIGHT)
        self._updates += 1

    def require_report(self, text):
        report = (self._bus / "report").read_text()
        if text not in report:
            raise DriverError(f"no {text!r} in {report}")


def update(test, locale="en_US", language=None):
    """Units that are plugged in while the program searches, and an update."""
    units = ("aquen:firmware=1.2.0:plugged=no", "solvar:firmware=1.3.1:plugged=no")
    prefix = ("env", f"LC_ALL={locale}.UTF-8", f"LOCPATH={FOLDER}")
    expect = (f'Language of the user interface: "{language}"',) if language else ()
    with Program(test, *units, prefix=prefix, expect=(*expect, "DefaultState")) as program:
        program.picture("searching.png")
        for number, kind in enumerate(("aquen", "solvar"), 1):
            program.order("plug " + kind)
            program.wait_for_log(f"List of devices have changed: {number}")
        program.wait("a list that stays", 20, lambda: program.signature() == program.signature())
        program.start_update(*STARTS_IN_APPLICATION)
        program.finish_update()
        program.require_report("unit=solvar mode=application firmware=1.3.1 bus=yes")
        program.require_debugger_lines()
        steps = "DropToBootloaderState|8000000[01]|UpdateFinishedState"
        order = re.findall(fr"(?:\(|\] )({steps})", program.calls())
        if order != ["DropToBootloaderState", "80000001", "80000000", "UpdateFinishedState"]:
            raise DriverError(f"the system was not kept awake while firmware was written: {order}")


def german(test):
    """The update in German."""
    update(test, "de_DE", "de")


def japanese(test):
    """The update in Japanese."""
    update(test, "ja_JP", "ja")


def resume(test):
    """A unit that is unplugged in the middle of its update, and the update that resumes it."""
    with Program(test, "aquen:firmware=1.2.0") as program:
        program.wait_for_log("List of devices have changed: 1")
        program.start_update(*STARTS_IN_APPLICATION)
        program.order("unplug aquen")
        program.wait_for_log("ErrorDuringUpdateState", "List of devices have changed: 0")
        program.order("plug aquen")
        program.wait_for_log("List of devices have changed: 1")
        program.picture_of("error.png", BAR, 0.8, 1)
        program.leave_update()
        program.start_update("Device already in Dfu", "TaskState")
        program.finish_update()


def close(test):
    """The window is closed in the middle of an update: the unit stays in its bootloader."""
    with Program(test, "aquen:firmware=1.2.0") as program:
        program.wait_for_log("List of devices have changed: 1")
        program.keys("Tab", "Tab", "Return")
        program.wait_for_log(*STARTS_IN_APPLICATION)
        program.picture_of("progress.png", BAR, 0.3, 0.97)
        program.keys("alt+F4")
        program.wait_for_end()
        program.require_report("unit=aquen mode=bootloader firmware=- bus=yes")


def second_copy(test):
    """A second copy says so, in its window too. The next check finds the lock of the killed one."""
    report = "Another copy of this program is running"
    with Program(test) as first, Program(test + "/second", expect=(report, "DefaultState")) as second:
        second.wait_for_notice("second-copy.png")
        first.kill()
        second.click(QUIT)
        second.wait_for_end()
        if not re.search(f"^{report}", second.calls(), re.MULTILINE):
            raise DriverError("nothing on standard error")


def unopened(test):
    """Units without a driver and in use."""
    units = ("aquen:plugged=no:open=-12", "solvar:plugged=no:open=-3")
    with Program(test, *units) as program:
        program.wait_for_notice("searching.png", False)
        for unit, error in (("aquen", "NOT_SUPPORTED"), ("solvar", "ACCESS")):
            program.order("plug " + unit)
            program.wait_for_log(".*LIBUSB_ERROR_" + error)
            program.wait_for_notice(f"{unit}.png")
            program.order("unplug " + unit)
            program.wait_for_notice("none.png", False)
        program.click(QUIT)
        program.wait_for_end()


def no_opengl(test):
    """Without OpenGL and with standard streams that are closed; F1 opens the guide."""
    (FOLDER / "libGL.so.1").touch()  # which cannot be loaded
    browser = FOLDER / "xdg-open"
    browser.write_text('#!/bin/sh\necho "$1" >"$0.txt"\n')
    browser.chmod(0o755)
    command = f'PATH="{FOLDER}:$PATH" LD_LIBRARY_PATH="{FOLDER}" WINEDEBUG=-all exec "$@" >&- 2>&-'
    software = 'The window is drawn in software: "no OpenGL"'
    with Program(test, prefix=("sh", "-c", command, "sh"), expect=(software, "DefaultState")) as program:
        program.picture("software.png")
        program.keys("F1")
        program.wait_for_log("Opened \"file:.*/html/docs/user-guide/.*.html")
        program.wait("the guide in the browser", 30, (FOLDER / "xdg-open.txt").exists)
        program.keys("alt+F4")
        program.wait_for_end()


def full_volume(test):
    """No room for the log at the start, and room later."""
    logs = next(USERS.rglob("Logs"))
    run("mount", "-t", "tmpfs", "-o", "size=64k", "logs", str(logs))
    try:
        filler = logs / "filler"
        filler.write_bytes(bytes(65536))
        with Program(test, "aquen:plugged=no", expect=()) as program:
            program.wait_for_notice("full.png")
            filler.unlink()
            program.order("plug aquen")
            program.wait_for_log("List of devices have changed: 1")
            program.wait_for_notice("room.png", False)
            program.click(QUIT)
            program.wait_for_end()
    finally:
        run("umount", str(logs))


# The font is that of the pictures on Linux.
for key, name, value in (
        ("Debug", "RelayInclude", "kernel32.OutputDebugStringW;kernel32.SetThreadExecutionState"),
        (r"Fonts\Replacements", "Tahoma", "DejaVu Sans")):
    # Not by pipes, which the prefix's services keep open.
    subprocess.run(["/usr/lib/wine/wine64", "reg", "add", rf"HKCU\Software\Wine\{key}", "/f", "/v",
                    name, "/d", value], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL, check=True)
os.environ["WINEDEBUG"] = "-all,+relay"
for check in (globals()[name] for name in sys.argv[3:]):
    print(f"== {check.__name__}: {check.__doc__}", flush=True)
    try:
        check(check.__name__)
        (FOLDER / check.__name__ / "passed").write_text("passed\n")
    except DriverError as error:
        print(f"FAILED: {error}", flush=True)
