# SPDX-License-Identifier: LicenseRef-Proprietary
"""The program virtualbus, and its units as lsusb and dfu-util see them."""

import hashlib
import os
import pathlib
import tempfile
import unittest
from subprocess import PIPE, Popen, run

VIRTUALBUS = os.environ["VIRTUALBUS"]


class VirtualBus(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def start(self, *words):
        files = ("--report", self.folder / "report", "--trace", self.folder / "trace")
        process = Popen([VIRTUALBUS, *files, *words], stdout=PIPE, stderr=PIPE, text=True)
        self.addCleanup(process.kill)
        return process

    def finish(self, process):
        output = "".join(process.communicate(timeout=60))
        report = (self.folder / "report").read_text().splitlines()
        self.assertTrue(report, (process.returncode, output))
        return process.returncode, output, [dict(word.split("=") for word in line.split())
                                            for line in report]

    def dfu_util(self, *options, unit="aquen-dfu"):
        return self.finish(self.start("--unit", unit, "--", "dfu-util", "-a", "0", *options))

    def test_control_and_signals(self):
        fifo = self.folder / "fifo"
        process = self.start("--unit=aquen", "--unit=aquen:plugged=no", "--control", fifo,
                             "--", "sleep", "300")
        while not fifo.exists():
            self.assertIsNone(process.poll())
        fifo.write_text("plug aquen#2\nunit solvar:plugged=no\nfault aquen stall on=drop\n"
                        "unplug aquen\nfault aquen boom\n")
        self.assertIn("unknown action: boom", process.stderr.readline())
        process.terminate()
        status, _, units = self.finish(process)
        self.assertEqual((status, [unit["bus"] for unit in units]), (143, ["no", "yes", "no"]))
        process = self.start("--", "tail", "-f", __file__)
        process.stdout.readline()
        process.kill()  # the command, which has the pipes open, ends as well
        process.communicate(timeout=60)

    def test_refusals(self):
        for words, text in ((["--unit=aquen:firmware=abc"], "not a version"),
                            (["--unit=aquen:serial=" + 33 * "x"], "at most 32 bytes"),
                            (["--make-image=1.2.3:247809:/dev/null"], "64 to 247808 bytes"),
                            (["--unit=aquen", "--report=/dev/full"], "cannot write /dev/full"),
                            (["--", "env", "TMPDIR=/none", VIRTUALBUS], "temporary folder")):
            process = run([VIRTUALBUS, *words, "--", "true"], stderr=PIPE, text=True)
            self.assertIn(text, process.stderr)
            self.assertIn(process.returncode, (2, 127))

    def test_lsusb(self):
        units = [f"--unit={kind}" for kind in ("aquen-dfu", "solvar-dfu", "aquen", "solvar")]
        _, output, _ = self.finish(self.start(*units, "--", "lsusb", "-v", "-d", "16d0:"))
        for text, count in (("ID 16d0:0c0", 4), ("2048 bytes", 2), ("arning", 0), ("junk", 0),
                            ("@Internal Flash  /0x08000000/07*002Ka,121*002Kg", 2)):
            self.assertEqual(output.count(text), count, text)

    def test_dfu_util(self):
        image, copy, junk = (self.folder / name for name in ("image", "copy", "junk"))
        run([VIRTUALBUS, "--make-image", f"1.3.1:20001:{image}"], check=True)
        junk.write_bytes(os.urandom(5000))
        for file, facts in ((image, ("application", "1.3.1")), (junk, ("bootloader", "-"))):
            _, _, (unit,) = self.dfu_util("-s", "0x08003800:leave", "-D", file)
            self.assertEqual((unit["mode"], unit["firmware"], unit["bus"]), (*facts, "yes"))
            self.assertIn("finish      21 01 value=", (self.folder / "trace").read_text())
            self.assertEqual(unit["sha256"], hashlib.sha256(file.read_bytes()).hexdigest())
        unit = "aquen-dfu:firmware=1.2.0"
        self.assertEqual(self.dfu_util("-s", "0x08003800", "-U", copy, unit=unit)[0], 0)
        self.assertEqual(copy.stat().st_size, 121 * 2048)
        status, _, (unit,) = self.dfu_util("-s", "0x08000000:force", "-D", junk, unit=unit)
        self.assertEqual((status == 0, unit["firmware"]), (False, "1.2.0"))


if __name__ == "__main__":
    unittest.main()
