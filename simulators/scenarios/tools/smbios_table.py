"""Builds a raw SMBIOS table (DMTF DSP0134) as firmware leaves it for the kernel.

Each function returns one structure: type, length and handle, the formatted area, then the strings
that the area refers to by number, and two zeros. `table` joins structures and ends them; `entry_point`
makes the 64-bit entry point of a table (DSP0134, 5.2.2). Numbers are little-endian.
"""

import ipaddress
import struct

END_OF_TABLE = 127


class Strings:
    """The strings of one structure; an empty text has the number 0, which stands for none."""

    def __init__(self):
        self.texts = []

    def number(self, text):
        if not text:
            return 0
        self.texts.append(text)
        return len(self.texts)

    def encoded(self):
        if not self.texts:
            return b"\0\0"
        return b"".join(text.encode("ascii") + b"\0" for text in self.texts) + b"\0"


def structure(kind, handle, area, strings):
    return struct.pack("<BBH", kind, 4 + len(area), handle) + area + strings.encoded()


def bios(handle, vendor, version, date):
    """Type 0, length 1Ah: a UEFI firmware of 16 MiB, release 1.2."""
    strings = Strings()
    area = struct.pack(
        "<BBHBBQBBBBBBH",
        strings.number(vendor),
        strings.number(version),
        0xE800,  # segment of the entry point; meaningless with UEFI
        strings.number(date),
        0xFF,  # size: see the last field
        1 << 3,  # characteristics: not told
        0x00,
        0x08,  # characteristics extension: UEFI is supported
        1,
        2,
        0xFF,
        0xFF,
        16,  # MiB
    )
    return structure(0, handle, area, strings)


def system(handle, maker, product, version, serial, uuid, sku, family):
    """Type 1, length 1Bh."""
    strings = Strings()
    numbers = [strings.number(text) for text in (maker, product, version, serial)]
    area = bytes(numbers) + uuid.bytes_le + b"\x06"  # woken by the power switch
    area += bytes([strings.number(sku), strings.number(family)])
    return structure(1, handle, area, strings)


def baseboard(handle, maker, product, version, serial):
    """Type 2, length 0Fh: a motherboard."""
    strings = Strings()
    numbers = [strings.number(text) for text in (maker, product, version, serial)]
    area = bytes(numbers) + bytes([0, 0x09, 0]) + struct.pack("<HBB", 0x0300, 0x0A, 0)
    return structure(2, handle, area, strings)


def chassis(handle, maker, version, serial):
    """Type 3, length 16h: a rack mount chassis."""
    strings = Strings()
    area = bytes([strings.number(maker), 0x17, strings.number(version), strings.number(serial), 0])
    area += bytes([3, 3, 3, 2]) + struct.pack("<IBBBB", 0, 2, 2, 0, 0) + b"\0"
    return structure(3, handle, area, strings)


def slot(handle, label, number, address, in_use=True):
    """Type 9, length 13h: a PCIe 4.0 x16 slot; `address` is "0000:3b:00.0"."""
    strings = Strings()
    segment, bus, place = address.split(":")
    device, function = place.split(".")
    area = bytes([strings.number(label), 0xBC, 0x0D, 4 if in_use else 3, 4])
    area += struct.pack("<HBB", number, 0x0C, 0x01)
    area += struct.pack(
        "<HBBBB", int(segment, 16), int(bus, 16), int(device, 16) << 3 | int(function, 16), 16, 0
    )
    return structure(9, handle, area, strings)


def persistent_memory(handle, locator, maker, part, serial, firmware):
    """Type 17, length 54h: a persistent-memory module of 128 GiB."""
    strings = Strings()
    area = struct.pack("<HHHHHBB", 0xFFFE, 0xFFFE, 72, 64, 0x7FFF, 0x09, 0)
    area += bytes([strings.number(locator), 0, 0x1F]) + struct.pack("<HH", 1 << 12, 2666)
    area += bytes([strings.number(maker), strings.number(serial), 0, strings.number(part), 0])
    area += struct.pack("<IHHHHBH", 128 * 1024, 2666, 1200, 1200, 1200, 0x06, 0x20)
    area += bytes([strings.number(firmware)]) + bytes(8)  # no maker ids
    area += struct.pack("<QQQQ", 128 << 30, 0, 0, 0)
    return structure(17, handle, area, strings)


def redfish_host_interface(handle, host_address, service_address, service_port):
    """Type 42 (DSP0270): a USB network device, and Redfish over IPv4 with fixed addresses."""
    strings = Strings()
    device = bytes([0x04, 0x11]) + struct.pack("<HH", 0x0000, 0x0001)  # no real USB ids
    device += bytes([strings.number("EXUSB0001")]) + bytes.fromhex("020000000001")
    device += struct.pack("<HH", 0, 0)
    everywhere = 16
    record = bytes(everywhere)  # no UUID
    record += bytes([0x01, 0x01]) + ipv4(host_address) + ipv4("255.0.0.0")
    record += bytes([0x01, 0x01]) + ipv4(service_address) + ipv4("255.0.0.0")
    record += struct.pack("<HI", service_port, 0) + b"\0"  # no VLAN, no name
    area = bytes([0x40, len(device)]) + device + bytes([1, 0x04, len(record)]) + record
    return structure(42, handle, area, strings)


def ipv4(text):
    return ipaddress.IPv4Address(text).packed + bytes(12)


def table(structures):
    return b"".join(structures) + structure(END_OF_TABLE, 0xFEFF, b"", Strings())


def entry_point(of_table):
    """Version 3.4; the bytes add up to zero."""
    head = struct.pack("<5sBBBBBBBIQ", b"_SM3_", 0, 0x18, 3, 4, 0, 1, 0, len(of_table), 0x7F000000)
    checksum = -sum(head) % 256
    return head[:5] + bytes([checksum]) + head[6:]
