#!/usr/bin/python3
# SPDX-License-Identifier: LicenseRef-Proprietary
"""Drives the updater as its user does: finds the controls by what they report to assistive programs
(AT-SPI), presses them, follows the log file and takes pictures of the window. The user is one who
sees and points, or (--by-actions) one who only has the actions that the controls offer.

  scripts/virtual-display.sh scripts/updater_driver.py [--by-actions] [--interrupt FIFO]
      [--notice TEXT] --folder DIR -- COMMAND…

COMMAND runs the updater on a virtual bus; a washing unit needs an update and a curing unit does not.
With --interrupt they are not plugged in yet, FIFO takes the bus's control lines, and the first of two
updates is interrupted in the middle. With --notice, this has to be the notice beside "Quit", otherwise
there must be none. The program's files go below DIR, its output to DIR/output.txt,
pictures to DIR/pictures. The status is 0 only when the unit was updated and every step was seen, in
the log and in the window.
"""

import argparse
import os
import pathlib
import re
import signal
import subprocess
import sys
import time

import pyatspi
from gi.repository import Atspi, GLib

APPLICATION = "QuillonFirmwareUpdater"
TITLE = "Aquen/Solvar Updater"
WIDTH, LIST_HEIGHT, UPDATE_HEIGHT = 600, 400, 125
BLUE = "#26a9f2"  # an enabled button, and the filled part of the progress bar
# An emulated processor is many times slower than a real one.
PATIENCE = float(os.environ.get("UPDATER_DRIVER_PATIENCE", "1"))

BUTTON, BAR, CARD = pyatspi.ROLE_PUSH_BUTTON, pyatspi.ROLE_PROGRESS_BAR, pyatspi.ROLE_LIST_ITEM
NEEDS_UPDATE = {"Aquen, Connected, Update needed", "Solvar, Connected, Firmware Up To Date"}
UP_TO_DATE = {"Aquen, Connected, Firmware Up To Date", "Solvar, Connected, Firmware Up To Date"}
STARTS_IN_APPLICATION = ("Selected device serial", "FirmwareUpdateState", "DropToBootloaderState",
                         "Dfu device detected", "TaskState")
ENDS_WELL = ("RestartingDeviceState", "UpdateFinishedState")
RETURNS = ("FirmwareUpdateFinalState", "DefaultState")


class DriverError(Exception):
    """An expected event did not occur."""


def run(*command):
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    if result.returncode != 0:
        raise DriverError(f"{command[0]} failed: {result.stderr.strip()}")
    return result.stdout


class Log:
    """The program's log files below a folder."""

    def __init__(self, folder):
        self._folder = folder
        self._seen = 0  # lines before this one belong to earlier steps

    def lines(self):
        text = "".join(path.read_text("utf-8", "replace")
                       for path in sorted(self._folder.rglob("Logs/*")))
        return re.sub(r"\x1b\[[0-9;]*m", "", text).splitlines()

    def next(self, pattern):
        """The next line whose text, behind the origin "[function]", begins with the pattern."""
        for number, line in enumerate(self.lines()):
            if number >= self._seen and re.search(r"\] \"?" + pattern, line):
                self._seen = number + 1
                print("  log: " + line, flush=True)
                return line
        return None


