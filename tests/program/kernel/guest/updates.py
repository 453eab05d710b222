"""The program at its work, as a person with a pointer and a keyboard uses it."""

import hashlib
import re

from program import Program
from units import CheckError, Units, attached_units, wait_until

APPLICATION = {"aquen": "0c07", "solvar": "0c08"}
VENDOR_NUMBER = 0x16D0


def require_flashed(machine, kind, facts):
    """The unit holds exactly the image that its bundle carries, and runs it."""
    image = machine.images[kind].read_bytes()
    digest = hashlib.sha256(image).hexdigest()
    if facts["sha256"] != digest or facts["length"] != str(len(image)):
        raise CheckError(f"the flash is not the image ({digest}): {facts}")
    if facts["mode"] != "application" or facts["firmware"] != machine.image_version:
        raise CheckError(f"the unit does not run the image: {facts}")
    return f"{len(image)} bytes, SHA-256 {digest[:16]}… in the unit's flash"


def press_the_button(program, driver, name):
    """Presses the one blue button of the list, wherever it stands."""
    picture = program.session.wait_for_picture(
        name, "one button that can be pressed", 30,
        lambda path: len(driver.blue_areas(path)) == 1)
    width, height, x, y = driver.blue_areas(picture)[0]
    program.session.click(x + width // 2, y + height // 2)


def wait_for_list(program, count):
    program.session.wait_for_window(60)
    program.wait_for_log(r"DefaultState", 30)
    program.wait_for_log(f"List of devices have changed: {count}", 30)


def finish_update(program, driver):
    """From the task to the list again, "Done" by the keyboard."""
    program.wait_for_log(r"TaskState", 30)
    program.wait_for_log(r"RestartingDeviceState", 60)
    program.wait_for_log(r"UpdateFinishedState", 30)
    program.session.wait_for_picture("finished.png", "a full bar and the button \"Done\"", 30,
                                     lambda path: driver.bar_fraction(path) > 0.98)
    program.session.press_key("Return")
    program.wait_for_log(r"DefaultState", 20)


def quit_by_pointer(program, driver):
    program.session.wait_for_size(driver.LIST_SIZE)
    program.session.click(driver.MARGIN + 20, driver.LIST_SIZE[1] - driver.MARGIN - 10)
    program.session.wait_for_end(30)


def update(machine):
    driver = machine.driver
    machine.display.wait()
    with Units(machine.bus, "aquen:serial=AQ-KERNEL-1:firmware=1.2.0") as units, \
            Program(machine.results, driver, "update", "member", "xcb") as program:
        wait_for_list(program, 1)
        press_the_button(program, driver, "list.png")
        program.wait_for_log(r"Selected device serial: AQ-KERNEL-1", 20)
        program.wait_for_log(r"DropToBootloaderState", 20)
        program.wait_for_log(r"Dfu device detected", 30)
        finish_update(program, driver)
        program.require_not(r"Error")
        quit_by_pointer(program, driver)
        return require_flashed(machine, "aquen", units.finish()["aquen"])


def resume_after_unplugging(machine):
    driver = machine.driver
    machine.display.wait()
    with Units(machine.bus, "solvar:serial=SO-KERNEL-2:firmware=1.2.0") as units, \
            Program(machine.results, driver, "resume", "member", "xcb") as program:
        wait_for_list(program, 1)
        press_the_button(program, driver, "list.png")
        program.wait_for_log(r"Progress: 0\.[3-6]", 60)
        units.tell("unplug solvar")
        program.wait_for_log(
            r"Firmware download error: \"Failed to (erase flash|upload firmware)", 20)
        program.wait_for_log(r"ErrorDuringUpdateState", 10)
        program.session.wait_for_picture("error.png", "the button \"Done\"", 30,
                                         lambda path: len(driver.blue_areas(path)) >= 1)
        program.session.press_key("Return")
        program.wait_for_log(r"DefaultState", 20)
        program.require_not(r"UpdateFinishedState")
        units.tell("plug solvar")
        program.wait_for_log(r"List of devices have changed: 1", 30)
        press_the_button(program, driver, "list-resume.png")
        program.wait_for_log(r"Device already in Dfu", 20)
        finish_update(program, driver)
        quit_by_pointer(program, driver)
        return require_flashed(machine, "solvar", units.finish()["solvar"])


class EventCounter:
    """Counts what the log says about arrivals and removals, as it comes."""

    EVENTS = ("Hotplug event: device arrived", "Hotplug event: device left", "Found:",
              "USB device removed...")
    LINE = re.compile(r"\] (" + "|".join(map(re.escape, EVENTS)) +
                      rf") {VENDOR_NUMBER} 30(?:79|80)\b")
    LIST = re.compile(r"List of devices have changed: (\d+)")

    def __init__(self, log):
        self._log = log
        self._counts = dict.fromkeys(self.EVENTS, 0)
        self._listed = 0
        log.show = self._take

    def _take(self, line):
        event = self.LINE.search(line)
        if event:
            self._counts[event[1]] += 1
        listed = self.LIST.search(line)
        if listed:
            self._listed = int(listed[1])

    def seen(self):
        """The counts so far, in the order of EVENTS, and how many units the list shows."""
        self._log.poll()
        return [*self._counts.values(), self._listed]


def plug_cycles(machine, rounds=10):
    """In each round two units are plugged in and two others unplugged at the same moment, as when a
    person moves cables: the program has to see every arrival and every removal. Ten rounds are
    twenty plug cycles."""
    kinds = (("aquen", "solvar"), ("aquen#2", "solvar#2"))
    with Units(machine.bus, "aquen", "solvar", "aquen:plugged=no", "solvar:plugged=no") as units, \
            Program(machine.results, machine.driver, "cycles", "member", "offscreen") as program:
        counter = EventCounter(program.log)
        program.wait_for_log(r"List of devices have changed: 2", 60)
        arrived, left, found, removed, _ = counter.seen()
        for number in range(1, rounds + 1):
            arriving, leaving = kinds[number % 2], kinds[1 - number % 2]
            for label in leaving:
                units.tell(f"unplug {label}")
            for label in arriving:
                units.tell(f"plug {label}")
            change = 2 * number
            expected = [arrived + change, left + change, found + change, removed + change, 2]
            try:
                wait_until(str(expected), 30, lambda: counter.seen() == expected, pause=0.3)
            except CheckError:
                raise CheckError(
                    f"round {number}: {counter.seen()} instead of {expected} ("
                    f"{', '.join(EventCounter.EVENTS)}, listed) while the kernel has "
                    f"{sorted(attached_units())}") from None
        program.require_not(r"Could not open|LIBUSB_ERROR")
    return f"{2 * rounds} arrivals and {2 * rounds} removals, each as an event and in the list"
