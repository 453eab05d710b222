"""What programs that know nothing of the simulator make of its units on the kernel's bus."""

import subprocess

from program import as_user
from units import CheckError, Units

START = "0x08003800"
LAYOUT = "@Internal Flash  /0x08000000/07*002Ka,121*002Kg"


def output_of(*command, user="member", seconds=120):
    """The standard output of a command that has to succeed."""
    result = subprocess.run(as_user(user, *command), stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, text=True, timeout=seconds, check=False)
    if result.returncode != 0:
        raise CheckError(f"{command[0]} ended with {result.returncode}: {result.stdout[-500:]} "
                         f"{result.stderr[-500:]}")
    return result.stdout


def expect(text, *parts):
    for part in parts:
        if part not in text:
            raise CheckError(f"{part!r} is missing in: {text[-1500:]}")


def lsusb(machine):
    with Units(machine.bus, "aquen", "solvar-dfu") as units:
        units.wait_for("0c07")
        units.wait_for("0c06")
        application = output_of("lsusb", "-v", "-d", "16d0:0c07")
        bootloader = output_of("lsusb", "-v", "-d", "16d0:0c06")
    (machine.results / "lsusb.txt").write_text(application + bootloader)
    words = " ".join(application.split())
    expect(words, "idProduct 0x0c07", "iProduct 2 Aquen", "bNumConfigurations 1",
           "bNumInterfaces 1", "bNumEndpoints 0", "Device Status: 0x0001")
    words = " ".join(bootloader.split())
    expect(words, "idProduct 0x0c06", "bInterfaceClass 254", "bInterfaceProtocol 2",
           "iInterface 4 " + " ".join(LAYOUT.split()), "wTransferSize 2048 bytes")
    return "descriptors of both modes, the DFU functional descriptor among them"


def dfu_util(machine):
    image = machine.images["aquen"]
    copy = "/tmp/upload.bin"
    size = image.stat().st_size
    with Units(machine.bus, "aquen-dfu") as units:
        units.wait_for("0c05")
        expect(output_of("dfu-util", "-l"), "[16d0:0c05]", f'name="{LAYOUT}"')
        output_of("dfu-util", "-d", "16d0:0c05", "-a", "0", "-s", START, "-D", str(image))
        output_of("dfu-util", "-d", "16d0:0c05", "-a", "0", "-s", f"{START}:{size}", "-U", copy)
        with open(copy, "rb") as uploaded:
            if uploaded.read() != image.read_bytes():
                raise CheckError("the upload is not what was downloaded")
        output_of("dfu-util", "-d", "16d0:0c05", "-a", "0", "-s", f"{START}:leave", "-D",
                  str(image))
        units.wait_for("0c07")
        facts = units.finish()["aquen-dfu"]
    if facts["mode"] != "application" or facts["firmware"] != machine.image_version:
        raise CheckError(f"the unit did not start the image: {facts}")
    return f"{size} bytes there and back, and the unit runs them"
