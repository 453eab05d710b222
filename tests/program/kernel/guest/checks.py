#!/usr/bin/env python3
"""The checks that are made in the virtual machine, one after the other. Each prints a line with its
result; the lines are also written to checks.txt in the folder for results."""

import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import time
import traceback

import access
import third_party_tools
import updates
from program import FIRMWARES, Display, load_driver
from units import PORTS, CheckError

IMAGE_VERSION = "1.3.1"
IMAGE_SIZE = 40000
USERS = {"member": 1500, "visitor": 1501, "sitter": 1502}


class Machine:
    """What all checks share."""

    def __init__(self, arguments):
        self.results = arguments.results
        self.bus = arguments.bus
        self.driver = load_driver(arguments.project)
        self.rule = arguments.project / "packaging/linux/70-aquen-solvar-updater.rules"
        self.image_version = IMAGE_VERSION
        self.images = {}
        self.display = None
        self._tarnware = arguments.tarnware

    def prepare(self):
        """The system around the program: users, udev, and the program with bundles of no real
        firmware. Everything is written to the machine's own layer, never to the host."""
        with open("/etc/passwd", "a", encoding="utf-8") as passwd, \
                open("/etc/group", "a", encoding="utf-8") as group:
            for name, number in USERS.items():
                passwd.write(f"{name}:x:{number}:{number}::/home/{name}:/bin/bash\n")
                group.write(f"{name}:x:{number}:\n")
                os.makedirs(f"/home/{name}")
                os.chown(f"/home/{name}", number, number)
        groups = pathlib.Path("/etc/group").read_text(encoding="utf-8").splitlines()
        if not any(line.startswith("plugdev:") for line in groups):
            raise CheckError("there is no group plugdev")
        pathlib.Path("/etc/group").write_text(
            "".join((line + ("" if line.endswith(":") else ",") + "member"
                     if line.startswith("plugdev:") else line) + "\n" for line in groups),
            encoding="utf-8")
        access.remove_rules()
        self.display = Display(self.results)
        subprocess.run(["/lib/systemd/systemd-udevd", "--daemon"], check=True, timeout=60,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

        # Not from the host's folder: an ordinary user may not be let through to that.
        shutil.copytree(self.results / "updater", "/opt/updater", symlinks=True)
        for number, kind in enumerate(("aquen", "solvar")):
            # One byte apart: no kind can pass for the other.
            image = pathlib.Path(f"/tmp/{kind}.bin")
            subprocess.run([self.bus, "--make-image",
                            f"{IMAGE_VERSION}:{IMAGE_SIZE + number}:{image}"], check=True)
            subprocess.run([self._tarnware, "pack", "--version", "10301", image,
                            FIRMWARES / f"{kind}-v{IMAGE_VERSION}.tarnware"], check=True)
            self.images[kind] = image


def kernel_takes_units(machine):
    machine.prepare()
    ports = sum(1 for line in PORTS.read_text().splitlines() if line.startswith("hs"))
    if ports < 4:
        raise CheckError(f"{ports} ports")
    return f"Linux {os.uname().release}, {ports} ports, udev runs"


CHECKS = [
    ("a kernel with ports for virtual units", kernel_takes_units),
    ("no udev rule: no access, and a log line that says so", access.denied_without_rule),
    ("udev rule: access for the group, for nobody else", access.granted_by_rule),
    ("udev rule: access for the person at the seat", access.granted_at_seat),
    ("lsusb", third_party_tools.lsusb),
    ("dfu-util lists, downloads, uploads", third_party_tools.dfu_util),
    ("an update from the window", updates.update),
    ("unplugged in mid-flash, plugged in, resumed", updates.resume_after_unplugging),
    ("twenty plug cycles", updates.plug_cycles),
]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--project", type=pathlib.Path, required=True)
    parser.add_argument("--results", type=pathlib.Path, required=True)
    parser.add_argument("--bus", required=True)
    parser.add_argument("--tarnware", required=True)
    machine = Machine(parser.parse_args())
    failed = 0
    with open(machine.results / "checks.txt", "w", encoding="utf-8") as record:
        for name, check in CHECKS:
            print(f"-- {name}", flush=True)
            started = time.monotonic()
            try:
                line = f"passed {name}: {check(machine)}"
            except Exception as error:  # whatever it was, the next check is still made
                failed += 1
                line = f"FAILED {name}: {error}"
                if not isinstance(error, (CheckError, machine.driver.DemoError)):
                    traceback.print_exc()
            line += f" ({time.monotonic() - started:.0f} s)"
            print(line, flush=True)
            record.write(line + "\n")
            record.flush()
            if failed and check is kernel_takes_units:
                return 1  # there is nothing to make the others with
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
