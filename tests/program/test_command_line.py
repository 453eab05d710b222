"""virtualbus itself: arguments, exit status, scripts, control pipe, signals."""

import os
import signal
import subprocess
import time
import unittest

from virtualbus import VIRTUALBUS, BusTestCase


class CommandLine(BusTestCase):
    def test_wrong_arguments(self):
        script = self.write("script", b"0 plug aquen\n1 explode aquen\n")
        wrong = {
            "no command": ["--unit", "aquen"],
            "kind": ["--unit", "toaster", "--", "true"],
            "option": ["--unit", "aquen:colour=red", "--", "true"],
            "no value": ["--unit", "aquen:serial", "--", "true"],
            "version": ["--unit", "aquen:firmware=1.2.3.4.5.6.7.8.9", "--", "true"],
            "number": ["--unit", "aquen:schema=five", "--", "true"],
            "flag": ["--frobnicate", "--", "true"],
            "script": ["--unit", "aquen", "--script", script, "--", "true"],
            "no script": ["--unit", "aquen", "--script", "/nowhere", "--", "true"],
            "image": ["--make-image", "1.0:12:" + self.path("small")],
        }
        for name, arguments in wrong.items():
            with self.subTest(name):
                process = subprocess.run([VIRTUALBUS, *arguments], capture_output=True, text=True)
                self.assertEqual(process.returncode, 2)
                self.assertIn("Usage:", process.stderr)
                self.assertEqual(process.stdout, "")

    def test_exit_status(self):
        for command, status in ((["sh", "-c", "exit 7"], 7), (["sh", "-c", "kill -9 $$"], 137),
                                (["/no/such/program"], 127)):
            with self.subTest(command):
                self.assertEqual(self.run_bus(["aquen"], command).status, status)

    def test_signals_reach_the_command(self):
        for number in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(number):
                process = subprocess.Popen(
                    [VIRTUALBUS, "--unit", "aquen", "--", "sh", "-c",
                     "trap 'exit 33' TERM INT; echo ready; while :; do sleep 0.05; done"],
                    stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
                with process.stdout as out:
                    self.addCleanup(process.kill)
                    self.assertEqual(out.readline(), b"ready\n")
                    process.send_signal(number)
                    self.assertEqual(process.wait(20), 33)

    def test_script(self):
        script = self.write("script", b"# a washing unit comes late\n\n0.3 plug late\n"
                                      b"0.3 unplug aquen\n0.2 image solvar 5000 1.3.1\n")
        result = self.run_bus(["aquen", "aquen-dfu:label=late:plugged=no", "solvar"],
                              ["sh", "-c", "lsusb; echo then; sleep 0.8; lsusb"],
                              "--script", script)
        before, after = result.out.split("then")
        self.assertIn("16d0:0c07", before)
        self.assertNotIn("16d0:0c05", before)
        self.assertNotIn("16d0:0c07", after)
        self.assertIn("16d0:0c05", after)
        self.assertEqual(result.units["solvar"]["firmware"], "1.3.1")
        self.assertEqual({name: unit["bus"] for name, unit in result.units.items()},
                         {"aquen": "no", "late": "yes", "solvar": "yes"})

    def test_control_pipe(self):
        pipe = self.path("pipe")
        process = subprocess.Popen([VIRTUALBUS, "--verbose", "--unit", "aquen", "--control", pipe,
                                    "--", "sleep", "30"], stderr=subprocess.PIPE, text=True)
        while not os.path.exists(pipe):
            time.sleep(0.01)
        with open(pipe, "w") as control:
            control.write("nonsense aquen\nfault nobody stall\n")
            control.write("set aquen page-size 0\nreplug aquen 0.2\n")
        seen = [process.stderr.readline() for _ in range(6)]
        process.terminate()
        process.communicate(timeout=20)
        self.assertIn("aquen arrived", seen[0])
        self.assertIn("unknown verb: nonsense", seen[1])
        self.assertIn("no unit is called nobody", seen[2])
        self.assertIn("page", seen[3])
        self.assertIn("aquen left", seen[4])
        self.assertIn("aquen arrived", seen[5])
        self.assertEqual(process.returncode, 128 + signal.SIGTERM)
        self.assertFalse(os.path.exists(pipe))

    def test_fault_and_trace(self):
        script = self.write("script", b"0 fault aquen-dfu fail on=write first=2 value=6\n"
                                      b"0 set aquen-dfu program-time 30\n")
        image = self.image("image", "1.3.1", 9000)
        result = self.run_bus(
            ["aquen-dfu"],
            ["sh", "-c", f"sleep 0.2; exec dfu-util -a 0 -s 0x08003800:leave -D {image}"],
            "--script", script, "--trace", self.path("trace"))
        self.assertNotEqual(result.status, 0)
        self.assertEqual(result.units["aquen-dfu"]["length"], "2048")
        trace = self.read("trace").decode().splitlines()
        self.assertEqual(len([line for line in trace if " write " in line]), 2)


if __name__ == "__main__":
    unittest.main()
