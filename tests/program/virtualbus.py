"""Runs commands under virtualbus, for the tests beside this file."""

import hashlib
import os
import subprocess
import tempfile
import unittest

VIRTUALBUS = os.environ["VIRTUALBUS"]
APPLICATION = 0x08003800


class Result:
    """What a run under virtualbus has left: exit status, texts, and the report by unit."""

    def __init__(self, process, report):
        self.status = process.returncode
        self.out = process.stdout
        self.err = process.stderr
        self.units = {}
        for line in report.splitlines():
            facts = dict(word.split("=", 1) for word in line.split())
            self.units[facts["unit"]] = facts


class BusTestCase(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def write(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content)
        return self.path(name)

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def image(self, name, version, size):
        subprocess.run([VIRTUALBUS, "--make-image", f"{version}:{size}:{self.path(name)}"],
                       check=True)
        return self.path(name)

    def run_bus(self, units, command, *options, timeout=60):
        words = [VIRTUALBUS, "--report", self.path("report")]
        for unit in units:
            words += ["--unit", unit]
        process = subprocess.run([*words, *options, "--", *command], capture_output=True,
                                 text=True, timeout=timeout)
        report = self.read("report").decode() if os.path.exists(self.path("report")) else ""
        return Result(process, report)

    def assert_holds(self, facts, content):
        self.assertEqual(int(facts["length"]), len(content))
        self.assertEqual(facts["sha256"], hashlib.sha256(content).hexdigest())
