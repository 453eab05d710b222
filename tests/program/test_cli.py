# SPDX-License-Identifier: LicenseRef-Proprietary
"""The command line on the virtual bus; the one for Windows, if WINE names what runs it, on a bus that each
program has to itself."""

import concurrent.futures
import json
import os
import pathlib
import pty
import signal
import sys
import tempfile
import time
import unittest
from subprocess import DEVNULL, PIPE, Popen, run

import jsonschema

CLI, VIRTUALBUS, TARNWARE = (os.environ[name] for name in ("CLI", "VIRTUALBUS", "TARNWARE"))
WINE = [os.environ["WINE"]] if "WINE" in os.environ else []
INTERRUPT = signal.SIGINT if WINE else signal.SIGTERM
SCHEMA = json.loads(pathlib.Path(os.environ["SCHEMA"]).read_text())
PATIENCE = 60
HOLD_SOLVAR = """import ctypes
usb = ctypes.CDLL("libusb-1.0.so.0")
usb.libusb_init(None)
usb.libusb_open_device_with_vid_pid.restype = ctypes.c_void_p
handle = ctypes.c_void_p(usb.libusb_open_device_with_vid_pid(None, 0x16d0, 0x0c08))
print(usb.libusb_claim_interface(handle, 0), flush=True)
input()"""
# Units; lines of the control FIFO; arguments; status; versions afterwards; a text that is printed.
# A "-" is a unit in its bootloader without firmware.
OLD, NEW, TWO = "aquen", "aquen:firmware=1.3.1", ("aquen", "solvar")
GONE, MOVED = "It is not attached", "update again to resume"
ROWS = {
    "the one that needs it": ((OLD, NEW), "", "update", 0, "1.3.1 1.3.1", "1.2.0 -> 1.3.1"),
    "two kinds": (TWO, "", "update --all", 0, "1.3.1 1.3.1", "Virtual Solvar 2"),
    "by name": (("aquen:serial=A", "aquen:serial=B"), "", "update B", 0, "1.2.0 1.3.1", "1-2 "),
    "by port": ((OLD, OLD), "", "update 1-2 --quiet", 0, "1.2.0 1.3.1", ""),
    "by kind": (TWO, "", "update Solvar --bundle solvar-v1.tarnware", 0, "1.2.0 1.3.1", "writing"),
    "a bundle selects the kind": (TWO, "", "update --bundle solvar-v1.tarnware", 0, "1.2.0 1.3.1", ""),
    "resumes": (("solvar-dfu",), "", "update", 0, "1.3.1", "updated"),
    "up to date": ((NEW,), "", "update aquen", 0, "1.3.1", "up to date"),
    "none needs it": ((NEW,), "", "update", 0, "1.3.1", "All units are up to date."),
    "forced, older": (("aquen:firmware=1.4.0",), "", "update --force", 0, "1.3.1", "1.4.0 -> 1.3.1"),
    "leaves early": ((OLD,), "fault aquen leave on=getstatus first=12", "update", 0, "1.3.1", "updated"),
    "leaves earlier": ((OLD,), "fault aquen leave on=finish", "update", 0, "1.3.1", "updated"),
    "returns older": ((OLD,), "", "update --firmware later", 1, "1.3.1", "older than the firmware"),
    "returns to its bootloader": ((OLD,), "", "update --firmware broken", 1, "-", "did not accept"),
    "refused": ((OLD,), "fault aquen stall on=drop", "update", 1, "1.2.0", "runs its application"),
    "fails": ((OLD,), "fault aquen fail on=erase value=4", "update", 1, "-1.2.0", MOVED),
    "busy": ((OLD,), "fault aquen busy on=write value=forever", "update --timeout 2.5", 1, "-", "2.5 s. It waits"),
    "usage": ((OLD,), "", "update --wait 3", 2, "1.2.0", "update does not take --wait."),
    "usage, empty": ((OLD,), "", "update --bundle=", 2, "1.2.0", "folder is empty."),
    "usage, two": ((), "", "update --bundle a --firmware b", 2, "", "exclude each other"),
    "unknown": ((OLD,), "", "update Jörg機", 3, "1.2.0", 'No unit "Jörg機"'),
    "none attached": ((), "", "list --wait 0.3", 3, "", "No unit is attached."),
    "no firmware": ((OLD,), "", "update --firmware empty", 4, "1.2.0", "no valid aquen-v*.tarnware"),
    "other kind": ((OLD,), "", "update aquen --bundle solvar-v1.tarnware", 4, "1.2.0", "is not named as"),
    "for no unit": ((OLD,), "", "update --bundle solvar-v1.tarnware", 4, "1.2.0", "is not named as"),
    "damaged firmware": ((OLD,), "", "update aquen --bundle aquen-v0.tarnware", 4, "1.2.0", "magic"),
    "deaf": ((OLD,), "fault aquen stall on=version times=9", "doctor", 0, "1.2.0", "1-1: The unit did not"),
    "unreadable": ((OLD,), "fault aquen stall on=version times=9", "update", 5, "1.2.0", "version"),
    "several of a kind": ((OLD, OLD), "", "update aquen", 6, "1.2.0 1.2.0", "Several units match"),
    "several": ((OLD, "solvar-dfu"), "", "update", 6, "1.2.0 -", "Several units match"),
    # Unplugged.
    "at the restart": ((OLD,), "drop", "update", 1, "1.2.0", GONE),
    "at an erase": ((OLD,), "erase", "update", 1, "-1.2.0", GONE),
    "at an address": ((OLD,), "set-address", "update", 1, "-", GONE),
    "at a chunk": ((OLD,), "write", "update", 1, "-", GONE),
    "at the end": ((OLD,), "finish", "update --timeout 3", 1, "-1.3.1", GONE),
}

