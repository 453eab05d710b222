#!/usr/bin/python3
# SPDX-License-Identifier: LicenseRef-Proprietary
"""Drives the updater under Wine from outside: presses where its user sees a button, follows its log,
takes pictures. Wine reports no controls to assistive programs.

  drive.py FOLDER PROGRAM

WINEPREFIX is the Wine prefix. Each test gets a folder of its name below FOLDER; it contains "passed"
when all steps were seen, and the bus's report."""

import collections
import os
import pathlib
import shutil
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
BAR = Control("the progress bar", 10, 20, 580, 30)


class Program(Session):
    """One run with these units."""

    def __init__(self, test, *units):
        self._bus = FOLDER / test
        self._bus.mkdir()
        self._updates = 1
        for unit in units:
            self.order("unit " + unit)
        os.environ["VIRTUALBUS_FOLDER"] = f"Z:{self._bus}"
        for logs in USERS.rglob("Logs"):
            shutil.rmtree(logs)
        super().__init__(["/usr/lib/wine/wine64", PROGRAM], self._bus, by_actions=False)
        self._log = Log(USERS)
        self.find_window()
        self.wait_for_log("DefaultState")
        if any(line.startswith("ERROR") for line in self._log.lines()):
            raise DriverError(f"an error at the start: {self._log.lines()}")

    def _area(self, item):
        return item[1:]

    def picture(self, name):
        return super().picture(f"{self._updates}-{name}")

    def order(self, line):
        with open(self._bus / "control", "a", encoding="utf-8") as control:
            control.write(line + "\n")

    def click(self, item):
        print(f"Click {item.name}", flush=True)
        run("xdotool", "mousemove", "--window", self._window,
            str(item.x + item.width // 2), str(item.y + item.height // 2), "click", "1")

    def keys(self, *names):
        run("xdotool", "key", "--delay", "200", *names)

    def start_update(self, *first_states):
        self.picture_of("list.png", FIRST_UNIT, 0.5, 1)
        self.click(FIRST_UNIT)
        self.wait_for_log(*first_states)
        self.wait_for_height(UPDATE_HEIGHT)
        self.picture_of("progress.png", BAR, 0.3, 0.97)

    def finish_update(self):
        self.wait_for_log(*ENDS_WELL)
        self.picture_of("successful.png", BAR, 0.8, 1)
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


def update(test):
    """Units that are plugged in while the program searches, and an update."""
    units = ("aquen:firmware=1.2.0:plugged=no", "solvar:firmware=1.3.1:plugged=no")
    with Program(test, *units) as program:
        program.picture("searching.png")
        for number, kind in enumerate(("aquen", "solvar"), 1):
            program.order("plug " + kind)
            program.wait_for_log(f"List of devices have changed: {number}")
        program.start_update(*STARTS_IN_APPLICATION)
        program.finish_update()
        program.require_report("unit=solvar mode=application firmware=1.3.1 bus=yes")


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


for check in (update, resume, close):
    print(f"== {check.__name__}: {check.__doc__}", flush=True)
    try:
        check(check.__name__)
        (FOLDER / check.__name__ / "passed").write_text("passed\n")
    except DriverError as error:
        print(f"FAILED: {error}", flush=True)
