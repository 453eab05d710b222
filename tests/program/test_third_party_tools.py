"""Units as lsusb and dfu-util see them: programs that know nothing of the simulator."""

import os
import unittest

from virtualbus import APPLICATION, BusTestCase

LAYOUT = "@Internal Flash  /0x08000000/07*002Ka,121*002Kg"


class ThirdPartyTools(BusTestCase):
    def test_lsusb(self):
        result = self.run_bus(["aquen", "solvar", "aquen-dfu", "solvar-dfu"],
                              ["lsusb", "-v", "-d", "16d0:"])
        self.assertEqual(result.status, 0, result.err)
        for product in ("0c05", "0c06", "0c07", "0c08"):
            self.assertEqual(result.out.count(f"ID 16d0:{product}"), 1)
        self.assertEqual(result.out.count(LAYOUT), 2)
        self.assertEqual(result.out.count("bcdDFUVersion                   1.1a"), 2)
        self.assertEqual(result.out.count("wTransferSize                    2048 bytes"), 2)
        for complaint in ("Couldn't open", "Warning", "junk", "unrecognized"):
            self.assertNotIn(complaint.lower(), (result.out + result.err).lower())

    def test_dfu_util_lists_bootloaders_only(self):
        result = self.run_bus(["aquen", "aquen-dfu", "solvar-dfu"], ["dfu-util", "-l"])
        found = [line for line in result.out.splitlines() if line.startswith("Found DFU")]
        self.assertEqual(len(found), 2)
        self.assertTrue(all(LAYOUT in line for line in found))

    def test_update(self):
        image = self.image("image", "1.3.1", 20001)
        result = self.run_bus(["solvar-dfu"], ["dfu-util", "-a", "0", "-s",
                                               f"{APPLICATION:#x}:leave", "-D", image])
        self.assertEqual(result.status, 0, result.err)
        unit = result.units["solvar-dfu"]
        self.assertEqual((unit["mode"], unit["firmware"], unit["bus"]),
                         ("application", "1.3.1", "yes"))
        self.assert_holds(unit, self.read("image"))

    def test_update_with_junk_stays_bootloader(self):
        junk = self.write("junk", os.urandom(5000))
        result = self.run_bus(["aquen-dfu"], ["dfu-util", "-a", "0", "-s",
                                              f"{APPLICATION:#x}:leave", "-D", junk])
        unit = result.units["aquen-dfu"]
        self.assertEqual((unit["mode"], unit["firmware"], unit["bus"]), ("bootloader", "-", "yes"))
        self.assert_holds(unit, self.read("junk"))

    def test_upload_gives_the_bytes_back(self):
        content = self.write("content", os.urandom(30000))
        result = self.run_bus([f"aquen-dfu:image={content}"],
                              ["dfu-util", "-a", "0", "-s", f"{APPLICATION:#x}:30000", "-U",
                               self.path("copy")])
        self.assertEqual(result.status, 0, result.err)
        self.assertEqual(self.read("copy"), self.read("content"))

    def test_upload_to_the_end_of_memory(self):
        result = self.run_bus(["aquen-dfu:firmware=1.2.0"],
                              ["dfu-util", "-a", "0", "-s", f"{APPLICATION:#x}", "-U",
                               self.path("copy")])
        self.assertEqual(result.status, 0, result.err)
        self.assertEqual(len(self.read("copy")), 121 * 2048)

    def test_bootloader_is_protected(self):
        image = self.image("image", "1.3.1", 3000)
        result = self.run_bus(["aquen-dfu:firmware=1.2.0"],
                              ["dfu-util", "-a", "0", "-s", "0x08000000:force", "-D", image])
        self.assertNotEqual(result.status, 0)
        self.assertEqual(result.units["aquen-dfu"]["firmware"], "1.2.0")

    def test_cable_pulled_amid_a_download(self):
        image = self.image("image", "1.3.1", 100000)
        script = self.write("script", b"fault aquen-dfu never-return\n"
                            b"fault aquen-dfu leave on=write first=10\n")
        result = self.run_bus(["aquen-dfu:firmware=1.2.0"],
                              ["dfu-util", "-a", "0", "-s", f"{APPLICATION:#x}:leave", "-D", image],
                              "--script", script)
        self.assertNotEqual(result.status, 0)
        unit = result.units["aquen-dfu"]
        self.assertEqual((unit["firmware"], unit["bus"]), ("-", "no"))


if __name__ == "__main__":
    unittest.main()