# Not a shell: with ThreadSanitizer's runtime preloaded it crashes.
SHOW_ENVIRONMENT = """import json, os, time
print(json.dumps(dict(os.environ)), flush=True)
time.sleep(600)"""


class Bus:
    """A virtual bus whose environment is passed to commands."""

    def __init__(self, units, lines=""):
        self.temporary = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self.temporary.name)
        if not WINE:
            os.mkfifo(self.folder / "control")
        self.control = os.open(self.folder / "control", os.O_RDWR | os.O_APPEND | os.O_CREAT)
        if WINE:
            self.order("\n".join(f"unit {unit}" for unit in units))
            self.environment = {**os.environ, "VIRTUALBUS_FOLDER": f"Z:{self.folder}"}
        self.order(lines)
        if not WINE:
            self.start_host(units)

    def start_host(self, units):
        options = [f"--unit={unit}" for unit in units]
        self.host = Popen([VIRTUALBUS, *options, "--report", self.folder / "report", "--control",
                           self.folder / "control", "--", sys.executable, "-c", SHOW_ENVIRONMENT],
                         stdout=PIPE, stderr=DEVNULL, env={**os.environ, "HOME": self.folder})
        self.environment = json.loads(self.host.stdout.readline())

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()
        os.close(self.control)
        self.temporary.cleanup()

    def order(self, lines):
        if lines and " " not in lines:  # unplugged at that request, until plugged in again
            lines = f"fault aquen never-return on={lines}\nfault aquen leave on={lines}"
        os.write(self.control, f"{lines}\n".encode() if lines else b"")

    def start(self, *command, **options):
        return Popen(command, stdout=PIPE, stderr=PIPE, text=True, cwd=FIRMWARE,
                     env=self.environment, **options)

    def cli(self, *arguments):
        own = () if {"--bundle", "--firmware", "watch", "list"} & set(arguments) else ("--firmware", ".")
        return self.start(*WINE, CLI, *arguments, *own)

    def close(self):
        """Ends the bus; mode and version of each unit."""
        if not WINE:
            self.host.terminate()
            self.host.communicate(timeout=PATIENCE)
        report = self.folder / "report"
        lines = report.read_text().splitlines() if report.exists() else ()
        units = [dict(word.split("=") for word in line.split()) for line in lines]
        return " ".join({"bootloader": "-"}.get(unit["mode"], "") + unit["firmware"].strip("-")
                        for unit in units)


def read_until(process, text):
    lines = []
    while not lines or (lines[-1] and text not in lines[-1]):
        lines.append(process.stdout.readline())
    return "".join(lines)


def events(output):
    found = [json.loads(line) for line in output.splitlines()]
    for event in found:
        jsonschema.validate(event, SCHEMA)
    return found


def try_row(row):
    units, lines, arguments, *_ = row
    with Bus(units, lines) as bus:
        process = bus.cli(*arguments.split())
        output = "".join(process.communicate(timeout=PATIENCE))
        if WINE and process.returncode == 2:
            return 2, row[4], output  # the program has not come to its bus
        return process.returncode, bus.close(), output