class Session:
    """One run of the program, from its start to "Quit"; to be used in a `with` statement."""

    def __init__(self, command, folder, by_actions):
        self._by_actions = by_actions
        self._pictures = folder / "pictures"
        self._pictures.mkdir(parents=True, exist_ok=True)
        self._output = folder / "output.txt"
        self._window = None
        self._others = Session._windows()  # of another run
        self._log = Log(folder)
        environment = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", LC_ALL="C.UTF-8",
                           XDG_DATA_HOME=folder, XDG_CACHE_HOME=folder / "cache",
                           XDG_CONFIG_HOME=folder / "config")
        with open(self._output, "wb") as output:
            self._process = subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL,
                                             stdout=output, stderr=subprocess.STDOUT,
                                             start_new_session=True)

    def __enter__(self):
        return self

    def __exit__(self, kind, error, trace):
        if self._process.poll() is None:
            if self._window:
                subprocess.run(["import", "-window", self._window, self._pictures / "failed.png"],
                               check=False)
            os.killpg(self._process.pid, signal.SIGTERM)
            self._process.wait(20 * PATIENCE)

    def wait(self, what, seconds, condition):
        """The first true result of the condition."""
        end = time.monotonic() + seconds * PATIENCE
        while True:
            try:
                result = condition()
            except GLib.Error:  # a control that vanished during the query
                result = None
            if result:
                return result
            if self._process.poll() is not None:
                raise DriverError(f"the program ended (status {self._process.returncode}) "
                                  f"before this was seen: {what}")
            if time.monotonic() > end:
                raise DriverError(f"not seen within {seconds} s: {what}")
            time.sleep(0.1)

    def wait_for_log(self, *patterns):
        """Waits for these lines in this order, after those waited for before."""
        for pattern in patterns:
            self.wait(f'the log line "{pattern}"', 30, lambda: self._log.next(pattern))

    @staticmethod
    def _windows():
        return set(subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{TITLE}$"],
                                  stdout=subprocess.PIPE, text=True, check=False).stdout.split())

    def find_window(self):
        def search():
            return Session._windows() - self._others
        self._window = self.wait(f"a window called {TITLE!r}", 60, search).pop()
        # Nothing manages windows on this display.
        run("xdotool", "windowfocus", "--sync", self._window)

    def wait_for_window(self):
        self.find_window()
        # The first query starts the bus for assistive programs, which Qt joins only when it
        # starts after the program. Without a cache the program itself responds, each time.
        pyatspi.Registry.getDesktop(0).set_cache_mask(Atspi.Cache.NONE)
        self.wait("the window's controls", 30, self._frame)

    def _frame(self):
        return next((application[0] for application in pyatspi.Registry.getDesktop(0)
                     if application is not None and application.name == APPLICATION), None)

    def _size(self):
        shell = run("xdotool", "getwindowgeometry", "--shell", self._window)
        facts = dict(line.split("=") for line in shell.split())
        return int(facts["WIDTH"]), int(facts["HEIGHT"])

    def wait_for_height(self, height):
        def same():
            width, actual = self._size()
            return actual * WIDTH == height * width  # at any scale of the screen
        self.wait(f"a window of {WIDTH} by {height}", 10, same)

    def controls(self, *roles, name=None):
        """The controls that are showing, of these roles or of any."""
        def walk(item):
            yield item
            for child in item:
                if child is not None:
                    yield from walk(child)
        return [item for item in walk(self._frame())
                if (not roles or item.getRole() in roles) and name in (None, item.name) and
                item.getState().contains(pyatspi.STATE_SHOWING)]

    def wait_for_cards(self, summaries):
        """Waits for cards with these kinds and states; versions and port follow them."""
        self.wait(f"the cards {summaries}", 30, lambda: summaries == {
            ", ".join(card.description.split(", ")[:3]) for card in self.controls(CARD)})
        self.require_names()

    def require_names(self):
        for item in self.controls():
            if item.getState().contains(pyatspi.STATE_FOCUSABLE) and not item.name:
                raise DriverError(f"a {item.getRoleName()} has no name")

    def require_notice(self, text):
        """Waits for the notice; for none if the text is empty."""
        def same():
            alerts = [alert.name for alert in self.controls(pyatspi.ROLE_ALERT)]
            helps = [button.description for button in self.controls(BUTTON, name="Help")]
            return alerts == helps == ([text] if text else [])
        self.wait(f"the notice {text!r}", 30, same)

    def button(self, name):
        """The one enabled button of that name; disabled ones are not reported."""
        found = self.wait(f"a button {name!r}", 30, lambda: self.controls(BUTTON, name=name))
        if len(found) != 1:
            raise DriverError(f"{len(found)} buttons {name!r}")
        return found[0]

    def _area(self, item):
        """Where a control is in the window, in the screen's pixels: x, y, width, height."""
        window = self._frame().queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        area = item.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        scale = self._size()[0] / window.width
        return [round(length * scale) for length in
                (area.x - window.x, area.y - window.y, area.width, area.height)]

    def press(self, name):
        button = self.button(name)
        print(f"Press {name!r} ({button.description or 'no description'})", flush=True)
        if self._by_actions:
            action = button.queryAction()
            actions = [action.getName(index) for index in range(action.nActions)]
            if "Press" not in actions:
                raise DriverError(f"the button {name!r} offers {actions}, not Press")
            action.doAction(actions.index("Press"))
            return
        x, y, width, height = self._area(button)
        run("xdotool", "mousemove", "--sync", "--window", self._window, str(x + width // 2),
            str(y + height // 2), "click", "1")

    def press_focused(self, name):
        """Presses a button that has to have the focus, by the keyboard."""
        if not self.button(name).getState().contains(pyatspi.STATE_FOCUSED):
            raise DriverError(f"the button {name!r} does not have the focus")
        if self._by_actions:
            self.press(name)
        else:
            print(f"Return on {name!r}", flush=True)
            run("xdotool", "key", "Return")

    def picture(self, name):
        path = self._pictures / name
        run("import", "-silent", "-window", self._window, str(path))
        print(f"  picture: {path}", flush=True)
        return path

    def blue_share(self, path, item):
        """How much of a control is blue in a picture, from 0 to 1."""
        x, y, width, height = self._area(item)
        return float(run("convert", str(path), "-alpha", "off", "-crop", f"{width}x{height}+{x}+{y}",
                         "-fill", "black", "+opaque", BLUE, "-fill", "white", "+opaque", "black",
                         "-format", "%[fx:mean]", "info:"))

    def picture_of(self, name, item, least, most):
        """Takes the picture until that share of a control is blue in it."""
        self.wait(f"{item.name!r} in {name}, {least} to {most} of it blue", 20,
                  lambda: least <= self.blue_share(self.picture(name), item) <= most)

    def follow_update(self, during, after, end, in_the_middle=lambda: None):
        """Follows an update from its button to its end, which the text on the bar has to be, with
        a picture in the middle and one at the end."""
        self.wait_for_height(UPDATE_HEIGHT)
        texts, percents = [], []

        def ended():
            bar = self.controls(BAR)[0]
            if bar.name not in texts:
                texts.append(bar.name)
                print(f"  bar: {bar.name}", flush=True)
            percent = re.fullmatch(r"(\d+)%", bar.description)
            if percent and int(percent[1]) not in percents:
                percents.append(int(percent[1]))
                if 40 <= percents[-1] < 90 and not (self._pictures / during).exists():
                    self.picture_of(during, bar, 0.2, 0.97)
                    in_the_middle()
            return self.controls(BUTTON, name="Done")

        (self._pictures / during).unlink(missing_ok=True)
        self.wait("the button \"Done\"", 180, ended)
        bar = self.controls(BAR)[0]
        if bar.name != end or bar.description != "100%":
            raise DriverError(f"the update ended with {bar.name!r} at {bar.description}")
        if len(percents) < 4 or percents != sorted(percents):
            raise DriverError(f"the progress was {percents}")
        self.picture_of(after, bar, 0.8, 1)  # the text is not blue
        self.require_names()

    def wait_for_end(self):
        try:
            status = self._process.wait(20 * PATIENCE)
        except subprocess.TimeoutExpired:
            raise DriverError("the program did not end") from None
        if status != 0:
            raise DriverError(f"the program ended with status {status}")
        complaint = re.search(r".*(qrc:|Unsupported|not installed).*", self._output.read_text("utf-8"))
        if complaint:
            raise DriverError(f"the program reported: {complaint[0]}")


def update(session, notice):
    """One update, from the list to the list."""
    session.wait_for_window()
    session.wait_for_cards(NEEDS_UPDATE)
    session.wait_for_log("DefaultState", "List of devices have changed: 2")
    session.wait_for_height(LIST_HEIGHT)
    button = session.button("Update Firmware")
    if button.description not in (card.name for card in session.controls(CARD)):
        raise DriverError(f"the button is described as {button.description!r}")
    session.require_notice(notice)
    session.picture_of("1-list.png", button, 0.5, 1)
    session.press("Update Firmware")
    session.follow_update("2-progress.png", "3-update-successful.png", "Update successful!")
    session.wait_for_log(*STARTS_IN_APPLICATION, *ENDS_WELL)
    session.press_focused("Done")
    session.wait_for_log(*RETURNS)
    session.wait_for_height(LIST_HEIGHT)
    session.wait_for_cards(UP_TO_DATE)
    session.picture("4-firmware-up-to-date.png")
    session.press("Quit")
    session.wait_for_end()


def update_interrupted(session, control):
    """A unit that leaves in the middle of its update, and the update that resumes it."""
    def order(line):
        with open(control, "w", encoding="utf-8") as pipe:
            pipe.write(line + "\n")

    session.wait_for_window()
    session.wait_for_log("DefaultState")
    session.picture("searching.png")
    order("plug aquen")
    order("plug solvar")
    session.wait_for_cards(NEEDS_UPDATE)
    session.picture("list.png")
    session.press("Update Firmware")
    # At a write, so that the text is the same each time.
    session.follow_update("update.png", "error.png", "Failed to upload firmware data.",
                          lambda: order("fault aquen leave on=write first=1"))
    # Until the unit is back, its old card may still be there.
    session.wait_for_log(*STARTS_IN_APPLICATION, "ErrorDuringUpdateState",
                         "List of devices have changed: 2")
    session.press_focused("Done")
    session.wait_for_log(*RETURNS)
    session.button("Resume Update")
    session.picture("resume.png")
    session.press("Resume Update")
    session.follow_update("resumed.png", "finished.png", "Update successful!")
    session.wait_for_log("Device already in Dfu", "TaskState", *ENDS_WELL)
    session.press_focused("Done")
    session.wait_for_log(*RETURNS)
    session.wait_for_cards(UP_TO_DATE)
    session.picture("up-to-date.png")
    session.press("Quit")
    session.wait_for_end()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--by-actions", action="store_true")
    parser.add_argument("--interrupt", type=pathlib.Path, metavar="FIFO")
    parser.add_argument("--notice", default="", metavar="TEXT")
    parser.add_argument("--folder", type=pathlib.Path, required=True)
    parser.add_argument("command", nargs="+")
    arguments = parser.parse_args()
    try:
        with Session(arguments.command, arguments.folder, arguments.by_actions) as session:
            if arguments.interrupt:
                update_interrupted(session, arguments.interrupt)
            else:
                update(session, arguments.notice)
    except DriverError as error:
        sys.exit(f"updater_driver: {error}")


if __name__ == "__main__":
    main()
