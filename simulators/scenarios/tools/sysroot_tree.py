"""Writes what a Linux kernel shows of an invented machine as sysroot/**, links relative as there.

Deterministic: the same calls give the same bytes, so that a regenerated scenario shows only what
was meant to change.
"""

import os
import pathlib
import shutil
import struct

SCENARIOS = pathlib.Path(__file__).resolve().parent.parent


class SysrootTree:
    """The sysroot/ of one scenario folder, emptied when opened. Paths begin with "/"."""

    def __init__(self, name):
        self.folder = SCENARIOS / name / "sysroot"
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)

    def place(self, path):
        place = self.folder / path.lstrip("/")
        place.parent.mkdir(parents=True, exist_ok=True)
        return place

    def attribute(self, path, text):
        """A line of text, as the kernel shows most attributes."""
        self.place(path).write_text(f"{text}\n", encoding="utf-8")

    def attributes(self, folder, **values):
        for name, text in values.items():
            self.attribute(f"{folder}/{name}", text)

    def bytes(self, path, content):
        self.place(path).write_bytes(content)

    def link(self, path, target):
        """A link to `target`, a path of the tree, relative to where it stands."""
        place = self.place(path)
        os.symlink(os.path.relpath(target, os.path.dirname(path)), place)

    def program(self, path, script):
        place = self.place(path)
        place.write_text(script, encoding="utf-8")
        place.chmod(0o755)


def inquiry(vendor, model, revision):
    """Standard INQUIRY data of a disk (SPC-5, 6.7.2)."""
    head = bytes([0, 0, 6, 2, 91, 0, 0, 2])
    texts = vendor.ljust(8) + model.ljust(16)[:16] + revision.ljust(4)[:4]
    return head + texts.encode("ascii") + bytes(60)


def vpd_page(code, body):
    """A vital product data page (SPC-5, 7.7)."""
    return struct.pack(">BBH", 0, code, len(body)) + body


def serial_page(serial):
    return vpd_page(0x80, serial.encode("ascii"))


def names_page(naa):
    """One NAA designator of the logical unit; `naa` in hexadecimal."""
    designator = bytes.fromhex(naa)
    return vpd_page(0x83, bytes([1, 3, 0, len(designator)]) + designator)


def ata_page(model, firmware, serial):
    """The ATA Information page (SAT-5): IDENTIFY DEVICE keeps texts with swapped bytes."""
    identify = bytearray(512)
    for word, words, text in ((10, 10, serial.rjust(20)), (23, 4, firmware), (27, 20, model)):
        padded = text.ljust(words * 2).encode("ascii")
        for at in range(0, words * 2, 2):
            identify[word * 2 + at] = padded[at + 1]
            identify[word * 2 + at + 1] = padded[at]
    body = bytes(4) + b"EXLIBATA" + b"SAT layer".ljust(16) + b"1.00" + bytes(20)
    return vpd_page(0x89, body + bytes([0xEC, 0, 0, 0]) + bytes(identify))


def pci_vpd(name, **keywords):
    """Vital product data of a PCI device (PCI 3.0, appendix I): name, read-only keywords, checksum."""
    data = b"\x82" + struct.pack("<H", len(name)) + name.encode("ascii")
    fields = b"".join(
        key.encode("ascii") + bytes([len(text)]) + text.encode("ascii")
        for key, text in keywords.items()
    )
    length = len(fields) + 4
    data += b"\x90" + struct.pack("<H", length) + fields + b"RV\x01"
    return data + bytes([-sum(data) % 256]) + b"\x78"
