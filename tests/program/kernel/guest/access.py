"""Who may open a unit: the udev rule as the program ships it."""

import os
import pathlib
import shutil
import stat
import subprocess

from program import Program, may_open
from units import CheckError, Units, node_of

RULES = pathlib.Path("/etc/udev/rules.d")
UNIT = "aquen:serial=AQ-RULE-0001"
APPLICATION = "0c07"


def remove_rules():
    """The machine that lends its files may have the rule installed."""
    for folder in (RULES, pathlib.Path("/lib/udev/rules.d"), pathlib.Path("/usr/lib/udev/rules.d")):
        for path in folder.glob("*aquen-solvar*"):
            path.unlink()


def install_rule(machine):
    RULES.mkdir(parents=True, exist_ok=True)
    shutil.copy(machine.rule, RULES)
    os.chmod(RULES / machine.rule.name, 0o644)
    subprocess.run(["udevadm", "control", "--reload"], check=True, timeout=60)


def owner_and_mode(node):
    status = node.stat()
    return f"{stat.filemode(status.st_mode)} {status.st_uid}:{status.st_gid}"


def expect_access(node, **users):
    for user, expected in users.items():
        if may_open(user, node) != expected:
            raise CheckError(f"{user} may {'not ' if expected else ''}open {node} "
                             f"({owner_and_mode(node)})")


def denied_without_rule(machine):
    with Units(machine.bus, UNIT) as units:
        node = node_of(units.wait_for(APPLICATION))
        expect_access(node, member=False, visitor=False)
        with Program(machine.results, machine.driver, "no-rule", "member", "offscreen") as program:
            program.wait_for_log(r"Could not open the .*LIBUSB_ERROR_ACCESS.*udev rule", 60)
            program.require_not(r"List of devices have changed")
            # What its user's manual says is done while the program runs: it is then listed.
            install_rule(machine)
            units.tell("replug aquen 0.5")
            program.wait_for_log(r"List of devices have changed: 1", 20)
        return "denied; listed by the same run after the rule was installed and the unit replugged"


def granted_by_rule(machine):
    install_rule(machine)
    with Units(machine.bus, UNIT, "solvar-dfu") as units:
        for product in (APPLICATION, "0c06"):
            folder = units.wait_for(product)
            node = node_of(folder)
            if owner_and_mode(node) != "crw-rw---- 0:46":
                raise CheckError(f"{node} is {owner_and_mode(node)}")
            expect_access(node, member=True, visitor=False, sitter=False)
            facts = subprocess.run(["udevadm", "info", "--query=property", folder], check=True,
                                   stdout=subprocess.PIPE, text=True).stdout
            if ":uaccess:" not in facts:
                raise CheckError(f"no tag uaccess: {facts}")
        return f"{owner_and_mode(node)} and the tag uaccess, both modes"


def granted_at_seat(machine):
    """What a login service would say of the person at the machine is said here by a file."""
    install_rule(machine)
    if not pathlib.Path("/lib/udev/rules.d/73-seat-late.rules").exists():
        # The line of the system's own that acts upon the tag; not every system has its package.
        (RULES / "73-seat-late.rules").write_text(
            'ACTION!="remove", TAG=="uaccess", ENV{MAJOR}!="", RUN{builtin}+="uaccess"\n')
        subprocess.run(["udevadm", "control", "--reload"], check=True, timeout=60)
    seat = pathlib.Path("/run/systemd/seats/seat0")
    seat.parent.mkdir(parents=True, exist_ok=True)
    seat.write_text("IS_SEAT0=1\nACTIVE=1\nACTIVE_UID=1502\n")
    try:
        with Units(machine.bus, UNIT) as units:
            node = node_of(units.wait_for(APPLICATION))
            expect_access(node, sitter=True, visitor=False)
        return "an entry of its own for the person, nothing for others"
    finally:
        shutil.rmtree(seat.parent)