class CommandLine(unittest.TestCase):
    def test_rows(self):
        with concurrent.futures.ThreadPoolExecutor(8) as pool:
            results = list(pool.map(try_row, ROWS.values()))
        for (name, row), (status, versions, output) in zip(ROWS.items(), results):
            with self.subTest(name):
                self.assertEqual((status, versions), row[3:5], output)
                self.assertIn(row[5], output)

    def test_interrupt_and_resume(self):
        with Bus((OLD,)) as bus:
            long = ("--json", "--bundle", "long/aquen-v1.tarnware")
            process = bus.cli("update", *long)
            head = read_until(process, '"progress"')
            process.send_signal(signal.SIGINT)
            tail, _ = process.communicate(timeout=PATIENCE)
            *_, end = heard = events(head + tail)
            self.assertEqual((process.returncode, end["status"]), (130, 130))
            result, = (event for event in heard if event["event"] == "result")
            self.assertIn(MOVED, result["message"])
            unit = "aquen"
            if WINE:  # where the state of a unit ends with the program
                unit = "aquen-dfu"
                bus.order("unplug aquen\nunit aquen-dfu")
            process = bus.cli("update", *long)
            steps = [event["step"] for event in events(process.communicate(timeout=PATIENCE)[0])
                     if event["event"] == "step"]
            self.assertEqual((process.returncode, steps), (0, ["write", "return"]))
            bus.order(f"fault {unit} busy on=erase value=forever")
            process = bus.cli("update", "--force", *long)
            read_until(process, '"write"')
            time.sleep(1)  # until it is busy, which a stop waits for
            process.send_signal(signal.SIGINT)
            time.sleep(0.5)
            self.assertIsNone(process.poll())
            process.send_signal(INTERRUPT)
            process.communicate(timeout=PATIENCE)
            self.assertEqual((process.returncode, WINE or bus.close()), (130, WINE or "-1.3.1"))

    @unittest.skipIf(WINE, "one program alone is on its bus")
    def test_side_by_side_and_in_use(self):
        # Of two clients whose hot-plug socket has the same number only the later one hears of changes.
        with Bus((OLD, OLD, "solvar")) as bus:
            both = [bus.cli("update", "1-1"), bus.start(
                CLI, "update", "1-2", "--firmware", ".", pass_fds=[bus.control])]
            for process in both:
                self.assertIn("updated", process.communicate(timeout=PATIENCE)[0])
            holder = bus.start("python3", "-c", HOLD_SOLVAR, stdin=PIPE)
            self.assertEqual(holder.stdout.readline(), "0\n")
            log, = bus.folder.rglob("*.log")
            log.with_suffix(".log.old").write_text("WARN before\n")
            for command, status, text in (
                    ("doctor", 0, r"v0.tarnware: .*magic(.|\n)*WARN before(.|\n)*ERROR .*_BUSY(.|\n)*In use:"),
                    ("update solvar", 5, "In use: close"), ("update Nobody", 5, "In use: close"),
                    ("update 1-1", 0, "up to date"),
                    ("doctor --firmware empty", 0, r"no valid aquen-v\*(.|\n)*no valid solvar-v\*")):
                process = bus.cli(*command.split())
                output = "".join(process.communicate(timeout=PATIENCE))
                self.assertEqual(process.returncode, status, output)
                self.assertRegex(output, text)
            holder.communicate("\n")

    def test_watch_and_list(self):
        # Under Wine a unit is given in one line.
        name, shown = ("\x1b[2J", "?[2J") if WINE else ("\n\x1b[2J", "??[2J")
        with Bus((OLD, f"solvar:plugged=no:serial={name}")) as bus:
            process = bus.cli("watch", "--json")
            head = process.stdout.readline()
            for line in ("plug solvar", "unplug aquen"):
                bus.order(line)
                head += process.stdout.readline()
            process.send_signal(INTERRUPT)
            tail, _ = process.communicate(timeout=PATIENCE)
            seen = " ".join(event["event"] + event["port"] for event in events(head + tail))
            self.assertEqual((process.returncode, seen), (130, "attached1-1 attached1-2 removed1-1"))
            self.assertIn(shown, bus.cli("list").communicate(timeout=PATIENCE)[0])
            if not WINE:  # see test_streams()
                closed = bus.start(CLI, "list", preexec_fn=lambda: os.closerange(0, 3))
                self.assertEqual(closed.wait(PATIENCE), 0)
                log, = bus.folder.rglob("*.log")
                self.assertNotRegex(log.read_text(), "(?m)^1-2")

    @unittest.skipUnless(WINE, "Windows alone knows programs without a console")
    def test_streams(self):
        for name, status in ("AquenSolvarUpdater", 0), ("aquen-solvar-cli", 0), ("tarnware", 1):
            ways = '"$@" | cat; "$@" >file; cat file; "$@" >&-; echo $?'
            program = pathlib.Path(CLI).with_name(f"{name}.exe")
            output = run(["sh", "-c", ways, "sh", *WINE, program, "--version"], cwd=FIRMWARE,
                         stdout=PIPE, stderr=DEVNULL, text=True, check=True).stdout
            self.assertRegex(output, rf"\A({name} \d+\.\d+\.\d+\n){{2}}{status}\n\Z")
        master, console = pty.openpty()
        with Bus((OLD,)) as bus:
            run([*WINE, CLI, "update", "--firmware", "."], cwd=FIRMWARE, env=bus.environment,
                stdin=console, stdout=console, check=True)
        self.assertIn("\r[####", os.read(master, 9999).decode())


def make_firmware(folder):
    for name, version, size in ((".", 10301, 1000), ("long", 10301, 20000), ("later", 10400, 1000),
                                ("broken", 10301, 1000)):
        os.makedirs(folder / name, exist_ok=True)
        image = folder / name / "image"
        run([VIRTUALBUS, "--make-image", f"1.3.1:{size}:{image}"], check=True)
        if name == "broken":
            image.write_bytes(image.read_bytes()[:-1])
        for kind in TWO:
            run([*WINE, TARNWARE, "pack", "--version", str(version), image,
                 folder / name / f"{kind}-v1.tarnware"], check=True)
    (folder / "aquen-v0.tarnware").write_text("no bundle")


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as FIRMWARE:
        make_firmware(pathlib.Path(FIRMWARE))
        unittest.main()
