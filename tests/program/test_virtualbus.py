"""The program virtualbus, and its units as lsusb and dfu-util see them."""

import hashlib
import os
import pathlib
import subprocess
import tempfile
import unittest

VIRTUALBUS = os.environ["VIRTUALBUS"]


class VirtualBus(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.report = self.folder / "report"

    def start(self, *words):
        process = subprocess.Popen([VIRTUALBUS, "--report", self.report, *words],
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(process.kill)
        return process

    def finish(self, process):
        output = "".join(process.communicate(timeout=60))
        return process.returncode, output, [dict(word.split("=") for word in line.split())
                                            for line in self.report.read_text().splitlines()]

    def dfu_util(self, *options, unit="aquen-dfu"):
        return self.finish(self.start("--unit", unit, "--", "dfu-util", "-a", "0", *options))

    def test_arguments_and_exit_status(self):
        for words, expected in (
                ([], 2), (["--unit", "toaster", "--", "true"], 2), (["--frobnicate", "true"], 2),
                (["--unit", "aquen:serial", "true"], 2), (["--make-image", "1.0:12:x"], 2),
                (["--", "/no/such/program"], 127), (["false", "--unit", "toaster"], 1)):
            process = self.start(*words)
            usage = "Usage:" in process.communicate(timeout=60)[1]
            self.assertEqual((process.returncode, usage), (expected, expected == 2), words)

    def test_control_and_signals(self):
        fifo = self.folder / "fifo"
        process = self.start("--unit", "aquen", "--unit", "aquen:plugged=no", "--control", fifo,
                             "--trace", self.folder / "trace", "--", "sleep", "300")
        while not fifo.exists():
            self.assertIsNone(process.poll())
        fifo.write_text("plug aquen#2\nfault aquen stall on=drop\nunplug aquen\nfault aquen boom\n")
        self.assertIn("unknown action: boom", process.stderr.readline())
        process.terminate()
        status, _, units = self.finish(process)
        self.assertEqual((status, [unit["bus"] for unit in units]), (143, ["no", "yes"]))
        self.assertFalse(fifo.exists())
        process = self.start("--", "tail", "-f", __file__)
        process.stdout.readline()
        process.kill()  # the command, which has the pipes open, ends as well
        process.communicate(timeout=60)

    def test_lsusb(self):
        units = [f"--unit={kind}" for kind in ("aquen-dfu", "solvar-dfu", "aquen", "solvar")]
        _, output, _ = self.finish(self.start(*units, "--", "lsusb", "-v", "-d", "16d0:"))
        for text, count in (("ID 16d0:0c0", 4), ("2048 bytes", 2), ("arning", 0), ("junk", 0),
                            ("@Internal Flash  /0x08000000/07*002Ka,121*002Kg", 2)):
            self.assertEqual(output.count(text), count, text)

    def test_dfu_util(self):
        image, copy, junk = (self.folder / name for name in ("image", "copy", "junk"))
        subprocess.run([VIRTUALBUS, "--make-image", f"1.3.1:20001:{image}"], check=True)
        junk.write_bytes(os.urandom(5000))
        for file, facts in ((image, ("application", "1.3.1")), (junk, ("bootloader", "-"))):
            _, _, (unit,) = self.dfu_util("-s", "0x08003800:leave", "-D", file)
            self.assertEqual((unit["mode"], unit["firmware"], unit["bus"]), (*facts, "yes"))
            self.assertEqual(unit["sha256"], hashlib.sha256(file.read_bytes()).hexdigest())
        unit = "aquen-dfu:firmware=1.2.0"
        self.assertEqual(self.dfu_util("-s", "0x08003800", "-U", copy, unit=unit)[0], 0)
        self.assertEqual(copy.stat().st_size, 121 * 2048)
        status, _, (unit,) = self.dfu_util("-s", "0x08000000:force", "-D", junk, unit=unit)
        self.assertEqual((status == 0, unit["firmware"]), (False, "1.2.0"))


if __name__ == "__main__":
    unittest.main()
